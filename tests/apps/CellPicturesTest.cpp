#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>
#include <string>

#include "apps/vrnview/TempFolder.h"
#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"
#include "tests/support/GoldenPicture.h"

namespace vrn::test {
namespace {

using headless::Picture;
using nlohmann::json;

const std::filesystem::path goldenFolder =
    std::filesystem::path(VRN_SOURCE_FOLDER) / "tests/apps/golden";

json& ObjectOf(json& objects, const std::string& id) {
    for (json& object : objects)
        if (object.at("id") == id) return object;
    throw std::runtime_error("the cell has no object '" + id + "'");
}

/// The top of the stand, as station files count faces.
constexpr const char* colouredFace = "11";

/// The demo's cell as a user sees it who has selected the tool, points at the controller, has
/// painted a face of the stand and hidden a panel of the fence.
class CellPictures : public VrnviewTest {
protected:
    static void SetUpTestSuite() {
        station = std::make_unique<host::TempFolder>();
        const std::string folder = station->getPath();
        const ProcessResult demo =
            vrnview({"demo", "-o", folder + "/demo.png", "--size", "64x36", "--save", folder});
        ASSERT_EQ(demo.status, 0) << demo.err;
        json cell = json::parse(ReadBytes(stationFile()));
        ObjectOf(cell.at("objects"), "stand")["faceColors"][colouredFace] = "#E8542B";
        WriteBytes(stationFile(), cell.dump());
    }
    static void TearDownTestSuite() { station.reset(); }

    static std::filesystem::path stationFile() {
        return std::filesystem::path(station->getPath()) / "cell.station.json";
    }

    [[nodiscard]] Picture picture(const std::string& mode) const {
        const ProcessResult result =
            vrnview({"render", stationFile().string(), "-o", path("cell.png"), "--size", "640x360",
                     "--mode", mode, "--select", "spindle", "--highlight", "controller", "--hide",
                     "fence_panel_2"});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return Picture::loadPng(path("cell.png"));
    }
    void expectAsKept(const std::string& mode) const {
        EXPECT_EQ(CompareWithGolden(picture(mode), goldenFolder / ("cell_" + mode + ".png"),
                                    VRN_GOLDEN_DIFFERENCES),
                  "");
    }

    inline static std::unique_ptr<host::TempFolder> station;
};

TEST_F(CellPictures, ShadedModeIsAsKept) { expectAsKept("shaded"); }

TEST_F(CellPictures, EdgesModeIsAsKept) { expectAsKept("edges"); }

TEST_F(CellPictures, LinesModeIsAsKept) { expectAsKept("lines"); }

TEST_F(CellPictures, TrianglesModeIsAsKept) { expectAsKept("triangles"); }

}  // namespace
}  // namespace vrn::test
