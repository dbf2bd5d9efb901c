// Settings that a host changes while the application runs.

// The instance manager uses what this declares without including it.
#include <OgreIteratorWrapper.h>

#include <OgreCamera.h>
#include <OgreInstanceBatch.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>

#include <vector>

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "engine/scene/SharedTargets.h"
#include "view/Camera.h"
#include "view/Grid.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/InstanceFrameVisual.h"
#include "visual/station/WObjVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::visual {

namespace {

// Where the size of a kind of frame is remembered; null for kinds that have none. Tcp frames share
// the setting of plain frames here, joint targets that of robot targets; their own are only read.
std::int32_t* SizeSetting(SceneSettings& settings, VisualType type) {
    switch (type) {
        case VisualType::Frame:
        case VisualType::Tcp:
            return &settings.frameSize;
        case VisualType::RobTarget:
        case VisualType::JointTarget:
            return &settings.robTargetFrameSize;
        case VisualType::WObj:
            return &settings.wobjFrameSize;
        default:
            return nullptr;
    }
}

void SetFrameSize(Visual* visual, unsigned size) {
    if (auto* frame = dynamic_cast<FrameVisual*>(visual)) frame->setFrameSize(size);
    if (auto* target = dynamic_cast<InstanceFrameVisual*>(visual)) target->setFrameSize(size);
    if (auto* wobj = dynamic_cast<WObjVisual*>(visual)) wobj->setFrameSize(size);
}

// Only the first batch of a material has indices of its own.
struct FirstBatch : Ogre::InstanceBatch {
    static bool is(const Ogre::InstanceBatch* batch) {
        return batch->*&FirstBatch::mRemoveOwnIndexData;
    }
};

// The engine copies further batches, of any material, from what the first one of a material draws,
// and has them draw its indices, but frees both with that one: it stays while others are in use.
void CleanUp(Ogre::InstanceManager& manager) {
    bool isInUse = false;
    std::vector<Ogre::InstanceBatch*> unusedFirst;
    for (auto materials = manager.getInstanceBatchMapIterator(); materials.hasMoreElements();)
        for (Ogre::InstanceBatch* batch : materials.getNext()) {
            if (!batch->isBatchUnused())
                isInUse = true;
            else if (FirstBatch::is(batch))
                unusedFirst.push_back(batch);
        }
    if (!isInUse) unusedFirst.clear();

    std::vector<Ogre::InstancedEntity*> held;
    for (Ogre::InstanceBatch* batch : unusedFirst) {
        held.push_back(batch->createInstancedEntity());
        // The bounds of what is in use are worked out before the others go, from known places.
        held.back()->setScale(Ogre::Vector3::UNIT_SCALE, /*doUpdate=*/true);
    }
    manager.cleanupEmptyBatches();
    for (Ogre::InstancedEntity* instance : held)
        instance->_getOwner()->removeInstancedEntity(instance);
}

}  // namespace

void Scene::setGridNormalDir(int dir) {
    StoreLive(settings.verticalDir, dir);
    post([this, dir] {
        if (grid) grid->setNormalDir(static_cast<Grid::NormalDir>(dir));
        gCamera->setVerticleDir(dir);
    });
}

void Scene::setDisplayMode(DisplayMode mode) {
    post([this, mode] { doSetDisplayMode(mode); });
}

void Scene::doSetDisplayMode(DisplayMode mode) {
    const auto isSolid = [](const Visual* v) { return v->type == VisualType::Solid; };
    const auto isWireFrame = [](const Visual* v) { return v->type == VisualType::WireFrame; };
    gCamera->camera->setPolygonMode(mode == DisplayMode::TriangleWires ? Ogre::PM_WIREFRAME
                                                                       : Ogre::PM_SOLID);
    switch (mode) {
        case DisplayMode::Shaded:
        case DisplayMode::TriangleWires:
            doSetVisible(isSolid, true);
            doSetVisible(isWireFrame, false);
            break;
        case DisplayMode::ShadedWithEdges:
            doSetVisible([&](const Visual* v) { return isSolid(v) || isWireFrame(v); }, true);
            break;
        case DisplayMode::EdgesOnly:
            doSetVisible(isSolid, false);
            doSetVisible(isWireFrame, true);
            break;
    }
}

void Scene::doSetVisible(const std::function<bool(const Visual*)>& predicate, bool show) {
    for (ForestIterator<Visual> it(root); it.next();)
        if (predicate(it.value())) it.value()->setVisible(show, /*cascade=*/false);
}

void Scene::setFrameSize(unsigned int size, VisualType type) {
    post([this, size, type] { doSetFramesSize(size, type); });
}

void Scene::doSetFramesSize(unsigned int size, VisualType type) {
    std::int32_t* setting = SizeSetting(settings, type);
    if (!setting) return;
    for (const auto& [id, visual] : visuals) {
        if (visual->type != type) continue;
        // Inside the loop on purpose: a size asked for a kind that nothing has is not remembered.
        *setting = static_cast<std::int32_t>(size);
        ForEachSharing(visual, [&](Visual* each) { SetFrameSize(each, size); });
    }
}

void Scene::setArrowSizeLevel(unsigned int level) {
    post([this, level] { doSetArrowSizeLevel(level); });
}

void Scene::doSetArrowSizeLevel(unsigned int level) {
    settings.arrowSizeLevel = static_cast<std::int32_t>(level);
    const double scale = level / 5.0;
    for (Visual* curve : previewCurves_)
        for (Visual* child : curve->getChildren())
            if (child->getName().starts_with("mfg_arrow")) child->setScale(scale, scale, scale);
}

void Scene::setHandleScale(float scale) {
    StoreLive(settings.handleScale, scale);
    post([] {});  // the post asks for a frame; the handles read the value while they render
}

void Scene::setDrawTargetZAxisOnly(bool on) {
    StoreLive(settings.drawTargetZAxisOnly, on);
    if (!LoadLive(settings.drawTargetVisual)) return;
    post([this, on] {
        for (const auto& [id, visual] : visuals)
            ForEachSharing(visual, [&](Visual* each) {
                if (auto* target = dynamic_cast<InstanceFrameVisual*>(each))
                    target->updateEntity(on);
            });
    });
}

void Scene::cleanupInstanceBatches() {
    post([this] {
        for (const auto& [key, manager] : instanceManagers) CleanUp(*manager);
    });
}

}  // namespace vrn::visual
