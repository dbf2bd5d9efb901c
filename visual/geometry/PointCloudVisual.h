#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "selection/Box.h"
#include "visual/Visual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

/// A large cloud of the station's data, of which a subset can be selected and shown apart. Points
/// are the lighter the higher they lie in the frame of the visual, selected ones orange.
///
/// The points are read from the model object whenever the picture is made anew, so the object must
/// outlive the visual. Points that are not finite, or lie beyond 1e15 on an axis, are not
/// drawn. Thread: render.
class VRN_VISUAL_API PointCloudVisual : public Visual {
public:
    /// Nothing is drawn yet. Throws std::bad_cast for an object that is no cloud, and
    /// std::invalid_argument for null.
    PointCloudVisual(Visual* parent, sdf::SdfNode* modelNode);
    ~PointCloudVisual() override;

    /// Under `parent`, with the pose of the model object, entered in the registry and, unless it is
    /// empty, in the selection. Throws std::invalid_argument for null, std::bad_cast for an object
    /// that is no cloud, and what IsDetectable and the stored pose throw; then nothing is left.
    static PointCloudVisual* Build(Visual* parent, sdf::SdfNode* modelNode);

    /// In place of what is selected now, and draws the cloud anew. An index beyond the cloud is
    /// kept and not drawn.
    void setSelectedIndices(const std::vector<unsigned long>& indices);
    /// Takes effect when the cloud is next drawn anew.
    void setUnselectedVisible(bool show);
    /// For points that changed. Draws the cloud anew: all points, or only the selected ones while
    /// the others are hidden, and the selected ones once more over it. A cloud without points
    /// leaves the selection; one with points enters it, enabled if it is visible and as detectable
    /// as it was, or is picked as it is now.
    void updateRenderPrimitive();

    /// Selects nothing and draws the cloud anew.
    void resetAppearance() override;

    /// The bounds of what is drawn, in the frame of the visual; empty when nothing is.
    [[nodiscard]] Box getBoundingBox() const;
    /// All points, in the frame of the visual.
    [[nodiscard]] const std::vector<rob::PosTemplate<float>>& getPoints() const { return cloud; }
    [[nodiscard]] const std::unordered_set<std::uint64_t>& getSelectedIndices() const {
        return selectedIndices;
    }

    /// Of the lowest and of the highest points that are drawn.
    static constexpr rob::ColorTemplate<float> lowColor{0.13f, 0.28f, 0.45f};
    static constexpr rob::ColorTemplate<float> highColor{0.86f, 0.95f, 0.92f};
    static constexpr rob::ColorTemplate<float> selectedColor{1, 0.5f, 0};

private:
    void draw();
    [[nodiscard]] std::vector<rob::PosTemplate<float>> selectedPoints() const;
    void updateRegistration();

    Ogre::ManualObject* manualObject = nullptr;  ///< made at the first update
    const std::vector<rob::PosTemplate<float>>& cloud;
    std::unordered_set<std::uint64_t> selectedIndices;
    bool unselectedHidden = false;
    bool detectable;  ///< while it is not in the selection
};

}  // namespace vrn::visual
