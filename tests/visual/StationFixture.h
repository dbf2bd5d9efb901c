#pragma once

#include <string>
#include <vector>

#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

/// Robots, tools, devices, links and their visuals.
class StationVisuals : public EngineTest {
protected:
    static visual::Visual* root() { return scene().root; }
    static visual::Visual* visualOf(const sdf::SdfNode* object) {
        return scene().visuals.at(object->id);
    }
    /// A visual of that type and no picture under `parent`, entered in the registry.
    static visual::Visual* addPlain(VisualType type, visual::Visual* parent = root());

    /// A link of `mechanism` that holds one part of one box.
    layout::Link* addLink(layout::Mechanism* mechanism, const std::string& name);
    /// A part that cannot be shown, inside a new link of `mechanism`.
    layout::Part* addRefusedPart(layout::Mechanism* mechanism);

    /// The material of the first mesh at or below the visual; empty without one.
    static std::string lookOf(visual::Visual* visual);
    /// The materials of the three axes of a frame.
    static std::vector<std::string> axisLooks(const visual::Visual* frame);
    static visual::Visual* childNamed(const visual::Visual* parent, const std::string& name);
    static bool isPickable(visual::Visual* visual);
    /// Whether what hangs on the visual's own node is drawn.
    static bool isDrawn(const visual::Visual* visual);
    /// For "nothing is left": the registry's ids and the children of the root.
    struct Traces {
        std::size_t registered, topLevel, pickable;
        bool operator==(const Traces&) const = default;
    };
    static Traces traces();
};

}  // namespace vrn::test
