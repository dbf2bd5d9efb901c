#include "apps/vrnview/readers/CadModel.h"

#include <BRep_Builder.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepTools.hxx>
#include <gp_Trsf.hxx>

#include <stdexcept>
#include <string_view>

#include "apps/vrnview/readers/CadDocument.h"
#include "apps/vrnview/readers/FileBytes.h"
#include "apps/vrnview/readers/GeometryUri.h"
#include "apps/vrnview/readers/OcctGuard.h"
#include "apps/vrnview/readers/Probe.h"
#include "apps/vrnview/readers/Words.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/Body.h"

namespace vrn::host {

namespace {

/// The body's own reader, whose message repeats the file that the caller names already.
TopoDS_Shape LoadBrep(const std::string& uri) {
    layout::Body body("", uri, std::string("brep"));
    try {
        body.ensureShapeLoaded();
    } catch (const std::runtime_error& error) {
        const std::string message = error.what(), prefix = "cannot load the shape " + uri + ": ";
        throw std::runtime_error(message.starts_with(prefix) ? message.substr(prefix.size())
                                                             : message);
    }
    return body.getShape();
}

TopoDS_Shape Scaled(const TopoDS_Shape& shape, double factor) {
    gp_Trsf scaling;
    scaling.SetScaleFactor(factor);
    const TopoDS_Shape scaled =
        BRepBuilderAPI_Transform(shape, scaling, /*theCopyGeom=*/true).Shape();
    geometry::GenerateMesh(scaled, 0, 0);
    return scaled;
}

/// Whether the file starts and ends as one of bodies does. What does not is refused by the body's
/// own reader, before it reads on.
bool LooksWhole(const std::filesystem::path& file) {
    const std::string bytes = ReadBytes(file);
    const std::size_t star = bytes.rfind('*');  // closes each shape
    if (bytes.find("CASCADE Topology V") > 256 || star == std::string::npos) return false;
    Words tail(std::string_view(bytes).substr(star + 1));
    return !tail.next().empty() && !tail.next().empty();
}

CadModel ReadBrep(const std::filesystem::path& file, double unitMm) {
    const auto tryOut = [&file] {
        TopoDS_Shape tried;
        BRepTools::Read(tried, file.c_str(), BRep_Builder());
    };
    if (LooksWhole(file) && !Survives(tryOut, ProbeSeconds(file)))
        throw std::runtime_error("the file is broken: its shapes do not fit together");
    std::string uri = GeometryUri(file);
    TopoDS_Shape shape = LoadBrep(uri);
    if (unitMm != 1) {
        shape = Scaled(shape, unitMm);
        uri += UnitSuffix(unitMm);
    }
    const std::string name = file.stem().string();
    auto part = std::make_shared<CadPart>();
    part->bodies = BodiesOf(shape, name, uri + "#");
    if (part->bodies.empty()) throw std::runtime_error("the file holds no shape");
    CadModel model;
    model.roots.push_back({name, {}, std::move(part), {}, false, {}});
    return model;
}

}  // namespace

bool IsCadExtension(const std::string& extension) {
    return extension == ".step" || extension == ".stp" || extension == ".iges" ||
           extension == ".igs" || extension == ".brep";
}

CadModel ReadCadFile(const std::filesystem::path& file, double unitMm) {
    RequireReadable(file);
    const QuietOcct quiet;
    const std::string extension = LowerExtension(file);
    CadModel model;
    WithOcctErrors("the file cannot be taken over", [&] {
        if (extension == ".brep")
            model = ReadBrep(file, unitMm);
        else if (unitMm != 1)
            throw std::runtime_error("STEP and IGES files tell their own unit");
        else if (extension == ".step" || extension == ".stp")
            model = ReadStepDocument(file);
        else if (extension == ".iges" || extension == ".igs")
            model = ReadIgesDocument(file);
        else
            throw std::runtime_error(
                "not a file of bodies (supported: .step, .stp, .iges, .igs, .brep)");
    });
    return model;
}

}  // namespace vrn::host
