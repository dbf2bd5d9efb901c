#pragma once

#include <string>
#include <vector>

#include "visual/Visual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

class ManipulatorVisual;

/// All that a robot reaches: the profile of one plane, swept about the z axis of the parent through
/// the range of the first joint. In neither the registry nor the selection. Thread: render.
class VRN_VISUAL_API WorkEnvelope3DVisual : public Visual {
public:
    ManipulatorVisual* robot = nullptr;  ///< set by the robot that keeps it; null for none

    /// The sweep is drawn in that many steps, whatever the range.
    static constexpr int steps = 50;

    /// Without surface yet; the visual's id stands behind `name`.
    WorkEnvelope3DVisual(const std::string& name, Visual* parent);
    ~WorkEnvelope3DVisual() override;

    /// Makes the surface and hides it. Never returns null; throws what createRevolvedSurface
    /// throws, and then leaves the tree as it was.
    static WorkEnvelope3DVisual* Build(Visual* parent, const std::string& name,
                                       const std::vector<rob::PosTemplate<double>>& points,
                                       const std::vector<rob::DirTemplate<double>>& normals,
                                       float minAngle, float maxAngle);

    /// Draws the surface in place of the one so far: steps + 1 rows of the profile, turned by
    /// `minAngle` to `maxAngle` radians, with a normal for each of its points. One point draws
    /// nothing. Throws std::out_of_range without points, and std::invalid_argument for fewer
    /// normals than points, an angle that is not finite, and a coordinate of a point or a normal
    /// that is not finite or lies beyond 1e15; then there is no surface.
    void createRevolvedSurface(const std::vector<rob::PosTemplate<double>>& points,
                               const std::vector<rob::DirTemplate<double>>& normals, float minAngle,
                               float maxAngle);

    /// Never null; attached once there is a surface.
    [[nodiscard]] Ogre::ManualObject* getSurface() const { return surface; }

private:
    Ogre::ManualObject* surface;
};

}  // namespace vrn::visual
