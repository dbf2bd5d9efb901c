#include "selection/LineObject.h"

#include "mesh/DynamicLines.h"
#include "selection/Ray.h"
#include "selection/SensitiveLine.h"
#include "visual/geometry/LineVisual.h"
#include "visual/station/InstanceFrameVisual.h"

#include <memory>

namespace vrn::selection {

namespace {

/// From the start of a segment to that of the next; 0 where points make no segments.
std::size_t SegmentStep(visual::RenderOpType type) {
    switch (type) {
        case visual::RenderOpType::LineList:
            return 2;
        case visual::RenderOpType::LineStrip:
            return 1;
        case visual::RenderOpType::PointList:
            break;
    }
    return 0;
}

// Accepted by the segments and without effect.
constexpr double lineSize = 3.0;

}  // namespace

LineObject::LineObject(visual::Visual* shownLines)
    : SelectableObject(shownLines, ObjectKind::Line) {}

void LineObject::buildBVH() {
    clearPrimitives();
    if (const auto* frame = dynamic_cast<const visual::InstanceFrameVisual*>(visual))
        addAxes(*frame);
    else if (const auto* lines = dynamic_cast<const visual::LineVisual*>(visual))
        addLines(*lines);
    buildTree();
}

void LineObject::addSegment(const rob::PosTemplate<float>& from,
                            const rob::PosTemplate<float>& to) {
    auto segment = std::make_unique<SensitiveLine>(from, to, lineSize);
    primitives.push_back(segment.get());
    (void)segment.release();
}

void LineObject::addAxes(const visual::InstanceFrameVisual& frame) {
    const float size = frame.getFrameSize();
    if (!visual::InstanceFrameVisual::showsZAxisOnly()) {
        addSegment({0, 0, 0}, {size, 0, 0});
        addSegment({0, 0, 0}, {0, size, 0});
    }
    addSegment({0, 0, 0}, {0, 0, size});
}

void LineObject::addLines(const visual::LineVisual& shown) {
    for (const auto& line : shown.getLines()) {
        const auto& points = line->getPoints();
        const std::size_t step = SegmentStep(line->getOpType());
        if (step == 0) continue;
        for (std::size_t i = 1; i < points.size(); i += step) addSegment(points[i - 1], points[i]);
    }
}

void LineObject::updateWorldBox() {
    updateLazily([this] { buildBVH(); });
}

Result LineObject::intersect(const visual::Ray& ray) {
    Result result = bvhIntersect(ray.transformed(inverseWorldPose));
    if (!result.hit) return result;
    result.position = toWorld(result.position);
    result.visual = visual;
    return result;
}

}  // namespace vrn::selection
