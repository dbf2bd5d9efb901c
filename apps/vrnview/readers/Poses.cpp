#include "apps/vrnview/readers/Poses.h"

#include <gp_Quaternion.hxx>
#include <gp_XYZ.hxx>

#include <cmath>

namespace vrn::host {

Pose PoseOf(const gp_Trsf& placement) {
    const gp_Quaternion turn = placement.GetRotation();
    const gp_XYZ& move = placement.TranslationPart();
    return {{move.X(), move.Y(), move.Z()}, {turn.W(), turn.X(), turn.Y(), turn.Z()}};
}

bool IsRigid(const gp_Trsf& placement) {
    const gp_XYZ& move = placement.TranslationPart();
    const bool finite =
        std::isfinite(move.X()) && std::isfinite(move.Y()) && std::isfinite(move.Z());
    // Negated, so that NaN is not taken for 1.
    return finite && !placement.IsNegative() && std::abs(placement.ScaleFactor() - 1) < 1e-9;
}

}  // namespace vrn::host
