#pragma once

#include "visual/Visual.h"

namespace vrn::visual {

class FrameVisual;

/// A part of the station: its bodies, and a frame at its origin. Looks are those of the bodies: a
/// material given to the part itself shows nothing. Thread: render.
class VRN_VISUAL_API PartVisual : public Visual {
public:
    PartVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// Makes the visual under `parent`, enters it in the registry and builds the bodies under it.
    /// Throws std::runtime_error, "File format is not brep or stl", for a body of another kind,
    /// std::bad_any_cast for a kind that is no text, and what reading a body throws; the part and
    /// the bodies so far then stay in the scene. Throws std::invalid_argument for null.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);

    /// Solids, curves, meshes and points.
    [[nodiscard]] static bool canApplyMaterial(const Visual* child);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    void clearHighlightOrSelect() override;

private:
    FrameVisual* localFrame;  ///< a child; shown while this is the outermost selected object
};

}  // namespace vrn::visual
