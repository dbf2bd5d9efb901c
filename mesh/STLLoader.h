#pragma once

#include <memory>
#include <string>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class Mesh;

/// Reads triangle files in the STL format, binary or text.
///
/// The readers append to the record they are given: three vertices of its own for each triangle,
/// the facet's normal once a vertex, and running indices. Numbers that are NaN or infinite are
/// taken as they are (Mesh::getBox passes them over). Nothing depends on the host's locale. When a
/// reader throws, the record holds what was read until then. Null pointers are refused with
/// std::invalid_argument. Thread: pure.
class VRN_VISUAL_API STLLoader {
public:
    /// Reads a file or resource into a new record named by `uri`, which the caller owns; never
    /// null.
    ///
    /// "station://", "file://" and names without a scheme are files (UriToFilePath); any other
    /// scheme goes to ReadFileFromURI. Throws std::runtime_error naming the file and the reason if
    /// it cannot be opened or read, and what the readers throw; nothing is kept then. Thread: any.
    [[nodiscard]] static Mesh* Load(const std::string& uri);

    /// Reads binary form if the size says so, text form otherwise. `data` is `size` bytes with a
    /// terminating zero behind them, which does not count. Returns true.
    static bool readStl(const char* data, unsigned long size, Mesh* mesh);

    /// Binary form, little-endian: 80 bytes that are passed over, a count of triangles, 50 bytes a
    /// triangle. Returns false, and reads nothing, unless the size is exactly 84 + 50 * count; what
    /// the bytes look like plays no part. Throws std::length_error if the vertices would be too
    /// many for 32-bit indices.
    static bool readBinary(const char* data, unsigned long size, Mesh* mesh);

    /// Text form, up to the terminating zero. Always true.
    ///
    /// A line that starts with "solid" opens a solid, "endsolid" closes it, with any name behind;
    /// several solids may follow each other, and both lines may be absent. Keywords are lower-case
    /// words between white space. In a facet "normal" and every word that begins with "vertex" are
    /// followed by three numbers, in C notation, perhaps with a plus sign, "nan" and "inf"
    /// included; other words pass. A facet without a normal has (0, 0, 0). A facet should have
    /// three vertices; this is not checked.
    ///
    /// Throws std::runtime_error: "Bad STL File" for any other word outside a facet, for a facet
    /// without "endfacet" and for a text that has neither a facet nor a solid that ends; "Error in
    /// reading normal" and "Error in reading vertex" for words that are no numbers or numbers
    /// beyond the range of a float.
    static bool readAscii(const char* text, Mesh* mesh);
};

}  // namespace vrn::visual
