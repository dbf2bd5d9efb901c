#include "visual/geometry/LineVisual.h"

#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"

namespace vrn::visual {

// An object detaches itself from its node when it dies, so the lines may go before the node.
LineVisual::~LineVisual() = default;

DynamicLines* LineVisual::createDynamicLine(RenderOpType op) {
    lines.push_back(std::make_unique<DynamicLines>(op));
    attachObject(lines.back().get());
    return lines.back().get();
}

void LineVisual::update() {
    if (!visible) return;
    for (const auto& line : lines) line->update();
    if (auto* picking = selection::VisualSelection::Get()) picking->rebuild(this);
}

void LineVisual::setVisible(bool show, bool cascade) {
    Visual::setVisible(show, cascade);
    if (show) update();
}

}  // namespace vrn::visual
