#include "selection/SensitiveEdge.h"

#include "selection/BVHBuilder.h"
#include "selection/BVHNode.h"
#include "selection/PoseInverse.h"
#include "selection/Ray.h"
#include "selection/SensitiveLine.h"
#include "visual/geometry/EdgeVisual.h"

#include <cmath>
#include <memory>

namespace vrn::selection {

namespace {

using Pose = rob::PoseTemplate<float>;

/// Where the pose carries nothing further than a pick could tell.
bool StandsInPlace(const Pose& pose) {
    constexpr float reach = 0.01f, turn = 0.001f;
    const rob::RotationTemplate<float>& q = pose.rotation;
    return pose.position.asVec3().length() < reach && std::abs(q.w - 1.0f) < turn &&
           std::abs(q.x) < turn && std::abs(q.y) < turn && std::abs(q.z) < turn;
}

}  // namespace

SensitiveEdge::SensitiveEdge(visual::EdgeVisual* edgeVisual, const TopoDS_Edge& sensitiveEdge)
    : edge(sensitiveEdge) {
    const Pose pose = edgeVisual->getPose();
    if (!StandsInPlace(pose)) {
        hasLocation = true;
        location = pose;
        inverseLocation = InverseOf(pose);
    }
    addLines(edgeVisual->getPoints());
    tree = BVHBuilder(this).build();
    if (tree.root) box = tree.root->box;
    if (tree.root && hasLocation) box.transform(location);
}

void SensitiveEdge::addLines(const std::vector<rob::PosTemplate<float>>& points) {
    constexpr float merging = 1e-6f;
    constexpr double lineSize = 3.0;
    const rob::PosTemplate<float>* previous = nullptr;
    for (const auto& point : points) {
        // The later one of two points at one place is skipped.
        if (previous && (point - *previous).length() < merging) continue;
        if (previous) {
            auto line = std::make_unique<SensitiveLine>(*previous, point, lineSize);
            primitives.push_back(line.get());
            (void)line.release();
        }
        previous = &point;
    }
}

Result SensitiveEdge::intersect(const visual::Ray& ray) {
    Result result = bvhIntersect(ray.transformed(inverseLocation));
    if (!result.hit) return result;
    result.position = TransformPoint(location, result.localPosition);
    result.edge = edge;
    return result;
}

}  // namespace vrn::selection
