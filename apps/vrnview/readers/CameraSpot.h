#pragma once

#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// A camera by where it stands and what it looks at, in millimetres; Z is up.
struct CameraSpot {
    rob::PosTemplate<double> position, target;
    friend bool operator==(const CameraSpot&, const CameraSpot&) = default;
};

}  // namespace vrn::host
