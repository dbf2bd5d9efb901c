#pragma once

#include <string>

#include "visual/Visual.h"

namespace Ogre {
class InstancedEntity;
}

namespace vrn::visual {

/// A coordinate triad drawn as a hardware instance of one shared mesh, for what a station holds
/// thousands of.
///
/// The normal, the highlighted and the selected look are an instance each, of which one is visible;
/// the latter two are made when first needed and stay. The scale of an instance is the axis length
/// on all axes, or (0.01, 0.01, length) while the scene shows z axes only. Sizes are axis lengths
/// in model units. Thread: render.
class VRN_VISUAL_API InstanceFrameVisual : public Visual {
public:
    /// Of the size that the settings hold for the type. `instanceMaterialName` is the normal
    /// look's. Throws Ogre::ItemIdentityException for an unknown material or a taken `name`, and
    /// then leaves the tree as it was.
    InstanceFrameVisual(Visual* parent, std::uint32_t idIn, const std::string& name,
                        VisualType frameType, std::string instanceMaterialName);
    /// As above, with a name that others may carry too: several moves go to one target. Stands at
    /// `pose`, or at the parent's place for null.
    InstanceFrameVisual(Visual* parent, std::uint32_t idIn, const SharedName& name,
                        VisualType frameType, std::string instanceMaterialName,
                        const rob::PoseTemplate<float>* pose = nullptr);
    ~InstanceFrameVisual() override;

    /// Rescales all looks, and has a registered visual picked at its new size, enabled and
    /// detectable as before. The settings stay as they are.
    void setFrameSize(unsigned size);
    /// The length of the z axis as drawn.
    [[nodiscard]] float getFrameSize() const;

    /// The triad of the same id that was built before this one; null for none. From the one that
    /// stands in the registry this leads to all that share its target.
    [[nodiscard]] InstanceFrameVisual* getOlder() const { return older; }

    /// Whether the scene shows only the z axes of targets.
    [[nodiscard]] static bool showsZAxisOnly();

    /// Showing brings the normal look back.
    void setVisible(bool show, bool cascade) override;
    /// Shows the normal look, whether the visual is visible or not; so do the two below with
    /// theirs.
    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    /// The normal look if the visual is visible, else nothing.
    void clearHighlightOrSelect() override;
    /// Takes size and axes over from the settings; the argument is ignored.
    virtual void updateEntity(bool zAxisOnly);

protected:
    /// Enters the visual under its id. Moves may share a target, and each shows a triad of its own:
    /// the last one built stands in the registry, and when it dies another takes its place.
    void enterRegistry();

private:
    void leaveRegistry();
    void init(VisualType frameType);
    Ogre::InstancedEntity* createEntity(const std::string& managerKey,
                                        const std::string& materialName, float size);
    void showOnly(const Ogre::InstancedEntity* look);
    void scaleTo(float size);

    std::string instanceMaterial;
    float frameSize;  ///< the size at construction
    Ogre::InstancedEntity* mainEntity = nullptr;
    Ogre::InstancedEntity* highlightEntity = nullptr;  ///< null until first highlighted
    Ogre::InstancedEntity* selectedEntity = nullptr;   ///< null until first selected
    InstanceFrameVisual* older = nullptr;              ///< of the same id; null for none
    InstanceFrameVisual* newer = nullptr;              ///< of the same id; null for none
};

}  // namespace vrn::visual
