#pragma once

#include "suite/rob/ShapeTypes.h"
#include "visual/Visual.h"

namespace vrn::task {
class MoveInst;
}

namespace vrn::visual {

class InstanceFrameVisual;
class PathArrowVisual;
class RobtargetVisual;

/// A move of a path, called "INSTRUCTION_{id}": without a picture of its own, in the object frame
/// of the move's work object. It carries the triad of the target, that of the circle point, and the
/// arrow in the middle of the segment that ends at the move.
///
/// Positions are model units in the object frame. Wherever a target's position is read, one that
/// has ended throws std::out_of_range, "unordered_map::at". The move must live as long as its
/// visual. Thread: render.
class VRN_VISUAL_API MoveInstructionVisual : public Visual {
public:
    /// With the triads, if the scene draws targets. Throws std::invalid_argument for null and what
    /// drawTargetVisual throws; the tree is then as it was.
    MoveInstructionVisual(Visual* parent, task::MoveInst* move);

    /// Entered in the registry, with an arrow if a segment leads here from `prev`; null stands for
    /// none.
    static void Build(Visual* parent, task::MoveInst* prev, task::MoveInst* cur);

    /// Takes `cur` for its move, moves the triads to where the model has them and makes the arrow
    /// anew. Triads are not: a circle point that a move has gained shows when targets are next
    /// switched on. Throws std::invalid_argument if `cur` is null.
    void update(task::MoveInst* prev, task::MoveInst* cur);
    using Visual::update;
    /// Hangs it under the visual of that id. Throws std::out_of_range, "unordered_map::at", for an
    /// unknown one.
    void updateParent(std::uint32_t parentId);

    /// Makes the triads if the scene draws targets, and asks for a further frame; else deletes
    /// them. Called twice while the scene does, it makes a second pair, and the first stays with
    /// nothing to reach it: call it when the setting changes only. Throws what the builders of
    /// targets throw, and then makes none.
    void drawTargetVisual();
    /// Deletes the triads that it made last; nothing without.
    void removeTargetVisual();
    /// Makes the arrow if the scene draws arrows, in place of none: an earlier one would stay. Else
    /// removes it. Nothing if `prev` is null. An arc is told by the circle point alone, whatever
    /// kind the move is of. Throws std::overflow_error, "0-length vector cannot be normalized.", if
    /// there is a circle point and it or the target is where `prev` ends.
    void drawPathArrow(task::MoveInst* prev);
    /// Removes the arrow that it made last; nothing without.
    void removePathArrow();

    /// Where `prev` ends; the origin for null.
    [[nodiscard]] rob::PosTemplate<float> getStartPos(task::MoveInst* prev) const;
    [[nodiscard]] rob::PosTemplate<float> getEndPos() const;
    /// The origin without a circle point.
    [[nodiscard]] rob::PosTemplate<float> getCirclePos() const;

    /// In the middle of the way, unless it is shorter than minArrowSegment.
    void addArrow(const rob::PosTemplate<float>& start, const rob::PosTemplate<float>& end);
    void addArrow(const rob::TPCircle& circle);
    /// At `pos` along `dir`, smaller on a segment whose `length` is below fullArrowSegment. Throws
    /// std::overflow_error for a direction without length.
    void createArrow(const rob::PosTemplate<float>& pos, const rob::DirTemplate<float>& dir,
                     double length);

    /// This visual, the triads and the arrow, also those that are made later; `cascade` is ignored.
    /// A hidden triad is not picked.
    void setVisible(bool show, bool cascade) override;
    /// The first two reach triads and arrow, the others the triads alone.
    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    void clearHighlightOrSelect() override;

    [[nodiscard]] task::MoveInst* getInstruction() const { return instruction; }
    /// These are null while there is none.
    [[nodiscard]] InstanceFrameVisual* getTargetVisual() const { return targetVisual; }
    [[nodiscard]] RobtargetVisual* getCircleVisual() const { return circleVisual; }
    [[nodiscard]] PathArrowVisual* getPathArrow() const { return pathArrow; }

    static constexpr double minArrowSegment = 1.0;
    static constexpr double fullArrowSegment = 200.0;

protected:
    void forgetChild(const Visual* child) override;

private:
    void buildTriads();
    void showTriads(bool show);

    task::MoveInst* instruction;
    InstanceFrameVisual* targetVisual = nullptr;
    RobtargetVisual* circleVisual = nullptr;
    PathArrowVisual* pathArrow = nullptr;
};

}  // namespace vrn::visual
