#pragma once

#include <cstddef>
#include <deque>
#include <utility>
#include <vector>

#include "visual/Visual.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// Breadth-first walk over a subtree of visuals:
///
///     for (VisualIterator it(part, /*includeAttached=*/false); it.next();) use(it.value());
///
/// Children that are attached or stop walks are left out, with all below them, unless the flag asks
/// for them. next() notes the children of the visual it moves to: the tree must not lose any of
/// them before they are reached. Thread: render.
class VRN_VISUAL_API VisualIterator {
public:
    /// A null `start` gives an empty walk.
    VisualIterator(Visual* start, bool includeAttachedIn);

    /// Moves to the next visual; false when there is none left.
    bool next();
    /// The current visual; null before the first next().
    [[nodiscard]] Visual* value() const { return current; }

private:
    std::deque<Visual*> pending;
    Visual* current = nullptr;
    bool includeAttached;
};

/// The same walk over several starting visuals, taking every child. `Node` needs getChildren(). A
/// null start gives nothing.
template <class Node>
class ForestIterator {
public:
    explicit ForestIterator(Node* start) : only(start) {}
    explicit ForestIterator(const std::vector<Node*>& starts)
        : pending(starts.begin(), starts.end()) {
        std::erase(pending, nullptr);
    }

    bool next() {
        if (only)
            current = std::exchange(only, nullptr);
        else if (reached < pending.size())
            current = pending[reached++];
        else
            return false;
        for (Node* child : current->getChildren()) pending.push_back(child);
        return true;
    }
    /// The current visual; null before the first next().
    [[nodiscard]] Node* value() const { return current; }

private:
    Node* only = nullptr;        // a single start that was not reached yet: most have no children,
    std::vector<Node*> pending;  // and a walk over one visual takes no memory
    std::size_t reached = 0;
    Node* current = nullptr;
};

}  // namespace vrn::visual
