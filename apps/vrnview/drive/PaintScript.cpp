#include "apps/vrnview/drive/PaintScript.h"

#include <algorithm>
#include <stdexcept>

namespace vrn::host {

namespace {

using drive::PaintAction;

PaintAction ReadGun(LineFields& f) {
    // The braces read the keys from left to right.
    drive::MakeGun gun{f.text("name"),     f.lengthOrNone("near"),  f.lengthOrNone("far"),
                       f.length("height"), f.colourIfAny("colour"), f.poseOr("pose", {})};
    // What is smaller has no shape; a thinner cone takes minutes and gigabytes to be meshed.
    constexpr double least = 1e-3, thinnest = 1e4;
    const double widest = std::max(gun.nearMm, gun.farMm);
    if (!(widest >= least))
        throw std::runtime_error("gun needs \"near\" or \"far\", a diameter of 0.001 or more");
    if (!(gun.heightMm >= least && gun.heightMm <= thinnest * widest))
        throw std::runtime_error(
            "gun needs \"height\", a length from 0.001 to 10000 times the larger diameter");
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
