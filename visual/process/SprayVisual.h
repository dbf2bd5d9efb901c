#pragma once

#include <cstdint>

#include "visual/geometry/SolidVisual.h"

namespace vrn::visual {

/// The reach of a paint gun as a solid cone, from the visual's origin along its z axis. Its box and
/// its place in the world are what PaintVisual::spray goes by.
///
/// The cone follows from the children "property" of the model's element, each told by its own
/// number and with its value under the key "value":
///
/// | number | type | what |
/// |---|---|---|
/// | 1 | 32-bit unsigned | the host's number of the spray; the visual's id is the model object's |
/// | 2 | bool | the host's |
/// | 3 | Vec3 | red, green, blue of the cone, 0 to 1; without it the red of plain shapes |
/// | 4, 5, 9 | any | the host's |
/// | 6 | double | diameter at the origin |
/// | 7 | double | height |
/// | 8 | double | diameter at the height |
///
/// Lengths that are absent are 0; other numbers are passed over. Thread: render.
class VRN_VISUAL_API SprayVisual : public SolidVisual {
public:
    /// Named "spray_" and the id, without picture yet.
    SprayVisual(std::uint32_t sprayId, Visual* parent, const TopoDS_Shape& shownShape);

    /// With the model's id and pose, entered in the registry and in the selection. Equal diameters
    /// make a cylinder. Throws std::bad_any_cast for a value of another type, std::invalid_argument
    /// for null, OpenCASCADE's Standard_DomainError for lengths that make no body, and
    /// Ogre::ItemIdentityException for an object that is shown already; then nothing is added.
    static SprayVisual* Build(Visual* parent, sdf::SdfNode* modelNode);
};

}  // namespace vrn::visual
