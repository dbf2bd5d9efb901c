#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "apps/headless/Picture.h"
#include "engine/Scene.h"
#include "suite/layout/Part.h"
#include "suite/sdf/ObjectStore.h"

namespace Ogre {
class RenderTarget;
}

namespace vrn::selection {
class SelectableObject;
}

/// Tests on the real engine: one engine a process, started before the first test by the main that
/// stands beside this fixture, in a window of windowWidth by windowHeight pixels on a display of
/// its own.
namespace vrn::test {

constexpr int windowWidth = 640;
constexpr int windowHeight = 480;

/// Every test finds an empty scene (world frame, grid, camera at its start, the handles that Init
/// makes) and leaves it so: what it built is deleted afterwards, and what then still differs fails
/// the test.
class EngineTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    static visual::Scene& scene() { return *visual::Scene::Get(); }
    /// Runs what was posted and brings the selection up to date, as a host does before a frame.
    static void pump();
    /// pump, one frame, and the picture that it gave.
    static headless::Picture frame();
    static Ogre::RenderTarget& window();
    /// Places the camera at `from`, looking at `target` with Z up.
    static void lookFrom(const rob::PosTemplate<float>& from,
                         const rob::PosTemplate<float>& target);
    /// The pixel that a world point is drawn at; fractional, from the upper left corner.
    static rob::Vec2Template<float> project(const rob::PosTemplate<float>& world);

    /// The lines that Ogre has logged since the test began.
    [[nodiscard]] std::vector<std::string> logLines() const;
    /// A folder for the files of this process, gone at its end.
    static const std::filesystem::path& folder();
    /// A binary STL file of an axis-aligned box, 12 triangles, under `name` in folder().
    static std::filesystem::path writeBoxStl(const std::string& name,
                                             const rob::PosTemplate<float>& min,
                                             const rob::PosTemplate<float>& max);
    /// A part of one STL body; the model objects live as long as the test.
    layout::Part* makeBoxPart(const std::string& name, const rob::PoseTemplate<double>& pose = {},
                              const rob::PosTemplate<float>& min = {-50, -50, -50},
                              const rob::PosTemplate<float>& max = {50, 50, 50});
    /// The same, shown in the scene.
    visual::Visual* showBoxPart(const std::string& name,
                                const rob::PoseTemplate<double>& pose = {});
    /// The first visual of the type below `start`; null if there is none.
    static visual::Visual* findBelow(visual::Visual* start, VisualType type);

    /// How many visuals can be picked that the test brought.
    [[nodiscard]] std::size_t pickableCount() const;

    sdf::ObjectStore model;

private:
    std::unordered_map<std::uint32_t, visual::Visual*> visualsBefore;
    std::unordered_set<visual::Visual*> childrenBefore;
    std::unordered_map<visual::Visual*, selection::SelectableObject*> pickableBefore;
    visual::SceneSettings settingsBefore;
    std::streamoff logBefore = 0;
};

}  // namespace vrn::test
