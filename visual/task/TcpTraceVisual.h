#pragma once

#include <vector>

#include "suite/rob/VectorTypes.h"
#include "visual/Visual.h"

namespace Ogre {
class ManualObject;
}

namespace vrn::visual {

/// The way that a tool centre point has gone: one line with a colour at each point, blended in
/// between. It grows until it is cleared.
///
/// The host makes it, adds the points, and names it to Scene::setTcpTrace. There is one at a time:
/// a second throws Ogre::ItemIdentityException. Thread: render.
class VRN_VISUAL_API TcpTraceVisual : public Visual {
public:
    explicit TcpTraceVisual(Visual* parent);
    ~TcpTraceVisual() override;

    /// Appends a point, in the parent's frame and model units, and sends the whole trace to the
    /// graphics card again. Throws std::invalid_argument, and changes nothing, for a coordinate
    /// that is not finite or lies beyond 1e15.
    void addColorPoint(const rob::PosTemplate<double>& pos, const rob::ColorTemplate<float>& color);
    /// Sends the whole trace again. A single point draws nothing.
    void update() override;
    /// Starts over: the next point is not joined to what was there.
    void clear();

    [[nodiscard]] std::size_t getPointCount() const { return points.size(); }

private:
    struct ColorPoint {
        rob::PosTemplate<double> pos;
        rob::ColorTemplate<float> color;
    };

    Ogre::ManualObject* manual = nullptr;
    std::vector<ColorPoint> points;
};

}  // namespace vrn::visual
