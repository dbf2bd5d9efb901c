#pragma once

#include <chrono>

#include <OgreFrameListener.h>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// Measures each frame and signals its render time through broker::SignalBroker::frameTicked: the
/// time the frame took, not the time between frames. Thread: render.
class VRN_VISUAL_API FrameTimer : public Ogre::FrameListener {
public:
    bool frameStarted(const Ogre::FrameEvent& event) override;
    bool frameEnded(const Ogre::FrameEvent& event) override;
    ~FrameTimer() override;

    double lastFrameMs = 0;  ///< duration of the last frame in milliseconds

private:
    std::chrono::steady_clock::time_point frameStart{};
};

}  // namespace vrn::visual
