#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "apps/vrnview/drive/LineFields.h"

namespace vrn::host {

namespace drive {

// What a dialog would show before it exists. Faces and edges go by their numbers in the object's
// solid, from 1.

struct PreviewEdges {
    std::string object;
    std::vector<std::uint32_t> edges;
};
/// The outer boundary of a face.
struct PreviewWire {
    std::string object;
    std::uint32_t face;
};
struct PreviewFaces {
    std::string object;
    std::vector<std::uint32_t> faces;
};
struct PreviewPoints {
    std::string object;                            ///< the points are in its frame
    std::vector<rob::PosTemplate<double>> points;  ///< one at least
    rob::ColorTemplate<float> colour;
};
struct PreviewTargets {
    std::vector<Pose> poses;  ///< in the world, one at least
};
struct PreviewJoint {
    rob::PosTemplate<double> from, to;  ///< in the world
};
struct PreviewFrame {
    std::uint32_t key;  ///< of the script's own
    Pose pose;          ///< in the world
    bool dashed;
};
struct PreviewCopy {
    std::string object;
    Pose pose;  ///< in the world
};
/// Takes away all of one kind that is shown besides the objects.
struct Remove {
    enum class What { Curves, Points, Faces, Joint, Frame, Copy, Measures, Uv, Polylines };
    What what;
    std::uint32_t key = 0;  ///< of a frame
};

using PreviewAction = std::variant<PreviewEdges, PreviewWire, PreviewFaces, PreviewPoints,
                                   PreviewTargets, PreviewJoint, PreviewFrame, PreviewCopy, Remove>;

}  // namespace drive

/// Thread: pure.
[[nodiscard]] std::span<const Verb<drive::PreviewAction>> PreviewVerbs();

}  // namespace vrn::host
