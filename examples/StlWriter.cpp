#include "examples/StlWriter.h"

#include <BRep_Tool.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <gp_Vec.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <array>
#include <bit>
#include <cstdint>
#include <fstream>
#include <numbers>
#include <stdexcept>
#include <string>
#include <utility>

namespace vrn::examples {

namespace {

constexpr std::size_t headerSize = 80;

void AppendWord(std::string& bytes, std::uint32_t word) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>((word >> shift) & 0xffu);
}

void AppendVector(std::string& bytes, const gp_XYZ& v) {
    for (const double value : {v.X(), v.Y(), v.Z()})
        AppendWord(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
}

/// Corners in counter-clockwise order seen from outside. False for a triangle without area.
bool AppendTriangle(std::string& bytes, const std::array<gp_Pnt, 3>& corners) {
    const gp_Vec normal = gp_Vec(corners[0], corners[1]) ^ gp_Vec(corners[0], corners[2]);
    if (normal.Magnitude() < 1e-9) return false;
    AppendVector(bytes, normal.Normalized().XYZ());
    for (const gp_Pnt& corner : corners) AppendVector(bytes, corner.XYZ());
    bytes.append(2, '\0');  // the attribute, which nobody reads
    return true;
}

std::size_t AppendFace(std::string& bytes, const TopoDS_Face& face) {
    TopLoc_Location location;
    const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, location);
    if (mesh.IsNull()) return 0;
    std::size_t count = 0;
    for (int i = 1; i <= mesh->NbTriangles(); ++i) {
        int a = 0, b = 0, c = 0;
        mesh->Triangle(i).Get(a, b, c);
        // The triangles follow the surface's own normal, which a reversed face turns inside.
        if (face.Orientation() == TopAbs_REVERSED) std::swap(b, c);
        const auto corner = [&](int node) {
            return mesh->Node(node).Transformed(location.Transformation());
        };
        if (AppendTriangle(bytes, {corner(a), corner(b), corner(c)})) ++count;
    }
    return count;
}

}  // namespace

std::size_t WriteStl(const TopoDS_Shape& shape, const std::filesystem::path& file,
                     const Fineness& fineness) {
    BRepMesh_IncrementalMesh(shape, fineness.distance, /*isRelative=*/false,
                             fineness.angleDegrees * std::numbers::pi / 180, /*isInParallel=*/true);
    std::string triangles;
    std::size_t count = 0;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        count += AppendFace(triangles, TopoDS::Face(faces.Current()));

    std::string bytes(headerSize, '\0');
    AppendWord(bytes, static_cast<std::uint32_t>(count));
    bytes += triangles;
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error(file.string() + ": cannot be written");
    return count;
}

}  // namespace vrn::examples
