#include "visual/task/PathLineVisual.h"

#include <stdexcept>

#include "mesh/DynamicLines.h"
#include "suite/sdf/ObjectType.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "visual/task/PathGeometry.h"
#include "visual/task/PathVisual.h"

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;

constexpr const char* normalName = "PathLine";
constexpr const char* selectedName = "PathLineSelected";
constexpr const char* highlightedName = "PathLineHighlighted";

// Targets nearer to each other are one place.
constexpr double minSegmentLength = 0.001;

void AddPoint(DynamicLines& line, const Pos& point) { line.addPoint(point.x, point.y, point.z); }

}  // namespace

PathLineVisual::PathLineVisual(Visual* parent, PathLineType lineType)
    : LineVisual("PathLine_0", parent), type(lineType) {}

PathLineVisual::~PathLineVisual() {
    if (owner) owner->forgetLine(this);
}

void PathLineVisual::addSegment(task::MoveInst* prev, task::MoveInst* cur) {
    if (!prev || !cur) throw std::invalid_argument("a segment of a path needs two moves");
    const Pos a = TargetPosition(*prev), b = TargetPosition(*cur);
    if ((b - a).length() < minSegmentLength) return;
    if (type != PathLineType::Solid) return addDashedSegment(a, b);
    if (cur->objectType == sdf::ObjectType::CircularMove) {
        if (const task::RobTargetDataItem* via = cur->getCircleItem()) {
            const Pos c(via->getPose().position);
            if (MakeArc(a, c, b)) return addCircle(rob::TPCircle(a, c, b));
        }
    }
    addLineStripPoint(a, b);
}

void PathLineVisual::addLineStripPoint(const Pos& a, const Pos& b) {
    ensureLine();
    if (line->getPoints().empty()) AddPoint(*line, a);
    AddPoint(*line, b);
}

void PathLineVisual::addDashedSegment(const Pos& a, const Pos& b) {
    ensureLine();
    const auto way = b - a;
    for (int i = 0; i < dashesPerSegment; ++i) {
        const Pos start = a + way * (static_cast<float>(i) / dashesPerSegment);
        AddPoint(*line, start);
        AddPoint(*line, start + way * dashShare);
    }
}

void PathLineVisual::addCircle(const rob::TPCircle& circle) {
    ensureLine();
    for (int i = line->getPoints().empty() ? 0 : 1; i <= chordsPerArc; ++i)
        AddPoint(*line, circle.getPoint(i / static_cast<double>(chordsPerArc)));
}

void PathLineVisual::ensureLine() {
    if (line) return;
    line = createDynamicLine(type == PathLineType::Solid ? RenderOpType::LineStrip
                                                         : RenderOpType::LineList);
    // Here already: what throws before finish must not leave an object without a look.
    useMaterial(normalName);
}

void PathLineVisual::finish() {
    for (const auto& each : getLines()) each->update();
    setMaterial(normalName, selectedName, highlightedName);
    resetAppearance();
}

}  // namespace vrn::visual
