#include "visual/process/PaintVisual.h"

#include <gmock/gmock.h>
#include <OgreEntity.h>
#include <OgreException.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSceneManager.h>
#include <OgreSubMesh.h>
#include <Standard_Failure.hxx>

#include <any>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>

#include "mesh/MeshManager.h"
#include "selection/Cone.h"
#include "selection/Result.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "suite/smart/SmartComponent.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/process/SprayVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

using selection::VisualSelection;
using visual::Color;
using visual::MeshVisual;
using visual::PaintMesh;
using visual::PaintVisual;
using visual::SprayVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using PoseD = rob::PoseTemplate<double>;
using Rotation = rob::RotationTemplate<float>;
using Vec = rob::Vec3Template<float>;

namespace {

constexpr unsigned unknownId = 123456789;

/// A record of a flat grid in the plane z = 0 facing +z, `cells` squares a side of size `size`, in
/// the manager under `name`.
void AddGrid(const std::string& name, int cells, float size) {
    auto mesh = std::make_unique<visual::Mesh>(name);
    for (int y = 0; y <= cells; ++y)
        for (int x = 0; x <= cells; ++x) {
            mesh->vertices.push_back(
                {size * (static_cast<float>(x) / static_cast<float>(cells) - 0.5f),
                 size * (static_cast<float>(y) / static_cast<float>(cells) - 0.5f), 0});
            mesh->normals.push_back({0, 0, 1});
        }
    const auto at = [&](int x, int y) { return static_cast<std::uint32_t>(y * (cells + 1) + x); };
    for (int y = 0; y < cells; ++y)
        for (int x = 0; x < cells; ++x)
            for (const std::uint32_t i : {at(x, y), at(x + 1, y), at(x + 1, y + 1), at(x, y),
                                          at(x + 1, y + 1), at(x, y + 1)})
                mesh->indices.push_back(i);
    if (visual::MeshManager::Get()->hasMesh(name)) return;
    visual::MeshManager::Get()->addMesh(mesh.release());
}

/// The colours on the graphics card.
std::vector<Color> UploadedColors(const PaintMesh& mesh) {
    const auto shown = Ogre::MeshManager::getSingleton().getByName(mesh.name, Ogre::RGN_AUTODETECT);
    const Ogre::VertexData* data = shown->getSubMesh(0)->vertexData;
    const auto buffer = data->vertexBufferBinding->getBuffer(0);
    EXPECT_EQ(buffer->getVertexSize(), 40u);
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
    std::vector<Color> colors(data->vertexCount);
    for (std::size_t i = 0; i < colors.size(); ++i)
        std::memcpy(&colors[i], static_cast<const std::byte*>(lock.pData) + 40 * i + 24,
                    sizeof(Color));
    return colors;
}

std::set<std::uint32_t> Painted(const PaintMesh& mesh) {
    std::set<std::uint32_t> painted;
    for (std::uint32_t i = 0; i < mesh.vertexColors.size(); ++i)
        if (mesh.vertexColors[i].a > 0) painted.insert(i);
    return painted;
}

/// Looks down from `at`.
Pose Down(const Pos& at) { return {at, Rotation(std::numbers::pi_v<float>, Vec{1, 0, 0})}; }

}  // namespace

class PaintTest : public EngineTest {
protected:
    /// A target of that record, under the root.
    MeshVisual* showTarget(const std::string& mesh, const Pose& pose = {}) {
        auto* target = new MeshVisual("target", scene().root);
        target->attachMesh(mesh);
        target->setPose(pose);
        scene().visuals[target->id] = target;
        return target;
    }
    smartcomp::SprayComponent* makeSpray(double near = 0, double height = 100, double far = 80) {
        auto* spray = model.make<smartcomp::SprayComponent>("gun");
        spray->setProperty(6, near);
        spray->setProperty(7, height);
        spray->setProperty(8, far);
        return spray;
    }
    SprayVisual* showSpray(const Pose& pose, smartcomp::SprayComponent* component) {
        scene().addSmartComponent(component);
        pump();
        auto* shown = dynamic_cast<SprayVisual*>(scene().visuals.at(component->id));
        shown->setPose(pose);
        return shown;
    }
    /// What is picked in the middle of a box at the origin.
    static selection::Result hitInTheMiddle() {
        lookFrom({0, -400, 300}, {0, 0, 0});
        frame();
        const auto pixel = project({0, -50, 0});
        return VisualSelection::Get()->select(pixel.x, pixel.y);
    }
    static PaintVisual* paintOn(const Visual* target) {
        for (Visual* child : target->getChildren())
            if (auto* paint = dynamic_cast<PaintVisual*>(child)) return paint;
        return nullptr;
    }
};

TEST_F(PaintTest, PaintIsAChildOfItsTargetInvisibleUntilSprayed) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    scene().createPaintVisual(target->id, 5);
    pump();
    const PaintVisual* paint = paintOn(target);
    ASSERT_NE(paint, nullptr);
    EXPECT_EQ(static_cast<int>(paint->type), 29);
    EXPECT_TRUE(paint->getName().starts_with("paint"));
    EXPECT_EQ(paint->getMesh()->name, "paint-grid_paint");
    EXPECT_EQ(paint->getSprayRefsCount(), 1u);
    EXPECT_EQ(paint->material, "Spray");
    EXPECT_TRUE(paint->hasAttachedObject("paint-grid_paint"));
    EXPECT_EQ(paint->node->getAttachedObject(0)->getRenderQueueGroup(), 52)
        << "after the surfaces, also selected ones";
    EXPECT_EQ(scene().visuals.at(paint->id), paint);
    const auto* object = VisualSelection::Get()->getObject(paintOn(target));
    EXPECT_FALSE(object->detectable);
    EXPECT_FALSE(object->priority);
    const auto* source = visual::MeshManager::Get()->getMesh("paint-grid");
    EXPECT_EQ(paint->getMesh()->vertices, source->vertices);
    EXPECT_EQ(paint->getMesh()->normals, source->normals);
    EXPECT_EQ(paint->getMesh()->indices, source->indices);
    for (const Color& c : UploadedColors(*paint->getMesh())) EXPECT_EQ(c, (Color{0, 0, 1, 0}));
    scene().removePaintVisual(target->id, 5);
    pump();
    EXPECT_EQ(paintOn(target), nullptr);
    EXPECT_FALSE(visual::MeshManager::Get()->hasMesh("paint-grid_paint"));
    EXPECT_EQ(Ogre::MeshManager::getSingleton().getByName("paint-grid_paint", Ogre::RGN_AUTODETECT),
              nullptr);
}

TEST_F(PaintTest, WhatTheConeReachesIsPaintedAndTheCardHasIt) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    scene().setPaintColor(target->id, 1, 0.5f, 0.25f);
    scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
    pump();
    const PaintMesh& mesh = *paintOn(target)->getMesh();
    // At half the height the cone is 19 wide: the vertices within, 10 apart.
    std::set<std::uint32_t> expected;
    for (std::uint32_t i = 0; i < mesh.vertices.size(); ++i)
        if (std::hypot(mesh.vertices[i].x, mesh.vertices[i].y) < 19) expected.insert(i);
    EXPECT_EQ(expected.size(), 9u);
    EXPECT_EQ(Painted(mesh), expected);
    for (const std::uint32_t i : expected)
        EXPECT_EQ(mesh.vertexColors[i], (Color{1, 0.5f, 0.25f, 255}));
    EXPECT_EQ(UploadedColors(mesh), mesh.vertexColors);
    EXPECT_TRUE(mesh.changedVertices.empty());
}

TEST_F(PaintTest, DiametersAreHalvedAndTheHeightIsNot) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray(80, 100, 80));
    scene().createPaintVisual(target->id, gun->id);
    scene().spray(gun->id, target->id, PoseD(), 42, 42, 51);
    pump();
    EXPECT_EQ(Painted(*paintOn(target)->getMesh()).size(), 13u);  // within 21 of the middle
    scene().resetSpray(target->id);
    scene().spray(gun->id, target->id, PoseD(), 42, 42, 49);
    pump();
    EXPECT_TRUE(Painted(*paintOn(target)->getMesh()).empty());
}

TEST_F(PaintTest, TheGivenPoseIsIgnoredForThatOfTheSprayVisual) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    scene().spray(gun->id, target->id, PoseD({1e6, 0, 0}, {}), 0, 76, 100);
    pump();
    EXPECT_EQ(Painted(*paintOn(target)->getMesh()).size(), 9u);
}

TEST_F(PaintTest, AMovePostedInTheSameBatchIsSeen) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    auto* component = makeSpray();
    scene().addSmartComponent(component);
    scene().createPaintVisual(target->id, component->id);
    scene().setVisualPose(component->id, Down({0, 0, 5000}));
    scene().setVisualPose(target->id, {{0, 0, 4950}, {}});
    scene().spray(component->id, target->id, PoseD(), 0, 76, 100);
    scene().processMsgs();
    EXPECT_EQ(Painted(*paintOn(target)->getMesh()).size(), 9u);
}

TEST_F(PaintTest, ASprayThatMissesChangesNothing) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray(Down({0, 0, 500}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
    EXPECT_NO_THROW(pump());
    EXPECT_TRUE(Painted(*paintOn(target)->getMesh()).empty());
}

TEST_F(PaintTest, ASurfaceThatFacesAwayStaysBare) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray({{0, 0, -50}, {}}, makeSpray());  // from below
    scene().createPaintVisual(target->id, gun->id);
    scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
    pump();
    EXPECT_TRUE(Painted(*paintOn(target)->getMesh()).empty());
}

namespace {

/// Three corners in the plane z = 0 with the given normals, named anew each time.
std::string AddTriangle(const std::array<Pos, 3>& corners, const std::array<Vec, 3>& normals) {
    static int count = 0;
    auto mesh = std::make_unique<visual::Mesh>("paint-triangle" + std::to_string(count++));
    mesh->vertices.assign(corners.begin(), corners.end());
    mesh->normals.assign(normals.begin(), normals.end());
    mesh->indices = {0, 1, 2};
    const std::string name = mesh->name;
    visual::MeshManager::Get()->addMesh(mesh.release());
    return name;
}

}  // namespace

class PaintRules : public PaintTest {
protected:
    /// Which corners a spray from straight above, 100 wide and 100 high, paints.
    std::set<std::uint32_t> sprayed(const std::array<Pos, 3>& corners,
                                    const std::array<Vec, 3>& normals, double width = 100) {
        MeshVisual* target = showTarget(AddTriangle(corners, normals));
        const auto* gun = showSpray(Down({0, 0, 50}), makeSpray(100, 100, 100));
        scene().createPaintVisual(target->id, gun->id);
        scene().spray(gun->id, target->id, PoseD(), width, width, 100);
        pump();
        return Painted(*paintOn(target)->getMesh());
    }
    static constexpr Vec up{0, 0, 1}, down{0, 0, -1}, aside{1, 0, 0};
};

TEST_F(PaintRules, ACornerThatFacesAwayEndsItsTriangle) {
    EXPECT_EQ(sprayed({{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}}, {up, down, up}),
              (std::set<std::uint32_t>{0}));
}

TEST_F(PaintRules, ACornerOutsideTheBoxEndsItsTriangle) {
    EXPECT_EQ(sprayed({{{0, 0, 0}, {500, 0, 0}, {0, 10, 0}}}, {up, up, up}),
              (std::set<std::uint32_t>{0}));
}

TEST_F(PaintRules, ACornerOnAFaceOfTheBoxDoesNot) {
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray(100, 100, 100));
    auto* object = VisualSelection::Get()->getObject(scene().visuals.at(gun->id));
    object->updateWorldBox();
    const Pos low = object->box.min, high = object->box.max;
    for (const Pos& corner : {Pos{low.x, 0, 0}, Pos{high.x, 0, 0}, Pos{0, low.y, 0},
                              Pos{0, high.y, 0}, Pos{0, 0, low.z}, Pos{0, 0, high.z}}) {
        const auto painted = sprayed({{{0, 0, 0}, corner, {10, 10, 0}}}, {up, up, up});
        EXPECT_TRUE(painted.contains(2)) << corner.x << ' ' << corner.y << ' ' << corner.z;
    }
}

TEST_F(PaintRules, ACornerOutsideTheConeDoesNot) {
    EXPECT_EQ(sprayed({{{0, 0, 0}, {40, 0, 0}, {0, 10, 0}}}, {up, up, up}, 60),
              (std::set<std::uint32_t>{0, 2}));
}

TEST_F(PaintRules, ASurfaceAlongTheSprayIsPainted) {
    EXPECT_EQ(sprayed({{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}}, {aside, aside, aside}),
              (std::set<std::uint32_t>{0, 1, 2}));
}

TEST_F(PaintTest, ThePaintedSetIsThatOfAskingEveryTriangle) {
    AddGrid("paint-fine-grid", 60, 200);
    MeshVisual* target = showTarget("paint-fine-grid");
    auto* component = makeSpray(10, 120, 90);
    SprayVisual* gun = showSpray({}, component);
    scene().createPaintVisual(target->id, gun->id);
    pump();
    PaintVisual* paint = paintOn(target);
    const PaintMesh& mesh = *paint->getMesh();
    std::mt19937 random(7);
    std::uniform_real_distribution<float> coordinate(-1, 1);
    const auto direction = [&] {
        Vec v;
        do v = {coordinate(random), coordinate(random), coordinate(random)};
        while (v.squaredLength() > 1 || v.squaredLength() < 0.01f);
        return v;
    };
    int hits = 0;
    for (int round = 0; round < 150; ++round) {
        target->setPose({{100 * coordinate(random), 0, 0},
                         Rotation(coordinate(random), direction().normalized())});
        gun->setPose({{120 * coordinate(random), 120 * coordinate(random), 90 * coordinate(random)},
                      Rotation::From2Dirs({0, 0, 1}, direction())});
        paint->reset();
        const double r1 = 5, r2 = 45, height = 120;
        paint->spray(gun->id, r1, r2, height);

        const visual::Box box = VisualSelection::Get()->getObject(gun)->box;
        const Pose own = paint->getWorldPose(), spray = gun->getWorldPose();
        std::set<std::uint32_t> expected;
        for (std::size_t t = 0; t < mesh.indices.size() / 3; ++t)
            for (std::size_t k = 0; k < 3; ++k) {
                const std::uint32_t v = mesh.indices[3 * t + k];
                const Vec place = own.rotation * mesh.vertices[v].asVec3() + own.position.asVec3();
                if (!box.isPointInside(place.x, place.y, place.z)) break;
                if ((spray.rotation * Vec{0, 0, 1}).dot(own.rotation * mesh.normals[v]) > 0) break;
                if (visual::Cone{r1, r2, height}.isPointInside(spray, place)) expected.insert(v);
            }
        ASSERT_EQ(Painted(mesh), expected) << "round " << round;
        hits += !expected.empty();
    }
    EXPECT_GT(hits, 15);
}

TEST_F(PaintTest, ResetLeavesColoursWithoutCoverAndTheNextSprayCoversAgain) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    const auto spray = [&] {
        scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
        pump();
    };
    spray();
    const PaintMesh& mesh = *paintOn(target)->getMesh();
    const auto painted = Painted(mesh);
    const std::uint32_t one = *painted.begin();
    EXPECT_EQ(mesh.vertexColors[one], (Color{0, 0, 0, 255}));  // black is what it starts with
    scene().setPaintColor(target->id, 1, 0, 0);
    scene().resetSpray(target->id);
    pump();
    EXPECT_TRUE(Painted(mesh).empty());
    EXPECT_EQ(mesh.vertexColors[one], (Color{0, 0, 0, 0}));
    EXPECT_EQ(UploadedColors(mesh), mesh.vertexColors);
    spray();
    EXPECT_EQ(Painted(mesh), painted);
    EXPECT_EQ(mesh.vertexColors[one], (Color{1, 0, 0, 255}));
}

TEST_F(PaintTest, SeveralSpraysShareThePaintAndTheLastOneTakesIt) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    scene().createPaintVisual(target->id, 5);
    scene().createPaintVisual(target->id, 6);
    pump();
    EXPECT_EQ(target->getChildren().size(), 1u);
    EXPECT_EQ(paintOn(target)->getSprayRefsCount(), 2u);
    scene().removePaintVisual(target->id, 5);
    pump();
    EXPECT_NE(paintOn(target), nullptr);
    scene().createPaintVisual(target->id, 6);
    pump();
    EXPECT_EQ(paintOn(target)->getSprayRefsCount(), 2u);  // no check for doubles
    scene().removePaintVisual(target->id, 6);
    pump();
    EXPECT_EQ(paintOn(target), nullptr);
}

TEST_F(PaintTest, PaintThatHangsUnderOtherPaintGoesWithItsOwnSprayFirst) {
    MeshVisual *upper = showTarget("paint-grid"), *lower = showTarget("paint-grid");
    scene().createPaintVisual(upper->id, 5);
    scene().createPaintVisual(lower->id, 5);
    pump();
    const std::uint32_t below = paintOn(lower)->id;
    paintOn(upper)->attachVisual(lower);
    scene().removePaintVisual(upper->id, 5);
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(paintOn(upper), nullptr);
    EXPECT_FALSE(scene().visuals.contains(below));
    EXPECT_TRUE(upper->getChildren().empty());
}

TEST_F(PaintTest, MeshesOfOneFileKeepTheirPaintApart) {
    Visual* one = showBoxPart("one");
    Visual* two = showBoxPart("two", {{500, 0, 0}, {}});
    auto* first = dynamic_cast<MeshVisual*>(findBelow(one, VisualType::Mesh));
    auto* second = showTarget(first->getMeshName());
    scene().createPaintVisual(one->id, 5);
    scene().createPaintVisual(second->id, 5);
    scene().createPaintVisual(two->id, 5);
    pump();
    ASSERT_NE(paintOn(first), nullptr);
    ASSERT_NE(paintOn(second), nullptr);
    EXPECT_EQ(paintOn(second)->getMesh()->name,
              paintOn(first)->getMesh()->name + "_" + std::to_string(paintOn(second)->id));
    frame();
    scene().removePaintVisual(second->id, 5);
    pump();
    EXPECT_NE(paintOn(first), nullptr);
    frame();
}

TEST_F(PaintTest, MeshesWithoutARecordArePassedOver) {
    auto* global = new MeshVisual("global", scene().root);
    global->attachMesh("mfg_arrow");
    scene().visuals[global->id] = global;
    scene().createPaintVisual(global->id, 5);
    pump();
    EXPECT_TRUE(global->getChildren().empty());
    EXPECT_THROW((void)PaintVisual::Build(global, 5), std::out_of_range);
    EXPECT_THROW((void)PaintVisual::Build(scene().root, 5), std::bad_cast);
    EXPECT_TRUE(global->getChildren().empty());
}

TEST_F(PaintTest, OfAHiddenTargetThePaintIsNeitherSeenNorPicked) {
    Visual* part = showBoxPart("hidden");
    auto* body = dynamic_cast<MeshVisual*>(findBelow(part, VisualType::Mesh));
    scene().setVisualVisible(part->id, false);
    scene().createPaintVisual(part->id, 5);
    pump();
    EXPECT_FALSE(paintOn(body)->visible);
    EXPECT_FALSE(paintOn(body)->node->getAttachedObject(0)->getVisible());
    EXPECT_FALSE(hitInTheMiddle().hit);
    scene().setVisualVisible(part->id, true);
    EXPECT_TRUE(hitInTheMiddle().hit);
    EXPECT_TRUE(paintOn(body)->node->getAttachedObject(0)->getVisible());
}

TEST_F(PaintTest, OfATargetThatIsNotToBePickedThePaintIsNotPickedEither) {
    Visual* part = showBoxPart("disabled");
    VisualSelection::Get()->setCompoundObjectEnabled(part, false);
    scene().createPaintVisual(part->id, 5);
    EXPECT_FALSE(hitInTheMiddle().hit);
    EXPECT_TRUE(paintOn(findBelow(part, VisualType::Mesh))->visible);
}

TEST_F(PaintTest, PaintThatIsHiddenWithItsBodyIsNotPickedUntilItIsShownAgain) {
    Visual* body = findBelow(showBoxPart("body"), VisualType::Mesh);
    scene().createPaintVisual(body->id, 5);
    ASSERT_TRUE(hitInTheMiddle().hit);
    scene().setVisualVisible(body->id, false);
    EXPECT_FALSE(hitInTheMiddle().hit);
    scene().setVisualVisible(body->id, true);
    EXPECT_TRUE(hitInTheMiddle().hit);
    EXPECT_TRUE(VisualSelection::Get()->getObject(paintOn(body))->enabled);
}

TEST_F(PaintTest, AnotherMeshIsWhatIsSprayedAndPickedFromThenOn) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
    pump();
    PaintVisual* paint = paintOn(target);
    PaintMesh* former = paint->getMesh();
    auto* small = new PaintMesh("paint-small");
    small->vertices = {{0, 0, 0}, {5, 0, 0}, {0, 5, 0}};
    small->normals.assign(3, {0, 0, 1});
    small->indices = {0, 1, 2};
    small->vertexColors.resize(3);
    visual::MeshManager::Get()->addPaintMesh(small);
    paint->setMesh(small);
    visual::MeshManager::Get()->deleteMesh(former);
    paint->spray(gun->id, 0, 38, 100);
    EXPECT_EQ(Painted(*small), (std::set<std::uint32_t>{0, 1, 2}));
    EXPECT_FLOAT_EQ(VisualSelection::Get()->getObject(paint)->box.max.x, 5);
    frame();
    scene().deleteVisual(paint);
    EXPECT_FALSE(visual::MeshManager::Get()->hasMesh("paint-small"));
    scene().createPaintVisual(target->id, gun->id);
    EXPECT_NO_THROW(pump()) << "the picture of the paint before is still there";
}

TEST_F(PaintTest, MeshesWithoutNormalsArePassedOverAndTheOthersGetPaint) {
    auto bare = std::make_unique<visual::Mesh>("paint-without-normals");
    bare->vertices = {{0, 0, 0}, {10, 0, 0}, {0, 10, 0}};
    bare->indices = {0, 1, 2};
    visual::MeshManager::Get()->addMesh(bare.release());
    AddGrid("paint-grid", 10, 100);
    MeshVisual* first = showTarget("paint-without-normals");
    MeshVisual* second = showTarget("paint-grid");
    first->attachVisual(second);
    scene().createPaintVisual(first->id, 5);
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(paintOn(first), nullptr);
    EXPECT_NE(paintOn(second), nullptr);
    EXPECT_THAT([&] { (void)PaintVisual::Build(first, 5); },
                testing::ThrowsMessage<std::invalid_argument>(testing::HasSubstr("but 0 normals")));
    EXPECT_EQ(first->getChildren(), std::vector<Visual*>{second});
}

TEST_F(PaintTest, AMeshWithoutVerticesIsPaintedWithoutHarm) {
    auto empty = std::make_unique<visual::Mesh>("paint-nothing");
    if (!visual::MeshManager::Get()->hasMesh("paint-nothing"))
        visual::MeshManager::Get()->addMesh(empty.release());
    MeshVisual* target = showTarget("paint-nothing");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
    scene().resetSpray(target->id);
    EXPECT_NO_THROW(frame());
}

TEST_F(PaintTest, AMeshThatLacksANormalIsRefused) {
    MeshVisual* target = showTarget("mfg_arrow");
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    PaintMesh bare("paint-bare");
    bare.vertices = {{0, 0, 0}, {10, 0, 0}, {0, 10, 0}};
    bare.indices = {0, 1, 2};
    auto* paint = new PaintVisual(target, gun->id);
    paint->setMesh(&bare);
    VisualSelection::Get()->addMeshVisual(paint, /*detectable=*/false, /*priority=*/false);
    EXPECT_THROW(paint->spray(gun->id, 10, 10, 100), std::out_of_range);
    scene().deleteVisual(paint);
}

TEST_F(PaintTest, AnUnknownTargetIsPassedOverAndAnUnknownSprayIsNot) {
    scene().createPaintVisual(unknownId, 5);
    scene().removePaintVisual(unknownId, 5);
    scene().spray(unknownId, unknownId, PoseD(), 1, 1, 1);
    scene().resetSpray(unknownId);
    scene().setPaintColor(unknownId, 1, 0, 0);
    EXPECT_NO_THROW(pump());
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    scene().createPaintVisual(target->id, 5);
    pump();
    for (const unsigned no : {unknownId, target->id}) {
        scene().spray(no, target->id, PoseD(), 1, 1, 1);
        EXPECT_THROW(scene().processMsgs(), std::bad_optional_access);
    }
}

TEST_F(PaintTest, PaintIsSeenOnTheSurface) {
    AddGrid("paint-fine-grid", 60, 200);
    MeshVisual* target = showTarget("paint-fine-grid");
    target->setMaterial("Body", "", "");
    target->resetAppearance();
    target->setColor({0.8f, 0.8f, 0.8f}, 1);
    const auto* gun = showSpray(Down({0, 0, 50}), makeSpray());
    scene().createPaintVisual(target->id, gun->id);
    scene().setPaintColor(target->id, 0.9f, 0.1f, 0.1f);
    scene().spray(gun->id, target->id, PoseD(), 0, 76, 100);
    scene().setVisualVisible(gun->id, false);
    pump();
    scene().visuals.at(gun->id)->setVisible(false, true);
    lookFrom({0, -250, 250}, {0, 0, 0});
    const auto picture = frame();
    const auto at = [&](const Pos& p) {
        const auto pixel = project(p);
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    };
    EXPECT_GT(at({6, -6, 0}).r, at({6, -6, 0}).g + 80);
    EXPECT_LT(std::abs(at({60, -40, 0}).r - at({60, -40, 0}).g), 12);
}

// --- the spray itself

class SprayTest : public PaintTest {};

TEST_F(SprayTest, IsABodyWithTheModelsIdPoseAndLengths) {
    auto* component = makeSpray(20, 100, 60);
    component->setPose({{1, 2, 3}, {}});
    scene().addSmartComponent(component);
    pump();
    auto* shown = dynamic_cast<SprayVisual*>(scene().visuals.at(component->id));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->id, component->id);
    EXPECT_TRUE(shown->getName().starts_with("spray_" + std::to_string(component->id)));
    EXPECT_EQ(static_cast<int>(shown->type), 10);
    EXPECT_EQ(shown->getPosition(), (Pos{1, 2, 3}));
    EXPECT_EQ(shown->material, "Body");
    EXPECT_EQ(shown->selectedMaterial, "BodySelected");
    EXPECT_EQ(shown->highlightedMaterial, "BodyHighlighted");
    EXPECT_NE(findBelow(shown, VisualType::WireFrame), nullptr);
    const auto* object = VisualSelection::Get()->getObject(shown);
    EXPECT_FALSE(object->detectable);
    EXPECT_NEAR(object->box.max.z, 103, 2);
    EXPECT_NEAR(object->box.max.x, 31, 2);
}

TEST_F(SprayTest, TheNearDiameterIsAtItsOrigin) {
    const auto* shown = showSpray({}, makeSpray(/*near=*/120, /*height=*/100, /*far=*/60));
    const auto& box = VisualSelection::Get()->getObject(scene().visuals.at(shown->id))->box;
    EXPECT_NEAR(box.max.x, 60, 2);
    EXPECT_NEAR(box.max.z, 100, 2);
}

TEST_F(SprayTest, TakesItsColourFromItsThirdProperty) {
    auto* component = makeSpray();
    component->setProperty(3, rob::Vec3Template<double>{0, 1, 0});
    const auto* shown = showSpray({}, component);
    const auto color =
        visual::MeshManager::Get()->GetFaceColor(shown->getMeshName(), shown->getShape(), 1);
    EXPECT_EQ(color, (rob::ColorTemplate<float>{0, 1, 0}));
    const auto* plain = showSpray({}, makeSpray());
    const auto red =
        visual::MeshManager::Get()->GetFaceColor(plain->getMeshName(), plain->getShape(), 1);
    EXPECT_NEAR(red.r, 0xED / 255.0, 1e-5);
}

TEST_F(SprayTest, EqualDiametersMakeACylinder) {
    const auto* shown = showSpray({}, makeSpray(50, 100, 50));
    EXPECT_GT(const_cast<SprayVisual*>(shown)->getTrianglesNum(), 10u);
}

TEST_F(SprayTest, LengthsThatMakeNoBodyThrowAndLeaveNothing) {
    for (smartcomp::SprayComponent* component :
         {model.make<smartcomp::SprayComponent>("bare"), makeSpray(10, 0, 20),
          makeSpray(10, -5, 10), makeSpray(0, 10, 0)}) {
        scene().addSmartComponent(component);
        EXPECT_THROW(scene().processMsgs(), Standard_Failure);
        EXPECT_FALSE(scene().visuals.contains(component->id));
    }
}

TEST_F(SprayTest, ValuesOfAnotherTypeThrowAndOtherNumbersArePassedOver) {
    for (const unsigned number : {1u, 2u, 3u, 6u, 7u, 8u}) {
        auto* component = makeSpray();
        component->setProperty(number, std::string("no"));
        scene().addSmartComponent(component);
        EXPECT_THROW(scene().processMsgs(), std::bad_any_cast) << number;
    }
    auto* component = makeSpray();
    for (const unsigned number : {0u, 4u, 5u, 9u, 10u, 77u})
        component->setProperty(number, std::string("any"));
    component->setProperty(1, std::uint32_t{3});
    component->setProperty(2, true);
    scene().addSmartComponent(component);
    EXPECT_NO_THROW(pump());
}

TEST_F(SprayTest, RebuiltItKeepsItsIdAndPaintGoesOnWorking) {
    AddGrid("paint-grid", 10, 100);
    MeshVisual* target = showTarget("paint-grid");
    auto* component = makeSpray(0, 100, 20);
    component->setPose(PoseD(Down({0, 0, 50})));
    scene().addSmartComponent(component);
    scene().createPaintVisual(target->id, component->id);
    component->setProperty(8, 80.0);
    scene().rebuildSprayVisual(component);
    scene().spray(component->id, target->id, PoseD(), 0, 76, 100);
    pump();
    EXPECT_EQ(scene().visuals.at(component->id)->getParent(), scene().root);
    EXPECT_EQ(Painted(*paintOn(target)->getMesh()).size(), 9u);
    EXPECT_NEAR(VisualSelection::Get()->getObject(scene().visuals.at(component->id))->box.max.x, 41,
                2);
}

TEST_F(SprayTest, RebuiltAfterAFaceWasHiddenItShowsItsNewLengths) {
    auto* component = makeSpray(20, 100, 60);
    SprayVisual* shown = showSpray({}, component);
    shown->setFaceVisible(1, false);
    shown->setFaceVisible(1, true);
    component->setProperty(8, 400.0);
    scene().rebuildSprayVisual(component);
    pump();
    const auto* rebuilt = dynamic_cast<SprayVisual*>(scene().visuals.at(component->id));
    EXPECT_NEAR(rebuilt->getEntity()->getBoundingBox().getMaximum().x, 200, 2);
}

TEST_F(SprayTest, OneThatIsShownAlreadyIsRefusedLikeAnyOtherObject) {
    auto* component = makeSpray();
    const auto* shown = showSpray({}, component);
    const std::size_t children = scene().root->getChildren().size();
    component->setProperty(8, 400.0);
    scene().addSmartComponent(component);
    EXPECT_THROW(scene().processMsgs(), Ogre::ItemIdentityException);
    EXPECT_EQ(scene().visuals.at(component->id), shown);
    EXPECT_EQ(scene().root->getChildren().size(), children);
}

TEST_F(SprayTest, RebuildingAnUnknownOneThrowsInTheTask) {
    auto* component = makeSpray();
    scene().rebuildSprayVisual(component);
    EXPECT_THAT([] { scene().processMsgs(); },
                testing::ThrowsMessage<std::out_of_range>("unordered_map::at"));
    scene().rebuildSprayVisual(nullptr);
    EXPECT_THROW(scene().processMsgs(), std::invalid_argument);
}

TEST_F(SprayTest, ALoadedStationShowsNoSpray) {
    auto* component = makeSpray();
    smartcomp::AddSmartComponent(*component);
    scene().LoadStation();
    pump();
    EXPECT_FALSE(scene().visuals.contains(component->id));
}

}  // namespace vrn::test
