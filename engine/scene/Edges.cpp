// Edges: highlight, edges that a dialog generates, arrows.

#include "engine/Scene.h"
#include "engine/scene/NotedVisual.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/EdgeVisual.h"

#include <utility>

namespace vrn::visual {

namespace {

constexpr const char* normalLook = "BodyCurve";
constexpr const char* selectedLook = "BodyCurveSelected";
constexpr const char* highlightedLook = "BodyCurveHighlighted";

// The first child that shows the edge and is admitted; null if there is none.
template <class Admits>
EdgeVisual* FindEdge(const Visual* owner, const TopoDS_Edge& edge, Admits admits) {
    for (Visual* child : owner->getChildren()) {
        auto* visual = dynamic_cast<EdgeVisual*>(child);
        if (visual && visual->getEdge().IsSame(edge) && admits(visual)) return visual;
    }
    return nullptr;
}

EdgeVisual* FindGeneratedEdge(const Visual* owner, const TopoDS_Edge& edge) {
    return FindEdge(owner, edge,
                    [](const Visual* visual) { return visual->type == VisualType::GeneratedEdge; });
}

}  // namespace

// --- highlight

void Scene::highlightEdge(Visual* visual, const TopoDS_Edge& edge) {
    if (visual && visual == highlightedEdge.visual && highlightedEdge.edge.IsSame(edge)) return;
    clearHighlightedEdge();
    if (!visual) return;
    highlightedEdge = {visual, edge};
    post([this, noted = NotedVisual(visual), edge] {
        if (IsPresent(*this, noted)) doHighlightEdge(noted.visual, edge);
    });
}

void Scene::doHighlightEdge(Visual* visual, const TopoDS_Edge& edge) {
    doClearHighlightedEdge();
    if (Visual* shown = EdgeVisual::Build(visual, "highlighted_edge_", edge, highlightedLook,
                                          highlightedLook, selectedLook, /*generated=*/false))
        highlightedEdgeVisual = shown;
}

void Scene::clearHighlightedEdge() {
    if (highlightedEdge.isNull()) return;
    post([this] { doClearHighlightedEdge(); });
    highlightedEdge.clear();
}

void Scene::doClearHighlightedEdge() {
    if (const auto shown = std::exchange(highlightedEdgeVisual, std::nullopt)) deleteVisual(*shown);
}

void Scene::forgetEdges(const Visual* visual) {
    if (highlightedEdge.visual == visual) highlightedEdge.clear();
    if (highlightedEdgeVisual == visual) highlightedEdgeVisual.reset();
}

// --- generated edges

void Scene::addGeneratedEdge(std::uint32_t id, const TopoDS_Edge& edge) {
    postToVisual(id, [edge](Visual* owner) {
        EdgeVisual::Build(owner, "generated_edge_", edge, normalLook, highlightedLook, selectedLook,
                          /*generated=*/true);
    });
}

void Scene::removeGeneratedEdge(std::uint32_t id, const TopoDS_Edge& edge) {
    postToVisual(id, [this, edge](Visual* owner) {
        if (Visual* generated = FindGeneratedEdge(owner, edge)) deleteVisual(generated);
    });
}

void Scene::selectGeneratedEdge(std::uint32_t id, const TopoDS_Edge& edge) {
    postToVisual(id, [this, edge](Visual* owner) {
        if (const Visual* generated = FindGeneratedEdge(owner, edge)) doSelectVisual(generated->id);
    });
}

// --- arrows

EdgeVisual* Scene::findLastingEdge(const Visual* owner, const TopoDS_Edge& edge) const {
    // What is highlighted shows its edge a second time, for a moment only.
    return FindEdge(owner, edge,
                    [this](Visual* visual) { return highlightedEdgeVisual != visual; });
}

void Scene::addEdgeArrow(std::uint32_t id, const TopoDS_Edge& edge, bool atEnd) {
    postToVisual(id, [this, edge, atEnd](Visual* owner) {
        if (EdgeVisual* visual = findLastingEdge(owner, edge)) visual->addArrow(atEnd);
    });
}

void Scene::clearEdgeArrow(std::uint32_t id, const TopoDS_Edge& edge) {
    postToVisual(id, [this, edge](Visual* owner) {
        if (EdgeVisual* visual = findLastingEdge(owner, edge)) visual->clearArrow();
    });
}

void Scene::addCurveArrow(std::uint32_t id, bool atEnd) {
    postToVisual(id, [atEnd](Visual* visual) {
        if (auto* curve = dynamic_cast<CurveVisual*>(visual)) curve->addArrow(atEnd);
    });
}

void Scene::clearCurveArrow(std::uint32_t id) {
    postToVisual(id, [](Visual* visual) {
        if (auto* curve = dynamic_cast<CurveVisual*>(visual)) curve->clearArrow();
    });
}

}  // namespace vrn::visual
