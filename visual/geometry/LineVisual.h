#pragma once

#include <memory>
#include <vector>

#include "mesh/DynamicRenderable.h"
#include "visual/Visual.h"

namespace vrn::visual {

class DynamicLines;

/// A visual made of growable line objects, which it owns. Thread: render.
class VRN_VISUAL_API LineVisual : public Visual {
public:
    using Visual::Visual;
    ~LineVisual() override;

    /// A new, empty line object on this visual's node.
    DynamicLines* createDynamicLine(RenderOpType op);
    /// Sends changed points to the graphics card, if the visual is visible.
    void update() override;
    /// As Visual::setVisible; lines that are shown again catch up with the points set while they
    /// were hidden.
    void setVisible(bool show, bool cascade) override;

    /// In order of creation.
    [[nodiscard]] const std::vector<std::unique_ptr<DynamicLines>>& getLines() const {
        return lines;
    }

private:
    std::vector<std::unique_ptr<DynamicLines>> lines;
};

}  // namespace vrn::visual
