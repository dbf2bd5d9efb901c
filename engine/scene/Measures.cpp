// Measures, the directions of a face, and lines that a host draws as it likes.

#include <algorithm>

#include <TopoDS_Face.hxx>

#include "engine/Scene.h"
#include "suite/rob/ShapeTypes.h"
#include "visual/preview/DimensionVisual.h"
#include "visual/preview/PolylineVisual.h"
#include "visual/preview/UVIndicatorVisual.h"

namespace vrn::visual {

namespace {

using PosD = rob::PosTemplate<double>;
using Pos = rob::PosTemplate<float>;

}  // namespace

// --- measures

void Scene::createDistanceVisual(const PosD& a, const PosD& b) {
    post([this, a, b] { doCreateDistanceVisual(a, b); });
}

void Scene::doCreateDistanceVisual(const PosD& a, const PosD& b) {
    dimensions.push_back(new DimensionVisual(root, Pos(a), Pos(b)));
}

void Scene::createAngleVisual(const PosD& vertex, const PosD& a, const PosD& b, double angle) {
    post([this, vertex, a, b, angle] { doCreateAngleVisual(vertex, a, b, angle); });
}

void Scene::doCreateAngleVisual(const PosD& vertex, const PosD& a, const PosD& b, double angle) {
    dimensions.push_back(new DimensionVisual(root, Pos(vertex), Pos(a), Pos(b), angle));
}

void Scene::createDiameterVisual(const rob::TPCircle& circle) {
    post([this, circle] { doCreateDiameterVisual(circle); });
}

void Scene::doCreateDiameterVisual(const rob::TPCircle& circle) {
    dimensions.push_back(new DimensionVisual(root, circle));
}

void Scene::removeDimensionVisual() {
    post([this] { deleteAll(dimensions); });
}

// --- free lines

void Scene::drawPolyline(const std::vector<Pos>& points, unsigned int /*unused*/, bool withArrow) {
    post([this, points, withArrow] { doDrawPolyline(points, withArrow); });
}

void Scene::doDrawPolyline(const std::vector<Pos>& points, bool withArrow) {
    polylines.push_back(PolylineVisual::Build(root, points, withArrow));
}

void Scene::drawPolylines(const std::vector<std::vector<Pos>>& lines, unsigned int /*unused*/,
                          bool withArrow) {
    post([this, lines, withArrow] {
        for (const std::vector<Pos>& points : lines) doDrawPolyline(points, withArrow);
    });
}

void Scene::removePolylines() {
    post([this] { deleteAll(polylines); });
}

// --- the directions of a face

void Scene::showUVIndicatorVisual(const TopoDS_Face& face) {
    post([this, face] { doShowUVIndicatorVisual(face); });
}

void Scene::doShowUVIndicatorVisual(const TopoDS_Face& face) {
    if (!uvIndicator) uvIndicator = UVIndicatorVisual::Build(root);
    uvIndicator->show(face);
    uvIndicator->setVisible(true, /*cascade=*/true);
}

void Scene::hideUVIndicatorVisual() {
    post([this] {
        if (uvIndicator) uvIndicator->setVisible(false, /*cascade=*/true);
    });
}

void Scene::deleteUVIndicatorVisual() {
    post([this] { deleteVisual(uvIndicator); });
}

void Scene::forgetMeasure(const Visual* visual) {
    std::erase(dimensions, visual);
    std::erase(polylines, visual);
    if (uvIndicator == visual) uvIndicator = nullptr;
}

}  // namespace vrn::visual
