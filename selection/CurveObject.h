#pragma once

#include "selection/SelectableObject.h"

#include <TopoDS_Shape.hxx>

namespace vrn::selection {

/// A curve in the picking world: the edge visuals that hung below its visual at the first
/// updateWorldBox, each in its own place there. Without edges the box is empty. Thread: render.
class VRN_VISUAL_API CurveObject : public SelectableObject {
public:
    CurveObject(const TopoDS_Shape& curveShape, visual::Visual* curveVisual);

    void updateWorldBox() override;

    TopoDS_Shape shape;

private:
    /// The bounds of the edges in the visual's frame.
    [[nodiscard]] visual::Box edgesBox() const;

    visual::Box localBox;
};

}  // namespace vrn::selection
