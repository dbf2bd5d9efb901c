#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vrnview/readers/Poses.h"

namespace vrn::host {

/// How one link of a mechanism moves against another. Lengths in millimetres, angles in radians.
struct Joint {
    enum class Kind { Fixed, Turning, Sliding };

    std::string name;
    Kind kind = Kind::Fixed;
    std::size_t parent = 0, child = 0;        ///< indices of links
    Pose origin;                              ///< of the child at value 0, in the parent's frame
    rob::Vec3Template<double> axis{1, 0, 0};  ///< in the child's frame, of unit length
    std::optional<double> lower, upper;       ///< none: without limit
    /// A joint that follows another one: its value is factor * the other's + offset.
    struct Mimic {
        std::string joint;
        double factor = 1, offset = 0;
    };
    std::optional<Mimic> mimic;
};

/// The joints of one mechanism, and where they take its links.
///
///     Kinematics arm(7, joints);
///     arm.setValue("joint_2", 0.5);
///     arm.linkPoses();  // in the mechanism's frame, one a link
///
/// Thread: one at a time.
class Kinematics {
public:
    Kinematics() = default;
    /// Every joint but the first link's has exactly one parent: throws std::runtime_error if a link
    /// has two, if links form a cycle, if two joints share a name, if a joint names a link that is
    /// not there or follows one that is not there or follows one itself, or if there are several
    /// links that hang on none. `linkNames` are for the messages.
    Kinematics(const std::vector<std::string>& linkNames, std::vector<Joint> joints);

    /// Parents before their children.
    [[nodiscard]] const std::vector<Joint>& getJoints() const { return joints; }
    [[nodiscard]] bool hasJoint(std::string_view name) const;
    /// Radians or millimetres. Throws std::out_of_range for a joint that is not there.
    [[nodiscard]] double getValue(std::string_view name) const;
    /// Throws std::runtime_error, and changes nothing, for a joint that is not there, is fixed or
    /// follows another one, and for a value that is not finite or beyond the joint's limits.
    void setValue(std::string_view name, double value);
    /// One for each link, in the mechanism's frame. A joint whose limits leave out 0 starts at the
    /// nearer one.
    [[nodiscard]] std::vector<Pose> linkPoses() const;
    /// The link that hangs on none.
    [[nodiscard]] std::size_t getBase() const { return base; }
    /// The link at the end of the longest chain; the first of several.
    [[nodiscard]] std::size_t getTip() const;

private:
    /// The number of joints for a name that is not there.
    [[nodiscard]] std::size_t indexOf(std::string_view name) const;
    [[nodiscard]] double valueOf(std::size_t index) const;
    void findBase(const std::vector<std::string>& linkNames);
    void sort(const std::vector<std::string>& linkNames);
    void checkMimics() const;

    std::size_t links = 0;
    std::size_t base = 0;
    std::vector<Joint> joints;
    std::map<std::string, std::size_t, std::less<>> indices;  ///< of joints, by name
    std::vector<double> values;  ///< one a joint; of one that follows unused
};

/// What one link shows.
struct LinkShape {
    enum class Kind { Mesh, Box, Cylinder, Sphere };

    Kind kind = Kind::Mesh;
    std::string file;  ///< of a mesh, as the description names it
    /// Of a mesh, millimetres for one of the file's units along x, y, z; else the sizes: a box's
    /// sides, a cylinder's radius and height, a sphere's radius.
    rob::Vec3Template<double> size{1, 1, 1};
    Pose origin;
    std::optional<std::string> colour;  ///< "#RRGGBB"
};

struct RobotLink {
    std::string name;
    std::vector<LinkShape> shapes;
};

/// A robot as a description names it.
struct RobotDescription {
    std::string name;
    std::vector<RobotLink> links;  ///< at least one
    Kinematics kinematics;
    std::vector<std::string> problems;  ///< a line each, for what was left out
};

/// Reads a URDF text: metres become millimetres. Collision shapes, dynamics and whatever else
/// stands in it are passed over; floating and planar joints count as fixed. Throws
/// std::runtime_error with the reason alone for what is no URDF, for links that no tree of joints
/// holds together and for numbers that are none. Thread: pure.
[[nodiscard]] RobotDescription ReadUrdf(std::string_view text);

/// The maker that a robot's material family goes by: "abb", "kuka", "fanuc", "yaskawa", or "" if
/// neither the robot's name, nor the file's, nor a folder's above it has one of these as a word.
/// The nearest one counts. Thread: pure.
[[nodiscard]] std::string VendorOf(std::string_view robotName, const std::filesystem::path& file);

/// The material family that a maker's robots are shown in: "ABB", "KUKA", "FANUC", "YASKAWA", else
/// "Mechanism". Thread: pure.
[[nodiscard]] std::string MaterialFamilyOf(std::string_view vendor);

/// The file that a description means by `name`: relative to the folder of the description, which
/// `description` names; "file://" is absolute, and "package://robot/meshes/a.stl" is looked for
/// under the folders above, in one named "robot". Where nothing is found, the first place that was
/// looked at.
[[nodiscard]] std::filesystem::path FindMesh(const std::string& name,
                                             const std::filesystem::path& description);

}  // namespace vrn::host
