#include "apps/vrnview/SceneReport.h"

#include <OgreAxisAlignedBox.h>
#include <OgreMovableObject.h>
#include <OgreSceneNode.h>

#include "visual/Visual.h"
#include "visual/VisualType.h"

namespace vrn::host {

namespace {

/// The kinds that carry a model's geometry; frames, grids and handles do not.
bool IsGeometry(VisualType type) {
    return type == VisualType::Solid || type == VisualType::Mesh || type == VisualType::Point ||
           type == VisualType::PointCloud;
}

rob::PosTemplate<double> ToPos(const Ogre::Vector3& v) { return {v.x, v.y, v.z}; }

void CollectBoxes(const visual::Visual& visual, std::vector<Bounds>& boxes) {
    if (IsGeometry(visual.type)) {
        for (Ogre::MovableObject* object : visual.node->getAttachedObjects()) {
            const Ogre::AxisAlignedBox& box = object->getWorldBoundingBox(/*derive=*/true);
            if (!box.isFinite()) continue;
            const Bounds bounds(ToPos(box.getMinimum()), ToPos(box.getMaximum()));
            if (!bounds.isEmpty()) boxes.push_back(bounds);
        }
    }
    for (const visual::Visual* child : visual.getChildren()) CollectBoxes(*child, boxes);
}

}  // namespace

Counts& Counts::operator+=(const Counts& o) {
    bodies += o.bodies;
    faces += o.faces;
    triangles += o.triangles;
    vertices += o.vertices;
    points += o.points;
    return *this;
}

Counts CountsOf(visual::Visual& visual) {
    Counts counts;
    counts.bodies = visual.getBodiesNum();
    counts.faces = visual.getFacesNum();
    counts.triangles = visual.getTrianglesNum();
    counts.vertices = visual.getVerticesNum();
    return counts;
}

std::vector<Bounds> BoxesOf(const visual::Visual& visual) {
    // Poses set since the last frame reach the nodes' derived values here.
    visual.node->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
    std::vector<Bounds> boxes;
    CollectBoxes(visual, boxes);
    return boxes;
}

VisualReport TreeOf(const visual::Visual& visual) {
    VisualReport report;
    report.id = visual.id;
    report.type = static_cast<std::int32_t>(visual.type);
    report.name = visual.getName();
    for (const visual::Visual* child : visual.getChildren())
        report.children.push_back(TreeOf(*child));
    return report;
}

}  // namespace vrn::host
