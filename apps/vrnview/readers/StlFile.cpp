#include "apps/vrnview/readers/StlFile.h"

#include <array>
#include <cstdint>
#include <format>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "apps/vrnview/readers/FileBytes.h"
#include "apps/vrnview/readers/GeometryUri.h"
#include "mesh/STLLoader.h"

namespace vrn::host {

namespace {

/// Of a binary STL: 80 free bytes, then the number of triangles.
constexpr std::size_t headerSize = 84;
constexpr std::uint64_t triangleSize = 50;

using Vec = rob::Vec3Template<double>;

bool IsOne(const Vec& v) { return v.x == 1 && v.y == 1 && v.z == 1; }

void Scale(visual::Mesh& mesh, const Vec& unit) {
    for (auto& p : mesh.vertices)
        p = {static_cast<float>(p.x * unit.x), static_cast<float>(p.y * unit.y),
             static_cast<float>(p.z * unit.z)};
    const bool isMirrored = unit.x * unit.y * unit.z < 0;
    // A normal goes with the inverse of what the points go with.
    for (auto& n : mesh.normals) {
        const Vec turned{n.x * unit.y * unit.z, n.y * unit.z * unit.x, n.z * unit.x * unit.y};
        if (turned.length() > rob::zeroLength)
            n = rob::Vec3Template<float>(turned.normalized() * (isMirrored ? -1.0 : 1.0));
    }
    if (!isMirrored) return;
    for (std::size_t i = 2; i < mesh.indices.size(); i += 3)
        std::swap(mesh.indices[i - 1], mesh.indices[i]);
}

}  // namespace

std::string StlName(const std::filesystem::path& file, const Vec& unitMm) {
    if (unitMm.x == unitMm.y && unitMm.x == unitMm.z)
        return GeometryUri(file) + UnitSuffix(unitMm.x);
    return std::format("{}*{}*{}*{}", GeometryUri(file), unitMm.x, unitMm.y, unitMm.z);
}

std::unique_ptr<visual::Mesh> ReadStlFile(const std::filesystem::path& file, const Vec& unitMm) {
    RequireReadable(file);
    std::unique_ptr<visual::Mesh> mesh;
    try {
        mesh.reset(visual::STLLoader::Load(GeometryUri(file)));
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(ExplainStlFailure(file, error.what()));
    }
    if (!IsOne(unitMm)) Scale(*mesh, unitMm);
    mesh->name = StlName(file, unitMm);
    return mesh;
}

std::string ExplainStlFailure(const std::filesystem::path& file, const std::string& readerMessage) {
    std::ifstream in(file, std::ios::binary);
    std::array<char, headerSize> header{};
    if (!in.read(header.data(), header.size())) return readerMessage;
    const std::string_view bytes(header.data(), header.size());
    // A text has no zero bytes, while a binary count or header nearly always does.
    if (bytes.find('\0') == std::string_view::npos) return readerMessage;
    std::uint64_t triangles = 0;
    for (std::size_t i = 0; i < 4; ++i)
        triangles |= std::uint64_t{static_cast<unsigned char>(header[80 + i])} << (8 * i);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    const std::uint64_t expected = headerSize + triangleSize * triangles;
    if (error || size == expected) return readerMessage;
    return std::format("{}: a binary STL of {} triangles has {} bytes, this file has {}",
                       readerMessage, triangles, expected, size);
}

}  // namespace vrn::host
