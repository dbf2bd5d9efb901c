#pragma once

#include "visual/station/MechanismVisual.h"

namespace vrn::visual {

class WorkEnvelope2DVisual;
class WorkEnvelope3DVisual;

/// A robot arm, in the colours of its maker. Thread: render.
class VRN_VISUAL_API ManipulatorVisual : public MechanismVisual {
public:
    /// As MechanismVisual. The element's "vendor" chooses the materials: "abb", "kuka", "fanuc" and
    /// "yaskawa" those of the maker, any other text those of "Mechanism". Throws std::bad_any_cast
    /// if it is absent or no text; then nothing is left.
    ManipulatorVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);

    /// Makes the visual under `parent` and enters it in the registry; then the wrist, under the
    /// visual of its parent id, which is looked up strictly. A robot without wrist gets none.
    /// Throws std::invalid_argument for null, std::bad_cast for an object that is no manipulator,
    /// and what the constructor throws.
    static void Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren);

    /// Deletes the envelopes, wherever they hang.
    ~ManipulatorVisual() override;

    /// Take over what shows the robot's reach, shown or hidden as it is; null for none. The tree
    /// owns it until the robot dies. One that was there stays in the scene, and another robot that
    /// had it has it no more.
    void setWorkEnvelope2DVisual(WorkEnvelope2DVisual* outline);
    void setWorkEnvelope3DVisual(WorkEnvelope3DVisual* surface);
    /// Shows or hides what there is of them. An envelope below the robot that is switched off stays
    /// so while the robot is hidden and shown again, and one that is switched on comes back.
    void updateWorkEnvelopeVisuals(bool show2D, bool show3D);
    /// Deletes what there is of them.
    void removeWorkEnvelopeVisuals();
    /// For one that is about to die on its own, as an outline does with the visual it hangs under.
    void forgetWorkEnvelope(const Visual* envelope);

    void setVisible(bool show, bool cascade) override;

    /// Null for none.
    [[nodiscard]] WorkEnvelope2DVisual* getWorkEnvelope2D() const { return workEnvelope2D; }
    [[nodiscard]] WorkEnvelope3DVisual* getWorkEnvelope3D() const { return workEnvelope3D; }

private:
    WorkEnvelope2DVisual* workEnvelope2D = nullptr;  ///< not owned
    WorkEnvelope3DVisual* workEnvelope3D = nullptr;  ///< not owned
    bool shows2D = false;
    bool shows3D = false;
};

}  // namespace vrn::visual
