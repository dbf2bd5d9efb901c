#pragma once

#include <string>

namespace vrn::test {

/// The text of a station with a six-axis arm "arm", standing at (100, 200, 0) and turned by 90
/// degrees about z, a frame "room" at the origin, and a tool "pen" on its wrist, 120 long along the
/// flange's x. Each moving link has the body of "box.stl" if `withBodies`. `more` goes on behind,
/// as in R"("tasks": [...])", and may be empty; `objects` are objects behind the arm and the pen.
[[nodiscard]] inline std::string ArmStation(const std::string& more,
                                            const std::string& objects = "",
                                            bool withBodies = false) {
    std::string links = R"({"name": "base"})";
    for (const char* name : {"l1", "l2", "l3", "l4", "l5", "l6"}) {
        links += R"(, {"name": ")" + std::string(name) + '"';
        if (withBodies) links += R"(, "bodies": [{"file": "box.stl"}])";
        links += '}';
    }
    return R"({"format": "vrn-station", "version": 1, "objects": [
        {"type": "robot", "id": "arm", "vendor": "",
         "pose": {"position": [100, 200, 0], "rpy": [0, 0, 90]},
         "links": [)" +
           links + R"(],
         "joints": [
           {"name": "j1", "parent": "base", "child": "l1", "axis": [0, 0, 1],
            "origin": {"position": [0, 0, 400]}, "lower": -170, "upper": 170},
           {"name": "j2", "parent": "l1", "child": "l2", "axis": [0, 1, 0],
            "origin": {"position": [100, 0, 0]}, "lower": -80, "upper": 120},
           {"name": "j3", "parent": "l2", "child": "l3", "axis": [0, 1, 0],
            "origin": {"position": [0, 0, 500]}, "lower": -160, "upper": 80},
           {"name": "j4", "parent": "l3", "child": "l4", "axis": [1, 0, 0],
            "origin": {"position": [200, 0, 50]}, "lower": -350, "upper": 350},
           {"name": "j5", "parent": "l4", "child": "l5", "axis": [0, 1, 0],
            "origin": {"position": [300, 0, 0]}, "lower": -120, "upper": 120},
           {"name": "j6", "parent": "l5", "child": "l6", "axis": [1, 0, 0],
            "origin": {"position": [80, 0, 0]}, "lower": -350, "upper": 350}],
         "jointValues": {"j2": 10, "j3": 10, "j5": 60}, "wrist": "l6"},
        {"type": "frame", "id": "room"}, {"type": "tool", "id": "pen"})" +
           (objects.empty() ? "" : ", " + objects) +
           R"(], "attachments": [{"child": "pen", "parent": "arm"}])" +
           (more.empty() ? "" : ", " + more) + "}";
}

/// The text of a task "draw" of that arm with the tool centre point "tip" and a work object "desk"
/// that stands in front of the arm, its targets with x down and z ahead, as the tip has them: "a"
/// to "e", the corners and the middle of a square of 200, and "high" above "a"; and the joint
/// target "rest". `moves` are those of its path "main".
[[nodiscard]] inline std::string DrawTask(const std::string& moves,
                                          const std::string& tools = R"({"name": "tip",
        "tool": "pen", "pose": {"position": [120, 0, 0]}})") {
    // In the desk's frame, which lies as the robot's: the pen points down.
    const auto target = [](const char* name, const char* place) {
        return R"({"name": ")" + std::string(name) + R"(", "pose": {"position": )" + place +
               R"(, "rpy": [0, 90, 0]}})";
    };
    return R"({"name": "draw", "robot": "arm",
        "workObjects": [{"name": "desk", "parent": "room", "pose": {"position": [100, 800, 300], "rpy": [0, 0, 90]},
            "objectFrame": {"position": [0, 0, 10]}, "targets": [)" +
           target("a", "[-100, -100, 0]") + ", " + target("b", "[100, -100, 0]") + ", " +
           target("c", "[100, 100, 0]") + ", " + target("d", "[-100, 100, 0]") + ", " +
           target("e", "[0, 0, 0]") + ", " + target("high", "[-100, -100, 150]") + ", " +
           target("far", "[2000, 0, 0]") + R"(]}],
        "tools": [)" +
           tools + R"(],
        "jointTargets": [{"name": "rest", "values": {"j1": 0, "j2": -20, "j3": 30, "j4": 0,
                                                     "j5": 50, "j6": 0}}],
        "paths": [{"name": "main", "moves": [)" +
           moves + "]}]}";
}

/// One move of that path; `more` goes on behind, as in R"("speed": 20)".
[[nodiscard]] inline std::string MoveTo(const std::string& type, const std::string& target,
                                        const std::string& more = "") {
    const std::string key = target == "rest" ? "jointTarget" : "target";
    return R"({"type": ")" + type + R"(", "workObject": "desk", ")" + key + R"(": ")" + target +
           '"' + (more.empty() ? "" : ", " + more) + '}';
}

/// A program of all kinds of moves.
[[nodiscard]] inline std::string DrawMoves() {
    return MoveTo("joint", "rest") + ", " + MoveTo("joint", "high", R"("speed": 30)") + ", " +
           MoveTo("linear", "a", R"("speed": 100)") + ", " +
           MoveTo("linear", "b", R"("speed": 50)") + ", " +
           MoveTo("circular", "d", R"("circle": "c", "speed": 80)") + ", " + MoveTo("linear", "e") +
           ", " + MoveTo("joint", "rest");
}

}  // namespace vrn::test
