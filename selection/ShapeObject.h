#pragma once

#include "selection/SelectableObject.h"

#include <TopoDS_Shape.hxx>

namespace vrn::visual {
class SolidVisual;
}

namespace vrn::selection {

/// A solid in the picking world: the faces that it showed at the first updateWorldBox. Hidden faces
/// are not there, so a solid that hides or shows one gets a new object
/// (VisualSelection::updateShapeFaces). Without triangles the box is empty. Thread: render.
class VRN_VISUAL_API ShapeObject : public SelectableObject {
public:
    ShapeObject(const TopoDS_Shape& solidShape, visual::SolidVisual* solidVisual);

    void updateWorldBox() override;
    /// The visual's name.
    [[nodiscard]] std::string getName() const override;

    TopoDS_Shape shape;

private:
    /// The bounds of the visible faces in the visual's frame.
    [[nodiscard]] visual::Box facesBox() const;

    const visual::SolidVisual* solid;
    visual::Box localBox;
};

}  // namespace vrn::selection
