#include "tests/apps/TestFiles.h"

#include <bit>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vrn::test {

namespace {

static_assert(std::endian::native == std::endian::little,
              "STL numbers are written as they lie in memory");

constexpr std::size_t headerSize = 84, recordSize = 50, normalSize = 12;

}  // namespace

std::vector<Triangle> BoxTriangles(const Point& low, const Point& high) {
    const auto corner = [&](int i) {
        return Point{(i & 1) != 0 ? high[0] : low[0], (i & 2) != 0 ? high[1] : low[1],
                     (i & 4) != 0 ? high[2] : low[2]};
    };
    constexpr std::array<std::array<int, 4>, 6> sides{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    std::vector<Triangle> triangles;
    for (const auto& s : sides) {
        triangles.push_back({corner(s[0]), corner(s[1]), corner(s[2])});
        triangles.push_back({corner(s[0]), corner(s[2]), corner(s[3])});
    }
    return triangles;
}

void WriteBytes(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

std::string ReadBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteBinaryStl(const std::filesystem::path& file, const std::vector<Triangle>& triangles) {
    std::string bytes(headerSize - 4, '\0');
    const auto count = static_cast<std::uint32_t>(triangles.size());
    bytes.append(reinterpret_cast<const char*>(&count), sizeof count);
    for (const Triangle& triangle : triangles) {
        const Point& a = triangle[0];
        const auto edge = [&](const Point& p) {
            return Point{p[0] - a[0], p[1] - a[1], p[2] - a[2]};
        };
        const Point u = edge(triangle[1]), v = edge(triangle[2]);
        const Point normal{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                           u[0] * v[1] - u[1] * v[0]};
        bytes.append(reinterpret_cast<const char*>(&normal), sizeof normal);
        bytes.append(reinterpret_cast<const char*>(&triangle), sizeof triangle);
        bytes.append(2, '\0');
    }
    WriteBytes(file, bytes);
}

std::vector<Triangle> ReadBinaryStl(const std::filesystem::path& file) {
    const std::string bytes = ReadBytes(file);
    std::uint32_t count = 0;
    if (bytes.size() >= headerSize)
        std::memcpy(&count, bytes.data() + headerSize - 4, sizeof count);
    if (bytes.size() != headerSize + recordSize * count)
        throw std::runtime_error("not a binary STL");
    std::vector<Triangle> triangles(count);
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(&triangles[i], bytes.data() + headerSize + recordSize * i + normalSize,
                    sizeof(Triangle));
    return triangles;
}

std::filesystem::path SharedData(const std::string& name) {
    const std::filesystem::path file = std::filesystem::path(VRN_SHARED_DATA) / name;
    return std::filesystem::exists(file) ? file : std::filesystem::path();
}

}  // namespace vrn::test
