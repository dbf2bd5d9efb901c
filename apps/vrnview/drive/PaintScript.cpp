#include "apps/vrnview/drive/PaintScript.h"

#include <stdexcept>

namespace vrn::host {

namespace {

using drive::PaintAction;

PaintAction ReadGun(LineFields& f) {
    // The braces read the keys from left to right.
    drive::MakeGun gun{f.text("name"),     f.lengthOrNone("near"),  f.lengthOrNone("far"),
                       f.length("height"), f.colourIfAny("colour"), f.poseOr("pose", {})};
    if (!(gun.nearMm + gun.farMm > 0))
        throw std::runtime_error("gun needs \"near\" or \"far\", a diameter above 0");
    return gun;
}

PaintAction ReadSpray(LineFields& f) {
    drive::Spray spray{f.text("gun"), {}};
    if (f.has("poses")) spray.poses = f.poses("poses");
    return spray;
}

constexpr Verb<PaintAction> verbs[] = {
    {"gun", ReadGun},
    {"paint",
     [](LineFields& f) -> PaintAction { return drive::Paint{f.text("gun"), f.texts("objects")}; }},
    {"paint-end",
     [](LineFields& f) -> PaintAction {
         return drive::PaintEnd{f.text("gun"), f.texts("objects")};
     }},
    {"spray", ReadSpray},
    {"paint-colour",
     [](LineFields& f) -> PaintAction {
         return drive::PaintColour{f.texts("objects"), f.colour("colour")};
     }},
    {"paint-reset",
     [](LineFields& f) -> PaintAction { return drive::PaintReset{f.texts("objects")}; }},
};

}  // namespace

std::span<const Verb<PaintAction>> PaintVerbs() { return verbs; }

}  // namespace vrn::host
