// Feeds any text to the readers of stations and robots: each must end in a content that holds
// together or in one of its errors. The files that a station names do not exist.

#include "apps/vrnview/readers/Content.h"
#include "suite/layout/Mechanism.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <string_view>

namespace {

using namespace vrn;

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

void CheckStation(std::string_view text) {
    try {
        const host::Content content = host::ReadStation(text, "/nowhere/fuzz.station.json");
        std::set<std::uint32_t> carried;
        for (const layout::Attachment& a : content.attachments) {
            Require(a.childId != a.parentId, "nothing is attached to itself");
            Require(carried.insert(a.childId).second, "nothing is attached twice");
        }
        for (const layout::Manipulator* robot : content.robots)
            Require(robot->wrist() != nullptr && !robot->links().empty(), "robots are whole");
        for (const std::string& problem : content.problems)
            Require(!problem.empty(), "problems say something");
    } catch (const std::runtime_error&) {
    }
}

void CheckRobot(std::string_view text) {
    try {
        const host::RobotDescription robot = host::ReadUrdf(text);
        const std::vector<host::Pose> poses = robot.kinematics.linkPoses();
        Require(poses.size() == robot.links.size(), "a pose for each link");
        Require(robot.kinematics.getTip() < poses.size(), "the tip is a link");
    } catch (const std::runtime_error&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CheckStation(text);
    CheckRobot(text);
    return 0;
}
