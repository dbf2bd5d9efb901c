#include "selection/LineObject.h"

#include "mesh/DynamicLines.h"
#include "visual/geometry/LineVisual.h"
#include "visual/station/InstanceFrameVisual.h"

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

visual::Box BoxOfLines(const visual::LineVisual& lines) {
    visual::Box result;
    for (const auto& line : lines.getLines())
        result.addPoints(std::span(line->getPoints()).first(PointsInSegments(*line)));
    return result;
}

visual::Box BoxOfAxes(const visual::InstanceFrameVisual& frame) {
    const float size = frame.getFrameSize();
    visual::Box result;
    result.addPoint({0, 0, 0});
    result.addPoint(visual::InstanceFrameVisual::showsZAxisOnly()
                        ? rob::PosTemplate<float>{0, 0, size}
                        : rob::PosTemplate<float>{size, size, size});
    return result;
}

}  // namespace

LineObject::LineObject(visual::Visual* shownLines)
    : SelectableObject(shownLines, ObjectKind::Line) {}

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
    if (const auto* frame = dynamic_cast<const visual::InstanceFrameVisual*>(visual))
        return BoxOfAxes(*frame);
    const auto* lines = dynamic_cast<const visual::LineVisual*>(visual);
    return lines ? BoxOfLines(*lines) : visual::Box();
}

}  // namespace vrn::selection
