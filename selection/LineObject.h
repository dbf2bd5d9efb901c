#pragma once

#include "selection/SelectableObject.h"

namespace vrn::visual {
class LineVisual;
}

namespace vrn::selection {

/// A line visual in the picking world. Its box bounds the segments that the visual's line lists and
/// line strips draw; point lists and a point without a partner count for nothing. Thread: render.
class VRN_VISUAL_API LineObject : public SelectableObject {
public:
    explicit LineObject(visual::LineVisual* lineVisual);

    void updateWorldBox() override;

private:
    [[nodiscard]] visual::Box segmentBox() const;

    const visual::LineVisual* lines;
    visual::Box localBox;
};

}  // namespace vrn::selection
