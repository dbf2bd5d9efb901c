#pragma once

#include <NCollection_IndexedMap.hxx>
#include <TopoDS_Shape.hxx>
#include <TopTools_ShapeMapHasher.hxx>

#include <memory>
#include <string>
#include <string_view>

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::layout {

using FaceMap = NCollection_IndexedMap<TopoDS_Shape, TopTools_ShapeMapHasher>;

/// One piece of geometry of a part.
///
/// Its element carries "geometry/uri" (which is also what bodies share one mesh by),
/// "geometry/file_type" ("stl" or "brep"), "visual/material/name" (absent: the default material)
/// and, where set, "pose". "detectable" stands in the part's element. Colours: see
/// geometry::BodyColorTool.
/// Thread: any for the shape, which has a lock of its own.
class VRN_SUITE_API Body : public sdf::SdfObject {
public:
    /// Geometry in a file; nothing is read yet.
    Body(std::string_view name, const std::string& uri, const std::string& fileType);
    /// Geometry at hand, of file type "brep". `uri` names it: two bodies of one `uri` are taken to
    /// be of one shape. A shape without triangles is shown without faces: geometry::GenerateMesh.
    Body(std::string_view name, const std::string& uri, const TopoDS_Shape& shape);
    ~Body() override;

    /// "geometry/uri" and "visual/material/name"; "" when absent. Throw std::bad_any_cast for a
    /// value that is not a text.
    [[nodiscard]] std::string getGeometryUri() const;
    [[nodiscard]] std::string getMaterialName() const;
    void setMaterialName(const std::string& material);

    /// Reads and triangulates the B-rep file that the URI names, unless there is a shape already or
    /// the URI is empty. Throws std::runtime_error naming the URI if that fails.
    void ensureShapeLoaded();
    /// Null before it is loaded or set.
    [[nodiscard]] TopoDS_Shape getShape() const;
    void setShape(TopoDS_Shape newShape);
    /// The shape's faces, counted from 1; empty without a shape. Valid until another shape is set.
    [[nodiscard]] const FaceMap& getFaceMap();

private:
    struct Geometry;
    const std::unique_ptr<Geometry> geometry;
};

}  // namespace vrn::layout
