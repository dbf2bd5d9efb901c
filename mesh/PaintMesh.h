#pragma once

#include "mesh/Mesh.h"

namespace vrn::visual {

/// Red, green, blue and alpha. Paint uses an alpha of 255 for "covered", so it is not limited to
/// 0..1.
struct Color {
    float r{}, g{}, b{}, a{};
    friend bool operator==(const Color&, const Color&) = default;
};

/// A mesh that carries one colour with alpha a vertex, which a spray rewrites while the station
/// runs.
class VRN_VISUAL_API PaintMesh : public Mesh {
public:
    using Mesh::Mesh;

    /// Stores the colour of one vertex and notes the vertex in `changedVertices`, again for every
    /// call. Throws std::out_of_range if there is no colour of that number.
    void setColor(unsigned int vertex, const Color& color) {
        vertexColors.at(vertex) = color;
        changedVertices.push_back(vertex);
    }

    std::vector<Color> vertexColors;  ///< one a vertex
};

}  // namespace vrn::visual
