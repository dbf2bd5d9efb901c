#pragma once

#include <vector>

#include "visual/Visual.h"

namespace vrn::visual {

class FrameVisual;

/// A work object, called "__WOBJ_{id}": a user frame, and in it the object frame that targets and
/// path lines refer to. It has no picture of its own. Cascades of its parent leave it alone: work
/// objects have a switch of their own, Scene::setWObjVisualVisible. A user frame that was removed,
/// or hung elsewhere, is the work object's no more, and an object frame that was removed neither:
/// what follows goes to those that are left. Thread: render.
class VRN_VISUAL_API WObjVisual : public Visual {
public:
    /// Enters itself in the registry, and the object frame under the id of its model object; the
    /// user frame is in none. At the item's pose if it has a fixed user frame, else where the
    /// parent is. Throws std::bad_cast for an object that is no work object, std::invalid_argument
    /// for one without object frame, and for either pose what ModelPose throws; the tree is then as
    /// it was; so for a null object, with std::invalid_argument.
    WObjVisual(Visual* parent, sdf::SdfNode* modelNode);

    /// The same, and hands both frames to the selection.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);

    /// Both frames.
    void setFrameSize(unsigned size);
    /// In the user frame. Does nothing once the object frame was removed.
    void setObjectFrame(const rob::PoseTemplate<float>& pose);

    /// Moves to the visual of the item's parent id, and to the item's poses, also without a fixed
    /// user frame. Throws std::out_of_range, "unordered_map::at", if that visual is absent.
    void update() override;
    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

    /// Null once it was removed or hung elsewhere.
    [[nodiscard]] FrameVisual* getUserFrame() const { return uframe; }
    /// Null once it was removed. Known by its id, wherever it hangs.
    [[nodiscard]] FrameVisual* getObjectFrame() const;

protected:
    void forgetChild(const Visual* child) override;

private:
    /// Those that are left, the user frame first.
    [[nodiscard]] std::vector<FrameVisual*> frames() const;

    sdf::SdfNode*
        node;  ///< the work object in the model, not owned; the scene node is Visual::node
    FrameVisual* uframe = nullptr;
    std::uint32_t objectFrameId = 0;
    FrameVisual* oframe = nullptr;  ///< may dangle: asked for by getObjectFrame
};

}  // namespace vrn::visual
