#include "tests/support/EngineFixture.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include <OgreCamera.h>
#include <OgreRenderTarget.h>
#include <OgreRoot.h>
#include <OgreSceneNode.h>

#include "apps/headless/VirtualDisplay.h"
#include "engine/RenderEngine.h"
#include "engine/visualapi.h"
#include "selection/VisualSelection.h"
#include "view/Camera.h"
#include "visual/Visual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

namespace {

using Pos = rob::PosTemplate<float>;

std::filesystem::path processFolder;

std::filesystem::path LogFile() { return processFolder / "Ogre.log"; }

// Where a log, a temporary file or a resource goes must not depend on what runs beside this
// process.
std::filesystem::path MakeProcessFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vrn-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("cannot make " + name);
    setenv("TMPDIR", name.c_str(), /*overwrite=*/1);
    return name;
}

visual::SceneSettings TestSettings() {
    visual::SceneSettings settings;
    settings.frameSize = 100;
    settings.wobjFrameSize = 90;
    settings.robTargetFrameSize = 60;
    settings.jointTargetFrameSize = 50;
    settings.tcpFrameSize = 40;
    settings.fromPos = {400, -600, 350};
    settings.nearClip = 1.0f;
    settings.farClip = 100000.0f;
    return settings;
}

/// Brings the engine up once for all tests of the program.
class Engine : public ::testing::Environment {
public:
    void SetUp() override {
        processFolder = MakeProcessFolder();
        display = std::make_unique<headless::VirtualDisplay>();
        selection::Init();
        visual::Init(windowWidth, windowHeight, TestSettings());
        visual::Camera::Get()->setRenderTarget(
            visual::gRenderEngine->root->getRenderTarget("ogrewindow"));
    }
    void TearDown() override {
        visual::ReleaseResources();
        std::error_code ignored;
        std::filesystem::remove_all(processFolder, ignored);
    }

private:
    std::unique_ptr<headless::VirtualDisplay> display;
};

void WriteTriangle(std::ofstream& out, const std::array<Pos, 3>& corners) {
    const auto normal = (corners[1] - corners[0]).cross(corners[2] - corners[0]).normalized();
    const std::uint16_t attributes = 0;
    out.write(reinterpret_cast<const char*>(&normal), sizeof normal);
    out.write(reinterpret_cast<const char*>(corners.data()), sizeof corners);
    out.write(reinterpret_cast<const char*>(&attributes), sizeof attributes);
}

}  // namespace

int RunEngineTests(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new Engine);
    return RUN_ALL_TESTS();
}

void EngineTest::SetUp() {
    visualsBefore = scene().visuals;
    for (visual::Visual* child : scene().root->getChildren()) childrenBefore.insert(child);
    pickableBefore = selection::VisualSelection::Get()->objects;
    settingsBefore = scene().settings;
    logBefore = static_cast<std::streamoff>(std::filesystem::file_size(LogFile()));
    const auto& start = settingsBefore.fromPos;
    lookFrom(start, settingsBefore.targetPos);
}

void EngineTest::TearDown() {
    scene().clearHighlightedVisual();
    scene().clearSelections();
    pump();
    for (visual::Visual* child : scene().root->getChildren())
        if (!childrenBefore.contains(child)) scene().deleteVisual(child);
    scene().settings = settingsBefore;
    scene().setDisplayMode(visual::Scene::DisplayMode::Shaded);
    pump();
    EXPECT_EQ(scene().visuals, visualsBefore) << "the test left visuals in the registry";
    EXPECT_TRUE(scene().tempVisuals.empty());
    EXPECT_EQ(selection::VisualSelection::Get()->objects, pickableBefore);
}

std::size_t EngineTest::pickableCount() const {
    return selection::VisualSelection::Get()->objects.size() - pickableBefore.size();
}

void EngineTest::pump() {
    scene().processMsgs();
    selection::VisualSelection::Get()->update();
}

headless::Picture EngineTest::frame() {
    pump();
    visual::gRenderEngine->root->renderOneFrame();
    return headless::Picture::readBack(window());
}

Ogre::RenderTarget& EngineTest::window() {
    return *visual::gRenderEngine->root->getRenderTarget("ogrewindow");
}

void EngineTest::lookFrom(const Pos& from, const Pos& target) {
    using Vec = rob::Vec3Template<float>;
    const Vec back = (from - target).normalized();
    const Vec up = std::abs(back.z) > 0.999f ? Vec{0, 1, 0} : Vec{0, 0, 1};
    const Vec right = up.cross(back).normalized();
    visual::Camera::Get()->setWorldPosition(from);
    visual::Camera::Get()->setWorldRotation(
        rob::RotationTemplate<float>::FromAxes(right, back.cross(right), back));
}

rob::Vec2Template<float> EngineTest::project(const Pos& world) {
    const Ogre::Camera* camera = visual::Camera::Get()->camera;
    const Ogre::Vector4 clip = camera->getProjectionMatrix() * camera->getViewMatrix() *
                               Ogre::Vector4(world.x, world.y, world.z, 1.0f);
    return {(clip.x / clip.w * 0.5f + 0.5f) * windowWidth,
            (0.5f - clip.y / clip.w * 0.5f) * windowHeight};
}

std::vector<std::string> EngineTest::logLines() const {
    std::ifstream log(LogFile());
    log.seekg(logBefore);
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    return lines;
}

const std::filesystem::path& EngineTest::folder() { return processFolder; }

std::filesystem::path EngineTest::writeBoxStl(const std::string& name, const Pos& min,
                                              const Pos& max) {
    const auto corner = [&](int i) {
        return Pos{i & 1 ? max.x : min.x, i & 2 ? max.y : min.y, i & 4 ? max.z : min.z};
    };
    // Two triangles a side, counter-clockwise seen from outside.
    constexpr std::array<std::array<int, 4>, 6> sides{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    const std::filesystem::path file = folder() / name;
    std::ofstream out(file, std::ios::binary);
    out << std::string(80, ' ');
    const std::uint32_t count = 12;
    out.write(reinterpret_cast<const char*>(&count), sizeof count);
    for (const auto& s : sides) {
        WriteTriangle(out, {corner(s[0]), corner(s[1]), corner(s[2])});
        WriteTriangle(out, {corner(s[0]), corner(s[2]), corner(s[3])});
    }
    return file;
}

layout::Part* EngineTest::makeBoxPart(const std::string& name,
                                      const rob::PoseTemplate<double>& pose, const Pos& min,
                                      const Pos& max) {
    return layout::MakeStlPart(model, name, writeBoxStl(name + ".stl", min, max).string(), pose);
}

visual::Visual* EngineTest::showBoxPart(const std::string& name,
                                        const rob::PoseTemplate<double>& pose) {
    layout::Part* part = makeBoxPart(name, pose);
    scene().addPart(part);
    pump();
    return scene().visuals.at(part->id);
}

visual::Visual* EngineTest::findBelow(visual::Visual* start, VisualType type) {
    for (visual::ForestIterator<visual::Visual> it(start); it.next();)
        if (it.value()->type == type) return it.value();
    return nullptr;
}

}  // namespace vrn::test
