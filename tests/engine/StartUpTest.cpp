#include <sys/wait.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <OgreRenderSystem.h>
#include <OgreRenderSystemCapabilities.h>
#include <OgreRenderTarget.h>
#include <OgreRoot.h>
#include <OgreTextureManager.h>
#include <gp_Ax1.hxx>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include "engine/FrameTimer.h"
#include "engine/RenderEngine.h"
#include "engine/visualapi.h"
#include "selection/VisualSelection.h"
#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

using testing::HasSubstr;
using visual::GP_Trsf2Posef;
using visual::gRenderEngine;
using visual::RenderEngine;

namespace {

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Ogre::DriverVersion Version(int major, int minor) {
    Ogre::DriverVersion version;
    version.major = major;
    version.minor = minor;
    return version;
}

}  // namespace

// --- the driver's version

struct DriverRow {
    const char* name;
    int major, minor;
    bool isOld;
};

class DriverNotice : public testing::TestWithParam<DriverRow> {};

TEST_P(DriverNotice, NamesAVersionWhoseMajorIsBelow4OrMinorBelow5) {
    const Ogre::DriverVersion version = Version(GetParam().major, GetParam().minor);
    const std::string expected =
        GetParam().isOld ? "GL_VERSION = " + version.toString() + "\n" : "";
    EXPECT_EQ(RenderEngine::driverNotice(version), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Versions, DriverNotice,
    testing::Values(DriverRow{"V33", 3, 3, true}, DriverRow{"V39", 3, 9, true},
                    DriverRow{"V44", 4, 4, true}, DriverRow{"V45", 4, 5, false},
                    DriverRow{"V46", 4, 6, false}, DriverRow{"V50", 5, 0, true},
                    DriverRow{"V55", 5, 5, false}, DriverRow{"None", 0, 0, true}),
    [](const auto& row) { return row.param.name; });

TEST(DriverNotice, TextIsTheVersionOfTheDriver) {
    EXPECT_THAT(RenderEngine::driverNotice(Version(4, 4)), testing::StartsWith("GL_VERSION = 4.4"));
}

// --- poses from OpenCASCADE

TEST(PoseOfTransformation, IdentityIsTheIdentity) {
    EXPECT_EQ(GP_Trsf2Posef(gp_Trsf()), rob::PoseTemplate<float>{});
}

TEST(PoseOfTransformation, QuaternionComesInTheOrderWXYZ) {
    const double angle = 1.0;
    gp_Trsf turn;
    turn.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(1, 2, 3)), angle);
    const auto rotation = GP_Trsf2Posef(turn).rotation;
    const double length = std::sqrt(14.0), s = std::sin(angle / 2);
    EXPECT_NEAR(rotation.w, std::cos(angle / 2), 1e-6);
    EXPECT_NEAR(rotation.x, s * 1 / length, 1e-6);
    EXPECT_NEAR(rotation.y, s * 2 / length, 1e-6);
    EXPECT_NEAR(rotation.z, s * 3 / length, 1e-6);
}

TEST(PoseOfTransformation, MovesPointsAsTheTransformationDoes) {
    gp_Trsf turn, move;
    turn.SetRotation(gp_Ax1(gp_Pnt(5, 6, 7), gp_Dir(-1, 0.5, 2)), 2.5);
    move.SetTranslation(gp_Vec(10, 20, 30));
    const gp_Trsf both = move * turn;
    const gp_Pnt expected = gp_Pnt(1, 2, 3).Transformed(both);
    const auto is = rob::TransformPoint(GP_Trsf2Posef(both), {1, 2, 3});
    EXPECT_NEAR(is.x, expected.X(), 1e-4);
    EXPECT_NEAR(is.y, expected.Y(), 1e-4);
    EXPECT_NEAR(is.z, expected.Z(), 1e-4);
}

TEST(PoseOfTransformation, TranslationIsNarrowedToFloat) {
    gp_Trsf move;
    move.SetTranslation(gp_Vec(0.1, 1e9 + 1, -2.5));
    EXPECT_EQ(GP_Trsf2Posef(move).position,
              (rob::PosTemplate<float>{0.1f, static_cast<float>(1e9 + 1), -2.5f}));
}

TEST(PoseOfTransformation, ScaleIsLeftOut) {
    gp_Trsf scale;
    scale.SetScale(gp_Pnt(0, 0, 0), 3.0);
    EXPECT_EQ(GP_Trsf2Posef(scale), rob::PoseTemplate<float>{});
}

// --- the running engine

class StartUp : public EngineTest {};

TEST_F(StartUp, EngineStandsWithItsRenderSystemAndWindow) {
    EXPECT_TRUE(gRenderEngine->initialised);
    EXPECT_EQ(gRenderEngine->shaderLevel, 2);
    EXPECT_EQ(gRenderEngine->root->getRenderSystem()->getName(), "OpenGL 3+ Rendering Subsystem");
    EXPECT_TRUE(gRenderEngine->root->hasSceneManager("VRN_SceneManager"));
    EXPECT_EQ(window().getName(), "ogrewindow");
    EXPECT_EQ(window().getWidth(), static_cast<unsigned>(windowWidth));
    EXPECT_EQ(window().getHeight(), static_cast<unsigned>(windowHeight));
    EXPECT_EQ(Ogre::TextureManager::getSingleton().getDefaultNumMipmaps(), 5u);
}

TEST_F(StartUp, ASecondInitThrowsAndChangesNothing) {
    RenderEngine* engine = gRenderEngine;
    EXPECT_THROW(visual::Init(100, 100, {}), std::logic_error);
    EXPECT_EQ(gRenderEngine, engine);
    EXPECT_NO_THROW((void)frame());
}

TEST_F(StartUp, FrameTimerSignalsHowLongTheFrameTook) {
    std::vector<double> ticks;
    const auto subscription =
        broker::SignalBroker::onFrameTicked([&](double ms) { ticks.push_back(ms); });
    const auto start = std::chrono::steady_clock::now();
    gRenderEngine->root->renderOneFrame();
    const std::chrono::duration<double, std::milli> whole =
        std::chrono::steady_clock::now() - start;
    ASSERT_EQ(ticks.size(), 1u);
    EXPECT_GT(ticks[0], 0.0);
    EXPECT_LE(ticks[0], whole.count());
    EXPECT_EQ(ticks[0], gRenderEngine->frameTimer->lastFrameMs);
}

TEST_F(StartUp, InitialisingAgainReplacesTheFrameTimer) {
    gRenderEngine->init();
    int ticks = 0;
    const auto subscription = broker::SignalBroker::onFrameTicked([&](double) { ++ticks; });
    gRenderEngine->root->renderOneFrame();
    EXPECT_EQ(ticks, 1);
}

TEST(FrameTimer, HasMeasuredNothingAtFirst) { EXPECT_EQ(visual::FrameTimer().lastFrameMs, 0.0); }

// --- what only a process that has not started yet can show

/// Runs the program that tries one case of starting, in folders of its own.
class FreshStart : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        base = folder() / "fresh";
        std::filesystem::create_directories(base / "tmp");
        std::filesystem::create_directories(base / "cwd");
    }
    void TearDown() override {
        std::filesystem::remove_all(base);
        EngineTest::TearDown();
    }
    /// The exit status; 128 and the signal's number for one that a signal ended.
    int run(const std::string& scenario, const std::string& environment = "") {
        const std::string command = "cd '" + (base / "cwd").string() + "' && " + environment +
                                    " TMPDIR='" + (base / "tmp").string() +
                                    "' exec '" VRN_FRESH_START_PROGRAM "' " + scenario +
                                    " > ../out 2> ../err";
        const int status = std::system(command.c_str());
        out = ReadAll(base / "out");
        err = ReadAll(base / "err");
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }
    std::filesystem::path base;
    std::string out, err;
};

TEST_F(FreshStart, KeepsStandardOutputCleanAndLogsToTheTemporaryFolder) {
    EXPECT_EQ(run("frame"), 0) << err;
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "");
    EXPECT_THAT(ReadAll(base / "tmp" / "Ogre.log"), HasSubstr("OpenGL 3+"));
    EXPECT_TRUE(std::filesystem::is_empty(base / "cwd"));
}

TEST_F(FreshStart, NothingExistsBeforeInitAndReleasingDoesNothing) {
    EXPECT_EQ(run("before-init"), 0) << err;
    EXPECT_EQ(out, "");
}

TEST_F(FreshStart, ReleasingTwiceDeletesTheHelperOfPreviewsOnce) {
    EXPECT_EQ(run("released"), 0) << err;
}

TEST_F(FreshStart, InitNeedsTheSelection) { EXPECT_EQ(run("no-selection"), 0) << err; }

TEST_F(FreshStart, InitRefusesAWindowWithoutSize) { EXPECT_EQ(run("no-size"), 0) << err; }

TEST_F(FreshStart, AFrameDrawsWithoutTheResourcePackage) {
    EXPECT_EQ(run("no-package"), 0) << err;
    EXPECT_EQ(out, "");
    EXPECT_THAT(ReadAll(base / "tmp" / "vrnvisual.log"), HasSubstr("BorderHighlight"));
}

TEST_F(FreshStart, AnotherVerticalTurnsLightsGridAndCamera) {
    EXPECT_EQ(run("x-up"), 0) << err;
    EXPECT_EQ(run("y-up"), 0) << err;
    EXPECT_EQ(run("z-up"), 0) << err;
}

TEST_F(FreshStart, WithoutADisplayTheReasonIsLoggedAndTheProcessAborts) {
    EXPECT_EQ(run("frame", "DISPLAY="), 128 + SIGABRT) << err;
    EXPECT_THAT(ReadAll(base / "tmp" / "vrnvisual.log"), HasSubstr("error"));
    EXPECT_EQ(out, "");
}

}  // namespace vrn::test
