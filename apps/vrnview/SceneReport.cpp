#include "apps/vrnview/SceneReport.h"

#include <OgreAxisAlignedBox.h>
#include <OgreMovableObject.h>
#include <OgreSceneNode.h>

#include <cmath>

#include "apps/vrnview/Framing.h"
#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "selection/ShapeMesh.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/SolidVisual.h"
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

/// Calls `use` on each visual that carries geometry, from `visual` down. What is attached to
/// another object is there as well, which the visuals' own sums leave out.
template <class VisualOrConst, class Use>
void ForGeometry(VisualOrConst& visual, const Use& use) {
    if (IsGeometry(visual.type)) use(visual);
    for (visual::Visual* child : visual.getChildren())
        ForGeometry(static_cast<VisualOrConst&>(*child), use);
}

/// Of the visual's own objects.
Bounds OwnBounds(const visual::Visual& visual) {
    Bounds bounds;
    for (Ogre::MovableObject* object : visual.node->getAttachedObjects()) {
        const Ogre::AxisAlignedBox& box = object->getWorldBoundingBox(/*derive=*/true);
        if (box.isFinite()) bounds.add(Bounds(ToPos(box.getMinimum()), ToPos(box.getMaximum())));
    }
    return bounds;
}

/// The triangle record that the visual shows; null if it shows none.
const visual::Mesh* MeshOf(const visual::Visual& visual) {
    const auto* shown = dynamic_cast<const visual::MeshVisual*>(&visual);
    const visual::MeshManager& meshes = *visual::MeshManager::Get();
    if (shown == nullptr || !meshes.hasMesh(shown->getMeshName())) return nullptr;
    return meshes.getMesh(shown->getMeshName());
}

/// The points that the visual's picture is made of, in its own frame; none where they are not at
/// hand.
std::vector<rob::PosTemplate<float>> PointsOf(const visual::Visual& visual) {
    if (const visual::Mesh* mesh = MeshOf(visual)) return mesh->vertices;
    if (const auto* cloud = dynamic_cast<const visual::PointCloudVisual*>(&visual))
        return cloud->getPoints();
    if (const auto* solid = dynamic_cast<const visual::SolidVisual*>(&visual))
        return selection::GetShapeMeshPoints(solid->getShape());
    return {};
}

/// Those that can be drawn, in the world.
void AppendPoints(std::vector<rob::PosTemplate<double>>& points, const visual::Visual& visual) {
    const Ogre::Affine3& toWorld = visual.node->_getFullTransform();
    const auto isDrawn = [](float coordinate) { return std::abs(coordinate) <= maxCoordinate; };
    for (const rob::PosTemplate<float>& p : PointsOf(visual))
        if (isDrawn(p.x) && isDrawn(p.y) && isDrawn(p.z))
            points.push_back(ToPos(toWorld * Ogre::Vector3(p.x, p.y, p.z)));
}

/// Poses set since the last frame reach what the nodes tell of the world here.
void UpdatePoses(const visual::Visual& visual) {
    visual.node->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
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
    ForGeometry(visual, [&](visual::Visual& body) {
        counts.bodies += body.getBodiesNum();
        counts.faces += body.getFacesNum();
        counts.triangles += body.getTrianglesNum();
        counts.vertices += body.getVerticesNum();
        if (const auto* cloud = dynamic_cast<const visual::PointCloudVisual*>(&body))
            counts.points += cloud->getPoints().size();
        if (body.type == VisualType::Point) ++counts.points;
    });
    return counts;
}

Bounds BoundsOf(const visual::Visual& visual) {
    UpdatePoses(visual);
    Bounds bounds;
    ForGeometry(visual, [&](const visual::Visual& body) { bounds.add(OwnBounds(body)); });
    return bounds;
}

bool HasUsableCoordinates(const visual::Visual& visual) {
    bool usable = true;
    ForGeometry(visual, [&](const visual::Visual& body) {
        // The library takes what reaches beyond maxCoordinate to be everywhere.
        for (const Ogre::MovableObject* object : body.node->getAttachedObjects())
            usable = usable && !object->getBoundingBox().isInfinite();
    });
    return usable;
}

std::vector<rob::PosTemplate<double>> OutlineOf(const visual::Visual& visual) {
    UpdatePoses(visual);
    std::vector<rob::PosTemplate<double>> outline;
    ForGeometry(visual, [&](const visual::Visual& body) {
        const Bounds bounds = OwnBounds(body);
        if (bounds.isEmpty()) return;
        const std::size_t before = outline.size();
        AppendPoints(outline, body);
        if (outline.size() > before) return;
        const std::vector<rob::PosTemplate<double>> corners = CornersOf(bounds);
        outline.insert(outline.end(), corners.begin(), corners.end());
    });
    return outline;
}

VisualReport TreeOf(const visual::Visual& visual) {
    VisualReport report;
    report.id = visual.id;
    report.type = static_cast<std::int32_t>(visual.type);
    report.name = visual.getName();
    for (const visual::Visual* child : visual.getChildren())
        if (child->type != VisualType::Helper) report.children.push_back(TreeOf(*child));
    return report;
}

}  // namespace vrn::host
