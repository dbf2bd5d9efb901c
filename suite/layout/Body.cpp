#include "suite/layout/Body.h"

#include "suite/common/Files.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/Layout.h"

#include <BRep_Builder.hxx>
#include <BRepTools.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>

#include <fstream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace vrn::layout {

namespace {

std::string TextAt(sdf::Element& element, std::string_view path) {
    const std::any text = element.touch(path)->getValue();
    return text.has_value() ? std::any_cast<std::string>(text) : std::string();
}

TopoDS_Shape ReadShape(std::istream& stream) {
    TopoDS_Shape shape;
    BRepTools::Read(shape, stream, BRep_Builder());
    // The reader reports what it does not understand on its own stream and gives no shape.
    if (shape.IsNull()) throw std::runtime_error("not a B-rep file");
    geometry::GenerateMesh(shape, 0.0, 0.0);
    return shape;
}

TopoDS_Shape LoadShape(const std::string& uri) {
    try {
        if (uri.starts_with("resource://")) {
            std::istringstream stream(ReadFileFromURI(uri));
            return ReadShape(stream);
        }
        std::ifstream stream(UriToFilePath(uri), std::ios::binary);
        if (!stream) throw std::runtime_error("the file cannot be opened");
        return ReadShape(stream);
    } catch (const std::runtime_error& e) {
        throw std::runtime_error("cannot load the shape " + uri + ": " + e.what());
    } catch (const Standard_Failure& e) {
        throw std::runtime_error("cannot load the shape " + uri + ": " + e.GetMessageString());
    }
}

}  // namespace

struct Body::Geometry {
    mutable std::mutex mutex;  // guards both
    TopoDS_Shape shape;
    FaceMap faces;  // empty: not mapped yet
};

Body::Body(std::string_view bodyName, const std::string& uri, const std::string& fileType)
    : SdfObject(sdf::ObjectType::Body, bodyName, "body"), geometry(std::make_unique<Geometry>()) {
    element->set("geometry/uri", uri);
    element->set("geometry/file_type", fileType);
}

Body::Body(std::string_view bodyName, const std::string& uri, const TopoDS_Shape& shape)
    : Body(bodyName, uri, std::string("brep")) {
    setShape(shape);
}

Body::~Body() { Layout::inst()->forget(id); }

std::string Body::getGeometryUri() const { return TextAt(*element, "geometry/uri"); }

std::string Body::getMaterialName() const { return TextAt(*element, "visual/material/name"); }

void Body::setMaterialName(const std::string& material) {
    element->set("visual/material/name", material);
}

void Body::ensureShapeLoaded() {
    const std::string uri = getGeometryUri();
    const std::lock_guard lock(geometry->mutex);
    if (geometry->shape.IsNull() && !uri.empty()) geometry->shape = LoadShape(uri);
}

TopoDS_Shape Body::getShape() const {
    const std::lock_guard lock(geometry->mutex);
    return geometry->shape;
}

void Body::setShape(TopoDS_Shape newShape) {
    const std::lock_guard lock(geometry->mutex);
    if (geometry->shape.IsEqual(newShape)) return;  // keeps the face map that is in use
    geometry->shape = std::move(newShape);
    geometry->faces.Clear();
}

const FaceMap& Body::getFaceMap() {
    const std::lock_guard lock(geometry->mutex);
    if (geometry->faces.IsEmpty() && !geometry->shape.IsNull())
        TopExp::MapShapes(geometry->shape, TopAbs_FACE, geometry->faces);
    return geometry->faces;
}

}  // namespace vrn::layout
