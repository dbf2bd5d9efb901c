#include "visual/VisualStateManager.h"

#include <array>
#include <vector>

#include "visual/Visual.h"

namespace vrn::visual {

namespace {

constexpr std::uint32_t Bit(VisualStateLayer layer) { return static_cast<std::uint32_t>(layer); }

// From what matters most down; group A goes before group B, against the order of their numbers.
constexpr std::array priority{VisualStateLayer::Selected,        VisualStateLayer::Highlighted,
                              VisualStateLayer::Contact,         VisualStateLayer::NearMiss,
                              VisualStateLayer::EmphasizeGroupA, VisualStateLayer::EmphasizeGroupB,
                              VisualStateLayer::Material};

// What a compound in that state hands down: materials of their own show on bodies alone.
VisualStateLayer Inherited(VisualStateLayer layer) {
    const bool isHandedDown =
        layer == VisualStateLayer::Selected || layer == VisualStateLayer::Highlighted;
    return isHandedDown ? layer : VisualStateLayer::None;
}

}  // namespace

void VisualStateManager::LayerState::clear(VisualStateLayer layer) {
    mask &= ~Bit(layer);
    materials.erase(layer);
}

void VisualStateManager::setLayer(Visual* visual, VisualStateLayer layer, bool on,
                                  const std::string& name) {
    if (on) {
        LayerState& state = states[visual];
        state.mask |= Bit(layer);
        if (!name.empty()) state.materials[layer] = name;
        return;
    }
    const auto found = states.find(visual);
    if (found == states.end()) return;
    found->second.clear(layer);
    if (found->second.isEmpty()) states.erase(found);
}

void VisualStateManager::refresh(Visual* visual) {
    visual->clearHighlightOrSelect();
    const auto found = states.find(visual);
    const bool hasRecord = found != states.end();
    if (hasRecord) show(visual, found->second);
    if (!hasRecord || found->second.mask == 0) showFromAbove(visual);
    if (states.size() == (hasRecord ? 1u : 0u)) return;  // nothing below has a state
    showBelow(visual,
              hasRecord ? Inherited(pickTopLayer(found->second.mask)) : VisualStateLayer::None);
}

// A body without a state of its own shows that of what it is part of.
void VisualStateManager::showFromAbove(Visual* visual) const {
    if (visual->type != VisualType::Solid && visual->type != VisualType::Mesh) return;
    std::uint32_t layers = 0;
    for (const Visual* part = visual; !part->attached && (part = part->getParent());) {
        const auto found = states.find(part);
        if (found != states.end()) layers |= Bit(Inherited(pickTopLayer(found->second.mask)));
    }
    if (pickTopLayer(layers) == VisualStateLayer::Selected) visual->setSelected();
    if (pickTopLayer(layers) == VisualStateLayer::Highlighted) visual->setHighlighted();
}

// `above` is what the visuals on the way down have been given to show.
void VisualStateManager::showBelow(const Visual* visual, VisualStateLayer above) const {
    for (Visual* child : visual->getChildren()) {
        VisualStateLayer shown = above;
        const auto found = states.find(child);
        if (found != states.end()) {
            const VisualStateLayer own = pickTopLayer(found->second.mask);
            if (own != above && pickTopLayer(Bit(own) | Bit(above)) == own) {
                show(child, found->second);
                shown = Inherited(own);
            }
        }
        showBelow(child, shown);
    }
}

void VisualStateManager::show(Visual* visual, const LayerState& state) {
    switch (pickTopLayer(state.mask)) {
        case VisualStateLayer::Selected:
            return visual->setSelected();
        case VisualStateLayer::Highlighted:
            return visual->setHighlighted();
        case VisualStateLayer::Contact:
            return visual->useMaterial("CollisionContact");
        case VisualStateLayer::NearMiss:
            return visual->useMaterial("CollisionNearMiss");
        case VisualStateLayer::EmphasizeGroupA:
            return visual->useMaterial("EmphasizeCollisionGroupA");
        case VisualStateLayer::EmphasizeGroupB:
            return visual->useMaterial("EmphasizeCollisionGroupB");
        case VisualStateLayer::Material: {
            const auto name = state.materials.find(VisualStateLayer::Material);
            if (name != state.materials.end()) return visual->useMaterial(name->second);
            return visual->resetAppearance();
        }
        case VisualStateLayer::None:
            return visual->resetAppearance();
    }
}

bool VisualStateManager::hasLayer(const Visual* visual, VisualStateLayer layer) const {
    const auto found = states.find(visual);
    return found != states.end() && (found->second.mask & Bit(layer)) != 0;
}

void VisualStateManager::clearLayer(VisualStateLayer layer) {
    // Gathered first: a refresh runs a visual's own code, which must not meet the map half walked.
    std::vector<Visual*> concerned;
    for (auto& [visual, state] : states)
        if (state.mask & Bit(layer)) concerned.push_back(const_cast<Visual*>(visual));
    for (Visual* visual : concerned) states[visual].clear(layer);
    for (Visual* visual : concerned) refresh(visual);
    std::erase_if(states, [](const auto& entry) { return entry.second.isEmpty(); });
}

void VisualStateManager::remove(const Visual* visual) { states.erase(visual); }

VisualStateLayer VisualStateManager::pickTopLayer(unsigned int mask) {
    for (const VisualStateLayer layer : priority)
        if (mask & Bit(layer)) return layer;
    return VisualStateLayer::None;
}

}  // namespace vrn::visual
