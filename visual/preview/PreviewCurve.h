#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "visual/geometry/LineVisual.h"

namespace vrn::visual {

class MeshVisual;

/// A curve that does not exist yet, through points. It carries the id of the visual that it is
/// shown for and stands in no registry. Thread: render.
class VRN_VISUAL_API PreviewCurve : public LineVisual {
public:
    // Both builders throw std::invalid_argument for a pose or an arrow's place that is not finite,
    // and for a direction of infinite length; then nothing is left.

    /// Under the scene's root, in `worldPose`; the node's name is `name` and a transient id.
    static PreviewCurve* Build(const std::string& name, std::uint32_t shownFor,
                               const rob::PoseTemplate<float>& worldPose,
                               const std::vector<rob::PosTemplate<double>>& points);
    /// The same with an arrow along `direction` at the point of that place; without one where
    /// there is no such point or the direction has no length.
    static PreviewCurve* Build(const std::string& name, std::uint32_t shownFor,
                               const rob::PoseTemplate<float>& worldPose,
                               const std::vector<rob::PosTemplate<double>>& points,
                               const rob::Vec3Template<float>& direction, std::size_t arrowAt);

    /// The arrow of MeshVisual::BuildArrow, in the frame of the curve; an earlier one goes. Throws
    /// std::overflow_error for a direction without length.
    void addArrow(const rob::PosTemplate<float>& position,
                  const rob::DirTemplate<float>& direction);
    /// Null without one.
    [[nodiscard]] MeshVisual* getArrow() const { return arrow; }

protected:
    void forgetChild(const Visual* child) override;

private:
    using LineVisual::LineVisual;

    MeshVisual* arrow = nullptr;  ///< a child
};

}  // namespace vrn::visual
