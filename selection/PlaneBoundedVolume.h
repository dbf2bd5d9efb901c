#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

#include <vector>

#include <OgreVector.h>

namespace vrn::visual {
class Box;
}

namespace vrn::selection {

class PointCloudObject;

/// The points x with normal . x + d = 0. (visual::Plane has the other sign of d.) Thread: pure.
class VRN_VISUAL_API Plane {
public:
    enum Side { Positive = 0, Negative = 1, Both = 2 };

    /// Through three points, the normal to the side from which they run counter-clockwise. Points
    /// on one line give the zero vector.
    Plane(const Ogre::Vector<3, float>& p0, const Ogre::Vector<3, float>& p1,
          const Ogre::Vector<3, float>& p2);

    /// Both: the box lies on both sides or touches the plane.
    [[nodiscard]] int intersect(const visual::Box& box) const;
    /// Both: the point lies exactly on the plane.
    [[nodiscard]] int intersect(const rob::PosTemplate<float>& point) const;

    Ogre::Vector<3, float> normal;
    float d;
};

/// What lies under a rectangle or a convex polygon of the screen: a bundle of planes through the
/// eye, without a near or far end. Inside is what is on no plane's positive side. Thread: render;
/// the tests are pure.
class VRN_VISUAL_API PlaneBoundedVolume {
public:
    enum Outcome { Inside = 0, Partly = 1, Outside = 2 };

    /// A volume without planes holds everything.
    PlaneBoundedVolume() = default;
    /// Two opposite corners in pixels of the global camera's viewport, in any order. Throws
    /// std::logic_error without a camera or a viewport.
    PlaneBoundedVolume(float x0, float y0, float x1, float y1);
    /// The corners of a convex polygon in pixels, in either winding; a polygon that is not convex
    /// means nothing. Fewer than three corners give no planes. Throws like the rectangle.
    explicit PlaneBoundedVolume(std::vector<rob::PosTemplate<float>> polygon);

    void addPlane(const Ogre::Vector<3, float>& p0, const Ogre::Vector<3, float>& p1,
                  const Ogre::Vector<3, float>& p2);

    [[nodiscard]] int intersect(const visual::Box& box) const;
    /// Appends the numbers of the cloud's points inside, ascending; true if there are any. Starts
    /// threads of its own and waits for them.
    bool intersect(PointCloudObject* object, std::vector<unsigned long>& indices) const;

    std::vector<Plane> planes;
};

}  // namespace vrn::selection
