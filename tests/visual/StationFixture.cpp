#include "tests/visual/StationFixture.h"

#include <OgreEntity.h>
#include <OgreMaterial.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

using visual::Visual;

Visual* StationVisuals::addPlain(VisualType type, Visual* parent) {
    auto* visual = new Visual(parent);
    visual->type = type;
    scene().visuals[visual->id] = visual;
    return visual;
}

layout::Link* StationVisuals::addLink(layout::Mechanism* mechanism, const std::string& name) {
    auto* link = model.make<layout::Link>(name);
    mechanism->addLink(*link);
    link->addChild(*makeBoxPart(name + " part"));
    return link;
}

layout::Part* StationVisuals::addRefusedPart(layout::Mechanism* mechanism) {
    auto* link = model.make<layout::Link>("refused link");
    mechanism->addLink(*link);
    auto* part = model.make<layout::Part>("refused part");
    part->addBody(*model.make<layout::Body>("refused body", "body.igs", "igs"));
    link->addChild(*part);
    return part;
}

std::string StationVisuals::lookOf(Visual* visual) {
    for (visual::ForestIterator<Visual> it(visual); it.next();)
        if (const auto* mesh = dynamic_cast<visual::MeshVisual*>(it.value()))
            return mesh->getEntity()->getSubEntity(0)->getMaterialName();
    return {};
}

std::vector<std::string> StationVisuals::axisLooks(const Visual* frame) {
    std::vector<std::string> names;
    for (const auto& line : dynamic_cast<const visual::LineVisual&>(*frame).getLines())
        names.push_back(line->getMaterial()->getName());
    return names;
}

Visual* StationVisuals::childNamed(const Visual* parent, const std::string& name) {
    for (Visual* child : parent->getChildren())
        if (child->getName() == name) return child;
    return nullptr;
}

bool StationVisuals::isPickable(Visual* visual) {
    return selection::VisualSelection::Get()->hasVisual(visual);
}

bool StationVisuals::isDrawn(const Visual* visual) {
    const auto& objects = visual->node->getAttachedObjects();
    return !objects.empty() && objects.front()->getVisible();
}

StationVisuals::Traces StationVisuals::traces() {
    return {scene().visuals.size(), root()->getChildren().size(),
            selection::VisualSelection::Get()->objects.size()};
}

}  // namespace vrn::test
