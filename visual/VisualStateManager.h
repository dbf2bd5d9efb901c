#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class Visual;

/// The appearance states that a visual may be in, as bits; it may be in several at once.
enum class VisualStateLayer : std::uint32_t {
    None = 0,
    Material = 1,         ///< a custom material, by name
    EmphasizeGroupA = 2,  ///< "EmphasizeCollisionGroupA"
    EmphasizeGroupB = 4,  ///< "EmphasizeCollisionGroupB"
    NearMiss = 8,         ///< "CollisionNearMiss"
    Contact = 16,         ///< "CollisionContact"
    Highlighted = 32,     ///< Visual::setHighlighted
    Selected = 64,        ///< Visual::setSelected
};

/// Keeps the states of each visual and shows the one that matters most, so that selection,
/// highlight and collision do not fight over the material. A record exists only while it says
/// something.
///
///     manager.setLayer(body, VisualStateLayer::Contact, true, "");
///     manager.refresh(body);  // setLayer alone shows nothing
///
/// Thread: render.
class VRN_VISUAL_API VisualStateManager {
public:
    /// `name` is the material of the layer; an empty one keeps the name given before.
    void setLayer(Visual* visual, VisualStateLayer layer, bool on, const std::string& name);
    /// Undoes the look so far, also without a record, then shows the top layer. The looks of a
    /// compound go down to its bodies: what stands below in a state of its own is shown in that
    /// again, unless the compound is itself selected or highlighted and that matters more. A body
    /// that is left without a state is shown selected or highlighted as long as its compound is.
    void refresh(Visual* visual);
    [[nodiscard]] bool hasLayer(const Visual* visual, VisualStateLayer layer) const;
    /// Takes a layer from all visuals and refreshes each that had it.
    void clearLayer(VisualStateLayer layer);
    /// Drops the record; for a visual that is about to die.
    void remove(const Visual* visual);

    /// Selected, Highlighted, Contact, NearMiss, EmphasizeGroupA, EmphasizeGroupB, Material: the
    /// first of these in the mask, None for an empty one. Thread: pure.
    [[nodiscard]] static VisualStateLayer pickTopLayer(unsigned int mask);

private:
    struct LayerState {
        std::uint32_t mask = 0;
        std::unordered_map<VisualStateLayer, std::string> materials;

        [[nodiscard]] bool isEmpty() const { return mask == 0 && materials.empty(); }
        void clear(VisualStateLayer layer);
    };

    static void show(Visual* visual, const LayerState& state);
    void showBelow(const Visual* visual, VisualStateLayer above) const;
    void showFromAbove(Visual* visual) const;

    std::unordered_map<const Visual*, LayerState> states;
};

}  // namespace vrn::visual
