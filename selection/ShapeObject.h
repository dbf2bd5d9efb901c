#pragma once

#include "selection/SelectableObject.h"

#include <TopoDS_Shape.hxx>

namespace vrn::visual {
class SolidVisual;
}

namespace vrn::selection {

/// A solid in the picking world: the faces that it showed at the first updateWorldBox. Hidden faces
/// are not there, so a solid that hides or shows one gets a new object
/// (VisualSelection::updateShapeFaces). Without visible triangles it cannot be hit. Thread: render.
class VRN_VISUAL_API ShapeObject : public SelectableObject {
public:
    ShapeObject(const TopoDS_Shape& solidShape, visual::SolidVisual* solidVisual);

    /// A SensitiveFace for each visible face with a triangulation, in the order of their numbers;
    /// what was built before goes. Throws Standard_TypeMismatch, "TopoDS::Face", for an entry of
    /// the face map that is no face.
    void buildBVH();
    /// Fills what buildBVH reads and visuals may share. After it buildBVH may run on another thread
    /// while this one waits.
    void prepareBuild();
    void updateWorldBox() override;
    /// The visual's name.
    [[nodiscard]] std::string getName() const override;

    // A hit tells the visual. For a ray it tells the shape and the pose, too; `position` is in the
    // world for a ray and a line, and not written for a triangle.

    [[nodiscard]] Result intersect(const visual::Ray& ray) override;
    [[nodiscard]] Result intersect(const rob::TriangleTemplate<float>& triangle) override;
    [[nodiscard]] Result intersect(const rob::LineTemplate<float>& line) override;

    TopoDS_Shape shape;

private:
    const visual::SolidVisual* solid;
};

}  // namespace vrn::selection
