#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "apps/vrnview/readers/CadModel.h"
#include "apps/vrnview/readers/CloudPoints.h"
#include "apps/vrnview/readers/Content.h"

namespace vrn::layout {
class Body;
class Part;
}  // namespace vrn::layout

namespace vrn::host {

/// How the numbers and looks of a geometry file are to be taken.
struct GeometryUse {
    rob::Vec3Template<double> unitMm{1, 1, 1};  ///< millimetres for one of the file's units
    std::optional<std::string> colour;          ///< "#RRGGBB", in place of the file's own
    std::string material;                       ///< family name; empty for the default
};

/// Makes model objects in a content. A file that is named several times is read once. All throw
/// std::runtime_error with the reason alone (no file name) for a geometry file that cannot be read,
/// and then leave no object in the lists. Thread: one at a time.
class ContentBuilder {
public:
    /// `target` must outlive the builder.
    explicit ContentBuilder(Content& target) : content(target) {}

    /// The part or assembly that a STEP, IGES, B-rep or STL file holds, named `name`; in no list.
    [[nodiscard]] sdf::SdfObject& model(const std::filesystem::path& file, const std::string& name,
                                        const GeometryUse& use);
    /// Enters what model() made among the content's parts or assemblies.
    void list(sdf::SdfObject& partOrAssembly);

    /// Adds the bodies of such a file to a part, each where the file places it, seen from `origin`.
    /// Their ids, in order.
    std::vector<layout::Body*> addBodies(layout::Part& part, const std::filesystem::path& file,
                                         const GeometryUse& use, const Pose& origin);

    /// A cloud in the content's list. Where its points lie so far out that single precision would
    /// show, they are counted from a place of their own, which is part of the cloud's pose.
    layout::PointCloud& cloud(const std::filesystem::path& file, const std::string& name,
                              double unitMm, const Pose& pose);

    /// Adds the links and joints of a description to a robot or device. `file` is where the meshes
    /// are looked for from; a mesh that cannot be read costs a line in the problems. The result is
    /// the content's, and valid until the next one is added.
    JointedObject& addLinks(layout::Mechanism& mechanism, RobotDescription description,
                            const std::filesystem::path& file, const std::string& material);

    /// A robot in the content's list, with its wrist on the link `wristLink` (empty: "tool0",
    /// "flange" or the end of the longest chain).
    layout::Manipulator& robot(RobotDescription description, const std::filesystem::path& file,
                               const std::string& vendor, const Pose& pose,
                               const std::string& wristLink);

    void addProblem(const std::string& what, const std::string& reason);

private:
    layout::Body& stlBody(const std::string& name, const std::filesystem::path& file,
                          const GeometryUse& use);
    layout::Body& cadBody(const CadBody& body, const std::optional<std::string>& placedColour,
                          const GeometryUse& use);
    const CadModel& cad(const std::filesystem::path& file, double unitMm);
    sdf::SdfObject& objectOf(const CadNode& node, const GeometryUse& use);
    void addNode(layout::Part& part, const CadNode& node, const Pose& outer, const GeometryUse& use,
                 std::vector<layout::Body*>& bodies);
    void addShape(layout::Part& part, const LinkShape& shape, const std::filesystem::path& file,
                  const std::string& material);

    Content& content;
    std::set<std::string> stlNames;        ///< of the meshes that the content holds
    std::map<std::string, CadModel> cads;  ///< by URI and unit
};

}  // namespace vrn::host
