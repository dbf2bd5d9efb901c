#include <gmock/gmock.h>

#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "suite/geom/TMesh.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/CamMeshVisual.h"

namespace vrn::test {

namespace {

using visual::CamMeshVisual;
using visual::Visual;

constexpr const char* entityName = "CAM_MESH_ENTITY";

cadcam::TMesh<double> Fan(std::uint32_t triangles) {
    cadcam::TMesh<double> mesh;
    mesh.vertices.push_back({0, 0, 0});
    for (std::uint32_t i = 0; i <= triangles; ++i) {
        mesh.vertices.push_back({10.0, static_cast<double>(i), 0});
        if (i > 0) mesh.triangles.push_back({0, i, i + 1});
    }
    return mesh;
}

}  // namespace

class CamMeshVisuals : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
    static Ogre::Entity* shown() { return scene().sceneManager->getEntity(entityName); }
    static bool isShown() { return scene().sceneManager->hasEntity(entityName); }
};

TEST_F(CamMeshVisuals, TheMeshIsShownAsTheOneEntityOfItsName) {
    cadcam::TMesh<double> mesh = Fan(3);
    auto* visual = CamMeshVisual::Build(&mesh, root());
    EXPECT_TRUE(visual->hasAttachedObject(entityName));
    for (const std::string& name :
         {visual->material, visual->selectedMaterial, visual->highlightedMaterial,
          shown()->getSubEntity(0)->getMaterialName()})
        EXPECT_EQ(name, "MeshBody");
    EXPECT_NO_THROW(frame());
    scene().deleteVisual(visual);
    EXPECT_FALSE(isShown());
}

TEST_F(CamMeshVisuals, ALaterVisualTakesTheEntityOver) {
    cadcam::TMesh<double> small = Fan(1), large = Fan(5);
    auto* first = CamMeshVisual::Build(&small, root());
    frame();
    auto* second = CamMeshVisual::Build(&large, root());
    EXPECT_FALSE(first->hasAttachedObject(entityName));
    EXPECT_EQ(first->node->numAttachedObjects(), 0u);
    EXPECT_TRUE(second->hasAttachedObject(entityName));
    EXPECT_FLOAT_EQ(shown()->getBoundingBox().getMaximum().y, 5.0f);
    scene().deleteVisual(first);
    EXPECT_TRUE(isShown());
    EXPECT_NO_THROW(frame());
    scene().deleteVisual(second);
    EXPECT_FALSE(isShown());
}

TEST_F(CamMeshVisuals, WhatIsRefusedLeavesThePresentOneShown) {
    cadcam::TMesh<double> good = Fan(1), broken = Fan(1);
    broken.triangles.push_back({0, 1, 99});
    const auto* first = CamMeshVisual::Build(&good, root());
    const std::size_t nodes = root()->node->getChildren().size();
    EXPECT_THROW(CamMeshVisual::Build(nullptr, root()), std::invalid_argument);
    EXPECT_THROW(CamMeshVisual::Build(&broken, root()), std::out_of_range);
    EXPECT_EQ(root()->node->getChildren().size(), nodes);
    EXPECT_TRUE(first->hasAttachedObject(entityName));
    EXPECT_NO_THROW(frame());
}

TEST_F(CamMeshVisuals, AnEmptyMeshDrawsNothing) {
    cadcam::TMesh<double> empty;
    CamMeshVisual::Build(&empty, root());
    EXPECT_NO_THROW(frame());
}

}  // namespace vrn::test
