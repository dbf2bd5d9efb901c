#include "apps/vrnview/drive/BandScript.h"

#include <algorithm>
#include <format>
#include <stdexcept>

namespace vrn::host {

namespace {

using drive::BandAction;
using drive::BandPlace;

BandPlace ReadPlace(LineFields& f) {
    const std::uint32_t edge = f.ordinal("edge");
    return {edge, f.numberIn("at", 0, 1)};
}

BandPlace ReadInnerPlace(LineFields& f, const char* key) {
    LineFields inner = f.inner(key);
    const BandPlace place = ReadPlace(inner);
    inner.finish();
    return place;
}

BandAction ReadBand(LineFields& f) {
    drive::Band band{f.text("object"), f.ordinals("edges"), {}};
    for (LineFields& inner : f.inners("vectors")) {
        const BandPlace place = ReadPlace(inner);
        band.directions.push_back({place, inner.direction("direction")});
        inner.finish();
    }
    for (std::uint32_t edge = 1; edge <= band.edges.size(); ++edge)
        if (std::ranges::none_of(band.directions,
                                 [edge](const auto& d) { return d.place.edge == edge; }))
            throw std::runtime_error(
                std::format("band has no vector on edge {} of its \"edges\"", edge));
    for (const drive::BandDirection& direction : band.directions)
        if (direction.place.edge > band.edges.size())
            throw std::runtime_error(std::format("band has a vector on edge {} of {}",
                                                 direction.place.edge, band.edges.size()));
    return band;
}

constexpr Verb<BandAction> verbs[] = {
    {"band", ReadBand},
    {"band-preview", [](LineFields& f) -> BandAction { return drive::BandPreview{ReadPlace(f)}; }},
    {"band-select", [](LineFields& f) -> BandAction { return drive::BandSelect{ReadPlace(f)}; }},
    {"band-range",
     [](LineFields& f) -> BandAction {
         // The braces read the keys from left to right.
         return drive::BandRange{ReadInnerPlace(f, "from"), ReadInnerPlace(f, "to")};
     }},
    {"band-clear",
     [](LineFields& f) -> BandAction {
         return drive::BandClear{static_cast<drive::BandClear::What>(
             f.choice("what", {"preview", "selected", "range", "all"}))};
     }},
};

}  // namespace

std::span<const Verb<BandAction>> BandVerbs() { return verbs; }

}  // namespace vrn::host
