#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/TriangleMeshVisual.h"
#include "visual/handle/DragHandle.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/station/FrameVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

namespace {

using selection::VisualSelection;
using visual::ForestIterator;
using visual::Scene;
using visual::Visual;

constexpr int steps = 6000;
constexpr int checkEvery = 200;
constexpr std::size_t mostNodes = 400;  // from there on nothing is copied

/// Everything that operations on the tree could leave behind.
struct Inventory {
    std::size_t nodes, entities, registered, selectable, pickable;

    static Inventory Take() {
        const Scene& scene = *Scene::Get();
        const VisualSelection& selection = *VisualSelection::Get();
        return {.nodes = CountNodes(scene.sceneManager->getRootSceneNode()),
                .entities = scene.sceneManager->getMovableObjects("Entity").size(),
                .registered = scene.visuals.size(),
                .selectable = selection.objects.size(),
                .pickable = selection.containers[0].primitives.size()};
    }
    friend bool operator==(const Inventory&, const Inventory&) = default;
    friend void PrintTo(const Inventory& i, std::ostream* out) {
        *out << "nodes " << i.nodes << ", entities " << i.entities << ", registered "
             << i.registered << ", selectable " << i.selectable << ", pickable " << i.pickable;
    }

private:
    static std::size_t CountNodes(const Ogre::Node* node) {
        std::size_t count = 1;
        for (const Ogre::Node* child : node->getChildren()) count += CountNodes(child);
        return count;
    }
};

}  // namespace

/// Random operations on a tree of everything that can be built, as an application would post them.
class VisualSoak : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        for (int i = 0; i < 6; ++i) {
            parts.push_back(makeBoxPart("soak" + std::to_string(i)));
            auto* assembly = model.make<layout::Assembly>("group" + std::to_string(i));
            assembly->addChild(*parts.back());
            if (i % 2) assembly->addChild(*groups.back());
            groups.push_back(assembly);
        }
    }

    int pick(std::size_t count) {
        return std::uniform_int_distribution<int>(0, static_cast<int>(count) - 1)(random);
    }
    bool flip() { return pick(2) == 0; }
    /// Any visual of the test, a local frame or a copy too; the root if there is none.
    Visual* any() {
        std::vector<Visual*> all;
        for (ForestIterator<Visual> it(top); it.next();) all.push_back(it.value());
        return all[static_cast<std::size_t>(pick(all.size()))];
    }
    /// Any registered visual of the test; null if there is none.
    Visual* anyRegistered() {
        std::vector<Visual*> all;
        for (ForestIterator<Visual> it(top); it.next();) {
            const auto entry = scene().visuals.find(it.value()->id);
            if (entry != scene().visuals.end() && entry->second == it.value())
                all.push_back(it.value());
        }
        return all.empty() ? nullptr : all[static_cast<std::size_t>(pick(all.size()))];
    }
    static bool isAbove(const Visual* upper, const Visual* lower) {
        for (; lower; lower = lower->getParent())
            if (lower == upper) return true;
        return false;
    }

    void build() {
        switch (pick(4)) {
            case 0: {
                layout::Part* part = parts[static_cast<std::size_t>(pick(parts.size()))];
                // Its body may have moved elsewhere and outlived it.
                if (scene().visuals.contains(part->id) ||
                    scene().visuals.contains(part->bodies().front()->id))
                    return;
                scene().addPart(part);
                pump();
                return top->attachVisual(scene().visuals.at(part->id));
            }
            case 1:
                visual::MeshVisual::BuildArrow(any(), {1, 2, 3}, {1, 1, 0});
                return;
            case 2:
                visual::TriangleMeshVisual::Build({{{0, 0, 0}, {9, 9, 9}}}, any());
                return;
            default:
                visual::FrameVisual::Build(any(), static_cast<unsigned>(pick(4)));
                return;
        }
    }
    /// The local frame of a part is its own affair: it goes with the part.
    static bool isOwnFrame(const Visual* visual) { return visual->id == 0; }
    void move() {
        Visual* child = any();
        Visual* parent = any();
        if (child == top || isOwnFrame(child) || isAbove(child, parent)) return;
        parent->attachVisual(child);
        child->setAttachState(flip());
    }
    void remove() {
        Visual* visual = any();
        if (visual == top || isOwnFrame(visual)) return;
        scene().clearHighlightedVisual();  // as a host has to before it removes
        pump();
        scene().deleteVisual(visual);
    }
    void copy() {
        Visual* source = any();
        Visual* parent = any();
        if (isAbove(source, parent) || Inventory::Take().nodes > mostNodes) return;
        if (const auto copied = source->copy(parent); copied && flip())
            (*copied)->clearCopiedChildren();
    }
    void show() { any()->setVisible(flip(), flip()); }
    void place() { any()->setWorldPose({{static_cast<float>(pick(100)), 0, 0}, {}}); }
    void select() {
        Visual* visual = anyRegistered();
        if (!visual) return scene().clearSelections();
        switch (pick(4)) {
            case 0:
                scene().setVisualSelected(visual->id);
                return;
            case 1:
                scene().setVisualHighlighted(visual);
                return;
            case 2:
                scene().setVisualsSelected({visual->id, anyRegistered()->id});
                return;
            default:
                scene().clearSelections();
                return;
        }
    }
    void mark() {
        Visual* visual = anyRegistered();
        if (!visual) return;
        switch (pick(4)) {
            case 0:
                scene().setCollision(visual->id, flip());
                return;
            case 1:
                scene().setCollisionHighlights({visual->id}, flip());
                return;
            case 2:
                scene().bodyVisualUseMaterial(visual->id, "Axis");
                return;
            default:
                scene().clearAllCollisionContacts();
                return;
        }
    }
    void step() {
        switch (pick(10)) {
            case 0:
            case 1:
                return build();
            case 2:
                return move();
            case 3:
            case 4:
                return remove();
            case 5:
                return copy();
            case 6:
                return show();
            case 7:
                return place();
            case 8:
                return select();
            default:
                return mark();
        }
    }
    /// The maps hold nothing that hangs neither in the tree nor in a handle, and the other way
    /// round.
    void expectConsistent() {
        std::vector<Visual*> inTree;
        const std::vector<Visual*> starts{scene().root, visual::DragHandle::Get(),
                                          visual::PathEndsHandle::Get()};
        for (ForestIterator<Visual> it(starts); it.next();) inTree.push_back(it.value());
        const auto hangs = [&](const Visual* visual) {
            return std::find(inTree.begin(), inTree.end(), visual) != inTree.end();
        };
        for (const auto& [id, visual] : scene().visuals) {
            EXPECT_TRUE(hangs(visual));
            EXPECT_EQ(visual->id, id);
        }
        for (const auto& [visual, object] : VisualSelection::Get()->objects)
            EXPECT_TRUE(hangs(visual));
    }

    std::mt19937 random{20240229};
    Visual* top = nullptr;
    std::vector<layout::Part*> parts;
    std::vector<layout::Assembly*> groups;
};

TEST_F(VisualSoak, ThousandsOfRandomOperationsLeaveNothingBehind) {
    frame();
    const Inventory before = Inventory::Take();
    top = new Visual("soak", scene().root);
    std::size_t most = 0;
    for (int i = 1; i <= steps; ++i) {
        ASSERT_NO_THROW(step()) << i;
        if (flip()) pump();
        if (i % checkEvery) continue;
        pump();
        most = std::max(most, Inventory::Take().nodes);
        expectConsistent();
        frame();
    }
    scene().clearHighlightedVisual();
    scene().clearSelections();
    pump();
    scene().deleteVisual(top);
    frame();
    EXPECT_EQ(Inventory::Take(), before);
    EXPECT_GT(most, before.nodes + 10);  // there was something to leave
}

TEST_F(VisualSoak, BuildingAndDeletingAnAssemblyAThousandTimesLeavesNothingBehind) {
    frame();
    const Inventory before = Inventory::Take();
    for (int i = 0; i < 1000; ++i) {
        scene().addAssembly(groups.back());
        scene().setVisualSelected(groups.back()->id);
        pump();
        scene().removeVisual(groups.back()->id);
        pump();
    }
    EXPECT_EQ(Inventory::Take(), before);
}

}  // namespace vrn::test
