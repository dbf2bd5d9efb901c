#include "visual/geometry/EdgeVisual.h"

#include "engine/Scene.h"
#include "mesh/DynamicLines.h"
#include "visual/geometry/EdgePolygon.h"
#include "visual/geometry/MeshVisual.h"

#include <algorithm>
#include <cmath>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;

std::vector<Pos> StripPoints(const TopoDS_Edge& edge) {
    std::vector<Pos> points;
    for (const gp_Pnt& node : EdgePolygon(edge)) {
        const Pos p(rob::PosTemplate<double>(node.X(), node.Y(), node.Z()));
        if (std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z)) points.push_back(p);
    }
    if (edge.Orientation() == TopAbs_REVERSED) std::ranges::reverse(points);
    return points;
}

}  // namespace

EdgeVisual::EdgeVisual(const std::string& name, const TopoDS_Edge& shownEdge, Visual* parent)
    : Visual(name, parent),
      edge(shownEdge),
      lines(std::make_unique<DynamicLines>(RenderOpType::LineStrip)) {
    type = VisualType::Edge;
    attachObject(lines.get());
}

// The lines detach themselves when they die, so they may go before the node.
EdgeVisual::~EdgeVisual() = default;

EdgeVisual* EdgeVisual::Build(Visual* parent, const std::string& name, const TopoDS_Edge& shownEdge,
                              const std::string& normal, const std::string& highlighted,
                              const std::string& selected, bool generated) {
    const std::vector<Pos> points = StripPoints(shownEdge);
    if (points.empty()) return nullptr;
    auto* visual = new EdgeVisual(name, shownEdge, parent);  // the tree's from here
    for (const Pos& p : points) visual->addPoint(p.x, p.y, p.z);
    visual->update();
    visual->setMaterial(normal, selected, highlighted);
    visual->resetAppearance();
    if (generated) {
        visual->type = VisualType::GeneratedEdge;
        Scene::Get()->visuals[visual->id] = visual;
    }
    return visual;
}

void EdgeVisual::addPoint(float x, float y, float z) { lines->addPoint(x, y, z); }

void EdgeVisual::update() { lines->update(); }

void EdgeVisual::addArrow(bool atEnd) {
    const std::vector<Pos>& points = getPoints();
    const std::size_t count = points.size();
    rob::Vec3Template<float> along;
    if (count >= 2) along = atEnd ? points[count - 1] - points[count - 2] : points[1] - points[0];
    const rob::DirTemplate<float> direction(along.normalized());
    clearArrow();
    arrow = MeshVisual::BuildArrow(this, atEnd ? points.back() : points.front(), direction);
}

void EdgeVisual::clearArrow() {
    if (arrow) Scene::Get()->deleteVisual(arrow);
    arrow = nullptr;
}

void EdgeVisual::forgetChild(const Visual* child) {
    if (child == arrow) arrow = nullptr;
}

void EdgeVisual::setRenderQueueGroup(unsigned char group) { lines->setRenderQueueGroup(group); }

const std::vector<Pos>& EdgeVisual::getPoints() const { return lines->getPoints(); }

}  // namespace vrn::visual
