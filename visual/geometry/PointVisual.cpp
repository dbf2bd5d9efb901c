#include "visual/geometry/PointVisual.h"

#include <OgreManualObject.h>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "visual/geometry/Detectable.h"
#include "visual/geometry/PointPicture.h"
#include "visual/ModelNode.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;

constexpr const char* normalLook = "Point";
constexpr const char* previewLook = "PointPreview";

}  // namespace

PointVisual::PointVisual(Visual* parent, const Pos& position) : Visual(parent), point(position) {
    show();
}

PointVisual::PointVisual(std::uint32_t idIn, Visual* parent, const Pos& position)
    : Visual(idIn, parent), point(position) {
    show();
}

PointVisual::PointVisual(sdf::SdfNode* modelNode, Visual* parent, const Pos& position)
    : Visual(modelNode, parent), point(position) {
    show();
}

PointVisual::~PointVisual() { DestroyPointPicture(manualObject); }

void PointVisual::show() {
    type = VisualType::Point;
    manualObject = MakePointPicture(this);
    AddPoints(*manualObject, normalLook, {&point, 1}, normalColor);
}

void PointVisual::usePreviewLook() {
    setMaterial(previewLook, previewLook, previewLook);
    resetAppearance();
}

PointVisual* PointVisual::Build(Visual* parent, const Pos& position) {
    auto* visual = new PointVisual(parent, position);
    visual->usePreviewLook();
    return visual;
}

PointVisual* PointVisual::Build(std::uint32_t idIn, double x, double y, double z) {
    Scene* scene = Scene::Get();
    auto* visual = new PointVisual(
        idIn, scene->root, {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
    visual->usePreviewLook();
    scene->visuals[visual->id] = visual;
    return visual;
}

PointVisual* PointVisual::Build(Visual* parent, sdf::SdfNode* modelNode, const Pos& position) {
    const bool detectable = IsDetectable(RequireModelNode(modelNode));
    auto* visual = new PointVisual(modelNode, parent, position);
    visual->setMaterial(normalLook, "PointSelected", "PointHighlighted");
    visual->resetAppearance();
    Scene::Get()->visuals[visual->id] = visual;
    selection::VisualSelection::Get()->addPointVisual(visual, detectable);
    return visual;
}

void PointVisual::setColor(const rob::ColorTemplate<float>& color, float alpha) {
    SetPointColor(*manualObject, color, alpha);
}

void PointVisual::resetAppearance() {
    Visual::resetAppearance();
    setColor(normalColor, 1.0f);
}

void PointVisual::setSelected() {
    Visual::setSelected();
    setColor(selectedColor, 1.0f);
}

void PointVisual::setHighlighted() {
    Visual::setHighlighted();
    setColor(highlightedColor, 1.0f);
}

}  // namespace vrn::visual
