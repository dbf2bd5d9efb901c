#include "visual/handle/PathEndHandle.h"

#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"
#include "visual/geometry/LineVisual.h"
#include "visual/handle/HandleMeshVisual.h"

namespace vrn::visual {

namespace {

constexpr float lineLength = 37.5f;  // half as long again as a band is wide

}  // namespace

PathEndHandle::PathEndHandle(const std::string& mesh, Visual* parent,
                             const rob::ColorTemplate<float>& color)
    : Visual(parent) {
    boundaryLine = new LineVisual(this);
    DynamicLines* line = boundaryLine->createDynamicLine(RenderOpType::LineList);
    line->addPoint(0, 0, 0);
    line->addPoint(0, 0, lineLength);
    boundaryLine->setMaterial("PathBoundary", "", "");
    boundaryLine->resetAppearance();
    boundaryLine->update();

    marker = new HandleMeshVisual(mesh, this);
    marker->showHandleMesh(mesh);
    marker->setMaterial("Axis", "", "HandleHighlight");
    marker->resetAppearance();
    marker->setColor(color, 1.0f);
    marker->setPosition(0, 0, lineLength);
    selection::VisualSelection::Get()->addMeshVisual(marker, /*detectable=*/false,
                                                     /*priority=*/true);
}

void PathEndHandle::enableSelection() {
    selection::VisualSelection::Get()->setObjectEnabled(marker, true);
}

void PathEndHandle::disableSelection() {
    selection::VisualSelection::Get()->setObjectEnabled(marker, false);
}

}  // namespace vrn::visual
