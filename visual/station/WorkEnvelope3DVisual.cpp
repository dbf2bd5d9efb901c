#include "visual/station/WorkEnvelope3DVisual.h"

#include <cmath>
#include <cstdint>
#include <format>
#include <memory>
#include <stdexcept>

#include <OgreManualObject.h>
#include <OgreResourceGroupManager.h>
#include <OgreSceneManager.h>

#include "engine/Scene.h"
#include "visual/geometry/PointPicture.h"

namespace vrn::visual {

namespace {

using Point = rob::PosTemplate<double>;
using Points = std::vector<Point>;
using Normals = std::vector<rob::DirTemplate<double>>;

// Ogre's bounds and light are made of these, and one that is no number spoils a whole picture.
void CheckProfile(const Points& points, const Normals& normals, float minAngle, float maxAngle) {
    if (normals.size() < points.size())
        throw std::invalid_argument(std::format(
            "a profile of {} points needs as many normals, not {}", points.size(), normals.size()));
    bool drawable = std::isfinite(minAngle) && std::isfinite(maxAngle);
    for (std::size_t j = 0; j < points.size(); ++j) {
        const rob::DirTemplate<double>& n = normals[j];
        drawable = drawable && IsDrawable(points[j]) && IsDrawable(Point(n.x, n.y, n.z));
    }
    if (!drawable) throw std::invalid_argument("a profile must be finite and not beyond 1e15");
}

void AddRow(Ogre::ManualObject& surface, const Points& points, const Normals& normals,
            double angleRad) {
    const rob::RotationTemplate<double> turn(std::cos(angleRad / 2), 0, 0, std::sin(angleRad / 2));
    for (std::size_t j = 0; j < points.size(); ++j) {
        const rob::PosTemplate<float> at(turn * points[j]);
        const rob::DirTemplate<float> normal(turn * normals[j]);
        surface.position(at.x, at.y, at.z);
        surface.normal(normal.x, normal.y, normal.z);
    }
}

void AddTriangles(Ogre::ManualObject& surface, std::uint32_t n) {
    for (std::uint32_t k = 1; k <= WorkEnvelope3DVisual::steps; ++k) {
        for (std::uint32_t j = 0; j + 1 < n; ++j) {
            const std::uint32_t a = (k - 1) * n + j, b = a + 1, c = a + n, d = c + 1;
            surface.triangle(a, b, c);
            surface.triangle(c, b, d);
        }
    }
}

}  // namespace

WorkEnvelope3DVisual::WorkEnvelope3DVisual(const std::string& name, Visual* parent)
    : Visual(name, parent), surface(Scene::Get()->sceneManager->createManualObject()) {
    type = VisualType::WorkEnvelope;
}

WorkEnvelope3DVisual::~WorkEnvelope3DVisual() {
    Scene::Get()->sceneManager->destroyMovableObject(surface);
}

WorkEnvelope3DVisual* WorkEnvelope3DVisual::Build(Visual* parent, const std::string& name,
                                                  const Points& points, const Normals& normals,
                                                  float minAngle, float maxAngle) {
    auto envelope = std::make_unique<WorkEnvelope3DVisual>(name, parent);
    envelope->createRevolvedSurface(points, normals, minAngle, maxAngle);
    envelope->update();
    envelope->setVisible(false, /*cascade=*/true);
    return envelope.release();  // the tree owns it from here
}

void WorkEnvelope3DVisual::createRevolvedSurface(const Points& points, const Normals& normals,
                                                 float minAngle, float maxAngle) {
    const std::string& group = Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME;
    surface->clear();
    CheckProfile(points, normals, minAngle, maxAngle);
    // Vertices without indices would be drawn as triangles of their own.
    if (points.size() != 1) {
        surface->begin("WorkEnvelope", Ogre::RenderOperation::OT_TRIANGLE_LIST, group);
        const double step = (static_cast<double>(maxAngle) - minAngle) / steps;
        for (int i = 0; i <= steps; ++i) AddRow(*surface, points, normals, minAngle + i * step);
        AddTriangles(*surface, static_cast<std::uint32_t>(points.size()));
        surface->end();
        surface->setMaterialName(0, "WorkEnvelope3D", group);  // throws if there is no section
    }
    if (!surface->isAttached()) attachObject(surface);
}

}  // namespace vrn::visual
