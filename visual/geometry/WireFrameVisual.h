#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "visual/Visual.h"

class TopoDS_Shape;

namespace vrn::visual {

class DynamicLines;

/// All edges of a solid in one line object. The display modes show and hide these visuals as a kind
/// of their own. Thread: render.
class VRN_VISUAL_API WireFrameVisual : public Visual {
public:
    /// Without lines yet, under `solid`, which must not be null.
    WireFrameVisual(Visual* solid, std::uint32_t idIn, const std::string& name);
    ~WireFrameVisual() override;

    /// The edges of `shape` under `solid`, named "WireFrame_" and the solid's id, in no registry.
    /// An edge of several faces is drawn once; one that was never triangulated adds nothing.
    static WireFrameVisual* Build(Visual* solid, const TopoDS_Shape& shape);

    /// In the frame of the visual. Dropped as a whole if a coordinate is NaN or beyond FLT_MAX.
    void addSegment(const rob::PosTemplate<double>& a, const rob::PosTemplate<float>& b);
    /// Sends the segments to the graphics card.
    void update() override;
    [[nodiscard]] const DynamicLines& getLines() const { return *lines; }

private:
    std::unique_ptr<DynamicLines> lines;  ///< never null
};

}  // namespace vrn::visual
