#include <BRep_Builder.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Wire.hxx>

#include <format>

#include "apps/vrnview/readers/CadModel.h"

namespace vrn::host {

namespace {

/// What a shape is made of, by kind.
struct Pieces {
    std::vector<TopoDS_Shape> bodies;  // solids and shells
    std::vector<TopoDS_Shape> faces, edges, vertices;
};

void Sort(const TopoDS_Shape& shape, Pieces& pieces) {
    switch (shape.ShapeType()) {
        case TopAbs_COMPOUND:
            for (TopoDS_Iterator it(shape); it.More(); it.Next()) Sort(it.Value(), pieces);
            break;
        case TopAbs_COMPSOLID:
        case TopAbs_SOLID:
        case TopAbs_SHELL:
            pieces.bodies.push_back(shape);
            break;
        case TopAbs_FACE:
            pieces.faces.push_back(shape);
            break;
        case TopAbs_WIRE:
        case TopAbs_EDGE:
            for (TopExp_Explorer it(shape, TopAbs_EDGE); it.More(); it.Next())
                pieces.edges.push_back(it.Current());
            break;
        case TopAbs_VERTEX:
            pieces.vertices.push_back(shape);
            break;
        case TopAbs_SHAPE:
            break;
    }
}

/// Loose faces make one body, so that a skin of a thousand faces is not a thousand bodies.
void JoinFaces(Pieces& pieces) {
    if (pieces.faces.size() == 1) pieces.bodies.push_back(pieces.faces.front());
    if (pieces.faces.size() < 2) return;
    TopoDS_Compound joined;
    BRep_Builder().MakeCompound(joined);
    for (const TopoDS_Shape& face : pieces.faces) BRep_Builder().Add(joined, face);
    pieces.bodies.push_back(joined);
}

/// A wire here is no more than a list of edges: they need not meet.
void JoinEdges(Pieces& pieces) {
    if (pieces.edges.size() == 1) pieces.bodies.push_back(pieces.edges.front());
    if (pieces.edges.size() < 2) return;
    TopoDS_Wire joined;
    BRep_Builder().MakeWire(joined);
    for (const TopoDS_Shape& edge : pieces.edges) BRep_Builder().Add(joined, edge);
    pieces.bodies.push_back(joined);
}

}  // namespace

std::vector<CadBody> BodiesOf(const TopoDS_Shape& shape, const std::string& name,
                              const std::string& uri) {
    Pieces pieces;
    if (!shape.IsNull()) Sort(shape, pieces);
    JoinFaces(pieces);
    JoinEdges(pieces);
    pieces.bodies.insert(pieces.bodies.end(), pieces.vertices.begin(), pieces.vertices.end());

    std::vector<CadBody> bodies;
    const bool several = pieces.bodies.size() > 1;
    for (const TopoDS_Shape& piece : pieces.bodies) {
        const std::size_t number = bodies.size() + 1;
        CadBody body;
        body.name = several ? std::format("{} {}", name, number) : name;
        body.uri = several ? std::format("{}/{}", uri, number) : uri;
        body.shape = piece;
        bodies.push_back(std::move(body));
    }
    return bodies;
}

}  // namespace vrn::host
