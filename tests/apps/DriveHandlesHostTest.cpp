// Objects that a script moves and turns by the drag handle.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <numbers>
#include <string>

#include "tests/apps/DriveHost.h"

namespace vrn::test {
namespace {

using nlohmann::json;
using testing::EndsWith;

constexpr const char* attach = R"({"do":"attach","object":"box","size":4})"
                               "\n";
// Places in the view of DriveHost: on the x arrow, on the ring about y.
constexpr const char* grabX = R"({"do":"grab","x":400,"y":388})"
                              "\n";
constexpr const char* grabPitch = R"({"do":"grab","x":391,"y":324})"
                                  "\n";

using DriveHandlesHost = DriveHost;

TEST_F(DriveHandlesHost, AnArrowMovesItsObjectAlongItAloneAndUnderTheCursor) {
    const auto answers = play(std::string(attach) + grabX +
                              R"({"do":"drag","x":420,"y":395}
{"do":"drag","x":472,"y":410}
{"do":"release"}
{"do":"grab","x":472,"y":410}
)");
    EXPECT_EQ(answers.at(0)["pose"]["position"], json::parse("[0.0,0.0,0.0]"));
    ASSERT_EQ(answers.at(1)["part"], "x");
    const json& moved = answers.at(3)["moved"];
    EXPECT_GT(moved[0].get<double>(), answers.at(2)["moved"][0].get<double>());
    EXPECT_EQ(moved[1], 0);
    EXPECT_EQ(moved[2], 0);
    EXPECT_EQ(answers.at(4)["pose"]["position"], moved);
    EXPECT_EQ(answers.at(4)["pose"]["quaternion"], json::parse("[1.0,0.0,0.0,0.0]"));
    ASSERT_EQ(answers.at(5)["part"], "x");
    // What was grabbed is grabbed again: as far along the arrow as the object went.
    EXPECT_NEAR(answers[5]["position"][0].get<double>() - answers[1]["position"][0].get<double>(),
                moved[0].get<double>(), 1.0);
}

TEST_F(DriveHandlesHost, WhatIsMovedIsPickedAtItsNewPlace) {
    const auto answers = play(std::string(R"({"do":"hover","x":335,"y":300})"
                                          "\n") +
                              attach + grabX +
                              R"({"do":"drag","x":560,"y":433}
{"do":"release"}
{"do":"detach"}
{"do":"hover","x":335,"y":300}
{"do":"hover","x":520,"y":350}
)");
    EXPECT_EQ(answers.at(0)["hit"], true);
    EXPECT_EQ(answers.at(6)["hit"], false);
    EXPECT_EQ(answers.at(7)["hit"], true);
}

TEST_F(DriveHandlesHost, ARingTurnsItsObjectAboutItsAxisInPlace) {
    const auto answers = play(std::string(attach) + grabPitch +
                              R"({"do":"drag","x":405,"y":360}
{"do":"release"}
)");
    ASSERT_EQ(answers.at(1)["part"], "pitch");
    const double turned = answers.at(2)["turned"].get<double>();
    // Seen from -y the way down is a turn about y by the right-hand rule.
    EXPECT_GT(turned, 10);
    EXPECT_LT(turned, 60);
    const double half = turned * std::numbers::pi / 360;
    const json& quaternion = answers.at(3)["pose"]["quaternion"];
    EXPECT_NEAR(quaternion[0].get<double>(), std::cos(half), 1e-6);
    EXPECT_NEAR(quaternion[2].get<double>(), std::sin(half), 1e-6);
    EXPECT_EQ(answers[3]["pose"]["position"], json::parse("[0.0,0.0,0.0]"));
}

TEST_F(DriveHandlesHost, AGrabBesideTheHandleHoldsNothing) {
    const auto answers = play(std::string(attach) + R"({"do":"grab","x":100,"y":100})"
                                                    "\n");
    EXPECT_EQ(answers.at(1)["part"], nullptr);
}

TEST_F(DriveHandlesHost, AHiddenHandleIsNotGrabbedUntilItIsShown) {
    const auto answers = play(std::string(attach) +
                              R"({"do":"handle","state":"hide"})"
                              "\n" +
                              grabX +
                              R"({"do":"handle","state":"show"})"
                              "\n" +
                              grabX);
    EXPECT_EQ(answers.at(1)["shown"], false);
    EXPECT_EQ(answers.at(2)["part"], nullptr);
    EXPECT_EQ(answers.at(3)["shown"], true);
    EXPECT_EQ(answers.at(4)["part"], "x");
}

TEST_F(DriveHandlesHost, AResetLetsGoAndShowsAllParts) {
    const auto answers = play(std::string(attach) +
                              R"({"do":"picture","name":"rest"})"
                              "\n" +
                              grabPitch + R"({"do":"picture","name":"held"}
{"do":"handle","state":"reset"}
{"do":"picture","name":"reset"}
)" + grabX);
    EXPECT_EQ(answers.at(6)["part"], "x");
    const auto arrow = [this](const std::string& name) { return picture(name).at(400, 388); };
    EXPECT_GT(Difference(arrow("rest"), arrow("held")), 60);
    EXPECT_LT(Difference(arrow("rest"), arrow("reset")), 4);
}

TEST_F(DriveHandlesHost, DetachedTheHandleIsGone) {
    const auto answers = play(std::string(R"({"do":"picture","name":"before"})"
                                          "\n") +
                              attach + R"({"do":"picture","name":"attached"}
{"do":"detach"}
{"do":"picture","name":"after"}
{"do":"hover","x":400,"y":388}
)");
    const auto arrow = [this](const std::string& name) { return picture(name).at(400, 388); };
    EXPECT_GT(Difference(arrow("before"), arrow("attached")), 60);
    EXPECT_LT(Difference(arrow("before"), arrow("after")), 4);
    EXPECT_EQ(answers.at(3)["object"], answers.at(1)["object"]);
    EXPECT_EQ(answers.at(5)["visual"]["id"], answers.at(1)["object"]);
}

TEST_F(DriveHandlesHost, WhatCannotBeDoneNowIsToldWithItsLine) {
    const auto errorOf = [this](const std::string& script) { return run(script).err; };
    EXPECT_THAT(errorOf(grabX), EndsWith(":1: the handle hangs on nothing: attach it first\n"));
    EXPECT_THAT(errorOf(R"({"do":"detach"})"),
                EndsWith(":1: the handle hangs on nothing: attach it first\n"));
    EXPECT_THAT(errorOf(R"({"do":"handle","state":"show"})"),
                EndsWith(":1: the handle hangs on nothing: attach it first\n"));
    EXPECT_THAT(errorOf(std::string(attach) + R"({"do":"drag","x":1,"y":2})"),
                EndsWith(":2: no part of the handle is grabbed\n"));
    EXPECT_THAT(errorOf(std::string(attach) + R"({"do":"release"})"),
                EndsWith(":2: no part of the handle is grabbed\n"));
    EXPECT_THAT(errorOf(std::string(attach) + grabX + grabX),
                EndsWith(":3: a part of the handle is grabbed: release it first\n"));
    EXPECT_THAT(errorOf(R"({"do":"attach","object":"lid"})"),
                EndsWith(":1: no input has an object of the name \"lid\"\n"));
}

}  // namespace
}  // namespace vrn::test
