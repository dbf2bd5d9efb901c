#pragma once

#include "visual/Visual.h"

class TopoDS_Face;

namespace vrn::visual {

/// Two arrows, U and V, along the directions of a face's surface parameters, grown with the
/// face to two fifths of its shorter side. Drawn over the scene. Thread: render.
class VRN_VISUAL_API UVIndicatorVisual : public Visual {
public:
    /// Hidden.
    static UVIndicatorVisual* Build(Visual* parent);

    /// Places it in the middle of the face's parameter range: x along U, z along the cross product
    /// of U and V, so that y is as near to V as that allows; a reversed face has the directions of
    /// its surface all the same. Throws std::invalid_argument for a
    /// face without a surface and std::overflow_error ("0-length vector cannot be normalized.")
    /// where the surface has no direction there; then it stays where it is.
    void show(const TopoDS_Face& face);

private:
    using Visual::Visual;
};

}  // namespace vrn::visual
