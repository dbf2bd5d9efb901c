#include "apps/vrnview/drive/MeasureScript.h"

namespace vrn::host {

namespace {

using drive::MeasureAction;

drive::PickedPlaces ReadPlaces(LineFields& f, std::size_t count) {
    return {f.pixels("points", count), f.flagOr("snap", /*absent=*/false)};
}

MeasureAction ReadMeasure(LineFields& f) {
    switch (f.choice("what", {"distance", "angle", "diameter"})) {
        case 0:
            return drive::MeasureDistance{ReadPlaces(f, 2)};
        case 1:
            return drive::MeasureAngle{ReadPlaces(f, 3)};
        default:
            // The braces read the keys from left to right.
            if (f.has("object") || f.has("edge"))
                return drive::MeasureEdge{f.text("object"), f.ordinal("edge")};
            return drive::MeasureDiameter{ReadPlaces(f, 3)};
    }
}

constexpr Verb<MeasureAction> verbs[] = {
    {"measure", ReadMeasure},
    {"uv", [](LineFields& f) -> MeasureAction { return drive::ShowUv{f.pixel()}; }},
    {"polyline",
     [](LineFields& f) -> MeasureAction {
         return drive::Polyline{f.positions("points", 2), f.flagOr("arrow", /*absent=*/false)};
     }},
};

}  // namespace

std::span<const Verb<MeasureAction>> MeasureVerbs() { return verbs; }

}  // namespace vrn::host
