#pragma once

#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "apps/vrnview/drive/LineFields.h"

namespace vrn::host {

namespace drive {

/// Adds a paint gun to the station: a cone along its z axis.
struct MakeGun {
    std::string name;
    double nearMm, farMm;  ///< diameters at the origin and at the height, one above 0
    double heightMm;       ///< above 0
    std::optional<rob::ColorTemplate<float>> colour;  ///< of the cone
    Pose pose;                                        ///< in the world
};
/// Lets a gun paint on objects.
struct Paint {
    std::string gun;
    std::vector<std::string> objects;
};
struct PaintEnd {
    std::string gun;
    std::vector<std::string> objects;
};
/// Paints what the gun reaches from each of the poses in turn.
struct Spray {
    std::string gun;
    std::vector<Pose> poses;  ///< in the world; none: from where the gun stands
};
struct PaintColour {
    std::vector<std::string> objects;
    rob::ColorTemplate<float> colour;
};
struct PaintReset {
    std::vector<std::string> objects;
};

using PaintAction = std::variant<MakeGun, Paint, PaintEnd, Spray, PaintColour, PaintReset>;

}  // namespace drive

/// Thread: pure.
[[nodiscard]] std::span<const Verb<drive::PaintAction>> PaintVerbs();

}  // namespace vrn::host
