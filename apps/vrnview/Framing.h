#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "apps/vrnview/Bounds.h"
#include "apps/vrnview/readers/CameraSpot.h"
#include "suite/rob/PoseTypes.h"

namespace vrn::host {

/// Where the camera stands: Z is up, "front" looks along +Y, "left" along +X, "top" downwards with
/// +Y up on the picture; "iso" looks from the front, right and above, the three axes equally
/// foreshortened.
enum class StandardView { Iso, Front, Back, Left, Right, Top, Bottom };

/// The names on the command line, in the order of StandardView.
[[nodiscard]] const std::vector<std::string_view>& StandardViewNames();

/// What the viewport's camera can see: the angles are those of the whole picture.
struct FieldOfView {
    double horizontalRad;
    double aspect;  ///< width by height
};

/// A camera as the library takes it: it looks along its -Z, +X is right and +Y is up on the
/// picture.
struct CameraPlacement {
    rob::PoseTemplate<double> pose;
    double nearClip;  ///< above 0 and in front of all that was framed
    double farClip;   ///< behind all that was framed and behind the furniture
};

/// Looks from `view` so that all of `points` just fill the picture, centred, with a small margin.
///
/// Points with a coordinate that is not finite are passed over; without any other the middle of the
/// furniture is framed. `furniture` is what is drawn as well but not framed, such as the grid: it
/// only moves the far clip distance. Works for scenes of any size, single points too. Thread: pure.
[[nodiscard]] CameraPlacement FramePoints(std::span<const rob::PosTemplate<double>> points,
                                          const Bounds& furniture, StandardView view,
                                          const FieldOfView& fov);

/// Looks from a spot, Z up; what lies on the line of sight from straight above or below has +Y up.
/// The clip distances hold all of `points` that is in front of the camera. A spot that looks at
/// itself looks along +Y. Thread: pure.
[[nodiscard]] CameraPlacement LookFrom(const CameraSpot& spot,
                                       std::span<const rob::PosTemplate<double>> points,
                                       const Bounds& furniture);

/// Stands at a pose, with clip distances as LookFrom; where nothing is in front of the camera it
/// sees as far as `depthOfNothing`. Thread: pure.
[[nodiscard]] CameraPlacement StandAt(const rob::PoseTemplate<double>& pose, double depthOfNothing,
                                      std::span<const rob::PosTemplate<double>> points,
                                      const Bounds& furniture);

/// The eight corners of a box; none of an empty one. Thread: pure.
[[nodiscard]] std::vector<rob::PosTemplate<double>> CornersOf(const Bounds& box);

}  // namespace vrn::host
