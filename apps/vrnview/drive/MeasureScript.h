#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "apps/vrnview/drive/LineFields.h"

namespace vrn::host {

namespace drive {

/// Places of the scene that lie under pixels.
struct PickedPlaces {
    std::vector<Pixel> pixels;
    bool snap;  ///< to the edges near by
};
struct MeasureDistance {
    PickedPlaces places;  ///< two
};
struct MeasureAngle {
    PickedPlaces places;  ///< three, the vertex first
};
/// Of the circle through three places.
struct MeasureDiameter {
    PickedPlaces places;
};
/// Of an edge that is part of a circle, by its number in the object's solid.
struct MeasureEdge {
    std::string object;
    std::uint32_t edge;
};
/// Shows the directions of the parameters of the face under a pixel.
struct ShowUv {
    Pixel at;
};
struct Polyline {
    std::vector<rob::PosTemplate<double>> points;  ///< in the world, two at least
    bool arrow;
};

using MeasureAction =
    std::variant<MeasureDistance, MeasureAngle, MeasureDiameter, MeasureEdge, ShowUv, Polyline>;

}  // namespace drive

/// Thread: pure.
[[nodiscard]] std::span<const Verb<drive::MeasureAction>> MeasureVerbs();

}  // namespace vrn::host
