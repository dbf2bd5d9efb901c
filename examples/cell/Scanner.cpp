#include "examples/cell/Scanner.h"

#include <Bnd_Box.hxx>
#include <BRep_Tool.hxx>
#include <BRepBndLib.hxx>
#include <gp_Ax3.hxx>
#include <gp_Vec.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <string>

namespace vrn::examples {

namespace {

using Corners = std::array<gp_Pnt, 3>;

std::vector<Corners> TrianglesOf(const TopoDS_Shape& shape) {
    std::vector<Corners> triangles;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation) mesh =
            BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location);
        if (mesh.IsNull()) throw std::invalid_argument("a scanned shape needs triangles");
        for (int i = 1; i <= mesh->NbTriangles(); ++i) {
            Corners corners;
            for (int k = 1; k <= 3; ++k)
                corners[static_cast<std::size_t>(k - 1)] =
                    mesh->Node(mesh->Triangle(i).Value(k)).Transformed(location.Transformation());
            triangles.push_back(corners);
        }
    }
    return triangles;
}

/// From -1 to 1, the same for the same number: SplitMix64 (Steele, Lea, Flood, "Fast splittable
/// pseudorandom number generators", OOPSLA 2014). The standard distributions differ from library to
/// library.
double Noise(std::uint64_t number) {
    std::uint64_t z = (number + 1) * 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    z ^= z >> 31;
    return static_cast<double>(z >> 11) * 0x1.0p-52 - 1;
}

/// What one ray of the raster met.
struct Hit {
    double distance = std::numeric_limits<double>::infinity();
    double incidence = 0;  // cosine between the ray and the surface's normal
};

/// The raster of one place: square cells of a plane at distance 1, from which the rays come.
class Raster {
public:
    Raster(const gp_Pnt& place, const gp_Pnt& middle, double reach, double step)
        : eye(place),
          axes(place, gp_Dir(gp_Vec(place, middle))),
          cell(step),
          half(static_cast<int>(reach / place.Distance(middle) / step) + 2),
          hits(static_cast<std::size_t>(side()) * static_cast<std::size_t>(side())) {}

    void see(const Corners& corners) {
        const gp_Vec normal = gp_Vec(corners[0], corners[1]) ^ gp_Vec(corners[0], corners[2]);
        if (normal.Magnitude() < 1e-9) return;
        std::array<std::array<double, 2>, 3> flat{};
        for (std::size_t i = 0; i < 3; ++i) {
            const gp_Vec to(eye, corners[i]);
            const double depth = to * gp_Vec(axes.Direction());
            flat[i] = {to * gp_Vec(axes.XDirection()) / depth / cell,
                       to * gp_Vec(axes.YDirection()) / depth / cell};
        }
        const auto [left, right] = std::minmax({flat[0][0], flat[1][0], flat[2][0]});
        const auto [low, high] = std::minmax({flat[0][1], flat[1][1], flat[2][1]});
        for (int v = first(low); v <= last(high); ++v)
            for (int u = first(left); u <= last(right); ++u)
                if (IsInside(flat, u, v)) meet(u, v, corners[0], gp_Dir(normal));
    }

    [[nodiscard]] int side() const { return 2 * half + 1; }
    [[nodiscard]] const Hit& at(std::size_t index) const { return hits[index]; }
    [[nodiscard]] std::size_t size() const { return hits.size(); }
    [[nodiscard]] gp_Dir ray(std::size_t index) const {
        const int u = static_cast<int>(index) % side() - half,
                  v = static_cast<int>(index) / side() - half;
        return rayThrough(u, v);
    }

private:
    [[nodiscard]] int first(double value) const {
        return std::max(-half, static_cast<int>(std::ceil(value)));
    }
    [[nodiscard]] int last(double value) const {
        return std::min(half, static_cast<int>(std::floor(value)));
    }

    static bool IsInside(const std::array<std::array<double, 2>, 3>& t, double u, double v) {
        const auto sideOf = [&](std::size_t a, std::size_t b) {
            return (t[b][0] - t[a][0]) * (v - t[a][1]) - (t[b][1] - t[a][1]) * (u - t[a][0]);
        };
        const double a = sideOf(0, 1), b = sideOf(1, 2), c = sideOf(2, 0);
        return (a >= 0 && b >= 0 && c >= 0) || (a <= 0 && b <= 0 && c <= 0);
    }

    [[nodiscard]] gp_Dir rayThrough(int u, int v) const {
        return gp_Dir(gp_Vec(axes.Direction()) + gp_Vec(axes.XDirection()) * (u * cell) +
                      gp_Vec(axes.YDirection()) * (v * cell));
    }

    void meet(int u, int v, const gp_Pnt& corner, const gp_Dir& normal) {
        const gp_Dir ray = rayThrough(u, v);
        const double incidence = std::abs(ray * normal);
        if (incidence < 1e-6) return;
        const double distance = gp_Vec(eye, corner) * gp_Vec(normal) / (ray * normal);
        Hit& hit = hits[static_cast<std::size_t>(v + half) * static_cast<std::size_t>(side()) +
                        static_cast<std::size_t>(u + half)];
        if (distance < hit.distance) hit = {distance, incidence};
    }

    gp_Pnt eye;
    gp_Ax3 axes;  // its direction towards the middle of the shape
    double cell;
    int half;  // cells from the middle to the edge
    std::vector<Hit> hits;
};

std::array<std::uint8_t, 3> ColourOf(const Scanner& scanner, double incidence, double speckle) {
    std::array<std::uint8_t, 3> colour{};
    const double light = 0.35 + 0.65 * incidence + 0.06 * speckle;
    for (std::size_t i = 0; i < 3; ++i)
        colour[i] = static_cast<std::uint8_t>(
            std::clamp(std::lround(255 * scanner.tint[i] * light), 0L, 255L));
    return colour;
}

/// Grazing rays bring nothing back.
constexpr double leastIncidence = 0.17;

void AppendPoints(std::vector<ScanPoint>& points, const Raster& raster, const Scanner& scanner,
                  std::size_t place) {
    for (std::size_t i = 0; i < raster.size(); ++i) {
        const Hit& hit = raster.at(i);
        if (!std::isfinite(hit.distance) || hit.incidence < leastIncidence) continue;
        const std::uint64_t number = 3 * (place * raster.size() + i);
        if (Noise(number) < 2 * scanner.dropout - 1) continue;
        const double distance = hit.distance + scanner.noise * Noise(number + 1);
        points.push_back({scanner.places[place].Translated(gp_Vec(raster.ray(i)) * distance),
                          ColourOf(scanner, hit.incidence, Noise(number + 2))});
    }
}

void AppendFloat(std::string& bytes, double value) {
    const auto word = std::bit_cast<std::uint32_t>(static_cast<float>(value));
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>((word >> shift) & 0xffu);
}

}  // namespace

std::vector<ScanPoint> Scan(const TopoDS_Shape& shape, const Scanner& scanner) {
    Bnd_Box bounds;
    BRepBndLib::Add(shape, bounds);
    const gp_Pnt low = bounds.CornerMin(), high = bounds.CornerMax();
    const gp_Pnt middle((low.XYZ() + high.XYZ()) / 2);
    const std::vector<Corners> triangles = TrianglesOf(shape);
    std::vector<ScanPoint> points;
    for (std::size_t i = 0; i < scanner.places.size(); ++i) {
        Raster raster(scanner.places[i], middle, 0.75 * low.Distance(high),
                      std::tan(scanner.stepDegrees * std::numbers::pi / 180));
        for (const Corners& corners : triangles) raster.see(corners);
        AppendPoints(points, raster, scanner, i);
    }
    return points;
}

void WritePly(const std::vector<ScanPoint>& points, const std::filesystem::path& file) {
    std::string bytes = "ply\nformat binary_little_endian 1.0\nelement vertex " +
                        std::to_string(points.size()) +
                        "\nproperty float x\nproperty float y\nproperty float z\n"
                        "property uchar red\nproperty uchar green\nproperty uchar blue\n"
                        "end_header\n";
    for (const ScanPoint& point : points) {
        for (const double value : {point.point.X(), point.point.Y(), point.point.Z()})
            AppendFloat(bytes, value / 1000);
        for (const std::uint8_t value : point.colour) bytes += static_cast<char>(value);
    }
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error(file.string() + ": cannot be written");
}

}  // namespace vrn::examples
