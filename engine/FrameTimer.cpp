#include "engine/FrameTimer.h"

#include "suite/broker/SignalBroker.h"

namespace vrn::visual {

FrameTimer::~FrameTimer() = default;

bool FrameTimer::frameStarted(const Ogre::FrameEvent&) {
    frameStart = std::chrono::steady_clock::now();
    return true;
}

bool FrameTimer::frameEnded(const Ogre::FrameEvent&) {
    const std::chrono::nanoseconds elapsed = std::chrono::steady_clock::now() - frameStart;
    lastFrameMs = static_cast<double>(elapsed.count()) / 1e6;
    broker::SignalBroker::frameTicked(lastFrameMs);
    return true;
}

}  // namespace vrn::visual
