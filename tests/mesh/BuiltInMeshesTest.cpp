#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "tests/support/EngineFixture.h"

#include <gtest/gtest.h>
#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSubMesh.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <string>

namespace vrn::visual {
namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

Mesh& Global(const char* name) {
    Mesh* mesh = MeshManager::Get()->getGlobalMesh(name);
    if (mesh == nullptr) throw std::runtime_error(std::string("no global mesh ") + name);
    return *mesh;
}

Ogre::MeshPtr OgreMesh(const std::string& name) {
    return Ogre::MeshManager::getSingleton().getByName(name, Ogre::RGN_DEFAULT);
}

void ExpectBounds(const char* name, const Pos& min, const Pos& max) {
    const Box& box = Global(name).getBox();
    // Cones and rings are polygons: their bounds fall short by the height of an arc.
    const float tolerance = 0.03f * (max - min).length();
    EXPECT_LT((box.min - min).length(), tolerance)
        << box.min.x << ' ' << box.min.y << ' ' << box.min.z;
    EXPECT_LT((box.max - max).length(), tolerance)
        << box.max.x << ' ' << box.max.y << ' ' << box.max.z;
}

struct Expected {
    const char* name;
    Pos min, max;
};

void PrintTo(const Expected& e, std::ostream* out) { *out << e.name; }

class BuiltInMesh : public test::EngineTest, public testing::WithParamInterface<Expected> {};

TEST_P(BuiltInMesh, IsUploadedAndStandsWhereItShould) {
    const Expected& expected = GetParam();
    ExpectBounds(expected.name, expected.min, expected.max);
    EXPECT_NE(OgreMesh(expected.name), nullptr);
    const Mesh& mesh = Global(expected.name);
    EXPECT_FALSE(mesh.indices.empty());
    EXPECT_EQ(mesh.normals.size(), mesh.vertices.size());
}

// The middle of a half ring lies in the middle of its sector: 45 degrees from either axis.
constexpr float outer = 153, cut = 153 * 0.7071f, tube = 3;

INSTANTIATE_TEST_SUITE_P(
    MeshManager, BuiltInMesh,
    testing::Values(Expected{"frame_axis_x_shaft", {-0.5f, -0.5f, 0}, {0.5f, 0.5f, 10}},
                    Expected{"frame_axis_head", {-1, -1, 0}, {1, 1, 3}},
                    Expected{"HandleShaft", {-3, -3, 0}, {3, 3, 200}},
                    Expected{"HandleHead", {-10, -10, 0}, {10, 10, 45}},
                    Expected{"torus_sector", {0, 0, -tube}, {outer, outer, tube}},
                    Expected{"torus_full", {-outer, -outer, -tube}, {outer, outer, tube}},
                    Expected{"torus_half", {-outer, 0, -tube}, {outer, outer, tube}},
                    Expected{"joint_arrow_head", {-20, -20, 0}, {20, 20, 200}},
                    Expected{"path_arrow_head", {-5, -5, 0}, {5, 5, 20}},
                    Expected{"mfg_arrow_shaft", {-1, -1, 0}, {1, 1, 25}},
                    Expected{"mfg_arrow_head", {-2, -2, 0}, {2, 2, 8}},
                    Expected{"mfg_arrow", {-2, -2, 0}, {2, 2, 33}},
                    Expected{"TiltHandle", {-outer, -tube, -outer}, {outer, tube, outer}},
                    Expected{"TwistHandle", {-tube, -outer, -outer}, {tube, outer, outer}},
                    Expected{"VectorSphere", {-6, -6, -6}, {6, 6, 6}},
                    Expected{"VectorAxis", {-3, -3, 0}, {3, 3, 180}},
                    Expected{"VectorHead", {-6, -6, 0}, {6, 6, 30}},
                    Expected{"VectorDirHandle", {-6, -6, -6}, {6, 6, 210}},
                    Expected{"PathStartHandle", {-2.5f, -2.5f, -2.5f}, {2.5f, 2.5f, 2.5f}},
                    Expected{"PathEndHandle", {-2.5f, -2.5f, -2.5f}, {2.5f, 2.5f, 2.5f}},
                    Expected{"shaft", {-0.2f, -0.2f, 0}, {0.2f, 0.2f, 15}},
                    Expected{"head", {-0.6f, -0.6f, 0}, {0.6f, 0.6f, 3.75f}},
                    Expected{"uv_indicator", {-2, -0.6f, -0.6f}, {20.8f, 21, 0.6f}},
                    Expected{"DragHandleX", {0, -10, -10}, {245, 10, 10}},
                    Expected{"DragHandleY", {-10, 0, -10}, {10, 245, 10}},
                    Expected{"DragHandleZ", {-10, -10, 0}, {10, 10, 245}},
                    Expected{"DragHandleRoll", {-tube, 0, 0}, {tube, outer, outer}},
                    Expected{"DragHandlePitch", {0, -tube, 0}, {outer, tube, outer}},
                    Expected{"DragHandleYaw", {0, 0, -tube}, {outer, outer, tube}},
                    Expected{"RollHandleFull", {-tube, -outer, -outer}, {tube, outer, outer}},
                    Expected{"PitchHandleFull", {-outer, -tube, -outer}, {outer, tube, outer}},
                    Expected{"YawHandleFull", {-outer, -outer, -tube}, {outer, outer, tube}},
                    Expected{"RollHandleMain", {-tube, -cut, -cut}, {tube, outer, outer}},
                    Expected{"PitchHandleMain", {-cut, -tube, -cut}, {outer, tube, outer}},
                    Expected{"YawHandleMain", {-cut, -cut, -tube}, {outer, outer, tube}},
                    Expected{"RollHandleAssist", {-tube, -outer, -outer}, {tube, cut, cut}},
                    Expected{"PitchHandleAssist", {-outer, -tube, -outer}, {cut, tube, cut}},
                    Expected{"YawHandleAssist", {-outer, -outer, -tube}, {cut, cut, tube}}),
    [](const auto& row) { return std::string(row.param.name); });

class BuiltInMeshes : public test::EngineTest {};

TEST_F(BuiltInMeshes, HaveTheCountsOfTheirTable) {
    EXPECT_EQ(Global("HandleShaft").vertices.size(), 70u);
    EXPECT_EQ(Global("VectorSphere").vertices.size(), 17u * 17u);
    EXPECT_EQ(Global("PathEndHandle").vertices.size(), 33u * 33u);
    EXPECT_EQ(Global("torus_half").vertices.size(), 33u * 17u);
    EXPECT_EQ(Global("torus_sector").vertices[0], (Pos{153, 0, 0}));
    EXPECT_EQ(Global("uv_indicator").vertices.size(),
              2 * (70 + Global("head").vertices.size()) +
                  std::unique_ptr<Mesh>(MeshManager::CreateTextMesh("UV", 3.0))->vertices.size());
}

TEST_F(BuiltInMeshes, MfgArrowTapersTowardsItsTail) {
    const Mesh& arrow = Global("mfg_arrow");
    for (std::size_t i = 0; i < Global("mfg_arrow_shaft").vertices.size(); ++i) {
        const Pos& p = arrow.vertices[i];
        EXPECT_NEAR(Vec(p.x, p.y, 0).length(), p.z / 25, 0.1f) << i;
    }
}

TEST_F(BuiltInMeshes, HandlesStayAsTheyAreWhenTheirNameIsTaken) {
    MeshManager& manager = *MeshManager::Get();
    Mesh* const before = &Global("VectorSphere");
    const auto uploaded = OgreMesh("VectorSphere");
    EXPECT_EQ(manager.createSphereComponent("VectorSphere", 99, 4, 4), before);
    EXPECT_EQ(manager.createCylinderComponent("VectorSphere", 99, 1, 4, 4), before);
    EXPECT_EQ(manager.createConeComponent("VectorSphere", 99, 4), before);
    EXPECT_EQ(manager.createTorusComponent("VectorSphere", 99, 4, 4, 4), before);
    EXPECT_EQ(manager.createTorusSectorComponent("VectorSphere", 1, 99, 4, 4, 4), before);
    EXPECT_EQ(&Global("VectorSphere"), before);
    EXPECT_EQ(before->vertices.size(), 17u * 17u);
    EXPECT_EQ(OgreMesh("VectorSphere"), uploaded);
}

TEST_F(BuiltInMeshes, ComponentsAreStoredUnderTheirName) {
    MeshManager& manager = *MeshManager::Get();
    Mesh* ring = manager.createTorusComponent("test_ring", 10, 1, 1, 2);
    EXPECT_EQ(&Global("test_ring"), ring);
    EXPECT_EQ(ring->vertices.size(), 4u * 4u);
    EXPECT_NE(OgreMesh("test_ring"), nullptr);
    Mesh* none = manager.createSphereComponent("test_nothing", 1, -1, 4);
    EXPECT_TRUE(none->vertices.empty());
    EXPECT_NE(OgreMesh("test_nothing"), nullptr);
}

TEST_F(BuiltInMeshes, AMeshManagerMadeAgainChangesNothing) {
    const auto before = OgreMesh("DragHandleX");
    // Never deleted, like the library's own.
    static const auto* again = new MeshManager;
    EXPECT_EQ(OgreMesh("DragHandleX"), before);
    EXPECT_NE(again->getGlobalMesh("DragHandleX"), nullptr);
}

// ---- the frame of three axes

struct FrameVertex {
    Pos position;
    rob::ColorTemplate<float> color;
};

TEST_F(BuiltInMeshes, FrameIsThreeIndexedTrianglesWithoutWidth) {
    const Ogre::MeshPtr mesh = OgreMesh("VRN_FrameMesh");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(MeshManager::Get()->getGlobalMesh("VRN_FrameMesh"), nullptr);
    ASSERT_EQ(mesh->getNumSubMeshes(), 1u);
    const Ogre::SubMesh* part = mesh->getSubMesh(0);
    EXPECT_EQ(part->operationType, Ogre::RenderOperation::OT_TRIANGLE_LIST);
    ASSERT_EQ(part->indexData->indexCount, 9u);
    ASSERT_EQ(part->vertexData->vertexCount, 6u);

    const auto buffer = part->vertexData->vertexBufferBinding->getBuffer(0);
    ASSERT_EQ(buffer->getVertexSize(), sizeof(FrameVertex));
    std::array<FrameVertex, 6> vertices;
    buffer->readData(0, sizeof vertices, vertices.data());
    std::array<std::uint32_t, 9> indices;
    part->indexData->indexBuffer->readData(0, sizeof indices, indices.data());

    const std::array<Pos, 3> ends{Pos{1, 0, 0}, Pos{0, 1, 0}, Pos{0, 0, 1}};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const FrameVertex& origin = vertices.at(indices[3 * axis]);
        const FrameVertex& end = vertices.at(indices[3 * axis + 1]);
        EXPECT_EQ(origin.position, Pos());
        EXPECT_EQ(end.position, ends[axis]);
        EXPECT_EQ(indices[3 * axis + 2], indices[3 * axis + 1]);
        for (const FrameVertex& vertex : {origin, end}) {
            const auto& c = vertex.color;
            EXPECT_EQ(std::max({c.r, c.g, c.b}), 0.94f);
            EXPECT_EQ(axis == 0 ? c.r : axis == 1 ? c.g : c.b, 0.94f);
        }
        EXPECT_EQ(std::min({origin.color.r, origin.color.g, origin.color.b}), 0.76f);
        EXPECT_LT(std::min({end.color.r, end.color.g, end.color.b}), 0.5f);
    }
}

TEST_F(BuiltInMeshes, FrameIsBoundedByTheUnitAxes) {
    const Ogre::AxisAlignedBox& bounds = OgreMesh("VRN_FrameMesh")->getBounds();
    EXPECT_EQ(bounds.getMinimum(), Ogre::Vector3(0, 0, 0));
    EXPECT_EQ(bounds.getMaximum(), Ogre::Vector3(1, 1, 1));
}

}  // namespace
}  // namespace vrn::visual
