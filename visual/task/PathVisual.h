#pragma once

#include <vector>

#include "visual/Visual.h"

namespace vrn::sdf {
class SdfContainer;
}

namespace vrn::task {
class Path;
}

namespace vrn::visual {

class PathLineVisual;

/// A path of a robot's program, called "Path_{id}". It has no picture of its own: its lines hang
/// under the object frames in which its targets are given, and so do the visuals of its moves.
///
/// Looks and visibility go to the visuals of the model's children, which are looked up strictly in
/// the registry: one that is not shown throws std::out_of_range, "unordered_map::at". The path must
/// live as long as its visual. Thread: render.
class VRN_VISUAL_API PathVisual : public Visual {
public:
    /// Throws std::invalid_argument for null and std::bad_cast for an object that is no path.
    PathVisual(Visual* parent, sdf::SdfContainer* modelPath);
    ~PathVisual() override;

    /// Under the root of the scene, whatever `parent` is, which may be null. Entered in the
    /// registry, and then with its lines, whose exceptions pass through.
    static void Build(Visual* parent, task::Path* modelPath);

    /// Makes all lines anew; none while the scene's setting drawSegVisual is off. A segment leads
    /// from each move to the next, but from none and to none whose target is given by joint values,
    /// and not from one work object to another. Segments that follow each other share a line unless
    /// one of them is of a joint move, dashed, and the other is not. Lines of a hidden path are
    /// hidden. Throws what PathLineVisual::addSegment throws, and std::out_of_range,
    /// "unordered_map::at", for an object frame that is not shown; the lines before it stay.
    void rebuildPathLines();

    /// This visual, those of the path's children but of instructions that do not move, and the
    /// lines; `cascade` is ignored.
    void setVisible(bool show, bool cascade) override;
    /// These four reach the visuals of the moves and leave the lines alone.
    void resetAppearance() override;
    void setSelected() override;
    void setHighlighted() override;
    void clearHighlightOrSelect() override;

    /// In order along the path.
    [[nodiscard]] const std::vector<PathLineVisual*>& getPathLines() const { return pathLines; }

private:
    friend class PathLineVisual;

    void forgetLine(const PathLineVisual* line);
    void deleteLines();
    void addLines();
    template <class Action>
    void forEachMove(Action action) const;

    task::Path* path;
    std::vector<PathLineVisual*> pathLines;
};

}  // namespace vrn::visual
