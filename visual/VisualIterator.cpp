#include "visual/VisualIterator.h"

namespace vrn::visual {

VisualIterator::VisualIterator(Visual* start, bool includeAttachedIn)
    : includeAttached(includeAttachedIn) {
    if (start) pending.push_back(start);
}

bool VisualIterator::next() {
    if (pending.empty()) return false;
    current = pending.front();
    pending.pop_front();
    for (Visual* child : current->getChildren())
        if (includeAttached || !(child->attached || child->walkStop)) pending.push_back(child);
    return true;
}

}  // namespace vrn::visual
