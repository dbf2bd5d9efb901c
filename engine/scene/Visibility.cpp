// What is shown: single objects, the paths of a group, all visuals of a kind.

#include <algorithm>
#include <array>

#include "engine/Scene.h"
#include "engine/scene/SharedTargets.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/Operation.h"
#include "visual/handle/GuiVisual.h"
#include "visual/Visual.h"

namespace vrn::visual {

namespace {

using sdf::ObjectType;

// Kinds whose picking goes with all that hangs below them.
constexpr std::array compoundTypes{
    VisualType::Manipulator, VisualType::Tool, VisualType::Device, VisualType::Link,
    VisualType::Assembly,    VisualType::Part, VisualType::Path,   VisualType::MoveInstruction,
    VisualType::WObj};

// Handles are switched by themselves: one that is off is not to be picked when a body is shown.
void SetSubtreeEnabled(Visual* visual, bool on) {
    selection::VisualSelection::Get()->setObjectEnabled(visual, on);
    for (Visual* child : visual->getChildren())
        if (!dynamic_cast<const GuiVisual*>(child)) SetSubtreeEnabled(child, on);
}

// Whether the operation runs a path. One that names an operation instead, itself at worst, would be
// gone through without end.
bool RunsPath(const task::PathOperation* operation) {
    if (!operation || !operation->hasPath()) return false;
    const sdf::SdfNode* path = sdf::SdfManager::inst()->find(operation->getPathId());
    return !dynamic_cast<const task::Operation*>(path);
}

// The path ids of those operations that have a path.
void CollectPathOpPathIds(const std::vector<std::uint32_t>& operationIds,
                          std::vector<std::uint32_t>& pathIds) {
    for (const std::uint32_t id : operationIds) {
        const auto* operation =
            dynamic_cast<task::PathOperation*>(sdf::SdfManager::inst()->find(id));
        if (RunsPath(operation)) pathIds.push_back(operation->getPathId());
    }
}

std::vector<std::uint32_t> PathsOfGroup(const sdf::SdfContainer& group) {
    std::vector<std::uint32_t> pathIds;
    CollectPathOpPathIds(group.getObjChildren(ObjectType::PathOperation), pathIds);
    return pathIds;
}

std::vector<std::uint32_t> PathsOfGroupContainer(const sdf::SdfContainer& container) {
    std::vector<std::uint32_t> pathIds;
    CollectPathOpPathIds(container.getObjChildren(ObjectType::SinglePathOperation), pathIds);
    for (const std::uint32_t groupId : container.getObjChildren(ObjectType::PathGroup)) {
        const auto* group =
            dynamic_cast<sdf::SdfContainer*>(sdf::SdfManager::inst()->find(groupId));
        if (group) CollectPathOpPathIds(group->getObjChildren(ObjectType::PathOperation), pathIds);
    }
    return pathIds;
}

}  // namespace

void Scene::setVisualVisible(std::uint32_t id, bool show) {
    const sdf::SdfNode* object = sdf::SdfManager::inst()->find(id);
    if (!object) return;
    const auto* container = dynamic_cast<const sdf::SdfContainer*>(object);
    switch (object->objectType) {
        case ObjectType::PathGroup:
            if (container)
                for (const std::uint32_t path : PathsOfGroup(*container))
                    setVisualVisible(path, show);
            return;
        case ObjectType::SinglePathOperation:
        case ObjectType::ProcessPathOperation: {
            clearSelections();
            const auto* operation = dynamic_cast<const task::PathOperation*>(object);
            if (RunsPath(operation)) setVisualVisible(operation->getPathId(), show);
            return;
        }
        case ObjectType::PathGroupContainer:
            if (container)
                for (const std::uint32_t path : PathsOfGroupContainer(*container))
                    setVisualVisible(path, show);
            return;
        default:
            post([this, id, show] { doSetVisualVisible(id, show); });
    }
}

void Scene::doSetVisualVisible(std::uint32_t id, bool show) {
    const auto found = visuals.find(id);
    if (found == visuals.end()) return;
    ForEachSharing(found->second, [show](Visual* visual) {
        visual->setVisible(show, /*cascade=*/true);
        if (std::ranges::find(compoundTypes, visual->type) != compoundTypes.end())
            SetSubtreeEnabled(visual, show);
        else
            selection::VisualSelection::Get()->setObjectEnabled(visual, show);
    });
}

void Scene::doSetTypeVisible(VisualType type, bool show, bool cascade) {
    for (const auto& [id, visual] : visuals)
        if (visual->type == type)
            ForEachSharing(visual, [&](Visual* each) { each->setVisible(show, cascade); });
}

void Scene::setFrameVisualVisible(bool show) {
    post([this, show] { doSetTypeVisible(VisualType::Frame, show, /*cascade=*/false); });
}

void Scene::setTcpVisualVisible(bool show) {
    post([this, show] { doSetTypeVisible(VisualType::Tcp, show, /*cascade=*/false); });
}

void Scene::setWObjVisualVisible(bool show) {
    // A work object has no picture of its own: its frames hang below it.
    post([this, show] { doSetTypeVisible(VisualType::WObj, show, /*cascade=*/true); });
}

void Scene::setTargetVisualVisible(bool show) {
    post([this, show] { doSetTypeVisible(VisualType::RobTarget, show, /*cascade=*/false); });
}

}  // namespace vrn::visual
