#pragma once

#include <optional>

#include "apps/vrnview/readers/Poses.h"

namespace vrn::host {

/// The way of a tool in space from one pose to another: straight, or on the arc through a point.
/// Along it the tool turns evenly, the shorter way round. A value. Thread: pure.
class Way {
public:
    [[nodiscard]] static Way Straight(const Pose& from, const Pose& to);
    /// The arc from `from` through `via` to `to`; nothing if the three lie on a line or two of them
    /// in one place.
    [[nodiscard]] static std::optional<Way> Arc(const Pose& from,
                                                const rob::PosTemplate<double>& via,
                                                const Pose& to);

    /// `part` from 0, the start, to 1, the end, which it answers as they were given.
    [[nodiscard]] Pose at(double part) const;
    [[nodiscard]] double length() const { return lengthMm; }
    [[nodiscard]] bool isArc() const { return sweep > 0; }
    [[nodiscard]] double turnRad() const { return angle; }

private:
    Way(const Pose& from, const Pose& to);

    Pose start, end;
    double lengthMm = 0;
    double angle = 0;                        ///< that the tool turns by
    rob::Vec3Template<double> axis;          ///< that it turns about, in the frame of `start`
    double sweep = 0;                        ///< of the arc; 0 for a straight way
    rob::Vec3Template<double> centre, x, y;  ///< of the arc: x to the start, y square to it ahead
};

}  // namespace vrn::host
