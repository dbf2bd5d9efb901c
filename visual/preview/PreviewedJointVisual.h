#pragma once

#include <memory>

#include "visual/Visual.h"

namespace vrn::visual {

class DynamicLines;
class MeshVisual;

/// The axis of a joint that does not exist yet: a line, and at its end an arrow head along it.
/// Thread: render.
class VRN_VISUAL_API PreviewedJointVisual : public Visual {
public:
    /// Along x through the origin, 2000 long.
    explicit PreviewedJointVisual(Visual* parent);
    ~PreviewedJointVisual() override;

    /// In the frame of the visual. Throws std::overflow_error ("0-length vector cannot be
    /// normalized.") if the two are 1e-7 or less apart, and that or std::invalid_argument if they
    /// are not finite or so far apart that their distance is not; the arrow then stays.
    void setStartAndEnd(const rob::PosTemplate<float>& start, const rob::PosTemplate<float>& end);

    [[nodiscard]] const DynamicLines& getLine() const { return *line; }
    /// Null once somebody else has deleted it, or hung it elsewhere.
    [[nodiscard]] MeshVisual* getArrow() const { return arrow; }

protected:
    void forgetChild(const Visual* child) override;

private:
    std::unique_ptr<DynamicLines> line;  ///< never null
    MeshVisual* arrow;                   ///< a child
};

}  // namespace vrn::visual
