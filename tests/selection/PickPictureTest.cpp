// Picks held against what the renderer draws: a picture of the same view in which every visual and
// every face of a solid has a flat colour of its own tells what a person would click on.

#include <algorithm>
#include <numbers>
#include <random>

#include <gtest/gtest.h>
#include <OgreEntity.h>
#include <OgreHighLevelGpuProgram.h>
#include <OgreHighLevelGpuProgramManager.h>
#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreRenderTarget.h>
#include <OgreSubEntity.h>
#include <OgreTechnique.h>
#include <OgreViewport.h>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <TopoDS.hxx>

#include "selection/VisualSelection.h"
#include "suite/geom/ShapeTools.h"
#include "tests/support/SolidFixture.h"
#include "view/Camera.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/SolidVisual.h"

namespace vrn::test {

namespace {

using headless::Picture;
using headless::Rgba;
using selection::Result;
using visual::MeshVisual;
using visual::SolidVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr const char* idMaterial = "PickPicture id";
constexpr Ogre::uint32 idFlag = 1u << 20;  // what the picture shows and nothing else
constexpr int margin = 2;                  // pixels round a pixel that must show the same

constexpr const char* vertexSource = R"(#version 330 core
in vec4 vertex;
in vec4 colour;
uniform mat4 toScreen;
uniform vec4 given;
flat out vec4 id;
void main() {
    gl_Position = toScreen * vertex;
    id = given.w < 0.0 ? vec4(colour.rgb, 1.0) : vec4(given.rgb, 1.0);
}
)";
constexpr const char* fragmentSource = R"(#version 330 core
flat in vec4 id;
out vec4 shown;
void main() { shown = id; }
)";

Ogre::HighLevelGpuProgramPtr MakeProgram(const std::string& name, Ogre::GpuProgramType type,
                                         const char* source) {
    auto program = Ogre::HighLevelGpuProgramManager::getSingleton().createProgram(
        name, Ogre::RGN_DEFAULT, "glsl", type);
    program->setSource(source);
    return program;
}

/// Shows colours as they are: those of the vertices, or the one given to the entity.
void MakeIdMaterial() {
    auto& materials = Ogre::MaterialManager::getSingleton();
    if (materials.resourceExists(idMaterial, Ogre::RGN_DEFAULT)) return;
    auto vertex = MakeProgram("PickPicture vertex", Ogre::GPT_VERTEX_PROGRAM, vertexSource);
    vertex->getDefaultParameters()->setNamedAutoConstant(
        "toScreen", Ogre::GpuProgramParameters::ACT_WORLDVIEWPROJ_MATRIX);
    vertex->getDefaultParameters()->setNamedAutoConstant("given",
                                                         Ogre::GpuProgramParameters::ACT_CUSTOM, 0);
    MakeProgram("PickPicture fragment", Ogre::GPT_FRAGMENT_PROGRAM, fragmentSource);
    Ogre::Pass* pass = materials.create(idMaterial, Ogre::RGN_DEFAULT)->getTechnique(0)->getPass(0);
    pass->setVertexProgram("PickPicture vertex");
    pass->setFragmentProgram("PickPicture fragment");
    pass->setCullingMode(Ogre::CULL_NONE);
    pass->setManualCullingMode(Ogre::MANUAL_CULL_NONE);
}

rob::ColorTemplate<float> ColourOf(std::size_t visual, std::uint32_t face) {
    return {static_cast<float>(visual + 1) / 255.0f, static_cast<float>(face) / 255.0f, 1};
}

}  // namespace

class PickPictures : public SolidTest {
protected:
    void SetUp() override {
        SolidTest::SetUp();
        MakeIdMaterial();
        viewport = window().getViewport(0);
        maskBefore = viewport->getVisibilityMask();
    }
    void TearDown() override {
        viewport->setVisibilityMask(maskBefore);
        SolidTest::TearDown();
    }

    SolidVisual* addSolid(TopoDS_Shape shape, const rob::PoseTemplate<float>& pose) {
        geometry::GenerateMesh(shape, 0.0, 0.0);
        SolidVisual* solid = show(shape);
        solid->setPose(pose);
        shown.push_back(solid);
        return solid;
    }
    MeshVisual* addMesh(const std::string& name, const rob::PoseTemplate<float>& pose,
                        Visual* parent) {
        auto* mesh = new MeshVisual("picked", parent);
        mesh->attachMesh(name);
        mesh->setPose(pose);
        selection::VisualSelection::Get()->addMeshVisual(mesh, true, /*priority=*/false);
        shown.push_back(mesh);
        return mesh;
    }
    rob::PoseTemplate<float> anyPose(float reach) {
        std::uniform_real_distribution<float> along(-reach, reach), angle(-3, 3);
        return {{along(random), along(random), along(random)},
                Rotation(angle(random), angle(random), angle(random))};
    }
    void fillScene() {
        for (int i = 0; i < 6; ++i) {
            addSolid(MeshedBox(), anyPose(250));
            addSolid(BRepPrimAPI_MakeCylinder(30, 90).Shape(), anyPose(250));
            addSolid(BRepPrimAPI_MakeSphere(40).Shape(), anyPose(250));
            addSolid(BRepPrimAPI_MakeTorus(50, 15).Shape(), anyPose(250));
            addSolid(BRepPrimAPI_MakeCone(50, 10, 80).Shape(), anyPose(250));
        }
        // Parts within moved and turned assemblies.
        Visual* group = new Visual(scene().root);
        group->setPose(anyPose(100));
        for (int i = 0; i < 6; ++i) {
            group->attachVisual(shown[static_cast<std::size_t>(5 * i)]);
            addMesh(
                writeBoxStl("picked" + std::to_string(i) + ".stl", {-40, -30, -20}, {40, 30, 20})
                    .string(),
                anyPose(250), group);
        }
        // Boxes, a cylinder and a cone that one can look into.
        for (const std::size_t i : {0u, 1u, 5u, 14u, 20u})
            dynamic_cast<SolidVisual*>(shown[i])->setFaceVisible(1, false);
    }
    static Ogre::Entity* entityOf(Visual* visual) {
        if (auto* solid = dynamic_cast<SolidVisual*>(visual)) return solid->getEntity();
        return dynamic_cast<MeshVisual&>(*visual).getEntity();
    }
    /// The frame with every visual and face in the colour of its numbers.
    Picture idPicture() {
        for (std::size_t i = 0; i < shown.size(); ++i) {
            Ogre::Entity* entity = entityOf(shown[i]);
            if (!entity) continue;
            entity->setMaterialName(idMaterial);
            entity->setVisibilityFlags(idFlag);
            if (auto* solid = dynamic_cast<SolidVisual*>(shown[i])) {
                for (int f = 1; f <= solid->getFaceMap().Extent(); ++f)
                    solid->setFaceColor(static_cast<unsigned>(f),
                                        ColourOf(i, static_cast<std::uint32_t>(f)));
            } else {
                dynamic_cast<MeshVisual&>(*shown[i]).setColor(ColourOf(i, 0), 1);
            }
        }
        viewport->setVisibilityMask(idFlag);
        return frame();
    }
    /// Whether all pixels near (x, y) show the same, so that no silhouette runs by.
    static bool isCalm(const Picture& picture, int x, int y) {
        if (x < margin || y < margin || x >= windowWidth - margin || y >= windowHeight - margin)
            return false;
        for (int dy = -margin; dy <= margin; ++dy)
            for (int dx = -margin; dx <= margin; ++dx)
                if (picture.at(x + dx, y + dy) != picture.at(x, y)) return false;
        return true;
    }
    std::string told(const Result& result) {
        if (!result.hit) return "nothing";
        const auto found = std::ranges::find(shown, result.visual);
        const auto* solid = dynamic_cast<SolidVisual*>(result.visual);
        return std::to_string(found - shown.begin()) + " face " +
               std::to_string(solid ? solid->getFaceIndex(TopoDS::Face(result.face)) : 0);
    }
    static std::string seen(const Rgba& pixel) {
        if (pixel.b != 255 || pixel.r == 0) return "nothing";
        return std::to_string(pixel.r - 1) + " face " + std::to_string(pixel.g);
    }
    /// Compares random calm pixels; answers how many showed something.
    int compare(int pixels) {
        const Picture picture = idPicture();
        std::uniform_int_distribution<int> column(0, windowWidth - 1), row(0, windowHeight - 1);
        int onBodies = 0, misses = 0;
        for (int i = 0; i < pixels; ++i) {
            const int x = column(random), y = row(random);
            if (!isCalm(picture, x, y)) continue;
            const Result result = selection::VisualSelection::Get()->select(
                static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
            EXPECT_EQ(told(result), seen(picture.at(x, y))) << "pixel " << x << ", " << y;
            ++(result.hit ? onBodies : misses);
        }
        EXPECT_GT(misses, 0);
        return onBodies;
    }

    std::mt19937 random{4711};
    std::vector<Visual*> shown;
    Ogre::Viewport* viewport = nullptr;
    Ogre::uint32 maskBefore = 0;
};

TEST_F(PickPictures, AClickFindsTheVisualAndTheFaceThatAreOnTheScreen) {
    fillScene();
    int onBodies = 0;
    for (const Pos& from : {Pos{600, -700, 500}, Pos{-800, 100, 90}, Pos{10, 20, 900}}) {
        lookFrom(from, {0, 0, 0});
        onBodies += compare(10000);
    }
    EXPECT_GT(onBodies, 2000);
}

TEST_F(PickPictures, ItFindsThemAgainAfterEverythingHasMoved) {
    fillScene();
    lookFrom({600, -700, 500}, {0, 0, 0});
    int onBodies = 0;
    for (int round = 0; round < 3; ++round) {
        for (Visual* visual : shown)
            if (visual->getParent() == scene().root) visual->setPose(anyPose(250));
        onBodies += compare(8000);
    }
    EXPECT_GT(onBodies, 1000);
}

TEST_F(PickPictures, AScaledMeshIsFoundWhereItIsDrawn) {
    MeshVisual* mesh = addMesh("mfg_arrow", anyPose(20), scene().root);
    mesh->setScale(30, 12, 9);
    mesh->setPosition(0, 0, 0);
    lookFrom({300, -200, 250}, {0, 0, 0});
    EXPECT_GT(compare(8000), 50);
}

}  // namespace vrn::test
