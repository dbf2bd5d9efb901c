#include "visual/preview/DimensionVisual.h"

#include <cmath>

#include <OgreMaterialManager.h>

#include "mesh/DynamicLines.h"
#include "suite/rob/ShapeTypes.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr int circleSteps = 50;
constexpr int arcSteps = 20;
constexpr const char* nodeName = "dimension";

DynamicLines* AddLine(LineVisual& visual, RenderOpType op) {
    DynamicLines* line = visual.createDynamicLine(op);
    const Ogre::MaterialPtr look = Ogre::MaterialManager::getSingleton().getByName("FrameLine");
    if (look) line->setMaterial(look);
    return line;
}

void AddPoint(DynamicLines* line, const Pos& point) { line->addPoint(point.x, point.y, point.z); }

}  // namespace

DimensionVisual::DimensionVisual(Visual* parent, const Pos& a, const Pos& b)
    : LineVisual(nodeName, parent) {
    addDimensionLine(a, b);
}

DimensionVisual::DimensionVisual(Visual* parent, const rob::TPCircle& circle)
    : LineVisual(nodeName, parent) {
    addCircle(circle);
    addDimensionLine(circle.getPoint(0), circle.getPoint(0.5));
}

DimensionVisual::DimensionVisual(Visual* parent, const Pos& vertex, const Pos& a, const Pos& b,
                                 double angle)
    : LineVisual(nodeName, parent) {
    addDimensionLine(vertex, a);
    addDimensionLine(vertex, b);
    addDimensionArc(vertex, a, b, angle);
}

void DimensionVisual::addDimensionLine(const Pos& a, const Pos& b) {
    DynamicLines* line = AddLine(*this, RenderOpType::LineList);
    AddPoint(line, a);
    AddPoint(line, b);
    line->update();
}

void DimensionVisual::addCircle(const rob::TPCircle& circle) {
    DynamicLines* line = AddLine(*this, RenderOpType::LineStrip);
    for (int i = 0; i <= circleSteps; ++i)
        AddPoint(line, circle.getPoint(i / static_cast<double>(circleSteps)));
    line->update();
}

void DimensionVisual::addDimensionArc(const Pos& vertex, const Pos& a, const Pos& b, double angle) {
    const Vec toA = a - vertex, toB = b - vertex;
    const bool fromB = toB.length() < toA.length();
    const Vec d = fromB ? toB : toA, e = fromB ? toA : toB;
    const Vec w = d.cross(e).normalized().cross(d);
    DynamicLines* line = AddLine(*this, RenderOpType::LineStrip);
    for (int i = 0; i <= arcSteps; ++i) {
        const double t = i * angle / arcSteps;
        AddPoint(line, vertex + d * static_cast<float>(std::cos(t)) +
                           w * static_cast<float>(std::sin(t)));
    }
    line->update();
}

}  // namespace vrn::visual
