#include "apps/vrnview/program/SpeedColour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace vrn::host {

namespace {

using Colour = rob::ColorTemplate<float>;

// At equal distances from rest to the fastest.
constexpr std::array<std::array<float, 3>, 5> stops{{{0.16f, 0.42f, 1.0f},
                                                     {0.05f, 0.78f, 0.86f},
                                                     {0.30f, 0.86f, 0.30f},
                                                     {1.0f, 0.80f, 0.10f},
                                                     {1.0f, 0.22f, 0.16f}}};

}  // namespace

Colour SpeedColour(double speed, double fastest) {
    const double share = speed > 0 && fastest > 0 ? std::min(speed / fastest, 1.0) : 0.0;
    const double place = share * (stops.size() - 1);
    const std::size_t below = std::min(static_cast<std::size_t>(place), stops.size() - 2);
    const auto part = static_cast<float>(place - static_cast<double>(below));
    const auto &a = stops[below], &b = stops[below + 1];
    return {a[0] + (b[0] - a[0]) * part, a[1] + (b[1] - a[1]) * part, a[2] + (b[2] - a[2]) * part};
}

}  // namespace vrn::host
