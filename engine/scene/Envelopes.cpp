// What robots reach.

#include <format>

#include "engine/Scene.h"
#include "visual/station/ManipulatorVisual.h"
#include "visual/station/WorkEnvelope2DVisual.h"
#include "visual/station/WorkEnvelope3DVisual.h"

namespace vrn::visual {

void Scene::addWorkEnvelopeVisual(std::uint32_t manipulatorId, std::uint32_t parentId,
                                  const std::vector<rob::PosTemplate<double>>& points,
                                  const std::vector<rob::DirTemplate<double>>& normals,
                                  float minAngle, float maxAngle) {
    removeWorkEnvelopeVisual(manipulatorId);
    post([this, manipulatorId, parentId, points, normals, minAngle, maxAngle] {
        doAddWorkEnvelopeVisual(manipulatorId, parentId, points, normals, minAngle, maxAngle);
    });
}

void Scene::doAddWorkEnvelopeVisual(std::uint32_t manipulatorId, std::uint32_t parentId,
                                    const std::vector<rob::PosTemplate<double>>& points,
                                    const std::vector<rob::DirTemplate<double>>& normals,
                                    float minAngle, float maxAngle) {
    const auto parent = visuals.find(parentId);
    if (parent == visuals.end()) return;
    auto* manipulator = dynamic_cast<ManipulatorVisual*>(visuals.at(manipulatorId));
    if (!manipulator) return;
    const std::string base = std::format("work_envelope_{}", manipulatorId);
    // The outline goes where the joint's first link carries it, the surface stays with the base.
    auto* surface =
        WorkEnvelope3DVisual::Build(manipulator, base + "_3d", points, normals, minAngle, maxAngle);
    auto* outline = WorkEnvelope2DVisual::Build(parent->second, base + "_2d", points);
    manipulator->setWorkEnvelope3DVisual(surface);
    manipulator->setWorkEnvelope2DVisual(outline);
}

void Scene::updateWorkEnvelopeVisual(std::uint32_t id, bool show2D, bool show3D) {
    postToVisual(id, [show2D, show3D](Visual* visual) {
        if (auto* manipulator = dynamic_cast<ManipulatorVisual*>(visual))
            manipulator->updateWorkEnvelopeVisuals(show2D, show3D);
    });
}

void Scene::removeWorkEnvelopeVisual(std::uint32_t id) {
    postToVisual(id, [](Visual* visual) {
        if (auto* manipulator = dynamic_cast<ManipulatorVisual*>(visual))
            manipulator->removeWorkEnvelopeVisuals();
    });
}

void Scene::forgetEnvelope(const Visual* visual) {
    if (visual->type != VisualType::WorkEnvelope) return;
    const auto tellRobot = [visual](const auto* envelope) {
        if (envelope && envelope->robot) envelope->robot->forgetWorkEnvelope(visual);
    };
    tellRobot(dynamic_cast<const WorkEnvelope2DVisual*>(visual));
    tellRobot(dynamic_cast<const WorkEnvelope3DVisual*>(visual));
}

}  // namespace vrn::visual
