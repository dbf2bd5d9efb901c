#include "visual/handle/PathEndsHandle.h"

#include <vector>

#include "suite/task/EdgeMfgShape.h"
#include "visual/handle/PathEndHandle.h"

namespace vrn::visual {

namespace {

void PlaceAt(PathEndHandle& handle, const std::vector<geometry::MfgVectors>& used,
             const task::EdgeMfgShape::PathPoint& point) {
    if (point.index < 0 || static_cast<std::size_t>(point.index) >= used.size()) return;
    const geometry::MfgVectors& vectors = used[static_cast<std::size_t>(point.index)];
    const geometry::MfgVector vector = vectors.getVectorAtParam(point.param);
    handle.setPose(rob::PoseTemplate<float>(vector.getPose(vectors.edge)));
}

}  // namespace

PathEndsHandle* gPathEndsHandle = nullptr;

PathEndsHandle* PathEndsHandle::Get() { return gPathEndsHandle; }

void PathEndsHandle::Init() {
    if (!gPathEndsHandle) gPathEndsHandle = new PathEndsHandle;
}

PathEndsHandle::PathEndsHandle() : GuiVisual("PathEnd") {
    startHandle = new PathEndHandle("PathStartHandle", this, {1, 0, 0});
    endHandle = new PathEndHandle("PathEndHandle", this, {0, 1, 0});
    disableSelection();
    setVisible(false, /*cascade=*/true);
}

void PathEndsHandle::enableSelection() {
    startHandle->enableSelection();
    endHandle->enableSelection();
}

void PathEndsHandle::disableSelection() {
    startHandle->disableSelection();
    endHandle->disableSelection();
}

void PathEndsHandle::updatePosition(const task::EdgeMfgShape& shape) {
    if (shape.getMfgVectors().empty()) return;
    const std::vector<geometry::MfgVectors> used = shape.getUsedMfgVectors();
    PlaceAt(*startHandle, used, shape.getStart());
    PlaceAt(*endHandle, used, shape.getEnd());
}

rob::PosTemplate<float> PathEndsHandle::startWorldPos() const {
    return startHandle->getWorldPosition();
}

rob::PosTemplate<float> PathEndsHandle::endWorldPos() const {
    return endHandle->getWorldPosition();
}

}  // namespace vrn::visual
