#include "suite/task/Task.h"

#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"

#include <algorithm>

namespace vrn::task {

namespace {

std::vector<Task*>& Tasks() {
    // Never destroyed: tasks held by statics elsewhere still leave it when they end.
    static auto* tasks = new std::vector<Task*>;
    return *tasks;
}

}  // namespace

Path::Path(std::string_view pathName) : SdfObject(sdf::ObjectType::Path, pathName, "path") {}
Path::~Path() = default;

std::vector<Instruction*> Path::getInstructions() const { return getChildrenOf<Instruction>(); }
std::vector<MoveInst*> Path::getMoveInstructions() const { return getChildrenOf<MoveInst>(); }
std::size_t Path::moveInstructionCount() const { return getMoveInstructions().size(); }
Task* Path::getTask() const { return dynamic_cast<Task*>(getContainer()); }

Task::Task(std::string_view taskName, std::uint32_t robotId)
    : SdfObject(sdf::ObjectType::Task, taskName, "task"), manipulatorId(robotId) {}
Task::~Task() { RemoveTask(*this); }

std::vector<Path*> Task::getPaths() const { return getChildrenOf<Path>(); }
std::vector<ToolDataItem*> Task::getToolDataItems() const { return getChildrenOf<ToolDataItem>(); }
std::vector<WObjDataItem*> Task::getWObjDataItems() const { return getChildrenOf<WObjDataItem>(); }
std::vector<JointTargetDataItem*> Task::getJointTargetDataItems() const {
    return getChildrenOf<JointTargetDataItem>();
}

const std::vector<Task*>& GetAllTasks() { return Tasks(); }

void AddTask(Task& task) {
    if (std::ranges::find(Tasks(), &task) == Tasks().end()) Tasks().push_back(&task);
}

void RemoveTask(const Task& task) { std::erase(Tasks(), &task); }

}  // namespace vrn::task
