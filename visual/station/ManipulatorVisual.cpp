#include "visual/station/ManipulatorVisual.h"

#include <array>
#include <string>
#include <utility>

#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
#include "visual/ModelNode.h"
#include "visual/station/WorkEnvelope2DVisual.h"
#include "visual/station/WorkEnvelope3DVisual.h"
#include "visual/station/WristVisual.h"

namespace vrn::visual {

namespace {

std::string MaterialFamily(const std::string& vendor) {
    constexpr std::array<std::pair<const char*, const char*>, 4> families{
        {{"abb", "ABB"}, {"kuka", "KUKA"}, {"fanuc", "FANUC"}, {"yaskawa", "YASKAWA"}}};
    for (const auto& [name, family] : families)
        if (vendor == name) return family;
    return "Mechanism";
}

bool HangsUnder(const Visual* visual, const Visual* above) {
    for (; visual; visual = visual->getParent())
        if (visual == above) return true;
    return false;
}

/// Puts `next` in the place of `kept`, and the robot in its.
template <class Envelope>
void Keep(Envelope*& kept, Envelope* next, ManipulatorVisual* robot) {
    if (kept) kept->robot = nullptr;
    if (next && next->robot) next->robot->forgetWorkEnvelope(next);
    if (next) next->robot = robot;
    kept = next;
}

}  // namespace

ManipulatorVisual::ManipulatorVisual(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren)
    : MechanismVisual(modelNode, parent, buildChildren) {
    type = VisualType::Manipulator;
    const std::string family =
        MaterialFamily(modelNode->element->touch("vendor")->as<std::string>());
    setMaterial(family, family + "Selected", family + "Highlighted");
    MechanismVisual::resetAppearance();
}

void ManipulatorVisual::Build(Visual* parent, sdf::SdfNode* modelNode, bool buildChildren) {
    const auto& model = dynamic_cast<const layout::Manipulator&>(RequireModelNode(modelNode));
    auto* manipulator = new ManipulatorVisual(parent, modelNode, buildChildren);
    Scene* scene = Scene::Get();
    scene->visuals[manipulator->id] = manipulator;
    if (layout::Wrist* wrist = model.wrist())
        WristVisual::Build(scene->visuals.at(wrist->parentId), wrist);
}

ManipulatorVisual::~ManipulatorVisual() { removeWorkEnvelopeVisuals(); }

void ManipulatorVisual::setWorkEnvelope2DVisual(WorkEnvelope2DVisual* outline) {
    Keep(workEnvelope2D, outline, this);
    shows2D = outline && outline->visible;
}

void ManipulatorVisual::setWorkEnvelope3DVisual(WorkEnvelope3DVisual* surface) {
    Keep(workEnvelope3D, surface, this);
    shows3D = surface && surface->visible;
}

void ManipulatorVisual::updateWorkEnvelopeVisuals(bool show2D, bool show3D) {
    shows2D = show2D;
    shows3D = show3D;
    if (workEnvelope2D) workEnvelope2D->setVisible(show2D, /*cascade=*/true);
    if (workEnvelope3D) workEnvelope3D->setVisible(show3D, /*cascade=*/true);
}

void ManipulatorVisual::setVisible(bool show, bool cascade) {
    MechanismVisual::setVisible(show, cascade);
    if (!show || !cascade) return;
    // The cascade has shown what hangs below, and an envelope that is switched off with it.
    if (workEnvelope2D && !shows2D && HangsUnder(workEnvelope2D, this))
        workEnvelope2D->setVisible(false, /*cascade=*/true);
    if (workEnvelope3D && !shows3D) workEnvelope3D->setVisible(false, /*cascade=*/true);
}

void ManipulatorVisual::removeWorkEnvelopeVisuals() {
    Scene* scene = Scene::Get();
    scene->deleteVisual(std::exchange(workEnvelope2D, nullptr));
    scene->deleteVisual(std::exchange(workEnvelope3D, nullptr));
}

void ManipulatorVisual::forgetWorkEnvelope(const Visual* envelope) {
    if (workEnvelope2D == envelope) workEnvelope2D = nullptr;
    if (workEnvelope3D == envelope) workEnvelope3D = nullptr;
}

}  // namespace vrn::visual
