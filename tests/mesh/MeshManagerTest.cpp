#include "mesh/MeshManager.h"

#include "mesh/Mesh.h"
#include "mesh/PaintMesh.h"
#include "suite/geom/TMesh.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

#include <gmock/gmock.h>
#include <OgreEntity.h>
#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubMesh.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <stdexcept>

namespace vrn::visual {
namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using testing::ElementsAre;

// ---- helpers

MeshManager& Manager() { return *MeshManager::Get(); }

Ogre::MeshPtr OgreMesh(const std::string& name) {
    return Ogre::MeshManager::getSingleton().getByName(name, Ogre::RGN_DEFAULT);
}

std::unique_ptr<Mesh> Triangle(const std::string& name, float size = 1) {
    auto mesh = std::make_unique<Mesh>(name);
    mesh->vertices = {{0, 0, 0}, {size, 0, 0}, {0, size, 0}};
    mesh->normals.assign(3, Vec{0, 0, 1});
    mesh->indices = {0, 1, 2};
    return mesh;
}

std::unique_ptr<PaintMesh> PaintTriangle(const std::string& name) {
    auto mesh = std::make_unique<PaintMesh>(name);
    mesh->vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh->normals.assign(3, Vec{0, 0, 1});
    mesh->indices = {0, 1, 2};
    mesh->vertexColors = {{0, 0, 1, 0}, {0.1f, 0.2f, 0.3f, 255}, {}};
    return mesh;
}

std::vector<float> VertexFloats(const std::string& name) {
    const auto buffer =
        OgreMesh(name)->getSubMesh(0)->vertexData->vertexBufferBinding->getBuffer(0);
    std::vector<float> floats(buffer->getSizeInBytes() / sizeof(float));
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
    std::memcpy(floats.data(), lock.pData, buffer->getSizeInBytes());
    return floats;
}

std::vector<std::uint32_t> Indices(const std::string& name) {
    const auto& buffer = OgreMesh(name)->getSubMesh(0)->indexData->indexBuffer;
    std::vector<std::uint32_t> indices(buffer->getNumIndexes());
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
    std::memcpy(indices.data(), lock.pData, buffer->getSizeInBytes());
    return indices;
}

struct Element {
    Ogre::VertexElementSemantic semantic;
    Ogre::VertexElementType type;
    std::size_t offset;
    bool operator==(const Element&) const = default;
};

std::vector<Element> Declaration(const std::string& name) {
    std::vector<Element> elements;
    for (const auto& e :
         OgreMesh(name)->getSubMesh(0)->vertexData->vertexDeclaration->getElements()) {
        EXPECT_EQ(e.getSource(), 0);
        elements.push_back({e.getSemantic(), e.getType(), e.getOffset()});
    }
    return elements;
}

/// Opens the reference counts, which shapes alone fill otherwise.
class CountingManager : public MeshManager {
public:
    void setCount(const std::string& name, std::uint32_t count) { shapeMeshRefs[name] = count; }
    /// 0 if there is no entry.
    std::uint32_t count(const std::string& name) const {
        const auto found = shapeMeshRefs.find(name);
        return found == shapeMeshRefs.end() ? 0 : found->second;
    }
    static CountingManager& get() {
        static auto* manager = new CountingManager;  // like the library's own, never deleted
        return *manager;
    }
};

class MeshManagerTest : public test::EngineTest {
protected:
    /// Deletes a mesh of the manager at the end of the test.
    void keepUntilEnd(const std::string& name) { names.push_back(name); }

    void TearDown() override {
        for (const std::string& name : names) {
            if (Manager().hasMesh(name)) Manager().deleteMesh(Manager().getMesh(name));
            if (OgreMesh(name)) Ogre::MeshManager::getSingleton().remove(name, Ogre::RGN_DEFAULT);
        }
        EngineTest::TearDown();
    }

    /// What a render thread would do with a mesh: an entity in front of the camera, one frame.
    void drawOnce(const std::string& name) {
        Ogre::SceneManager* manager = scene().root->node->getCreator();
        Ogre::Entity* entity = manager->createEntity(OgreMesh(name));
        scene().root->node->attachObject(entity);
        frame();
        manager->destroyEntity(entity);
    }

private:
    std::vector<std::string> names;
};

// ---- registry

TEST_F(MeshManagerTest, GetIsTheGlobalOne) { EXPECT_EQ(MeshManager::Get(), gMeshMgr); }

TEST_F(MeshManagerTest, AddMeshStoresAndUploads) {
    keepUntilEnd("t1");
    Mesh* mesh = Triangle("t1").release();
    EXPECT_FALSE(Manager().hasMesh("t1"));
    Manager().addMesh(mesh);
    EXPECT_EQ(Manager().getMesh("t1"), mesh);
    EXPECT_TRUE(Manager().hasMesh("t1"));
    EXPECT_NE(OgreMesh("t1"), nullptr);
    EXPECT_EQ(Manager().getGlobalMesh("t1"), nullptr);
}

TEST_F(MeshManagerTest, AddMeshOfATakenNameKeepsTheFirstAndUploadsNothing) {
    keepUntilEnd("t2");
    Mesh* first = Triangle("t2", 1).release();
    Manager().addMesh(first);
    const auto second = Triangle("t2", 5);
    Ogre::MeshManager::getSingleton().remove("t2", Ogre::RGN_DEFAULT);
    Manager().addMesh(second.get());
    EXPECT_EQ(Manager().getMesh("t2"), first);
    EXPECT_EQ(OgreMesh("t2"), nullptr);
}

TEST_F(MeshManagerTest, AddPaintMeshReplacesTheRecordAndKeepsTheOgreMesh) {
    keepUntilEnd("t3");
    const auto first = PaintTriangle("t3");
    Manager().addPaintMesh(first.get());
    auto second = PaintTriangle("t3");
    second->vertices[1].x = 7;
    const auto uploaded = OgreMesh("t3");
    Manager().addPaintMesh(second.get());
    EXPECT_EQ(Manager().getMesh("t3"), second.release());
    EXPECT_EQ(OgreMesh("t3"), uploaded);
    EXPECT_EQ(VertexFloats("t3")[10], 1.0f);
}

TEST_F(MeshManagerTest, AddGlobalMeshOfATakenNameKeepsTheFirstAndUploadsAgainIfOgreLostIt) {
    keepUntilEnd("t4");
    Mesh* first = Triangle("t4").release();
    Manager().addGlobalMesh(first);
    const auto second = Triangle("t4", 5);
    Ogre::MeshManager::getSingleton().remove("t4", Ogre::RGN_DEFAULT);
    Manager().addGlobalMesh(second.get());
    EXPECT_EQ(Manager().getGlobalMesh("t4"), first);
    EXPECT_NE(OgreMesh("t4"), nullptr);
}

TEST_F(MeshManagerTest, UnknownNamesAreNullAmongTheGlobalAndAnErrorAmongTheOthers) {
    EXPECT_EQ(Manager().getGlobalMesh("nobody"), nullptr);
    EXPECT_FALSE(Manager().hasMesh("nobody"));
    try {
        static_cast<void>(Manager().getMesh("nobody"));
        FAIL();
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ(e.what(), "unordered_map::at");
    }
}

TEST_F(MeshManagerTest, DeleteMeshRemovesRecordAndOgreMesh) {
    Mesh* mesh = Triangle("t5").release();
    Manager().addMesh(mesh);
    Manager().deleteMesh(mesh);
    EXPECT_FALSE(Manager().hasMesh("t5"));
    EXPECT_EQ(OgreMesh("t5"), nullptr);
}

TEST_F(MeshManagerTest, DeleteMeshDeletesAPaintMeshThroughEitherPointer) {
    // The address sanitizer tells if it were deleted as a plain mesh.
    PaintMesh* paint = PaintTriangle("t6").release();
    Manager().addPaintMesh(paint);
    Manager().deleteMesh(paint);
    Manager().addPaintMesh(PaintTriangle("t6").release());
    Manager().deleteMesh(Manager().getMesh("t6"));
    EXPECT_FALSE(Manager().hasMesh("t6"));
    EXPECT_EQ(OgreMesh("t6"), nullptr);
    // The name is free for a plain mesh again.
    Manager().addMesh(Triangle("t6").release());
    Manager().deleteMesh(Manager().getMesh("t6"));
}

TEST_F(MeshManagerTest, DeleteMeshSurvivesAnOgreMeshThatIsGone) {
    Mesh* mesh = Triangle("t7").release();
    Manager().addMesh(mesh);
    Ogre::MeshManager::getSingleton().remove("t7", Ogre::RGN_DEFAULT);
    EXPECT_NO_THROW(Manager().deleteMesh(mesh));
    EXPECT_FALSE(Manager().hasMesh("t7"));
}

TEST_F(MeshManagerTest, DeleteMeshRefusesWhatIsNotRegistered) {
    keepUntilEnd("t8");
    const auto stranger = Triangle("t8");
    EXPECT_THROW(Manager().deleteMesh(stranger.get()), std::out_of_range);
    EXPECT_THROW(Manager().deleteMesh(static_cast<Mesh*>(nullptr)), std::out_of_range);
    EXPECT_THROW(Manager().deleteMesh(static_cast<PaintMesh*>(nullptr)), std::out_of_range);
    Manager().addMesh(Triangle("t8").release());
    EXPECT_THROW(Manager().deleteMesh(stranger.get()), std::out_of_range);
    EXPECT_TRUE(Manager().hasMesh("t8"));
}

TEST_F(MeshManagerTest, RemoveOgreMeshCountsDownAndRemovesWithTheLast) {
    keepUntilEnd("shape");
    CountingManager& counting = CountingManager::get();
    counting.loadToGpu(Triangle("shape").get());
    counting.setCount("shape", 2);
    counting.removeOgreMesh("shape");
    EXPECT_EQ(counting.count("shape"), 1u);
    EXPECT_NE(OgreMesh("shape"), nullptr);
    counting.removeOgreMesh("shape");
    EXPECT_EQ(counting.count("shape"), 0u);
    EXPECT_EQ(OgreMesh("shape"), nullptr);
}

TEST_F(MeshManagerTest, RemoveOgreMeshIgnoresNamesWithoutReferences) {
    keepUntilEnd("t9");
    Manager().addMesh(Triangle("t9").release());
    Manager().removeOgreMesh("t9");
    Manager().removeOgreMesh("nobody");
    EXPECT_NE(OgreMesh("t9"), nullptr);
}

TEST_F(MeshManagerTest, RemoveOgreMeshSurvivesAnOgreMeshThatIsGone) {
    CountingManager& counting = CountingManager::get();
    counting.setCount("lost", 1);
    EXPECT_NO_THROW(counting.removeOgreMesh("lost"));
    EXPECT_EQ(counting.count("lost"), 0u);
}

// ---- upload

TEST_F(MeshManagerTest, UploadInterleavesPositionNormalAndColour) {
    keepUntilEnd("u1");
    auto mesh = Triangle("u1");
    mesh->colors = {{1, 0, 0}, {0.25f, 0.5f, 0.75f}, {0, 0, 1}};
    Manager().loadToGpu(mesh.get());
    EXPECT_THAT(Declaration("u1"), ElementsAre(Element{Ogre::VES_POSITION, Ogre::VET_FLOAT3, 0},
                                               Element{Ogre::VES_NORMAL, Ogre::VET_FLOAT3, 12},
                                               Element{Ogre::VES_DIFFUSE, Ogre::VET_FLOAT3, 24}));
    const std::vector<float> floats = VertexFloats("u1");
    ASSERT_EQ(floats.size(), 27u);
    EXPECT_THAT(std::vector(floats.begin() + 9, floats.begin() + 18),
                ElementsAre(1, 0, 0, 0, 0, 1, 0.25f, 0.5f, 0.75f));
    EXPECT_THAT(Indices("u1"), ElementsAre(0, 1, 2));
    const Ogre::SubMesh* part = OgreMesh("u1")->getSubMesh(0);
    EXPECT_EQ(OgreMesh("u1")->getNumSubMeshes(), 1u);
    EXPECT_FALSE(part->useSharedVertices);
    EXPECT_EQ(part->operationType, Ogre::RenderOperation::OT_TRIANGLE_LIST);
    EXPECT_EQ(part->vertexData->vertexCount, 3u);
    EXPECT_EQ(part->indexData->indexCount, 3u);
    EXPECT_EQ(part->indexData->indexBuffer->getType(), Ogre::HardwareIndexBuffer::IT_32BIT);
    const auto buffer = part->vertexData->vertexBufferBinding->getBuffer(0);
    EXPECT_EQ(buffer->getUsage(), Ogre::HBU_GPU_ONLY | Ogre::HBU_DETAIL_WRITE_ONLY);
    EXPECT_FALSE(buffer->hasShadowBuffer());
}

TEST_F(MeshManagerTest, UploadLeavesOutWhatTheRecordLacks) {
    keepUntilEnd("u2");
    keepUntilEnd("u3");
    auto bare = Triangle("u2");
    bare->normals.clear();
    Manager().loadToGpu(bare.get());
    EXPECT_THAT(Declaration("u2"), ElementsAre(Element{Ogre::VES_POSITION, Ogre::VET_FLOAT3, 0}));
    auto coloured = Triangle("u3");
    coloured->normals.clear();
    coloured->colors.assign(3, {1, 0, 0});
    Manager().loadToGpu(coloured.get());
    EXPECT_THAT(Declaration("u3"), ElementsAre(Element{Ogre::VES_POSITION, Ogre::VET_FLOAT3, 0},
                                               Element{Ogre::VES_DIFFUSE, Ogre::VET_FLOAT3, 12}));
}

TEST_F(MeshManagerTest, UploadOfAKnownNameChangesNothing) {
    keepUntilEnd("u4");
    Manager().loadToGpu(Triangle("u4", 1).get());
    const auto before = OgreMesh("u4");
    auto other = Triangle("u4", 9);
    other->colors.resize(1);  // would be refused if it were looked at
    Manager().loadToGpu(other.get());
    EXPECT_EQ(OgreMesh("u4"), before);
    EXPECT_EQ(VertexFloats("u4")[6], 1.0f);
    EXPECT_FALSE(other->boxValid);
}

TEST_F(MeshManagerTest, UploadGivesTheBoundsOfTheRecordWithoutAMargin) {
    keepUntilEnd("u5");
    const auto mesh = Triangle("u5", 4);
    Manager().loadToGpu(mesh.get());
    EXPECT_TRUE(mesh->boxValid);
    const Ogre::AxisAlignedBox& bounds = OgreMesh("u5")->getBounds();
    EXPECT_TRUE(bounds.isFinite());
    EXPECT_EQ(bounds.getMinimum(), Ogre::Vector3(0, 0, 0));
    EXPECT_EQ(bounds.getMaximum(), Ogre::Vector3(4, 4, 0));
    EXPECT_GT(OgreMesh("u5")->getBoundingSphereRadius(), 0.0f);
}

TEST_F(MeshManagerTest, UploadOfNoVerticesDrawsNothingAndSurvivesAFrame) {
    keepUntilEnd("u6");
    Mesh empty("u6");
    Manager().loadToGpu(&empty);
    const Ogre::SubMesh* part = OgreMesh("u6")->getSubMesh(0);
    EXPECT_EQ(part->vertexData->vertexCount, 0u);
    EXPECT_EQ(part->vertexData->vertexBufferBinding->getBufferCount(), 0u);
    EXPECT_EQ(part->indexData->indexCount, 0u);
    EXPECT_TRUE(OgreMesh("u6")->getBounds().isNull());
    EXPECT_NO_THROW(drawOnce("u6"));
}

TEST_F(MeshManagerTest, AMeshWhoseBoundsWouldOverflowIsTakenToBeEverywhereAndSurvivesAFrame) {
    keepUntilEnd("u9");
    Manager().loadToGpu(Triangle("u9", 3e38f).get());
    EXPECT_TRUE(OgreMesh("u9")->getBounds().isInfinite());
    EXPECT_NO_THROW(drawOnce("u9"));
}

TEST_F(MeshManagerTest, UploadOfVerticesThatAreNotFiniteSurvivesAFrame) {
    keepUntilEnd("u7");
    keepUntilEnd("u8");
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    auto some = Triangle("u7");
    some->vertices[1].x = nan;
    Manager().loadToGpu(some.get());
    EXPECT_TRUE(OgreMesh("u7")->getBounds().isFinite());
    EXPECT_EQ(OgreMesh("u7")->getBounds().getMaximum(), Ogre::Vector3(0, 1, 0));
    EXPECT_NO_THROW(drawOnce("u7"));
    auto all = Triangle("u8");
    for (Pos& p : all->vertices) p.z = std::numeric_limits<float>::infinity();
    Manager().loadToGpu(all.get());
    EXPECT_TRUE(OgreMesh("u8")->getBounds().isNull());
    EXPECT_NO_THROW(drawOnce("u8"));
}

TEST_F(MeshManagerTest, UploadRefusesCountsThatDoNotFit) {
    const auto refused = [](auto change) {
        auto mesh = Triangle("refused");
        change(*mesh);
        EXPECT_THROW(Manager().loadToGpu(mesh.get()), std::invalid_argument);
        EXPECT_THROW(Manager().addMesh(mesh.get()), std::invalid_argument);
        EXPECT_THROW(Manager().addGlobalMesh(mesh.get()), std::invalid_argument);
        EXPECT_EQ(OgreMesh("refused"), nullptr);
        EXPECT_FALSE(Manager().hasMesh("refused"));
        EXPECT_EQ(Manager().getGlobalMesh("refused"), nullptr);
    };
    refused([](Mesh& mesh) { mesh.normals.pop_back(); });
    refused([](Mesh& mesh) { mesh.normals.resize(4); });
    refused([](Mesh& mesh) { mesh.colors.resize(2); });
    refused([](Mesh& mesh) { mesh.indices[1] = 3; });
    refused([](Mesh& mesh) { mesh.vertices.clear(); });
}

TEST_F(MeshManagerTest, UploadSaysWhatDoesNotFit) {
    auto mesh = Triangle("short");
    mesh->colors.resize(2);
    try {
        Manager().loadToGpu(mesh.get());
        FAIL();
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "mesh \"short\" has 3 vertices but 2 colours");
    }
}

TEST_F(MeshManagerTest, NullIsRefused) {
    EXPECT_THROW(Manager().addMesh(nullptr), std::invalid_argument);
    EXPECT_THROW(Manager().addPaintMesh(nullptr), std::invalid_argument);
    EXPECT_THROW(Manager().addGlobalMesh(nullptr), std::invalid_argument);
    EXPECT_THROW(Manager().loadToGpu(static_cast<Mesh*>(nullptr)), std::invalid_argument);
    EXPECT_THROW(Manager().loadToGpu(static_cast<PaintMesh*>(nullptr)), std::invalid_argument);
}

TEST_F(MeshManagerTest, PaintUploadHas40BytesAVertex) {
    keepUntilEnd("p1");
    const auto paint = PaintTriangle("p1");
    Manager().loadToGpu(paint.get());
    EXPECT_THAT(Declaration("p1"), ElementsAre(Element{Ogre::VES_POSITION, Ogre::VET_FLOAT3, 0},
                                               Element{Ogre::VES_NORMAL, Ogre::VET_FLOAT3, 12},
                                               Element{Ogre::VES_DIFFUSE, Ogre::VET_FLOAT4, 24}));
    const std::vector<float> floats = VertexFloats("p1");
    ASSERT_EQ(floats.size(), 30u);
    EXPECT_THAT(std::vector(floats.begin() + 10, floats.begin() + 20),
                ElementsAre(1, 0, 0, 0, 0, 1, 0.1f, 0.2f, 0.3f, 255));
}

TEST_F(MeshManagerTest, PaintUploadNeedsNormalsAndColoursOnEachVertex) {
    auto bare = PaintTriangle("p2");
    bare->normals.clear();
    EXPECT_THROW(Manager().addPaintMesh(bare.get()), std::invalid_argument);
    auto shortOne = PaintTriangle("p2");
    shortOne->vertexColors.pop_back();
    EXPECT_THROW(Manager().addPaintMesh(shortOne.get()), std::invalid_argument);
    EXPECT_FALSE(Manager().hasMesh("p2"));
    EXPECT_EQ(OgreMesh("p2"), nullptr);
}

TEST_F(MeshManagerTest, PaintUploadOfNoVerticesSurvivesAFrame) {
    keepUntilEnd("p3");
    PaintMesh empty("p3");
    Manager().loadToGpu(&empty);
    EXPECT_NO_THROW(drawOnce("p3"));
}

// ---- files and the machining side

TEST_F(MeshManagerTest, LoadStlStoresUnderTheUri) {
    const std::string uri = writeBoxStl("box.stl", {0, 0, 0}, {1, 2, 3}).string();
    keepUntilEnd(uri);
    Mesh* mesh = Manager().loadStl(uri);
    EXPECT_EQ(mesh->vertices.size(), 36u);
    EXPECT_EQ(Manager().getMesh(uri), mesh);
    EXPECT_EQ(OgreMesh(uri)->getBounds().getMaximum(), Ogre::Vector3(1, 2, 3));
}

TEST_F(MeshManagerTest, LoadStlOfATakenNameKeepsAndReturnsTheEarlierRecord) {
    const std::string uri = writeBoxStl("again.stl", {0, 0, 0}, {1, 2, 3}).string();
    keepUntilEnd(uri);
    Mesh* first = Manager().loadStl(uri);
    writeBoxStl("again.stl", {0, 0, 0}, {9, 9, 9});
    EXPECT_EQ(Manager().loadStl(uri), first);
    EXPECT_EQ(first->vertices.size(), 36u);
    EXPECT_EQ(OgreMesh(uri)->getBounds().getMaximum(), Ogre::Vector3(1, 2, 3));
}

TEST_F(MeshManagerTest, LoadStlTakesTwoSpellingsOfTheExtension) {
    const std::string upper = writeBoxStl("UPPER.STL", {0, 0, 0}, {1, 1, 1}).string();
    keepUntilEnd(upper);
    EXPECT_NO_THROW(Manager().loadStl(upper));
    for (const std::string& uri : {writeBoxStl("mixed.Stl", {0, 0, 0}, {1, 1, 1}).string(),
                                   std::string("stl"), std::string(), std::string("part.obj")}) {
        try {
            Manager().loadStl(uri);
            ADD_FAILURE() << uri;
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "Not stl file");
        }
    }
}

TEST_F(MeshManagerTest, LoadStlKeepsNothingOfAFailedRead) {
    const std::string uri = (folder() / "cut.stl").string();
    std::ofstream(uri) << "solid a\nfacet normal 0 0 1\nouter loop\nvertex 1 2 3\n";
    EXPECT_THROW(Manager().loadStl(uri), std::runtime_error);
    EXPECT_FALSE(Manager().hasMesh(uri));
    EXPECT_EQ(OgreMesh(uri), nullptr);
}

TEST_F(MeshManagerTest, LoadStlOfAnEmptySolidUploadsAnEmptyMesh) {
    const std::string uri = (folder() / "empty.stl").string();
    keepUntilEnd(uri);
    std::ofstream(uri) << "solid nothing\nendsolid nothing\n";
    EXPECT_TRUE(Manager().loadStl(uri)->vertices.empty());
    EXPECT_NO_THROW(drawOnce(uri));
}

cadcam::TMesh<double> Tent(double height) {
    return {{{0, 0, 0}, {10, 0, 0}, {5, 0.25, height}, {5, 8, 0}}, {{0, 1, 2}, {1, 3, 2}}};
}

TEST_F(MeshManagerTest, LoadCamMeshTakesVerticesAndTrianglesAsTheyAre) {
    keepUntilEnd("CAM_MESH");
    const auto tent = Tent(4);
    const Mesh* mesh = Manager().loadCamMesh(&tent);
    EXPECT_EQ(Manager().getMesh("CAM_MESH"), mesh);
    EXPECT_THAT(mesh->vertices,
                ElementsAre(Pos{0, 0, 0}, Pos{10, 0, 0}, Pos{5, 0.25f, 4}, Pos{5, 8, 0}));
    EXPECT_THAT(mesh->indices, ElementsAre(0, 1, 2, 1, 3, 2));
    ASSERT_EQ(mesh->normals.size(), 4u);
    for (const Vec& normal : mesh->normals) EXPECT_NEAR(normal.length(), 1.0f, 1e-5f);
    EXPECT_NE(OgreMesh("CAM_MESH"), nullptr);
}

TEST_F(MeshManagerTest, LoadCamMeshReplacesTheEarlierOne) {
    keepUntilEnd("CAM_MESH");
    const auto low = Tent(1), high = Tent(50);
    Manager().loadCamMesh(&low);
    const Mesh* mesh = Manager().loadCamMesh(&high);
    EXPECT_EQ(mesh->vertices[2].z, 50.0f);
    EXPECT_EQ(OgreMesh("CAM_MESH")->getBounds().getMaximum().z, 50.0f);
}

TEST_F(MeshManagerTest, LoadCamMeshRefusesWhatItCannotShowAndKeepsTheEarlierOne) {
    keepUntilEnd("CAM_MESH");
    const auto tent = Tent(4);
    const Mesh* earlier = Manager().loadCamMesh(&tent);
    auto bad = Tent(5);
    bad.triangles.push_back({0, 1, 4});
    EXPECT_THROW(Manager().loadCamMesh(&bad), std::out_of_range);
    EXPECT_THROW(Manager().loadCamMesh(nullptr), std::invalid_argument);
    EXPECT_EQ(Manager().getMesh("CAM_MESH"), earlier);
}

TEST_F(MeshManagerTest, LoadCamMeshOfNothingIsEmpty) {
    keepUntilEnd("CAM_MESH");
    const cadcam::TMesh<double> nothing;
    EXPECT_TRUE(Manager().loadCamMesh(&nothing)->vertices.empty());
}

}  // namespace
}  // namespace vrn::visual
