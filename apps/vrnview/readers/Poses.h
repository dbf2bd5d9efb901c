#pragma once

#include <gp_Trsf.hxx>

#include "suite/rob/PoseTypes.h"

namespace vrn::host {

using Pose = rob::PoseTemplate<double>;

/// `inner` given in the frame of `outer`, seen from the frame that `outer` is given in. Thread:
/// pure.
[[nodiscard]] inline Pose Compose(const Pose& outer, const Pose& inner) {
    return {rob::TransformPoint(outer, inner.position), outer.rotation * inner.rotation};
}

/// The placement without its scale and mirroring, which a pose cannot hold. Thread: pure.
[[nodiscard]] Pose PoseOf(const gp_Trsf& placement);

/// Whether a pose can hold the placement: nothing in it but a turn and a move, all finite. Thread:
/// pure.
[[nodiscard]] bool IsRigid(const gp_Trsf& placement);

}  // namespace vrn::host
