#pragma once

#include "mesh/FaceMap.h"
#include "suite/geom/ColorInfo.h"
#include "suite/rob/VectorTypes.h"

#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <cstdint>
#include <string>

namespace vrn::visual {

/// How many nodes the triangulation of `face` has, which is how many vertices the face has in the
/// mesh of its shape: 0 for a face that was never triangulated and for a null face. Thread: pure.
[[nodiscard]] std::size_t NodeCount(const TopoDS_Face& face);

/// Calls `action(index, face)` for the faces from 1 to `last` in the order in which a shape's mesh
/// holds them: without those that `isShown(index)` denies and those without triangulation. The mesh
/// is filled by this walk and its colours are found again by it, since nothing keeps the ranges.
/// Throws Standard_OutOfRange, "NCollection_IndexedMap::FindKey", for a shown index past the map,
/// and Standard_TypeMismatch, "TopoDS::Face", for an entry that is not a face.
template <class IsShown, class Action>
void ForEachMeshedFace(const FaceMap& faces, std::uint32_t last, IsShown isShown, Action action) {
    for (std::uint32_t index = 1; index <= last; ++index) {
        if (!isShown(index)) continue;
        const TopoDS_Face& face = TopoDS::Face(faces.FindKey(static_cast<int>(index)));
        if (NodeCount(face) > 0) action(index, face);
    }
}

/// The colours of a body in the form in which a mesh holds them. Thread: pure.
class BodyColors {
public:
    /// `colorInfo` must outlive the object. Throws std::invalid_argument ("stoi") or
    /// std::out_of_range for a body colour that is not a sign and six hexadecimal digits.
    explicit BodyColors(const ColorInfo& colorInfo);

    /// The colour of the face, or the body's if the face has none of its own. Throws as the
    /// constructor does.
    [[nodiscard]] rob::ColorTemplate<float> of(std::uint32_t face) const;

private:
    const ColorInfo& info;
    rob::ColorTemplate<float> body;
};

}  // namespace vrn::visual
