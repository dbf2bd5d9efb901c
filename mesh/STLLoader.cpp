#include "mesh/STLLoader.h"

#include "mesh/Mesh.h"
#include "mesh/StlText.h"
#include "suite/common/Files.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <format>
#include <fstream>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

// ---- binary form

static_assert(std::endian::native == std::endian::little, "binary STL is copied as it lies");

constexpr std::size_t countOffset = 80;
constexpr std::size_t trianglesOffset = 84;
constexpr std::size_t triangleSize = 50;

/// What a triangle of the file begins with; its two attribute bytes are left out.
struct BinaryTriangle {
    Vec normal;
    Pos corners[3];
};
static_assert(sizeof(BinaryTriangle) == 48);

/// The number of triangles if data of `size` bytes that begins with `head` is binary form.
std::optional<std::uint32_t> BinaryCount(const char* head, std::uint64_t size) {
    if (size < trianglesOffset) return {};
    std::uint32_t count = 0;
    std::memcpy(&count, head + countOffset, sizeof count);
    if (std::uint64_t{count} * triangleSize + trianglesOffset != size) return {};
    return count;
}

void ReserveTriangles(Mesh& mesh, std::uint32_t count) {
    const std::size_t all = mesh.vertices.size() + std::size_t{count} * 3;
    if (all > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("too many triangles for 32-bit indices");
    mesh.vertices.reserve(all);
    mesh.normals.reserve(all);
    mesh.indices.reserve(all);
}

void AppendTriangles(Mesh& mesh, const char* source, std::size_t count) {
    auto index = static_cast<std::uint32_t>(mesh.vertices.size());
    for (std::size_t i = 0; i < count; ++i, source += triangleSize) {
        BinaryTriangle triangle;
        std::memcpy(&triangle, source, sizeof triangle);
        for (const Pos& corner : triangle.corners) {
            mesh.vertices.push_back(corner);
            mesh.normals.push_back(triangle.normal);
            mesh.indices.push_back(index++);
        }
    }
}

void CheckArguments(const char* data, const Mesh* mesh) {
    if (data == nullptr || mesh == nullptr)
        throw std::invalid_argument("an STL reader needs data and a mesh");
}

// ---- files

/// A file that is read piece by piece: a fresh buffer for the whole of a large one would cost more
/// time, in page faults, than all the reading.
class InputFile {
public:
    explicit InputFile(const std::filesystem::path& filePath) : path(filePath) {
        // A folder opens like a file and then reports a size of its own.
        std::error_code ignored;
        if (std::filesystem::is_directory(path, ignored))
            fail(std::make_error_code(std::errc::is_a_directory));
        errno = 0;
        stream.open(path, std::ios::binary);
        if (!stream) fail({errno, std::generic_category()});
        stream.seekg(0, std::ios::end);
        const std::streamoff end = stream.tellg();
        stream.seekg(0);
        if (!stream || end < 0) fail(std::make_error_code(std::errc::invalid_seek));
        left = size = static_cast<std::uint64_t>(end);
    }

    /// Reads `count` bytes, or as many as there are left; returns how many.
    std::size_t read(char* target, std::size_t count) {
        count = static_cast<std::size_t>(std::min<std::uint64_t>(count, left));
        stream.read(target, static_cast<std::streamsize>(count));
        if (static_cast<std::size_t>(stream.gcount()) != count)
            fail(std::make_error_code(std::errc::io_error));
        left -= count;
        return count;
    }

    const std::filesystem::path path;
    std::uint64_t size = 0;
    std::uint64_t left = 0;

private:
    [[noreturn]] void fail(std::error_code reason) const {
        throw std::runtime_error(
            std::format("cannot read {}: {}", path.string(), reason.message()));
    }

    std::ifstream stream;
};

constexpr std::size_t pieceSize =
    1'000'000;  // a multiple of a triangle's 50 bytes; fits into the cache

void ReadBinaryFile(InputFile& file, std::uint32_t count, Mesh& mesh) {
    ReserveTriangles(mesh, count);
    std::vector<char> piece(std::min<std::uint64_t>(pieceSize, file.left));
    while (file.left > 0) {
        const std::size_t got = file.read(piece.data(), piece.size());
        AppendTriangles(mesh, piece.data(), got / triangleSize);
    }
}

/// `head` is what was already read of the file.
void ReadTextFile(InputFile& file, std::string_view head, Mesh& mesh) {
    StlText text(mesh, file.size);
    std::vector<char> buffer(head.begin(), head.end());
    bool ended = false;
    while (!ended) {
        const std::size_t kept = buffer.size();
        // Twice as much where no end was found: asking again and again must not take quadratic
        // time.
        const std::size_t wanted = std::max(pieceSize, kept);
        buffer.resize(kept + wanted);
        buffer.resize(kept + file.read(buffer.data() + kept, wanted));
        // A zero ends the text, whatever stands behind it.
        ended = file.left == 0 ||
                std::memchr(buffer.data() + kept, '\0', buffer.size() - kept) != nullptr;
        const std::size_t length =
            ended ? buffer.size() : StlText::PieceLength({buffer.data(), buffer.size()});
        if (length == 0) continue;
        std::vector<char> rest(buffer.begin() + static_cast<std::ptrdiff_t>(length), buffer.end());
        buffer.resize(length);
        buffer.push_back('\0');
        text.read(buffer.data());
        buffer.swap(rest);
    }
    text.finish();
}

void ReadFile(const std::filesystem::path& path, Mesh& mesh) {
    InputFile file(path);
    std::array<char, trianglesOffset> head;
    const std::size_t headSize = file.read(head.data(), head.size());
    if (const auto count = BinaryCount(head.data(), file.size)) {
        ReadBinaryFile(file, *count, mesh);
    } else {
        ReadTextFile(file, {head.data(), headSize}, mesh);
    }
}

bool IsFile(std::string_view uri) {
    return uri.starts_with("station://") || uri.starts_with("file://") ||
           uri.find("://") == std::string_view::npos;
}

}  // namespace

Mesh* STLLoader::Load(const std::string& uri) {
    auto mesh = std::make_unique<Mesh>(uri);
    if (IsFile(uri)) {
        ReadFile(UriToFilePath(uri), *mesh);
    } else {
        const std::string bytes = ReadFileFromURI(uri);
        readStl(bytes.c_str(), bytes.size(), mesh.get());
    }
    return mesh.release();
}

bool STLLoader::readStl(const char* data, unsigned long size, Mesh* mesh) {
    return readBinary(data, size, mesh) || readAscii(data, mesh);
}

bool STLLoader::readBinary(const char* data, unsigned long size, Mesh* mesh) {
    CheckArguments(data, mesh);
    const auto count = BinaryCount(data, size);
    if (!count) return false;
    ReserveTriangles(*mesh, *count);
    AppendTriangles(*mesh, data + trianglesOffset, *count);
    return true;
}

bool STLLoader::readAscii(const char* text, Mesh* mesh) {
    CheckArguments(text, mesh);
    StlText reader(*mesh, std::strlen(text));
    reader.read(text);
    reader.finish();
    return true;
}

}  // namespace vrn::visual
