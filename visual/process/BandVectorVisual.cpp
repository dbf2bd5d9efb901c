#include "visual/process/BandVectorVisual.h"

#include "mesh/DynamicLines.h"
#include "suite/geom/ShapeTools.h"

namespace vrn::visual {

namespace {

using Colour = Ogre::Vector<4, float>;

constexpr std::size_t colourParameter = 0;

const Colour normalColour(1, 1, 1, 1);
const Colour selectedColour(0.8901961f, 0.5647059f, 0.80784315f, 1);
const Colour highlightedColour(0, 0, 1, 1);

void AddPoint(DynamicLines& line, const rob::PosTemplate<double>& point) {
    const rob::PosTemplate<float> p(point);
    line.addPoint(p.x, p.y, p.z);
}

}  // namespace

BandVectorVisual::BandVectorVisual(Visual* parent, const TopoDS_Edge& onEdge,
                                   const geometry::MfgVector& shownVector)
    : LineVisual(parent), edge(onEdge), vector(shownVector) {
    type = VisualType::Curve;
    const rob::PosTemplate<double> start = geometry::GetPointAtParameter(edge, vector.parameter);
    addLine(start, start + vector.getDir(edge).asVec3() * length);
    setMaterial("BandVector", "BandVectorSelect", "BandVectorHighlight");
    BandVectorVisual::resetAppearance();
}

BandVectorVisual::~BandVectorVisual() = default;

void BandVectorVisual::setColor(const Colour& color) {
    for (const auto& line : getLines()) line->setCustomParameter(colourParameter, color);
}

void BandVectorVisual::addLine(const rob::PosTemplate<double>& a,
                               const rob::PosTemplate<double>& b) {
    DynamicLines* line = createDynamicLine(RenderOpType::LineList);
    AddPoint(*line, a);
    AddPoint(*line, b);
    update();
}

void BandVectorVisual::resetAppearance() {
    setColor(normalColour);
    LineVisual::resetAppearance();
}

void BandVectorVisual::setSelected() {
    setColor(selectedColour);
    LineVisual::setSelected();
}

void BandVectorVisual::setHighlighted() {
    setColor(highlightedColour);
    LineVisual::setHighlighted();
}

}  // namespace vrn::visual
