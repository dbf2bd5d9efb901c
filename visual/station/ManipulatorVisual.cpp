#include "visual/station/ManipulatorVisual.h"

#include <array>
#include <string>
#include <utility>

#include "engine/Scene.h"
#include "suite/layout/Mechanism.h"
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
    const auto& model = dynamic_cast<const layout::Manipulator&>(*modelNode);
    auto* manipulator = new ManipulatorVisual(parent, modelNode, buildChildren);
    Scene* scene = Scene::Get();
    scene->visuals[manipulator->id] = manipulator;
    if (layout::Wrist* wrist = model.wrist())
        WristVisual::Build(scene->visuals.at(wrist->parentId), wrist);
}

}  // namespace vrn::visual
