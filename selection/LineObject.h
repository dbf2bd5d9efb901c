#pragma once

#include "selection/SelectableObject.h"

namespace vrn::visual {
class InstanceFrameVisual;
class LineVisual;
}  // namespace vrn::visual

namespace vrn::selection {

/// A line visual or an instanced frame in the picking world: the segments that its line lists and
/// line strips draw, or the axes of the frame, as they were at the first updateWorldBox. Contact
/// tests never meet it. Thread: render.
class VRN_VISUAL_API LineObject : public SelectableObject {
public:
    explicit LineObject(visual::Visual* shownLines);

    /// A SensitiveLine for each segment; what was built before goes.
    ///
    /// Of an instanced frame the axes x, y, z as long as they are drawn, or z alone while the scene
    /// shows no other. Of a line visual the pairs of its line lists, of which an odd last point
    /// belongs to none, and the consecutive pairs of its line strips; point lists give nothing. Any
    /// other visual gives nothing.
    void buildBVH();
    void updateWorldBox() override;

    using SelectableObject::intersect;
    /// A hit tells the visual; `position` is in the world.
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

private:
    void addSegment(const rob::PosTemplate<float>& from, const rob::PosTemplate<float>& to);
    void addAxes(const visual::InstanceFrameVisual& frame);
    void addLines(const visual::LineVisual& shown);
};

}  // namespace vrn::selection
