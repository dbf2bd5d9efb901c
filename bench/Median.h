#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace vrn::bench {

/// The middle one; 0 for none.
inline double Median(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// How long `action` takes, in milliseconds.
template <class Action>
double MillisecondsOf(Action&& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    return taken.count();
}

}  // namespace vrn::bench
