#include "selection/LineObject.h"

#include "mesh/DynamicLines.h"
#include "visual/geometry/LineVisual.h"

namespace vrn::selection {

namespace {

/// How many of the points, from the first on, end a segment.
std::size_t PointsInSegments(const visual::DynamicLines& line) {
    const std::size_t count = line.getPoints().size();
    switch (line.getOpType()) {
        case visual::RenderOpType::LineList:
            return count - count % 2;
        case visual::RenderOpType::LineStrip:
            return count < 2 ? 0 : count;
        case visual::RenderOpType::PointList:
            break;
    }
    return 0;
}

}  // namespace

LineObject::LineObject(visual::LineVisual* lineVisual)
    : SelectableObject(lineVisual, ObjectKind::Line), lines(lineVisual) {}

void LineObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    if (!bvhBuilt) {
        localBox = segmentBox();
        bvhBuilt = true;
    }
    updateWorldPose();
    box = localBox;
    box.transform(worldPose);
    worldBoxDirty = false;
}

visual::Box LineObject::segmentBox() const {
    visual::Box result;
    for (const auto& line : lines->getLines())
        result.addPoints(std::span(line->getPoints()).first(PointsInSegments(*line)));
    return result;
}

}  // namespace vrn::selection
