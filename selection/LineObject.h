#pragma once

#include "selection/SelectableObject.h"

namespace vrn::selection {

/// A line visual or an instanced frame in the picking world. The box of a line visual bounds the
/// segments that its line lists and line strips draw; point lists and a point without a partner
/// count for nothing. That of an instanced frame bounds its axes, or its z axis while the scene
/// shows no other; any other visual has the empty box. Sizes are those of the first updateWorldBox.
/// Thread: render.
class VRN_VISUAL_API LineObject : public SelectableObject {
public:
    explicit LineObject(visual::Visual* shownLines);

    void updateWorldBox() override;

private:
    [[nodiscard]] visual::Box segmentBox() const;

    visual::Box localBox;
};

}  // namespace vrn::selection
