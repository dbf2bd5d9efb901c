#pragma once

#include "suite/rob/ShapeTypes.h"
#include "visual/geometry/LineVisual.h"

namespace vrn::task {
class MoveInst;
}

namespace vrn::visual {

class PathVisual;

enum class PathLineType : std::int32_t { Solid = 0, Dashed = 1 };

/// The line through consecutive moves of one kind in one work object. It hangs under the visual of
/// the object frame, and so moves with the work object.
///
/// Positions are those of targets: model units in the object frame. Solid lines are one strip, in
/// which each point stands once; a dashed one is a list of separate dashes. What was added is drawn
/// from finish on. Thread: render.
class VRN_VISUAL_API PathLineVisual : public LineVisual {
public:
    PathLineVisual(Visual* parent, PathLineType lineType);
    /// Leaves the list of its path.
    ~PathLineVisual() override;

    /// The way from the target of `prev` to that of `cur`: dashes on a dashed line; else an arc if
    /// `cur` is a circular move with a circle point off the straight way; else straight. Nothing if
    /// the targets are less than 0.001 apart. Throws std::overflow_error, "0-length vector cannot
    /// be normalized.", for a circle point at the start or not a number, std::out_of_range,
    /// "unordered_map::at", for a target that has ended, and std::invalid_argument for null.
    void addSegment(task::MoveInst* prev, task::MoveInst* cur);
    /// To `b`; from `a` on a line without points, else from the last one.
    void addLineStripPoint(const rob::PosTemplate<float>& a, const rob::PosTemplate<float>& b);
    /// dashesPerSegment dashes, each dashShare of the whole; the gap after the last one ends at
    /// `b`.
    void addDashedSegment(const rob::PosTemplate<float>& a, const rob::PosTemplate<float>& b);
    /// chordsPerArc chords, whatever the length. The arc's first point is left out if the line has
    /// points: it is the last of them.
    void addCircle(const rob::TPCircle& circle);
    /// Makes the line object if there is none.
    void ensureLine();
    /// Sends the points to the graphics card and gives the line the look of paths.
    void finish();

    [[nodiscard]] PathLineType getType() const { return type; }
    /// Null until the first point.
    [[nodiscard]] const DynamicLines* getLine() const { return line; }

    static constexpr int chordsPerArc = 20;
    static constexpr int dashesPerSegment = 5;
    static constexpr float dashShare = 0.15f;

private:
    friend class PathVisual;

    PathLineType type;  ///< of the line; the kind of the visual is Visual::type
    DynamicLines* line = nullptr;
    PathVisual* owner = nullptr;  ///< whose list holds this; null for none
};

}  // namespace vrn::visual
