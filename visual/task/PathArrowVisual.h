#pragma once

#include "visual/Visual.h"

namespace Ogre {
class InstancedEntity;
}

namespace vrn::visual {

/// A small arrow on a path, drawn as a hardware instance; it points along z. Thread: render.
class VRN_VISUAL_API PathArrowVisual : public Visual {
public:
    /// Throws std::out_of_range, "unordered_map::at", without the manager "InstancePathArrow",
    /// Ogre::ItemIdentityException without the material "InstanceArrow", and std::runtime_error if
    /// there is no place for another instance.
    explicit PathArrowVisual(Visual* parent);
    ~PathArrowVisual() override;

    /// The instance alone: node, children and the flag stay as they are.
    void setVisible(bool show, bool cascade) override;
    /// Of the instance, not of the node. Throws std::invalid_argument, and changes nothing, for a
    /// component that is not finite or lies beyond 1e15.
    void setScale(double x, double y, double z) override;

    [[nodiscard]] const Ogre::InstancedEntity* getEntity() const { return entity; }

private:
    Ogre::InstancedEntity* entity = nullptr;
};

}  // namespace vrn::visual
