#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vrnview/readers/CameraSpot.h"
#include "apps/vrnview/readers/Robot.h"
#include "mesh/Mesh.h"
#include "suite/layout/Layout.h"
#include "suite/sdf/ObjectStore.h"

namespace vrn::layout {
class Link;
class Mechanism;
}  // namespace vrn::layout

namespace vrn::smartcomp {
class Sensor;
}

namespace vrn::task {
class JointTargetDataItem;
class Operation;
class RobTargetDataItem;
class Task;
class WObjDataItem;
}  // namespace vrn::task

namespace vrn::host {

/// A robot or device with the joints that move its links.
struct JointedObject {
    layout::Mechanism* object = nullptr;  ///< never null once made
    std::vector<layout::Link*> links;     ///< in the order of the kinematics' links
    Kinematics kinematics;

    /// Takes the links, in the model, to where the joints' values put them.
    void poseLinks();
};

/// How a move is run, beyond what the model keeps of it.
struct MoveData {
    /// Millimetres a second along a linear or circular move; degrees (millimetres) a second of the
    /// joint that has the longest way in a joint move. Above 0.
    double speed = 0;
    std::uint32_t toolDataId = 0;  ///< of the centre point that goes to the target; 0: the wrist
};
inline constexpr double defaultSpeed = 250, defaultJointSpeed = 60;

/// How far a robot reaches: a profile that turns about the robot's z axis.
struct WorkEnvelope {
    layout::Manipulator* robot = nullptr;           ///< never null once made
    std::uint32_t outlineParent = 0;                ///< what the outline moves with
    std::vector<rob::PosTemplate<double>> points;   ///< two at least, y is 0
    std::vector<rob::DirTemplate<double>> normals;  ///< one a point, to the right of the profile
    double fromRad = 0, toRad = 0;
    bool showsOutline = true, showsSurface = false;
};

/// What a file turned out to hold: model objects, and what of them the scene is to be told.
///
/// A list names what stands in the station itself, in the file's order; what hangs inside an
/// assembly or a mechanism is found through it. Lengths are millimetres. The objects live as long
/// as the content.
struct Content {
    /// Triangles that bodies name as their geometry: to be given to the mesh manager before the
    /// bodies are shown.
    std::vector<std::unique_ptr<visual::Mesh>> meshes;
    sdf::ObjectStore objects;  ///< owns what the lists point to

    std::vector<layout::Manipulator*> robots;
    std::vector<layout::Assembly*> assemblies;
    std::vector<layout::Part*> parts;
    std::vector<layout::PointCloud*> clouds;
    std::vector<layout::Tool*> tools;
    std::vector<layout::Device*> devices;
    std::vector<layout::Frame*> frames;
    std::vector<smartcomp::Sensor*> sensors;
    /// Work objects and tool data that belong to no task; a task's own are found in it.
    std::vector<task::WObjDataItem*> workObjects;
    /// Targets, each hanging on the object frame of a work object.
    std::vector<task::RobTargetDataItem*> targets;
    std::vector<task::Task*> tasks;
    /// Path groups, their containers and operations that stand in no other.
    std::vector<task::Operation*> operations;
    /// By the move's id; each move of a task has one.
    std::map<std::uint32_t, MoveData> moves;
    /// The values of joint targets, by the item's id and the joint's name: radians or millimetres.
    /// A joint that is not named keeps the value that it has.
    std::map<std::uint32_t, std::map<std::string, double>> jointTargets;
    std::vector<WorkEnvelope> envelopes;

    std::vector<JointedObject> jointed;
    std::vector<layout::Attachment> attachments;
    std::set<std::uint32_t> hidden;
    std::optional<CameraSpot> camera;
    /// The names that a station file gives its objects.
    std::map<std::string, std::uint32_t, std::less<>> ids;
    /// A line each, for what was left out; the rest is whole.
    std::vector<std::string> problems;
};

/// The kinds of file that ReadContent reads, as a list for messages.
inline constexpr std::string_view supportedFiles =
    ".step .stp .iges .igs .brep .stl .urdf .ply .pcd .xyz .pts .station.json";

/// Whether ReadContent reads files of this name: the extension counts, in any case. Thread: pure.
[[nodiscard]] bool IsSupported(const std::filesystem::path& file);

/// Reads any supported file. Throws std::runtime_error with the reason alone (no file name) for a
/// file of which nothing can be shown. Thread: one at a time.
[[nodiscard]] Content ReadContent(const std::filesystem::path& file);

/// Reads the text of a station file; `file` is where it stands, for the files that it names.
/// Throws std::runtime_error with the reason alone for what is no station. Thread: one at a time.
[[nodiscard]] Content ReadStation(std::string_view text, const std::filesystem::path& file);

}  // namespace vrn::host
