#include "selection/ShapeObject.h"

#include "selection/ShapeMesh.h"
#include "visual/geometry/SolidVisual.h"

#include <TopoDS.hxx>

#include <cmath>

namespace vrn::selection {

ShapeObject::ShapeObject(const TopoDS_Shape& solidShape, visual::SolidVisual* solidVisual)
    : SelectableObject(solidVisual, ObjectKind::Shape), shape(solidShape), solid(solidVisual) {}

std::string ShapeObject::getName() const { return visual->getName(); }

void ShapeObject::updateWorldBox() {
    if (!worldBoxDirty) return;
    if (!bvhBuilt) {
        localBox = facesBox();
        bvhBuilt = true;
    }
    updateWorldPose();
    box = localBox;
    box.transform(worldPose);
    worldBoxDirty = false;
}

visual::Box ShapeObject::facesBox() const {
    const visual::FaceMap& faces = solid->getFaceMap();
    std::vector<rob::PosTemplate<float>> points;
    for (int i = 1; i <= faces.Extent(); ++i)
        if (solid->isFaceVisible(static_cast<unsigned long>(i)))
            AppendFacePoints(TopoDS::Face(faces.FindKey(i)), points);
    visual::Box result;
    for (const auto& p : points)
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) result.addPoint(p);
    return result;
}

}  // namespace vrn::selection
