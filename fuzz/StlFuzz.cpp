// Feeds any bytes to the STL reader: it must end in a mesh that holds together or in one of its
// errors, and a text that is read in pieces must give what it gives in one.

#include "mesh/Mesh.h"
#include "mesh/STLLoader.h"
#include "mesh/StlText.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using vrn::visual::Mesh;
using vrn::visual::STLLoader;
using vrn::visual::StlText;

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

/// What reading throws; empty if it does not throw.
std::string ErrorOf(const std::function<void()>& read) {
    try {
        read();
        return {};
    } catch (const std::runtime_error& e) {
        const std::string text = e.what();
        Require(text == "Bad STL File" || text == "Error in reading normal" ||
                    text == "Error in reading vertex",
                "the message is one of three");
        return text;
    }
}

void CheckWhole(Mesh& mesh) {
    Require(mesh.normals.size() == mesh.vertices.size(), "a normal for each vertex");
    Require(mesh.indices.size() == mesh.vertices.size(), "an index for each vertex");
    for (std::size_t i = 0; i < mesh.indices.size(); ++i)
        Require(mesh.indices[i] == i, "indices run");
    const auto& box = mesh.getBox();
    Require(!box.isValid() || box.max.x - box.min.x >= 0, "bounds are in order");
}

/// Reads as a file is read, but in pieces of a few bytes.
void ReadInPieces(std::string_view text, std::size_t pieceSize, Mesh& mesh) {
    StlText reader(mesh, text.size());
    std::size_t looked = 0;
    while (looked < text.size()) {
        looked = std::min(looked + pieceSize, text.size());
        const std::size_t length = StlText::PieceLength(text.substr(0, looked));
        if (length == 0) continue;
        reader.read(std::string(text.substr(0, length)).c_str());
        text.remove_prefix(length);
        looked -= length;
    }
    reader.read(std::string(text).c_str());
    reader.finish();
}

bool SameBytes(const Mesh& a, const Mesh& b) {
    const auto same = [](const auto& x, const auto& y) {
        // As bytes: a NaN must be the same, too.
        return x.size() == y.size() &&
               (x.empty() || std::memcmp(x.data(), y.data(), x.size() * sizeof(x[0])) == 0);
    };
    return same(a.vertices, b.vertices) && same(a.normals, b.normals) && same(a.indices, b.indices);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    Mesh mesh("fuzz");
    ErrorOf([&] { STLLoader::readStl(bytes.c_str(), bytes.size(), &mesh); });
    CheckWhole(mesh);

    const std::string_view text(bytes.c_str());  // up to the first zero
    Mesh whole("whole"), pieces("pieces");
    const std::string wholeError = ErrorOf([&] { STLLoader::readAscii(bytes.c_str(), &whole); });
    const std::size_t pieceSize = size > 0 ? 1 + data[0] : 1;
    const std::string piecesError = ErrorOf([&] { ReadInPieces(text, pieceSize, pieces); });
    Require(wholeError == piecesError, "pieces give the same error");
    Require(SameBytes(whole, pieces), "pieces give the same mesh");
    return 0;
}
