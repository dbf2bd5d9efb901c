#pragma once

#include <cstddef>
#include <string_view>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class Mesh;
class StlWords;

/// Reads the text form of an STL file, in one piece or several, into a record. What the text may
/// hold, and what is thrown, stands at STLLoader::readAscii. Thread: pure.
class VRN_VISUAL_API StlText {
public:
    /// `size`: how many bytes are to come in all, to make room at once.
    StlText(Mesh& target, std::size_t size) : mesh(target), bytesExpected(size) {}

    /// Reads a piece that ends with a zero. It must be whole words and whole lines, and no facet
    /// may go on in the next piece; PieceLength tells where a text can be cut.
    void read(const char* piece);
    /// Throws unless the pieces made a whole text.
    void finish() const;

    /// How much of the beginning of a text may be read as a piece; 0 if that cannot be told from
    /// what is there. Behind it stands a line that ends with the word "endfacet", wherever that
    /// line belongs.
    [[nodiscard]] static std::size_t PieceLength(std::string_view text);

private:
    void readFacet(StlWords& words);

    Mesh& mesh;
    std::size_t bytesExpected;
    bool mayOpen = true;    // at the start and behind "endsolid"
    bool mayClose = false;  // behind "solid" or a facet
    bool anyFacet = false;
    bool complete = false;  // a facet or a whole solid was there
};

}  // namespace vrn::visual
