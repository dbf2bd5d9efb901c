#pragma once

#include <string>

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

/// A coordinate triad of three lines: x red, y green, z blue. For frames of which a station holds a
/// few; targets, of which it holds thousands, are instances of one mesh instead.
///
/// Sizes are axis lengths. Where a size comes from the scene's settings it depends on the type:
/// Frame, Tcp, RobTarget and JointTarget have their own, both frames of a work object share one,
/// others are of size 0 and draw nothing. Thread: render.
class VRN_VISUAL_API FrameVisual : public LineVisual {
public:
    /// A triad of the given size, without a name and with a transient id.
    FrameVisual(Visual* parent, float size);
    /// `frameType` None stands for Frame. Without a name a frame is called "__FRAME_{id}__".
    /// Several frames may carry one name, and id 0, which local frames have, never stands in the
    /// registry.
    FrameVisual(Visual* parent, std::uint32_t idIn, const std::string& name, VisualType frameType);
    /// A dashed triad with a transient id; 0 dashes count as 1.
    FrameVisual(Visual* parent, const std::string& name, VisualType frameType, unsigned dashCount);

    /// A hidden preview frame that wears the selected look: plain with 1 dash, else dashed. The
    /// caller enters it where it wants it found.
    static FrameVisual* Build(Visual* parent, unsigned dashCount);
    /// The task frame of a controller, entered in the registry; not pickable. Throws what
    /// Visual::setPose throws, and then leaves the tree as it was.
    static void Build(Visual* parent, std::uint32_t idIn, const rob::PoseTemplate<float>& pose);
    /// A frame of the station, with id, name and pose of its model object, entered in the registry
    /// and in the selection. Throws std::invalid_argument for null and what ModelPose throws, and
    /// then leaves the tree as it was.
    static void Build(Visual* parent, sdf::SdfNode* modelNode);

    /// Moves the second point of each axis to the new length. On a dashed triad that is the end of
    /// the first dash alone: the pattern does not follow.
    void setFrameSize(unsigned size);

    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;

    /// Where the dashes of an axis of length `size` begin and end, in pairs: `dashCount`
    /// dashes, 1.618 spaces long each, fill it exactly; the ends between are truncated to whole
    /// units. Thread: pure.
    [[nodiscard]] static std::vector<float> dashPoints(double size, unsigned dashCount);

private:
    FrameVisual(Visual* parent, std::uint32_t idIn, const std::string& name, VisualType frameType,
                const std::vector<float>& points);
    void createAxes(const std::vector<float>& points);

    DynamicLines* axisX = nullptr;
    DynamicLines* axisY = nullptr;
    DynamicLines* axisZ = nullptr;
};

}  // namespace vrn::visual
