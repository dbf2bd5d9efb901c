#pragma once

#include <vector>

#include "mesh/DynamicLines.h"
#include "visual/Visual.h"

namespace vrn::visual {

/// A line through points that a host draws as it likes. Thread: render.
class VRN_VISUAL_API PolylineVisual : public Visual {
public:
    /// `withArrow` puts the arrow of MeshVisual::BuildArrow on the first point, towards the second;
    /// with fewer than two points there is none. Throws std::overflow_error ("0-length vector
    /// cannot be normalized.") if an arrow's two points coincide, and that or std::invalid_argument
    /// if they are not finite or so far apart that their distance is not; then nothing is left.
    static PolylineVisual* Build(Visual* parent, const std::vector<rob::PosTemplate<float>>& points,
                                 bool withArrow);

    /// In the frame of the visual; update sends it to the graphics card.
    void addPoint(const rob::PosTemplate<float>& point);
    void update() override;

    [[nodiscard]] const std::vector<rob::PosTemplate<float>>& getPoints() const {
        return line.getPoints();
    }

private:
    PolylineVisual(std::uint32_t idIn, Visual* parent);

    DynamicLines line;
};

}  // namespace vrn::visual
