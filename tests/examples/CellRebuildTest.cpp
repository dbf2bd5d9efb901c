#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <unordered_set>

#include "apps/vrnview/ContentScene.h"
#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/TempFolder.h"
#include "examples/cell/Cell.h"
#include "examples/cell/CellWriter.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Layout.h"
#include "suite/task/Task.h"
#include "tests/support/EngineFixture.h"
#include "tests/support/Population.h"
#include "visual/Visual.h"

namespace vrn::examples {
namespace {

using test::Population;
using visual::Visual;

constexpr int rebuilds = 200;
/// The first ones fill caches, pools and the free lists of the allocator.
constexpr int warmUp = 20;
/// What the heap may have grown by from the end of the warm-up to the last rebuild: 245 bytes each,
/// room for one table of the engine that happens to grow in between. A visual, a node or a mesh
/// that stayed behind would take more.
constexpr std::size_t memoryMargin = 48 * 1024;

/// Nothing under the address sanitizer, which finds by itself what is left behind.
std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

class CellRebuild : public test::EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        content = host::ReadContent(WriteCell(MakeCell(), files.getPath()));
        ASSERT_TRUE(content.problems.empty()) << content.problems.front();
        for (const Visual* child : scene().root->getChildren()) furniture.insert(child);
    }
    void TearDown() override {
        removeStation();
        content = {};
        EngineTest::TearDown();
    }

    void buildStation() {
        shown = host::ShowContent(content);
        ASSERT_TRUE(content.problems.empty()) << content.problems.front();
        pump();
    }
    /// Pointed at and selected, as what is removed often is.
    void touchStation() {
        scene().setVisualSelected(content.ids.at("spindle"));
        pump();
        scene().setVisualHighlighted(scene().visuals.at(content.ids.at("controller")));
        pump();
        scene().clearHighlightedVisual();
        scene().clearSelections();
        pump();
    }
    void removeStation() {
        for (const Visual* child : scene().root->getChildren())
            if (!furniture.contains(child)) scene().removeVisual(child->id);
        pump();
        layout::Layout::inst()->clear();
        for (const task::Task* job : content.tasks) task::RemoveTask(*job);
    }
    void rebuild(int times) {
        for (int i = 0; i < times; ++i) {
            removeStation();
            buildStation();
            touchStation();
        }
    }

    /// The least that was in use after one of ten rebuilds: drivers and the free lists of the
    /// allocator let it swing from one to the next by more than a leak would add.
    std::size_t leastHeapInUse() {
        std::size_t least = std::numeric_limits<std::size_t>::max();
        for (int i = 0; i < 10; ++i) {
            rebuild(1);
            least = std::min(least, HeapInUse());
        }
        return least;
    }

    host::TempFolder files;
    host::Content content;
    host::Counts shown;
    std::unordered_set<const Visual*> furniture;
};

TEST_F(CellRebuild, RemovingTheStationLeavesTheSceneAsItWasBefore) {
    const std::size_t pickableHandles = selection::VisualSelection::Get()->objects.size();
    // The instances' batches stay for the next targets, and so do the records of STL files.
    buildStation();
    removeStation();
    const auto before = Population();
    buildStation();
    EXPECT_NE(Population(), before);
    removeStation();
    EXPECT_EQ(Population(), before);
    EXPECT_EQ(scene().root->getChildren().size(), furniture.size());
    EXPECT_EQ(before.at("meshes of shapes"), 0u);
    EXPECT_EQ(before.at("pickable objects"), pickableHandles);
}

TEST_F(CellRebuild, TwoHundredTimesLeavesCountsAndMemoryAsTheyWere) {
    buildStation();
    ASSERT_GT(shown.triangles, 100'000u);
    rebuild(warmUp);
    const auto populationBefore = Population();
    const host::Counts shownBefore = shown;
    const std::size_t heapBefore = leastHeapInUse();
    rebuild(rebuilds);
    EXPECT_EQ(Population(), populationBefore);
    EXPECT_EQ(shown, shownBefore);
    const std::size_t heapAfter = leastHeapInUse();
    EXPECT_LE(heapAfter, heapBefore + memoryMargin);
    RecordProperty("grownBytes", static_cast<int>(heapAfter - heapBefore));
}

}  // namespace
}  // namespace vrn::examples
