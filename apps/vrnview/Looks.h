#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "apps/vrnview/Framing.h"
#include "apps/vrnview/readers/CameraSpot.h"
#include "engine/Scene.h"

namespace vrn::host {

/// A joint and where it is to stand: degrees, millimetres for a sliding joint.
struct JointValue {
    std::string joint;
    double value = 0;
    friend bool operator==(const JointValue&, const JointValue&) = default;
};

/// The whole scene, or one object, in the direction that the picture would have anyway.
struct ViewOfAll {
    friend bool operator==(const ViewOfAll&, const ViewOfAll&) = default;
};
struct ViewOfObject {
    std::string name;
    friend bool operator==(const ViewOfObject&, const ViewOfObject&) = default;
};
/// The whole scene, seen along `dir`, which has a length.
struct ViewAlong {
    rob::DirTemplate<double> dir;
    friend bool operator==(const ViewAlong&, const ViewAlong&) = default;
};
/// A view that the library finds the camera for.
using FoundView = std::variant<ViewOfAll, ViewOfObject, ViewAlong>;

/// How the scene is shown. Objects go by the id that a station file gives them, by the number of
/// their visual, by their name, or by their visual's as reports print it.
struct Looks {
    visual::Scene::DisplayMode mode = visual::Scene::DisplayMode::Shaded;
    std::vector<std::string> hide, select, highlight;
    /// A standard view that frames the scene; without one and without a camera, that of the first
    /// station that names a camera, else the iso view.
    std::optional<StandardView> view;
    std::optional<FoundView> foundView;  ///< over the other two
    std::optional<CameraSpot> camera;
};

/// The names of the display modes on the command line, in the order of Scene::DisplayMode.
[[nodiscard]] const std::vector<std::string_view>& DisplayModeNames();

}  // namespace vrn::host
