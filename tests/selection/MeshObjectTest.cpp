#include "selection/MeshObject.h"

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "selection/Ray.h"
#include "selection/SensitiveMesh.h"
#include "selection/VisualSelection.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/MeshVisual.h"

#include <OgreSceneNode.h>

#include <gtest/gtest.h>
#include <cfloat>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace vrn::selection {

namespace {

using visual::MeshVisual;
using visual::Ray;
using visual::Visual;
using Line = rob::LineTemplate<float>;
using Pos = rob::PosTemplate<float>;
using Triangle = rob::TriangleTemplate<float>;
using Vec = rob::Vec3Template<float>;

/// A mesh visual on a record of two triangles: one with the box (0, 0, 0) to (2, 4, 6), and a
/// larger one at z = 10 whose corner of the right angle is (0, 0, 10).
class MeshObjectTest : public test::EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        top = new Visual(scene().root);
        mesh = new visual::Mesh("MeshObjectTest mesh");
        mesh->vertices = {{0, 0, 0}, {2, 4, 0}, {2, 4, 6}, {0, 0, 10}, {8, 0, 10}, {0, 8, 10}};
        mesh->indices = {0, 1, 2, 3, 4, 5};
        visual::MeshManager::Get()->addMesh(mesh);
        shown = new MeshVisual("MeshObjectTest", top);
        shown->attachMesh(mesh->name);
    }
    void TearDown() override {
        top->clearChildren();  // before the mesh that they show
        visual::MeshManager::Get()->deleteMesh(mesh);
        EngineTest::TearDown();
    }
    static void expectNear(const Pos& got, const Pos& wanted) {
        EXPECT_LT((got - wanted).length(), 1e-3f)
            << got.x << ", " << got.y << ", " << got.z << " and not " << wanted.x << ", "
            << wanted.y << ", " << wanted.z;
    }

    Visual* top = nullptr;
    visual::Mesh* mesh = nullptr;
    MeshVisual* shown = nullptr;
};

}  // namespace

TEST_F(MeshObjectTest, StandsForItsVisualWithoutBuildingAnything) {
    MeshObject object(shown);
    EXPECT_EQ(static_cast<int>(object.kind), 2);
    EXPECT_EQ(object.scale, (Vec{1, 1, 1}));
    EXPECT_TRUE(object.primitives.empty());
    EXPECT_EQ(object.getName(), "");
}

TEST_F(MeshObjectTest, OnePrimitiveStandsForTheWholeMesh) {
    MeshObject object(shown);
    object.buildBVH();
    ASSERT_EQ(object.primitives.size(), 1u);
    const auto& sensitive = dynamic_cast<SensitiveMesh&>(*object.primitives[0]);
    EXPECT_EQ(sensitive.mesh, mesh);
    EXPECT_EQ(sensitive.visual, shown);
    EXPECT_EQ(sensitive.location, rob::PoseTemplate<float>());
    object.buildBVH();
    EXPECT_EQ(object.primitives.size(), 1u);
}

TEST_F(MeshObjectTest, BoxIsThatOfTheMeshAtTheWorldPlaceOfTheVisual) {
    top->setPosition(100, 0, 0);
    shown->setPose(
        {{0, 10, 0}, rob::RotationTemplate<float>(std::numbers::pi_v<float> / 2, Vec{0, 0, 1})});
    MeshObject object(shown);
    object.updateWorldBox();
    expectNear(object.box.min, {92, 10, 0});
    expectNear(object.box.max, {100, 18, 10});
    expectNear(object.box.center, {96, 14, 5});
    EXPECT_FALSE(object.box.dirty);
    EXPECT_FALSE(object.worldBoxDirty);
    EXPECT_TRUE(object.bvhBuilt);
}

TEST_F(MeshObjectTest, InversePoseLeadsFromTheWorldToTheVisual) {
    shown->setPose({{1, 2, 3}, rob::RotationTemplate<float>(0.7f, Vec{0, 0.6f, 0.8f})});
    MeshObject object(shown);
    object.updateWorldBox();
    const Pos local{4, 5, 6};
    expectNear(TransformPoint(object.inverseWorldPose, TransformPoint(object.worldPose, local)),
               local);
    EXPECT_EQ(object.worldPose, shown->getWorldPose());
}

TEST_F(MeshObjectTest, BoxTakesTheDerivedScaleAndTheInversePoseDoesNot) {
    top->setScale(2, 1, 1);
    shown->setScale(5, 3, 1);
    shown->setPosition(1, 1, 1);
    MeshObject object(shown);
    object.updateWorldBox();
    expectNear({object.scale.x, object.scale.y, object.scale.z}, {10, 3, 1});
    const Pos at = shown->getWorldPosition();
    expectNear(object.box.min, at);
    expectNear(object.box.max, {at.x + 80, at.y + 24, at.z + 10});
    expectNear(TransformPoint(object.inverseWorldPose, at), {0, 0, 0});
}

TEST_F(MeshObjectTest, NothingHappensUntilTheVisualMoved) {
    MeshObject object(shown);
    object.updateWorldBox();
    shown->setPosition(50, 0, 0);
    object.updateWorldBox();
    expectNear(object.box.min, {0, 0, 0});
    object.worldBoxDirty = true;
    object.updateWorldBox();
    expectNear(object.box.min, {50, 0, 0});
}

TEST_F(MeshObjectTest, VisualWithoutAMeshHasTheEmptyBox) {
    auto* bare = new MeshVisual("bare", top);
    bare->setPosition(1, 2, 3);
    MeshObject object(bare);
    object.updateWorldBox();
    EXPECT_FALSE(object.box.isValid());
    EXPECT_FALSE(object.worldBoxDirty);
    EXPECT_FALSE(object.intersect(Ray{{0, 0, 100}, {0, 0, -1}}).hit);
    EXPECT_FALSE(object.intersect(Line{{0, 0, 100}, {0, 0, -100}}).hit);
    EXPECT_FALSE(object.intersect(Triangle{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).hit);
}

TEST_F(MeshObjectTest, AVisualThatIsNoMeshVisualBuildsNothing) {
    auto* paint = new Visual(top);
    paint->type = VisualType::Paint;
    MeshObject object(paint);
    object.updateWorldBox();
    EXPECT_TRUE(object.primitives.empty());
    EXPECT_FALSE(object.box.isValid());
}

TEST_F(MeshObjectTest, GlobalMeshIsFoundBeforeTheRegistry) {
    visual::Mesh* arrow = visual::MeshManager::Get()->getGlobalMesh("mfg_arrow");
    ASSERT_NE(arrow, nullptr);
    shown->attachMesh("mfg_arrow");
    MeshObject object(shown);
    object.updateWorldBox();
    expectNear(object.box.min, arrow->getBox().min);
    expectNear(object.box.max, arrow->getBox().max);
}

TEST_F(MeshObjectTest, AMeshWithoutTrianglesIsNeverHit) {
    mesh->indices.clear();
    MeshObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(Ray{{1, 1, 100}, {0, 0, -1}}).hit);
}

TEST_F(MeshObjectTest, ARayTellsVisualAndPlaceAndNeitherPoseNorShape) {
    top->setPosition(1000, 0, 0);
    MeshObject object(shown);
    object.updateWorldBox();
    const Result hit = object.intersect(Ray{{1002, 3, 100}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    EXPECT_NEAR(hit.distance, 90, 1e-3);
    expectNear(hit.position, {1002, 3, 10});
    expectNear(hit.localPosition, {2, 3, 10});
    EXPECT_EQ(hit.visual, shown);
    EXPECT_EQ(hit.pose, rob::PoseTemplate<float>());
    EXPECT_TRUE(hit.shape.IsNull());
    EXPECT_TRUE(hit.face.IsNull());
}

TEST_F(MeshObjectTest, ARayAtTheScaledSurfaceHitsAtTheTruePointWithTheDistanceOfTheMesh) {
    shown->setScale(10, 20, 5);
    shown->setPose(
        {{1000, 0, 0}, rob::RotationTemplate<float>(std::numbers::pi_v<float> / 2, Vec{0, 0, 1})});
    MeshObject object(shown);
    object.updateWorldBox();
    // Local (2, 3, 10) is scaled to (20, 60, 50) and turned to (-60, 20, 50).
    const Result hit = object.intersect(Ray{{940, 20, 150}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    expectNear(hit.position, {940, 20, 50});
    expectNear(hit.localPosition, {2, 3, 10});
    EXPECT_NEAR(hit.distance, 20, 1e-3);  // 100 in the world, a fifth of it in the mesh
    // Where the mesh would be without its scale there is nothing.
    EXPECT_FALSE(object.intersect(Ray{{1000 - 7, 7, 150}, {0, 0, -1}}).position.z > 50.1f);
}

TEST_F(MeshObjectTest, ANegativeScaleMirrorsWhatIsHit) {
    shown->setScale(-2, 1, 1);
    MeshObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(Ray{{4, 3, 100}, {0, 0, -1}}).hit);
    const Result hit = object.intersect(Ray{{-4, 3, 100}, {0, 0, -1}});
    ASSERT_TRUE(hit.hit);
    expectNear(hit.position, {-4, 3, 10});
}

TEST_F(MeshObjectTest, ADirectionWithoutLengthInTheMeshIsRefused) {
    shown->setScale(1e8, 1e8, 1e8);
    MeshObject object(shown);
    object.updateWorldBox();
    try {
        (void)object.intersect(Ray{{0, 0, 0}, {0, 0, -1}});
        FAIL() << "no exception";
    } catch (const std::overflow_error& e) {
        EXPECT_STREQ(e.what(), "0-length vector cannot be normalized.");
    }
    shown->setScale(1, 1, 1);
    object.worldBoxDirty = true;
    object.updateWorldBox();
    EXPECT_THROW((void)object.intersect(Ray{{0, 0, 0}, {0, 0, 0}}), std::overflow_error);
}

TEST_F(MeshObjectTest, AMeshFlattenedToNothingIsNeverHit) {
    shown->setScale(1, 1, 0);
    MeshObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(Ray{{2, 3, 100}, {0, 0, -1}}).hit);
    EXPECT_FALSE(object.intersect(Ray{{2, 3, 100}, {0.6f, 0, -0.8f}}).hit);
}

TEST_F(MeshObjectTest, AContactTestPassesOverAMeshFlattenedToNothing) {
    shown->setScale(1, 1, 0);
    MeshObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(Line{{2, 2, 0}, {2, 2, 10}}).hit);
    EXPECT_FALSE(object.intersect(Line{{2, 2, -10}, {2, 2, 10}}).hit);
}

TEST_F(MeshObjectTest, AVisualThatShowsAnotherMeshIsPickedAsItLooks) {
    auto* other = new visual::Mesh("MeshObjectTest other");
    other->vertices = {{500, 0, 0}, {520, 0, 0}, {500, 20, 0}};
    other->indices = {0, 1, 2};
    visual::MeshManager::Get()->addMesh(other);
    auto* registry = VisualSelection::Get();
    registry->addMeshVisual(shown, /*detectable=*/true, /*priority=*/false);
    pump();
    shown->attachMesh(other->name);
    EXPECT_TRUE(registry->dirty);
    pump();
    EXPECT_NEAR(registry->getObject(shown)->box.min.x, 500, 1);
    top->clearChildren();
    visual::MeshManager::Get()->deleteMesh(other);
}

TEST_F(MeshObjectTest, ARayOfNaNHitsNothing) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    MeshObject object(shown);
    object.updateWorldBox();
    EXPECT_FALSE(object.intersect(Ray{{nan, 0, 0}, {0, 0, -1}}).hit);
    EXPECT_FALSE(object.intersect(Ray{{2, 3, 100}, {0, nan, -1}}).hit);
}

TEST_F(MeshObjectTest, ALineTellsVisualAndPlaceThroughTheScale) {
    shown->setScale(10, 20, 5);
    shown->setPosition(1000, 0, 0);
    MeshObject object(shown);
    object.updateWorldBox();
    const Result hit = object.intersect(Line{{1020, 60, 150}, {1020, 60, -50}});
    ASSERT_TRUE(hit.hit);
    EXPECT_NEAR(hit.distance, 0.5f, 1e-5);
    expectNear(hit.position, {1020, 60, 50});
    EXPECT_EQ(hit.visual, shown);
    EXPECT_FALSE(object.intersect(Line{{1020, 60, 150}, {1020, 60, 51}}).hit);
}

TEST_F(MeshObjectTest, ATriangleTellsTheVisualThroughTheScale) {
    shown->setScale(10, 20, 5);
    shown->setPosition(1000, 0, 0);
    MeshObject object(shown);
    object.updateWorldBox();
    const Result hit = object.intersect(Triangle{{1020, 60, 30}, {1025, 60, 80}, {1022, 70, 80}});
    ASSERT_TRUE(hit.hit);
    EXPECT_EQ(hit.visual, shown);
    EXPECT_EQ(hit.distance, FLT_MAX);
    EXPECT_FALSE(object.intersect(Triangle{{1020, 60, 60}, {1025, 60, 80}, {1022, 70, 80}}).hit);
}

TEST_F(MeshObjectTest, ABoxReachesTheTrianglesTurnedAndMovedBackButNotUnscaled) {
    shown->setScale(10, 10, 10);
    shown->setPosition(1000, 0, 0);
    MeshObject object(shown);
    object.updateWorldBox();
    const auto trianglesIn = [&](const visual::Box& region) {
        std::vector<unsigned int> numbers;
        object.processIntersectionsWith(region, [&](unsigned int i) { numbers.push_back(i); });
        return numbers;
    };
    EXPECT_EQ(trianglesIn(visual::Box{1000, 0, 9.5f, 1001, 1, 10}), (std::vector<unsigned int>{1}));
    EXPECT_EQ(trianglesIn(visual::Box{1000, 0, 0, 1001, 1, 1}), (std::vector<unsigned int>{0}));
    EXPECT_TRUE(trianglesIn(visual::Box{1000, 0, 95, 1010, 10, 100}).empty());
    EXPECT_TRUE(trianglesIn(visual::Box()).empty());
}

}  // namespace vrn::selection
