#pragma once

#include "engine/Scene.h"
#include "visual/Visual.h"

namespace vrn::visual {

/// Calls `action` on each child of a compound that takes part in its looks: admitted by the
/// compound's own filter and not attached, since what is attached to an object keeps its own look.
/// Thread: render.
template <class Filter, class Action>
void ForEachAdmittedChild(const Visual* compound, Filter admits, Action action) {
    for (Visual* child : compound->getChildren())
        if (!child->attached && admits(child)) action(child);
}

/// Highlights the admitted children, except what is selected: a highlight never overrides that.
template <class Filter>
void HighlightChildren(const Visual* compound, Filter admits) {
    ForEachAdmittedChild(compound, admits, [](Visual* child) {
        if (!Scene::Get()->isSelected(child)) child->setHighlighted();
    });
}

}  // namespace vrn::visual
