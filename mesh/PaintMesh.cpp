#include "mesh/PaintMesh.h"

namespace vrn::visual {

void PaintMesh::setColor(unsigned int vertex, const Color& color) {
    vertexColors.at(vertex) = color;
    changedVertices.push_back(vertex);
}

}  // namespace vrn::visual
