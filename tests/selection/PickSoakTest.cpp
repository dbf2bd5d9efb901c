// A scene that is edited at random, as an application would, and asked between the edits.

#include <malloc.h>
#include <algorithm>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <OgreSceneNode.h>
#include <BRepPrimAPI_MakeSphere.hxx>

#include "mesh/DynamicLines.h"
#include "mesh/NoTriangleMesh.h"
#include "selection/BVHNode.h"
#include "selection/Ray.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/PointCloud.h"
#include "tests/support/SolidFixture.h"
#include "view/Camera.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/handle/DragHandle.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/station/InstanceFrameVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

namespace {

using selection::BVHPrimitive;
using selection::Result;
using selection::SelectableObject;
using selection::VisualSelection;
using visual::ForestIterator;
using visual::SolidVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;

constexpr int rounds = 5;
constexpr int stepsPerRound = 1000;
constexpr int checkEvery = 25;
constexpr std::size_t mostVisuals = 150;

SelectableObject* AsObject(BVHPrimitive* primitive) {
    return dynamic_cast<SelectableObject*>(primitive);
}

}  // namespace

class PickSoak : public SolidTest {
protected:
    void SetUp() override {
        SolidTest::SetUp();
        TopoDS_Shape sphere = BRepPrimAPI_MakeSphere(30).Shape();
        geometry::GenerateMesh(sphere, 0.0, 0.0);
        for (const TopoDS_Shape& shape : {MeshedBox(), MeshedBox(20, 90, 30), sphere})
            for (int i = 0; i < 8; ++i) bodies.push_back(makeBody(shape));
        for (int i = 0; i < 4; ++i) {
            std::vector<Pos> points(1500);
            for (Pos& p : points) p = place(80);
            clouds.push_back(model.make<layout::PointCloud>("scan", std::move(points)));
        }
        stl = writeBoxStl("soak.stl", {-20, -20, -20}, {20, 20, 20}).string();
    }

    static VisualSelection& picking() { return *VisualSelection::Get(); }
    std::size_t any(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    }
    bool flip() { return any(2) == 0; }
    float number(float reach) {
        return std::uniform_real_distribution<float>(-reach, reach)(random);
    }
    Pos place(float reach) { return {number(reach), number(reach), number(reach)}; }
    rob::PoseTemplate<float> pose() {
        return {place(200), Rotation(number(3), number(3), number(3))};
    }
    std::vector<Visual*> all() const {
        std::vector<Visual*> visuals;
        for (ForestIterator<Visual> it(top); it.next();) visuals.push_back(it.value());
        return visuals;
    }
    Visual* anyVisual() {
        const std::vector<Visual*> visuals = all();
        return visuals[any(visuals.size())];
    }
    /// One that was made by step(), not what a builder hung below it; null if none is left.
    Visual* anyOwn() {
        std::vector<Visual*> own;
        for (Visual* visual : all())
            if (made.contains(visual)) own.push_back(visual);
        return own.empty() ? nullptr : own[any(own.size())];
    }
    static bool isAbove(const Visual* upper, const Visual* lower) {
        for (; lower; lower = lower->getParent())
            if (lower == upper) return true;
        return false;
    }
    Visual* anyParent() {
        Visual* own = flip() ? nullptr : anyOwn();
        return own ? own : top;
    }
    void keep(Visual* visual) {
        made.insert(visual);
        visual->setPose(pose());
    }

    // --- the edits

    void add() {
        if (all().size() > mostVisuals) return;
        Visual* parent = anyParent();
        switch (any(7)) {
            case 0: {
                layout::Body* body = bodies[any(bodies.size())];
                if (!scene().visuals.contains(body->id))
                    keep(SolidVisual::Build(parent, body, body->getShape()));
                return;
            }
            case 1: {
                auto* mesh = new visual::MeshVisual("soak", parent);
                mesh->attachMesh(stl);
                if (flip()) mesh->setScale(1 + std::abs(number(2)), 1, 2);
                picking().addMeshVisual(mesh, flip(), any(8) == 0);
                return keep(mesh);
            }
            case 2:
                return keep(visual::CurveVisual::Build(parent, LineEdge({0, 0, 0}, {90, 40, 0})));
            case 3: {
                auto* line = new visual::LineVisual(parent);
                auto* strip = line->createDynamicLine(visual::RenderOpType::LineStrip);
                for (std::size_t i = any(4); i > 0; --i)
                    strip->addPoint(number(80), number(80), number(80));
                picking().addLineVisual(line);
                return keep(line);
            }
            case 4: {
                layout::PointCloud* cloud = clouds[any(clouds.size())];
                if (!scene().visuals.contains(cloud->id))
                    keep(visual::PointCloudVisual::Build(parent, cloud));
                return;
            }
            case 5: {
                auto* frame = new visual::InstanceFrameVisual(
                    parent, 0, "soak frame " + std::to_string(++names), VisualType::RobTarget,
                    "InstanceRobTarget");
                picking().addFrameVisual(frame);
                return keep(frame);
            }
            default: {
                layout::Body* body = makeBody(TopoDS_Shape());
                return keep(visual::PointVisual::Build(parent, body, place(50)));
            }
        }
    }
    void move() {
        if (Visual* visual = anyOwn()) visual->setWorldPose(pose());
    }
    void hide() {
        Visual* visual = anyOwn();
        if (!visual) return;
        const bool show = flip();
        visual->setVisible(show, flip());
        if (flip())
            picking().setCompoundObjectEnabled(visual, show);
        else
            picking().setObjectEnabled(visual, show);
    }
    void hang() {
        Visual *child = anyOwn(), *parent = anyParent();
        if (!child || isAbove(child, parent)) return;
        parent->attachVisual(child);
        child->setAttachState(flip());
    }
    void changeFaces() {
        auto* solid = dynamic_cast<SolidVisual*>(anyOwn());
        if (!solid || solid->getFaceMap().IsEmpty()) return;  // a copy has no faces
        const auto face = 1 + any(static_cast<std::size_t>(solid->getFaceMap().Extent()));
        try {
            solid->setFaceVisible(face, flip());
        } catch (const visual::NoTriangleMesh&) {
            // Its last face: it shows nothing, and stays registered.
        }
    }
    void remove() {
        Visual* visual = anyOwn();
        if (!visual) return;
        for (ForestIterator<Visual> it(visual); it.next();) made.erase(it.value());
        scene().deleteVisual(visual);
    }
    void copy() {
        Visual *source = anyOwn(), *parent = anyParent();
        if (!source || isAbove(source, parent) || all().size() > mostVisuals) return;
        // A copy shows the mesh of its source, which may be gone by now.
        for (ForestIterator<Visual> it(source); it.next();)
            if (it.value()->copied) return;
        if (const auto copied = source->copy(parent)) made.insert(*copied);
    }
    void registerAgain() {
        Visual* visual = anyOwn();
        if (auto* line = dynamic_cast<visual::LineVisual*>(visual))
            picking().addLineVisual(line);
        else if (auto* cloud = dynamic_cast<visual::PointCloudVisual*>(visual))
            picking().addPointCloudVisual(cloud, true);
    }
    void switchFlags() {
        Visual* visual = anyVisual();
        if (flip()) return picking().setLineEnabled(flip());
        picking().setDetectable(visual, flip());
    }
    void step() {
        switch (any(12)) {
            case 0:
            case 1:
            case 2:
                return add();
            case 3:
            case 4:
                return move();
            case 5:
                return hide();
            case 6:
                return hang();
            case 7:
                return changeFaces();
            case 8:
                return remove();
            case 9:
                return copy();
            case 10:
                return registerAgain();
            default:
                return switchFlags();
        }
    }

    // --- what must hold

    /// Every object belongs to a visual that hangs in the scene or in a handle that hangs nowhere,
    /// and the map and the containers tell the same.
    static void expectRegistryConsistent() {
        std::set<Visual*> alive;
        const std::vector<Visual*> starts{scene().root, visual::DragHandle::Get(),
                                          visual::PathEndsHandle::Get()};
        for (ForestIterator<Visual> it(starts); it.next();) alive.insert(it.value());
        std::set<BVHPrimitive*> held;
        for (int c = 0; c < 2; ++c) {
            for (BVHPrimitive* primitive :
                 picking().containers[static_cast<std::size_t>(c)].primitives) {
                const SelectableObject* object = AsObject(primitive);
                ASSERT_TRUE(alive.contains(object->visual));
                EXPECT_EQ(object->kind == selection::ObjectKind::PointCloud, c == 1);
                EXPECT_TRUE(held.insert(primitive).second);
            }
        }
        for (const auto& [visual, object] : picking().objects) {
            EXPECT_EQ(object->visual, visual);
            EXPECT_TRUE(held.contains(object));
        }
    }
    /// The trees hold exactly the enabled objects of their containers.
    static void expectTreesConsistent() {
        for (const selection::PrimitiveContainer& container : picking().containers) {
            std::multiset<BVHPrimitive*> wanted;
            for (BVHPrimitive* primitive : container.primitives)
                if (primitive->enabled) wanted.insert(primitive);
            std::vector<BVHPrimitive*> held;
            if (container.tree.root) container.tree.root->collectPrimitives(held);
            EXPECT_EQ(std::multiset<BVHPrimitive*>(held.begin(), held.end()), wanted);
        }
    }
    static std::map<const SelectableObject*, std::pair<Pos, Pos>> boxes() {
        std::map<const SelectableObject*, std::pair<Pos, Pos>> result;
        for (const selection::PrimitiveContainer& container : picking().containers)
            for (BVHPrimitive* primitive : container.primitives)
                result[AsObject(primitive)] = {primitive->box.min, primitive->box.max};
        return result;
    }
    /// A second update does nothing, and one after everything was marked finds the same.
    static void expectUpdateIdempotent() {
        int signals = 0;
        const auto subscription = broker::SignalBroker::onSnapResultInvalidated([&] { ++signals; });
        const auto before = boxes();
        picking().update();
        EXPECT_EQ(signals, 0);
        EXPECT_EQ(boxes(), before);
        picking().markDirty(scene().root);
        picking().update();
        EXPECT_EQ(boxes(), before);
    }
    /// What a pick answers is the nearest of all enabled objects, or one with priority.
    void expectPicksLikeAllObjects() {
        const float x = std::uniform_real_distribution<float>(0, windowWidth)(random);
        const float y = std::uniform_real_distribution<float>(0, windowHeight)(random);
        const visual::Ray ray = visual::Camera::Get()->getViewportRay(x, y);
        Result best;
        bool priorityHit = false;
        for (BVHPrimitive* primitive : picking().containers[0].primitives) {
            if (!primitive->enabled || !primitive->box.intersect(ray)) continue;
            const Result result = primitive->intersect(ray);
            if (!result.hit) continue;
            priorityHit = priorityHit || AsObject(primitive)->priority;
            if (result.distance < best.distance) best = result;
        }
        const Result picked = picking().select(x, y);
        ASSERT_EQ(picked.hit, best.hit);
        if (!picked.hit) return;
        ++hits;
        const SelectableObject* object = picking().getObject(picked.visual);
        EXPECT_EQ(object->priority, priorityHit);
        if (priorityHit) return;
        EXPECT_EQ(picked.distance, best.distance);
    }
    void check() {
        expectRegistryConsistent();
        pump();
        expectTreesConsistent();
        expectUpdateIdempotent();
        for (int i = 0; i < 40; ++i) expectPicksLikeAllObjects();
        (void)picking().selectPointInCloud(number(600), number(400));
        for (Visual* visual : picking().boxSelect(100, 100, 500, 400))
            EXPECT_TRUE(picking().hasVisual(visual));
        (void)picking().boxSelectPointCloud(100, 100, 500, 400);
        (void)picking().lassoSelectPointCloud({{10, 10, 0}, {600, 50, 0}, {300, 400, 0}});
    }
    void clear() {
        pump();
        scene().deleteVisual(top);
        made.clear();
        pump();
        EXPECT_EQ(pickableCount(), 0u);
        EXPECT_EQ(picking().containers[0].primitives.size(), picking().objects.size());
        EXPECT_TRUE(picking().containers[1].primitives.empty());
        for (const selection::PrimitiveContainer& container : picking().containers)
            EXPECT_EQ(container.tree.root, nullptr);
    }

    std::mt19937 random{20260101};
    Visual* top = nullptr;
    std::set<Visual*> made;
    std::vector<layout::Body*> bodies;
    std::vector<layout::PointCloud*> clouds;
    std::string stl;
    int names = 0, hits = 0;
};

TEST_F(PickSoak, ThousandsOfRandomEditsKeepTheSelectionConsistentAndLeaveNothing) {
    lookFrom({500, -500, 400}, {0, 0, 0});
    for (int round = 0; round < rounds; ++round) {
        top = new Visual("soak" + std::to_string(round), scene().root);
        for (int i = 1; i <= stepsPerRound; ++i) {
            ASSERT_NO_THROW(step()) << round << " " << i;
            if (i % checkEvery != 0) continue;
            ASSERT_NO_FATAL_FAILURE(check()) << round << " " << i;
        }
        clear();
    }
    EXPECT_GT(hits, 300);  // there was something to find
}

TEST_F(PickSoak, RegisteringPickingAndRemovingAgainAndAgainKeepsTheMemory) {
    lookFrom({500, -500, 400}, {0, 0, 0});
    std::size_t afterFirst = 0;
    for (int round = 0; round < 30; ++round) {
        top = new Visual("soak", scene().root);
        for (layout::Body* body : bodies) keep(SolidVisual::Build(top, body, body->getShape()));
        for (layout::PointCloud* cloud : clouds) keep(visual::PointCloudVisual::Build(top, cloud));
        pump();
        for (int i = 0; i < 50; ++i) {
            (void)picking().select(number(600), number(400));
            (void)picking().selectPointInCloud(number(600), number(400));
            move();
            pump();
        }
        clear();
        if (round == 9) afterFirst = mallinfo2().uordblks;
    }
    // Allocators that do not count, those of sanitizers, tell 0 both times. What the selection had
    // for one round is some megabytes.
    EXPECT_LT(mallinfo2().uordblks, afterFirst + 300'000);
}

}  // namespace vrn::test
