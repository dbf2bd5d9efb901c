#include "selection/SensitivePoints.h"

#include "selection/Math.h"
#include "selection/Ray.h"
#include "selection/Result.h"
#include "visual/geometry/PointCloudVisual.h"

#include <utility>

namespace vrn::selection {

SensitivePoints::SensitivePoints(visual::PointCloudVisual* cloudVisual,
                                 std::vector<unsigned int> pointIndices)
    : indices(std::move(pointIndices)), visual(cloudVisual) {}

Result SensitivePoints::intersect(const visual::Ray& ray) {
    Result best;
    const std::vector<rob::PosTemplate<float>>& points = visual->getPoints();
    for (const unsigned int index : indices) {
        if (index >= points.size()) continue;
        const rob::PosTemplate<float>& point = points[index];
        if (!(Math::DistancePointLine(point, ray.origin, ray.direction) < reach)) continue;
        const float distance = (point - ray.origin).length();
        if (best.hit && !(best.distance > distance)) continue;
        best.hit = true;
        best.distance = distance;
        best.visual = visual;
        best.position = best.localPosition = point;
        best.index = static_cast<std::int32_t>(index);
    }
    return best;
}

}  // namespace vrn::selection
