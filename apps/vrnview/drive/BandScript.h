#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "apps/vrnview/drive/LineFields.h"

namespace vrn::host {

namespace drive {

/// A place on a band.
struct BandPlace {
    std::uint32_t edge;  ///< by its place in the band, from 1
    double at;           ///< 0 where the edge starts, 1 where it ends, by its parameter between
};
struct BandDirection {
    BandPlace place;
    rob::DirTemplate<double> direction;  ///< unit length, in the frame of the solid
};

/// Shows a process along edges of an object, in place of an earlier one.
struct Band {
    std::string object;
    std::vector<std::uint32_t> edges;  ///< numbers in its solid; each goes on where the last ends
    std::vector<BandDirection> directions;  ///< each edge has one at least
};
struct BandPreview {
    BandPlace place;
};
struct BandSelect {
    BandPlace place;
};
struct BandRange {
    BandPlace from, to;
};
struct BandClear {
    enum class What { Preview, Selected, Range, All };
    What what;  ///< All: the band itself
};

using BandAction = std::variant<Band, BandPreview, BandSelect, BandRange, BandClear>;

}  // namespace drive

/// Thread: pure.
[[nodiscard]] std::span<const Verb<drive::BandAction>> BandVerbs();

}  // namespace vrn::host
