#include "selection/CurveObject.h"

#include "visual/geometry/EdgeVisual.h"

namespace vrn::selection {

CurveObject::CurveObject(const TopoDS_Shape& curveShape, visual::Visual* curveVisual)
    : SelectableObject(curveVisual, ObjectKind::Curve), shape(curveShape) {}

void CurveObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    if (!bvhBuilt) {
        localBox = edgesBox();
        bvhBuilt = true;
    }
    updateWorldPose();
    box = localBox;
    box.transform(worldPose);
    worldBoxDirty = false;
}

visual::Box CurveObject::edgesBox() const {
    visual::Box result;
    for (const visual::Visual* child : visual->getChildren()) {
        const auto* edge = dynamic_cast<const visual::EdgeVisual*>(child);
        if (!edge) continue;
        for (const auto& point : edge->getPoints())
            result.addPoint(TransformPoint(edge->getPose(), point));
    }
    return result;
}

}  // namespace vrn::selection
