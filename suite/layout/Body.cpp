#include "suite/layout/Body.h"

#include "suite/common/Files.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/Layout.h"

#include <BRep_Builder.hxx>
#include <BRepTools.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>

#include <fstream>
#include <locale>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace vrn::layout {

namespace {

std::string TextAt(sdf::Element& element, std::string_view path) {
    const std::any text = element.touch(path)->getValue();
    return text.has_value() ? std::any_cast<std::string>(text) : std::string();
}

std::string ReadBytes(const std::string& uri) {
    if (uri.starts_with("resource://")) return ReadFileFromURI(uri);
    std::ifstream file(UriToFilePath(uri), std::ios::binary);
    if (!file) throw std::runtime_error("the file cannot be opened");
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return std::move(bytes).str();
}

/// Whether what stands behind the last shape of the file is the reference to the shape as a whole:
/// an orientation with a number, and a number.
bool EndsWithShapeReference(std::string_view bytes) {
    const std::size_t star = bytes.rfind('*');  // closes each shape
    if (star == std::string_view::npos) return false;
    std::istringstream tail(std::string(bytes.substr(star + 1)));
    char orientation = 0;
    long shape = 0, location = 0;
    tail.imbue(std::locale::classic());
    tail >> orientation >> shape >> location;
    return !tail.fail() && std::string_view("+-ie").find(orientation) != std::string_view::npos;
}

/// Asked before the reader, which prints to standard output where it misses its heading, and in a
/// file that was cut goes on with whatever its variables hold, without end at times.
void RequireBrep(std::string_view bytes) {
    if (bytes.substr(0, 256).find("CASCADE Topology V") == std::string_view::npos)
        throw std::runtime_error("not a B-rep file");
    if (bytes.find("\nTShapes ") == std::string_view::npos || !EndsWithShapeReference(bytes))
        throw std::runtime_error("the file ends too early");
}

TopoDS_Shape LoadShape(const std::string& uri) {
    try {
        std::string bytes = ReadBytes(uri);
        RequireBrep(bytes);
        std::istringstream stream(std::move(bytes));
        TopoDS_Shape shape;
        BRepTools::Read(shape, stream, BRep_Builder());
        if (shape.IsNull()) throw std::runtime_error("the file holds no shape");
        geometry::GenerateMesh(shape, 0.0, 0.0);
        return shape;
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
