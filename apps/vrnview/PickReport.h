#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// A visual as reports name it.
struct VisualName {
    std::uint32_t id = 0;
    std::int32_t type = 0;  ///< the number of its VisualType
    std::string name;
};

struct FoundVisual : VisualName {
    /// For a visual without a model object of its own: the nearest one above it that stands for
    /// one.
    std::optional<VisualName> owner;
};

/// The place on an edge that a hit snaps to.
struct SnapReport {
    double param = 0;                     ///< on the edge's curve
    rob::PosTemplate<double> position{};  ///< in the world
};

/// What lies under a pixel.
struct PickReport {
    bool hit = false;
    std::optional<FoundVisual> visual;  ///< with a hit
    std::optional<std::uint32_t> face;  ///< the number in the solid, from 1
    /// The number in the solid or curve, from 1: of the edge that was hit, else of the edge of the
    /// face that the hit snaps to.
    std::optional<std::uint32_t> edge;
    rob::PosTemplate<float> position{};  ///< in the world; the ground without a hit
    std::optional<rob::PosTemplate<float>> localPosition;  ///< with a hit
    std::optional<float> distance;                         ///< with a hit
    std::int32_t index = -1;                               ///< of the point of a cloud
    std::optional<SnapReport> snap;
    double us = 0;  ///< how long the question took, in microseconds
};

/// What lies under a part of the picture.
struct AreaReport {
    std::vector<FoundVisual> visuals;
    std::size_t points = 0;  ///< of clouds
};

// A line each, with its end. JSON has null for what is absent and for numbers that are not finite.
// Thread: pure.
[[nodiscard]] std::string JsonOf(const PickReport& report);
[[nodiscard]] std::string JsonOf(const AreaReport& report);
/// For people.
[[nodiscard]] std::string TextOf(const PickReport& report);
[[nodiscard]] std::string TextOf(const AreaReport& report);

}  // namespace vrn::host
