#pragma once

#include "selection/SelectableObject.h"

namespace vrn::selection {

/// A mesh visual in the picking world. Its box takes the scale of the visual's node in; the inverse
/// pose carries none. Thread: render.
class VRN_VISUAL_API MeshObject : public SelectableObject {
public:
    explicit MeshObject(visual::Visual* meshVisual);

    void updateWorldBox() override;

    /// The derived scale of the visual's node at the last update.
    rob::Vec3Template<float> scale{1, 1, 1};

private:
    /// The bounds of the mesh that the visual shows; empty for any other visual, and for a mesh
    /// that nobody keeps a record of.
    [[nodiscard]] visual::Box meshBox() const;
    void updateScale();

    visual::Box localBox;
};

}  // namespace vrn::selection
