#pragma once

#include <map>
#include <string>

#include "tests/visual/StationFixture.h"
#include "visual/station/InstanceFrameVisual.h"

namespace Ogre {
class InstancedEntity;
}

namespace vrn::test {

/// Targets and the instances that they are drawn as.
class InstanceVisuals : public StationVisuals {
protected:
    using Target = visual::InstanceFrameVisual;

    void TearDown() override;
    /// A robot target, unless said otherwise, under the root and entered in the registry.
    static Target* addTarget(std::uint32_t id, VisualType type = VisualType::RobTarget);
    /// By material, of those that hang on the target's node.
    static std::map<std::string, Ogre::InstancedEntity*> looksOf(const Target* target);
    /// The materials of the instances that are drawn.
    static std::vector<std::string> shownLooks(const Target* target);
    static Ogre::InstancedEntity* mainOf(const Target* target);
    /// How many instances of all frame managers are in use.
    static std::size_t instancesInUse();
};

}  // namespace vrn::test
