#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "apps/vrnview/readers/Content.h"

namespace vrn::host {

/// Where an object of the content stands in the world, by the model: through what carries it, and
/// for what is attached through what it is attached to. 0 is the world itself. Throws
/// std::out_of_range for an id that is no object's. Thread: one at a time.
[[nodiscard]] Pose WorldPose(const Content& content, std::uint32_t id);

/// A place on a link of a robot.
struct LinkMount {
    std::size_t link = 0;  ///< index among the robot's links
    Pose pose;             ///< in the link's frame
};

/// Where an object is mounted on a robot; nothing if none of the robot's links carries it. Thread:
/// one at a time.
[[nodiscard]] std::optional<LinkMount> MountOn(const Content& content, const JointedObject& robot,
                                               std::uint32_t id);

}  // namespace vrn::host
