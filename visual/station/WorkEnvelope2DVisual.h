#pragma once

#include <string>
#include <vector>

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

class ManipulatorVisual;

/// The outline of what a robot reaches in one plane. In neither the registry nor the selection.
/// Thread: render.
class VRN_VISUAL_API WorkEnvelope2DVisual : public LineVisual {
public:
    ManipulatorVisual* robot = nullptr;  ///< set by the robot that keeps it; null for none

    /// Without points yet; the visual's id stands behind `name`.
    WorkEnvelope2DVisual(const std::string& name, Visual* parent);

    /// Shows `points` joined in their order and not closed, in the frame of `parent`; the doubles
    /// are narrowed. Fewer than two show nothing. Never returns null.
    static WorkEnvelope2DVisual* Build(Visual* parent, const std::string& name,
                                       const std::vector<rob::PosTemplate<double>>& points);

    /// Shown from the next update on.
    void addPoint(float x, float y, float z);

private:
    DynamicLines* line;
};

}  // namespace vrn::visual
