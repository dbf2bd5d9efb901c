// Robots' tasks, their tool data and their work objects.

#include "engine/Scene.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"
#include "visual/station/TcpVisual.h"
#include "visual/station/WObjVisual.h"
#include "visual/Visual.h"

namespace vrn::visual {

void Scene::addTask(std::uint32_t id) {
    post([this, id] { buildTask(id); });
}

void Scene::buildTask(std::uint32_t id) {
    const auto& job = dynamic_cast<const task::Task&>(*sdf::SdfManager::inst()->at(id));
    for (task::WObjDataItem* item : job.getWObjDataItems())
        WObjVisual::Build(resolveParentVisual(item), item);
    for (task::ToolDataItem* item : job.getToolDataItems()) buildToolData(item);
    buildPaths(job);
}

void Scene::buildToolData(sdf::SdfNode* item) {
    TcpVisual::Build(visuals.at(item->parentId), item);
}

void Scene::addToolData(std::uint32_t id) {
    post([this, id] { buildToolData(sdf::SdfManager::inst()->at(id)); });
}

void Scene::updateToolData(std::uint32_t id) {
    post([this, id] {
        doRemoveVisual(id);
        buildToolData(sdf::SdfManager::inst()->at(id));
    });
}

void Scene::addWObj(sdf::SdfNode* modelNode) {
    post([this, modelNode] { WObjVisual::Build(resolveParentVisual(modelNode), modelNode); });
}

void Scene::updateWObj(std::uint32_t id) {
    postToVisual(id, [](Visual* visual) { visual->update(); });
}

}  // namespace vrn::visual
