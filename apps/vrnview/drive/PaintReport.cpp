#include "apps/vrnview/drive/PaintReport.h"

#include <algorithm>
#include <array>
#include <format>
#include <fstream>
#include <stdexcept>

#include "mesh/PaintMesh.h"
#include "visual/process/PaintVisual.h"
#include "visual/Visual.h"

namespace vrn::host {

namespace {

void Collect(const visual::Visual& top, std::vector<PaintedBody>& bodies) {
    for (const visual::Visual* child : top.getChildren()) {
        const auto* paint = dynamic_cast<const visual::PaintVisual*>(child);
        if (paint && paint->getMesh())
            bodies.push_back({top.id, top.getName(), CoverOf(*paint->getMesh())});
        Collect(*child, bodies);
    }
}

/// A field with a comma, a quote or a line end in it stands in quotes, each quote doubled.
std::string Quoted(const std::string& field) {
    if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
    std::string quoted = "\"";
    for (const char c : field) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

}  // namespace

PaintCover& PaintCover::operator+=(const PaintCover& o) {
    vertices += o.vertices;
    painted += o.painted;
    area += o.area;
    covered += o.covered;
    return *this;
}

PaintCover CoverOf(const visual::PaintMesh& mesh) {
    PaintCover cover;
    cover.vertices = mesh.vertices.size();
    const auto isPainted = [&mesh](std::size_t vertex) {
        return vertex < mesh.vertexColors.size() && mesh.vertexColors[vertex].a > 0;
    };
    for (std::size_t i = 0; i < cover.vertices; ++i) cover.painted += isPainted(i) ? 1 : 0;
    for (std::size_t i = 0; i + 2 < mesh.indices.size(); i += 3) {
        const std::array<std::size_t, 3> corners{mesh.indices[i], mesh.indices[i + 1],
                                                 mesh.indices[i + 2]};
        if (*std::ranges::max_element(corners) >= cover.vertices) continue;
        const auto at = [&](std::size_t corner) {
            return rob::PosTemplate<double>(mesh.vertices[corners[corner]]);
        };
        const double area = (at(1) - at(0)).cross(at(2) - at(0)).length() / 2;
        cover.area += area;
        cover.covered += area * static_cast<double>(std::ranges::count_if(corners, isPainted)) / 3;
    }
    return cover;
}

std::vector<PaintedBody> PaintedBodies(const visual::Visual& top) {
    std::vector<PaintedBody> bodies;
    Collect(top, bodies);
    std::ranges::sort(bodies, {}, &PaintedBody::id);
    return bodies;
}

std::string CsvOf(const std::vector<PaintedBody>& bodies) {
    std::string text = "body,name,vertices,painted,area,covered\n";
    for (const PaintedBody& body : bodies)
        text += std::format("{},{},{},{},{:.6g},{:.6g}\n", body.id, Quoted(body.name),
                            body.cover.vertices, body.cover.painted, body.cover.area,
                            body.cover.covered);
    return text;
}

void WritePaintReport(const std::vector<PaintedBody>& bodies, const std::filesystem::path& file) {
    std::ofstream out(file, std::ios::binary);
    out << CsvOf(bodies);
    out.close();
    if (!out)
        throw std::runtime_error(
            std::format("{}: the paint report cannot be written", file.string()));
}

}  // namespace vrn::host
