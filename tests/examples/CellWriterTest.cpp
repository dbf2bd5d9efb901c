#include "examples/cell/CellWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BRepTools.hxx>
#include <nlohmann/json.hpp>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <filesystem>
#include <fstream>
#include <map>
#include <numbers>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

#include "apps/vrnview/program/ProgramPlan.h"
#include "apps/vrnview/program/RobotProgram.h"
#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/TempFolder.h"
#include "examples/cell/Cell.h"
#include "suite/layout/Mechanism.h"
#include "suite/task/DataItem.h"
#include "suite/task/Operation.h"
#include "suite/task/Task.h"

namespace vrn::examples {
namespace {

std::map<std::string, std::string> FilesIn(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        std::ifstream in(entry.path(), std::ios::binary);
        std::ostringstream bytes;
        bytes << in.rdbuf();
        files[std::filesystem::relative(entry.path(), folder)] = bytes.str();
    }
    return files;
}

/// Every text under the key "file", however deep.
void CollectFiles(const nlohmann::json& json, std::set<std::string>& files) {
    for (const auto& [key, item] : json.items()) {
        if (json.is_object() && key == "file") files.insert(item.get<std::string>());
        if (item.is_structured()) CollectFiles(item, files);
    }
}

class CellWriterTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder = new host::TempFolder;
        cell = new RobotCell(MakeCell());
        station = WriteCell(*cell, folder->getPath() / "new");
    }
    static void TearDownTestSuite() {
        delete cell;
        delete folder;
    }

    static inline host::TempFolder* folder = nullptr;
    static inline RobotCell* cell = nullptr;
    static inline std::filesystem::path station;
};

TEST_F(CellWriterTest, WritesTheStationWhereItWasAsked) {
    EXPECT_EQ(station, folder->getPath() / "new" / "cell.station.json");
    EXPECT_TRUE(std::filesystem::is_regular_file(station));
}

TEST_F(CellWriterTest, NamesTheFilesThatItWroteAndNoOthers) {
    std::set<std::string> named, written;
    CollectFiles(nlohmann::json::parse(std::ifstream(station)), named);
    for (const auto& [name, bytes] : FilesIn(station.parent_path()))
        if (name != "cell.station.json") written.insert(name);
    EXPECT_EQ(named, written);
    EXPECT_EQ(named.size(), 25u);
    EXPECT_TRUE(named.contains("geometry/fixture.stl"));
    EXPECT_TRUE(named.contains("geometry/scan.ply"));
}

TEST_F(CellWriterTest, FilesStaySmall) {
    std::size_t total = 0;
    for (const auto& [name, bytes] : FilesIn(station.parent_path())) total += bytes.size();
    EXPECT_LT(total, 5'000'000u);
}

TEST_F(CellWriterTest, BrepsHaveNoTriangles) {
    for (const auto& [name, bytes] : FilesIn(station.parent_path())) {
        if (!name.ends_with(".brep")) continue;
        std::istringstream in(bytes);
        TopoDS_Shape shape;
        BRepTools::Read(shape, in, BRep_Builder());
        ASSERT_FALSE(shape.IsNull()) << name;
        for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
            TopLoc_Location location;
            EXPECT_TRUE(BRep_Tool::Triangulation(TopoDS::Face(faces.Current()), location).IsNull());
        }
    }
}

TEST_F(CellWriterTest, SecondCellGivesTheSameBytes) {
    const host::TempFolder other;
    WriteCell(MakeCell(), other.getPath());
    EXPECT_TRUE(FilesIn(other.getPath()) == FilesIn(station.parent_path()));
}

TEST_F(CellWriterTest, UnwritableFolderIsNamed) {
    const std::filesystem::path file = folder->getPath() / "file";
    std::ofstream(file) << "in the way";
    EXPECT_THROW(WriteCell(*cell, file), std::filesystem::filesystem_error);
}

TEST_F(CellWriterTest, StationIsReadWithoutAWordOfComplaint) {
    const host::Content content = host::ReadContent(station);
    EXPECT_THAT(content.problems, testing::IsEmpty());
    EXPECT_EQ(content.robots.size(), 1u);
    EXPECT_EQ(content.devices.size(), 1u);
    EXPECT_EQ(content.tools.size(), 1u);
    EXPECT_EQ(content.parts.size(), 5u);  // floor, controller, stand, fixture, workpiece
    EXPECT_EQ(content.assemblies.size(), 1u);
    EXPECT_EQ(content.clouds.size(), 1u);
    EXPECT_EQ(content.frames.size(), 1u);
    EXPECT_EQ(content.sensors.size(), 2u);
    EXPECT_EQ(content.attachments.size(), 3u);
    EXPECT_TRUE(content.camera.has_value());
    ASSERT_EQ(content.tools[0]->frames().size(), 2u);
    ASSERT_EQ(content.envelopes.size(), 1u);
    EXPECT_EQ(content.envelopes[0].points.size(), WristReach().size());
}

std::size_t MovesOf(const task::Task& task) {
    std::size_t moves = 0;
    for (const task::Path* path : task.getPaths()) moves += path->moveInstructionCount();
    return moves;
}

TEST_F(CellWriterTest, TasksAreTheProgramAndTheHiddenRows) {
    const host::Content content = host::ReadContent(station);
    ASSERT_EQ(content.tasks.size(), 2u);
    const task::Task &finishing = *content.tasks[0], &grinding = *content.tasks[1];
    EXPECT_EQ(content.targets.size(), 3072u + cell->finishing.targets.size());
    EXPECT_EQ(finishing.getWObjDataItems().size(), 1u);
    EXPECT_EQ(finishing.getToolDataItems().size(), 1u);
    EXPECT_EQ(finishing.getJointTargetDataItems().size(), 1u);
    EXPECT_EQ(MovesOf(finishing), cell->finishing.paths.at(0).moves.size());
    EXPECT_EQ(grinding.getWObjDataItems().size(), 4u);
    EXPECT_EQ(grinding.getToolDataItems().size(), 1u);
    EXPECT_EQ(MovesOf(grinding), 3072u);
    for (const task::WObjDataItem* wobj : grinding.getWObjDataItems())
        EXPECT_TRUE(content.hidden.contains(wobj->id));
    ASSERT_EQ(content.operations.size(), 1u);
    EXPECT_TRUE(content.hidden.contains(content.operations[0]->id));
    EXPECT_EQ(content.operations[0]->getChildren().size(), 4u);
}

TEST_F(CellWriterTest, ProgramIsWithinTheArmsReach) {
    const host::Content content = host::ReadContent(station);
    const auto plan = host::ProgramPlan::Make(host::ProgramOf(content, *content.tasks.at(0)));
    EXPECT_LT(plan.getWorstError().mm, 0.1);
    EXPECT_LT(plan.getWorstError().degrees, 0.1);
    EXPECT_GT(plan.getSeconds(), 20);
    // From where the cutter stands in the file, the arm's own arithmetic agrees with the plan's.
    const gp_Trsf cutter = FlangePlace(*cell) * cell->cutterFrame;
    const auto& start = plan.getPoints().front().tool.position;
    EXPECT_NEAR(start.x, cutter.TranslationPart().X(), 1e-3);
    EXPECT_NEAR(start.y, cutter.TranslationPart().Y(), 1e-3);
    EXPECT_NEAR(start.z, cutter.TranslationPart().Z(), 1e-3);
}

TEST_F(CellWriterTest, RowsNeedTheTableTurned) {
    const host::Content content = host::ReadContent(station);
    EXPECT_THROW((void)host::ProgramPlan::Make(host::ProgramOf(content, *content.tasks.at(1))),
                 std::runtime_error);
}

TEST_F(CellWriterTest, LinksStandInTheFileWhereTheyStandInTheCell) {
    const host::Content content = host::ReadContent(station);
    const std::vector<gp_Trsf> places = LinkPlaces(cell->arm);
    const std::vector<layout::Link*> links = content.robots.at(0)->links();
    ASSERT_EQ(links.size(), places.size());
    for (std::size_t i = 0; i < links.size(); ++i) {
        const rob::PoseTemplate<double> pose = links[i]->getPose();
        const gp_XYZ wanted = places[i].TranslationPart();
        EXPECT_NEAR(pose.position.x, wanted.X(), 1e-4) << links[i]->name;
        EXPECT_NEAR(pose.position.y, wanted.Y(), 1e-4) << links[i]->name;
        EXPECT_NEAR(pose.position.z, wanted.Z(), 1e-4) << links[i]->name;
        const gp_Quaternion turn = places[i].GetRotation();
        EXPECT_TRUE(pose.rotation.isApprox({turn.W(), turn.X(), turn.Y(), turn.Z()}))
            << links[i]->name;
    }
}

}  // namespace
}  // namespace vrn::examples
