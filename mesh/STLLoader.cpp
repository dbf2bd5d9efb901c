#include "mesh/STLLoader.h"

#include "mesh/Mesh.h"
#include "suite/common/Files.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <format>
#include <fstream>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

static_assert(std::endian::native == std::endian::little, "binary STL is copied as it lies");

constexpr std::size_t headerSize = 80;
constexpr std::size_t trianglesOffset = 84;
constexpr std::size_t triangleSize = 50;

// ---- binary form

/// What a triangle of the file begins with; its two attribute bytes are left out.
struct BinaryTriangle {
    Vec normal;
    Pos corners[3];
};
static_assert(sizeof(BinaryTriangle) == 48);

// ---- text form

/// The white space of the "C" locale, whatever the host's.
bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Walks over the words of a text that ends with a zero.
class Words {
public:
    explicit Words(const char* text) : position(text), end(text + std::strlen(text)) {}

    /// The next word; empty at the end of the text.
    std::string_view next() {
        while (IsSpace(*position)) ++position;
        const char* const start = position;
        while (*position != '\0' && !IsSpace(*position)) ++position;
        return {start, position};
    }

    void skipLine() {
        while (*position != '\0' && *position != '\n' && *position != '\r') ++position;
    }

    /// Reads three numbers; false if a word is not a number as a whole or out of range.
    template <class Triple>
    bool readThree(Triple& triple) {
        return readNumber(triple.x) && readNumber(triple.y) && readNumber(triple.z);
    }

private:
    bool readNumber(float& number);

    const char* position;
    const char* const end;
};

/// Whether a number that does not fit into a float is too small for it rather than too large: then it counts
/// as zero. `word` is digits with perhaps a sign, a point and an exponent.
bool IsTiny(std::string_view word) {
    const std::size_t exponentAt = std::min(word.find_first_of("eE"), word.size());
    const std::string_view digits = word.substr(0, exponentAt);
    const std::size_t firstDigit = digits.find_first_of("123456789");
    const std::size_t point = std::min(digits.find('.'), digits.size());
    // The power of ten of the first digit that counts, as the digits alone tell it ...
    const long power = static_cast<long>(point) - static_cast<long>(firstDigit);
    // ... and as the exponent shifts it; an exponent too long for a number decides by its sign.
    std::string_view exponentText = word.substr(std::min(exponentAt + 1, word.size()));
    if (exponentText.starts_with('+')) exponentText.remove_prefix(1);
    long exponent = 0;
    const auto [last, error] = std::from_chars(
        exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (error == std::errc::result_out_of_range) return exponentText.starts_with('-');
    return exponent < -power;
}

bool Words::readNumber(float& number) {
    while (IsSpace(*position)) ++position;
    const char* const start = position;
    // from_chars knows no plus sign; "+-1" stays wrong.
    const char* const first = *start == '+' && start[1] != '-' ? start + 1 : start;
    const auto [last, error] = std::from_chars(first, end, number);
    position = last;
    if (error == std::errc::invalid_argument || (*last != '\0' && !IsSpace(*last))) return false;
    if (error == std::errc{}) return true;
    number = 0.0f;
    return IsTiny({first, last});
}

/// Reads the words of a facet behind "facet", to its "endfacet".
void ReadFacet(Words& words, Mesh& mesh) {
    Vec normal;
    for (;;) {
        const std::string_view word = words.next();
        if (word.starts_with("vertex")) {
            Pos vertex;
            if (!words.readThree(vertex)) throw std::runtime_error("Error in reading vertex");
            mesh.indices.push_back(static_cast<std::uint32_t>(mesh.vertices.size()));
            mesh.vertices.push_back(vertex);
            mesh.normals.push_back(normal);
        } else if (word == "normal") {
            if (!words.readThree(normal)) throw std::runtime_error("Error in reading normal");
        } else if (word == "endfacet") {
            return;
        } else if (word.empty()) {
            throw std::runtime_error("Bad STL File");
        }
    }
}

// ---- files

/// The bytes of a file with a zero behind them.
struct FileBytes {
    std::unique_ptr<char[]> data;
    std::size_t size = 0;
};

[[noreturn]] void ThrowUnreadable(const std::filesystem::path& path, std::error_code reason) {
    throw std::runtime_error(std::format("cannot read {}: {}", path.string(), reason.message()));
}

FileBytes ReadWhole(const std::filesystem::path& path) {
    // A folder opens like a file and then reports a size of its own.
    if (std::filesystem::is_directory(path))
        ThrowUnreadable(path, std::make_error_code(std::errc::is_a_directory));
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) ThrowUnreadable(path, {errno, std::generic_category()});
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.seekg(0);
    if (!file || size < 0) ThrowUnreadable(path, std::make_error_code(std::errc::invalid_seek));
    FileBytes bytes{std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(size) + 1),
                    static_cast<std::size_t>(size)};
    file.read(bytes.data.get(), size);
    if (file.gcount() != size) ThrowUnreadable(path, std::make_error_code(std::errc::io_error));
    bytes.data[bytes.size] = '\0';
    return bytes;
}

bool IsFile(std::string_view uri) {
    return uri.starts_with("station://") || uri.starts_with("file://") ||
           uri.find("://") == std::string_view::npos;
}

}  // namespace

Mesh* STLLoader::Load(const std::string& uri) {
    auto mesh = std::make_unique<Mesh>(uri);
    if (IsFile(uri)) {
        const FileBytes bytes = ReadWhole(UriToFilePath(uri));
        readStl(bytes.data.get(), bytes.size, mesh.get());
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
    if (size < trianglesOffset) return false;
    std::uint32_t count = 0;
    std::memcpy(&count, data + headerSize, sizeof count);
    if (std::uint64_t{count} * triangleSize + trianglesOffset != size) return false;

    const std::size_t base = mesh->vertices.size();
    const std::size_t added = std::size_t{count} * 3;
    if (base + added > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("too many triangles for 32-bit indices");
    mesh->vertices.reserve(base + added);
    mesh->normals.reserve(mesh->normals.size() + added);
    mesh->indices.reserve(mesh->indices.size() + added);
    auto index = static_cast<std::uint32_t>(base);
    const char* source = data + trianglesOffset;
    for (std::uint32_t i = 0; i < count; ++i, source += triangleSize) {
        BinaryTriangle triangle;
        std::memcpy(&triangle, source, sizeof triangle);
        for (const Pos& corner : triangle.corners) {
            mesh->vertices.push_back(corner);
            mesh->normals.push_back(triangle.normal);
            mesh->indices.push_back(index++);
        }
    }
    return true;
}

bool STLLoader::readAscii(const char* text, Mesh* mesh) {
    Words words(text);
    bool mayOpen = true;     // at the start and behind "endsolid"
    bool mayClose = false;   // behind "solid" or a facet
    bool complete = false;
    for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
        if (word == "facet") {
            ReadFacet(words, *mesh);
            mayOpen = false;
            mayClose = complete = true;
        } else if (mayOpen && word.starts_with("solid")) {
            words.skipLine();
            mayOpen = false;
            mayClose = true;
        } else if (mayClose && word == "endsolid") {
            words.skipLine();
            mayOpen = complete = true;
            mayClose = false;
        } else {
            throw std::runtime_error("Bad STL File");
        }
    }
    if (!complete) throw std::runtime_error("Bad STL File");
    return true;
}

}  // namespace vrn::visual
