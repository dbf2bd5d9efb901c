#pragma once

#include <gp_Dir.hxx>
#include <gp_Quaternion.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include <optional>
#include <string>
#include <vector>

#include "examples/cell/Paint.h"

namespace vrn::examples {

struct AngleRange {
    double lowerDegrees = 0;
    double upperDegrees = 0;
};

/// A joint that turns a link about `axis`, which is given in the link's own frame.
struct LinkJoint {
    std::string name;
    gp_Vec origin;  ///< of the link, in the frame of the link before
    gp_Dir axis;
    std::optional<AngleRange> limits{};  ///< none: the joint does not move
    gp_Quaternion turn{};                ///< of the link's frame at value zero
};

struct LinkBodies {
    std::string name;
    LinkJoint joint;
    std::vector<PaintedBody> bodies;  ///< in the link's frame
};

/// A chain of links on a base that stands still.
struct Linkage {
    std::string name;
    std::vector<PaintedBody> base;
    std::vector<LinkBodies> links;
    std::vector<double> valuesDegrees;  ///< one a link
};

/// Where the base and the links stand, in the frame of the base: the base first.
[[nodiscard]] std::vector<gp_Trsf> LinkPlaces(const Linkage& linkage);

}  // namespace vrn::examples
