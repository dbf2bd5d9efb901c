#pragma once

#include <OgreVector.h>

#include <string>

#include "visual/handle/HandleMeshVisual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

/// A ring to turn something by, with a translucent sector over the angle that it has been turned.
/// Thread: render.
class VRN_VISUAL_API RingHandle : public HandleMeshVisual {
public:
    ~RingHandle() override;

    /// Touch the ring alone: the sector keeps its colour.
    void setHighlighted() override;
    void resetAppearance() override;

    /// What the sector shows; empty for an angle below one degree.
    [[nodiscard]] const Ogre::ManualObject* getSector() const { return sectorObject; }

protected:
    /// How one kind of ring differs from another.
    struct Look {
        std::string name;               ///< of mesh and node
        std::string color;              ///< as Hex2RGB reads it
        Ogre::Vector4 sectorColor;      ///< red, green, blue, alpha
        rob::Vec3Template<float> axis;  ///< unit length, in the ring's own frame
    };

    RingHandle(Look lookIn, Visual* parent);

    /// Draws the sector for a turn by `radians`: a fan of steps of about 5 degrees, from where the
    /// ring stands now back to where it was at rest, so against the turn. Throws
    /// std::invalid_argument, and changes nothing, for an angle that is not finite or of more than
    /// a thousand turns.
    void drawSector(double radians);

private:
    void useOnRing(const std::string& materialName);

    Look look;
    Ogre::ManualObject* sectorObject;
};

}  // namespace vrn::visual
