#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::task {

class Instruction;
class JointTargetDataItem;
class MoveInst;
class Task;
class ToolDataItem;
class WObjDataItem;

/// A path: instructions, in order, as its children.
class VRN_SUITE_API Path : public sdf::SdfObject {
public:
    explicit Path(std::string_view name);
    ~Path() override;

    [[nodiscard]] std::vector<Instruction*> getInstructions() const;
    [[nodiscard]] std::vector<MoveInst*> getMoveInstructions() const;
    [[nodiscard]] std::size_t moveInstructionCount() const;
    /// The task that holds it; null outside of one.
    [[nodiscard]] Task* getTask() const;
};

/// A robot's task: paths and data items, in order, as its children.
class VRN_SUITE_API Task : public sdf::SdfObject {
public:
    /// `robotId` is the manipulator's id, 0 for none.
    explicit Task(std::string_view name, std::uint32_t robotId = 0);
    ~Task() override;

    [[nodiscard]] std::uint32_t getManipulatorId() const { return manipulatorId; }
    void setManipulatorId(std::uint32_t robotId) { manipulatorId = robotId; }

    [[nodiscard]] std::vector<Path*> getPaths() const;
    [[nodiscard]] std::vector<ToolDataItem*> getToolDataItems() const;
    [[nodiscard]] std::vector<WObjDataItem*> getWObjDataItems() const;
    [[nodiscard]] std::vector<JointTargetDataItem*> getJointTargetDataItems() const;

private:
    std::uint32_t manipulatorId;
};

/// The tasks of the open station, in the order of adding. A task that ends leaves by itself.
/// Thread: as layout::Layout.
[[nodiscard]] VRN_SUITE_API const std::vector<Task*>& GetAllTasks();
/// Adding a task twice does nothing, nor does removing one that is not in.
VRN_SUITE_API void AddTask(Task& task);
VRN_SUITE_API void RemoveTask(const Task& task);

}  // namespace vrn::task
