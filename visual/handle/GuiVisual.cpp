#include "visual/handle/GuiVisual.h"

#include <cmath>
#include <stdexcept>

#include "engine/Scene.h"
#include "selection/Plane.h"
#include "view/Camera.h"

namespace vrn::visual {

namespace {

using Vec = rob::Vec3Template<float>;

/// What the axes that are free allow: planes to drag in by their normals `e0` and `e2`, and what is
/// taken away from the motion in them, `e1` and the old `e0`.
struct DragDirections {
    Vec e0, e1, e2;
};

DragDirections DirectionsFor(const Vec& axes) {
    DragDirections d;
    if (axes.z > 0)
        d = {{0, 1, 0}, {1, 0, 0}, {1, 0, 0}};
    else if (axes.x > 0)
        d = {{0, 0, 1}, {0, 1, 0}, {0, 1, 0}};
    if (axes.y > 0) {
        d.e0.z = 1;
        d.e1.x = 1;
        d.e2.x = 1;
    }
    return d;
}

struct SightLine {
    rob::PosTemplate<float> origin;
    Vec direction;
};

SightLine SightLineAt(const rob::Vec2Template<float>& pixel) {
    SightLine line;
    gCamera->cameraToViewportRay(pixel.x, pixel.y, line.origin, line.direction);
    return line;
}

rob::PosTemplate<float> Meet(const Plane& plane, const SightLine& line) {
    return plane.intersection(line.origin, rob::DirTemplate<float>(line.direction.normalized()));
}

}  // namespace

GuiVisual::GuiVisual(const std::string& name) : Visual(name) {
    type = VisualType::Helper;
    walkStop = true;
}

GuiVisual::~GuiVisual() {
    Scene* const scene = Scene::Get();
    if (scene && scene->attachedGui == this) scene->attachedGui = nullptr;
}

Vec GuiVisual::MouseDisplacement(const rob::Vec2Template<float>& from,
                                 const rob::Vec2Template<float>& to,
                                 const rob::PoseTemplate<float>& pose, const Vec& axes) {
    if (!gCamera) throw std::logic_error("dragging a handle needs a camera");
    const SightLine toLine = SightLineAt(to);
    const SightLine fromLine = SightLineAt(from);

    const DragDirections local = DirectionsFor(axes);
    const Vec e0 = pose.rotation * local.e0, e1 = pose.rotation * local.e1,
              e2 = pose.rotation * local.e2;
    const bool turnAway = std::abs(e0.dot(toLine.direction)) < std::abs(e2.dot(toLine.direction));
    const Vec normal = turnAway ? e2 : e0;
    const Vec removed = turnAway ? e0 : e1;

    const Plane plane{rob::DirTemplate<float>(normal.normalized()),
                      normal.dot(pose.position.asVec3())};
    const rob::PosTemplate<float> p1 = Meet(plane, toLine);
    const rob::PosTemplate<float> p0 = Meet(plane, fromLine);
    const float s = (p1 - p0).dot(removed);
    return (p1 - removed * s) - p0;
}

}  // namespace vrn::visual
