#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "apps/vrnview/readers/ContentBuilder.h"
#include "apps/vrnview/readers/JsonFields.h"

namespace vrn::task {
class DataItem;
class Operation;
class Path;
class ToolDataItem;
}  // namespace vrn::task

namespace vrn::host {

/// Turns the JSON of a station into a content; docs/station-file.md tells what stands in it.
///
/// Whatever is wrong with one object costs that object and a line in the problems. Thread: one at a
/// time.
class StationReader {
public:
    /// `file` is where the station stands, for the files that it names.
    explicit StationReader(std::filesystem::path file);

    /// Throws std::runtime_error for what is no station of a version that is known.
    [[nodiscard]] Content read(const nlohmann::json& station);

private:
    /// What stands in the station itself, for attachments.
    struct Placed {
        std::uint32_t id = 0;
        std::uint32_t mount = 0;  ///< where others attach: a robot's wrist, else the object
        layout::Mechanism* links = nullptr;  ///< null for what has none
        std::string root;                    ///< its key, or that of the assembly around it
        std::string attachedTo;              ///< the key of what it was attached to; or empty
    };
    using Work = std::function<void(const JsonFields&, const std::string& label)>;

    void forEach(const nlohmann::json& list, const std::string& kind, const Work& work);
    void warnUnknown(const JsonFields& fields, const std::string& label,
                     std::initializer_list<std::string_view> known);
    void enter(const JsonFields& fields, sdf::SdfNode& object, const Placed& placed);
    void checkId(const JsonFields& fields) const;
    [[nodiscard]] std::filesystem::path fileAt(const JsonFields& fields) const;
    [[nodiscard]] const Placed& placedAt(const JsonFields& fields, const char* key) const;

    void addObject(const JsonFields& fields, const std::string& label);
    [[nodiscard]] sdf::SdfObject& partOrAssembly(const JsonFields& fields, const std::string& label,
                                                 int depth);
    [[nodiscard]] sdf::SdfObject& part(const JsonFields& fields, const std::string& label);
    [[nodiscard]] sdf::SdfObject& assembly(const JsonFields& fields, const std::string& label,
                                           int depth);
    void addBodies(layout::Part& part, const nlohmann::json& bodies, const std::string& material,
                   const std::string& label);
    void paintFaces(const JsonFields& fields, const std::vector<layout::Body*>& bodies);

    void addRobot(const JsonFields& fields, const std::string& label);
    void addTool(const JsonFields& fields, const std::string& label);
    void addDevice(const JsonFields& fields, const std::string& label);
    [[nodiscard]] RobotDescription description(const JsonFields& fields);
    [[nodiscard]] JointedObject& addLinks(const JsonFields& fields, layout::Mechanism& mechanism,
                                          RobotDescription links, const std::string& material,
                                          const std::string& label);
    void addOwnLinkBodies(const JsonFields& fields, JointedObject& jointed,
                          const std::string& material, const std::string& label);
    void setJoints(const JsonFields& fields, JointedObject& jointed, const std::string& label);
    void addCloud(const JsonFields& fields, const std::string& label);
    void addFrame(const JsonFields& fields, const std::string& label);
    void addSensor(const JsonFields& fields, const std::string& label);
    task::WObjDataItem& workObject(const JsonFields& fields, const std::string& label,
                                   task::Task* task);
    void addTargets(const JsonFields& fields, task::WObjDataItem& wobj, const std::string& label,
                    task::Task* task);

    void addAttachment(const JsonFields& fields, const std::string& label);
    [[nodiscard]] std::uint32_t mountOf(const JsonFields& fields, const Placed& parent) const;
    void addTask(const JsonFields& fields, const std::string& label);
    void addToolData(const JsonFields& fields, const std::string& label, task::Task& task);
    void addJointTarget(const JsonFields& fields, const std::string& label, task::Task& task);
    void addPath(const JsonFields& fields, const std::string& label, task::Task& task);
    void addMove(const JsonFields& fields, const std::string& label, task::Path& path);
    [[nodiscard]] task::WObjDataItem& workObjectOf(const JsonFields& fields,
                                                   bool mayBeAbsent) const;
    [[nodiscard]] const task::RobTargetDataItem& targetOf(const JsonFields& fields,
                                                          const char* key) const;
    [[nodiscard]] MoveData moveData(const JsonFields& fields, sdf::ObjectType type) const;
    void addOperation(const JsonFields& fields, const std::string& label,
                      task::Operation* container);
    void addGroup(const JsonFields& fields, const std::string& label, sdf::ObjectType type,
                  task::Operation* container);
    void addPathOperation(const JsonFields& fields, const std::string& label, sdf::ObjectType type,
                          task::Operation* container);
    void enterNamed(const JsonFields& fields, const sdf::SdfNode& object);

    void addEnvelope(const JsonFields& fields, layout::Manipulator& robot,
                     const std::string& label);
    void placeJointTargets();

    std::filesystem::path file;
    Content content;
    ContentBuilder builder{content};
    std::map<std::string, Placed> placed;                    ///< by key
    std::map<std::string, task::WObjDataItem*> workObjects;  ///< by key
    /// By the work object's key, a slash and the target's name.
    std::map<std::string, task::RobTargetDataItem*> targets;
    /// What the moves of the task that is being made may name, by name.
    struct TaskNames {
        JointedObject* robot = nullptr;  ///< null for a task without one
        task::WObjDataItem* firstWorkObject = nullptr;
        std::uint32_t firstTool = 0;  ///< 0: there is none
        std::map<std::string, std::uint32_t> tools;
        std::map<std::string, task::JointTargetDataItem*> jointTargets;
        std::map<std::string, task::Path*> paths;
    };
    TaskNames taskNames;
    std::string currentRoot;  ///< the key of the object in the station that is being made
};

}  // namespace vrn::host
