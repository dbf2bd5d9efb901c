#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace vrn::selection {

/// Appends `number(i)` to `found` for each i below `count` whose `keep(i)` is 1; it is 0 for the
/// others. At most `batch` of them. Thread: pure.
template <std::size_t batch, class Number, class Keep>
void KeepFlagged(std::size_t count, const Number& number, const Keep& keep,
                 std::vector<unsigned int>& found) {
    // Writes every number and steps on only after one that stays: there is no branch to guess.
    std::array<unsigned int, batch> kept;
    std::size_t keptCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        kept[keptCount] = number(i);
        keptCount += keep(i);
    }
    found.insert(found.end(), kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(keptCount));
}

}  // namespace vrn::selection
