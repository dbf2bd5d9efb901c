#pragma once

#include "selection/BVHPrimitive.h"
#include "selection/SensitiveTriangleSet.h"

#include <Poly_Triangulation.hxx>
#include <TopoDS_Face.hxx>

namespace vrn::selection {

/// The triangulation of a face. A face that was never triangulated has the empty box and is never
/// hit; a triangle with a node that is not finite in single precision is left out. Thread: render.
class VRN_VISUAL_API SensitiveFace final : public BVHPrimitive, public SensitiveTriangleSet {
public:
    /// `number`: of the face in its solid, from 1. A null face counts as one that was never
    /// triangulated.
    SensitiveFace(const TopoDS_Face& sensitiveFace, int number);

    [[nodiscard]] Result intersect(const visual::Ray& ray) override;
    [[nodiscard]] Result intersect(const rob::TriangleTemplate<float>& triangle) override;
    [[nodiscard]] Result intersect(const rob::LineTemplate<float>& line) override;
    /// Throws Standard_OutOfRange for a number that the triangulation does not have.
    [[nodiscard]] rob::TriangleTemplate<float> getTriangleVertices(
        SensitiveTriangle* triangle) const override;

    int faceIndex;
    TopoDS_Face face;
    opencascade::handle<Poly_Triangulation> triangulation;  ///< may be null

private:
    void addTriangles();
};

}  // namespace vrn::selection
