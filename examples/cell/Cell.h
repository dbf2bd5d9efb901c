#pragma once

#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include <optional>
#include <string>
#include <vector>

#include "examples/cell/Arm.h"
#include "examples/cell/Finishing.h"
#include "examples/cell/Linkage.h"
#include "examples/cell/Paint.h"
#include "examples/cell/Propeller.h"
#include "examples/cell/Scanner.h"

namespace vrn::examples {

/// A body of the surroundings and where its copies stand.
struct StandingBody {
    PaintedBody body;
    std::vector<gp_Trsf> places;
};

/// A sensor: a segment to `a`, or, with `b`, a parallelogram; both from `place`.
struct CellSensor {
    std::string name;
    gp_Pnt place;
    gp_Vec a;
    std::optional<gp_Vec> b{};
    double radius = 0;  ///< of a segment
};

/// The rows of one blade as targets, each in the frame of its work object: Z out of the surface, X
/// along the row.
struct BladeTargets {
    std::string name;     ///< of the work object
    gp_Trsf userFrame;    ///< in the workpiece's frame
    gp_Trsf objectFrame;  ///< in the user frame
    std::vector<std::vector<gp_Trsf>> rows;
};

/// A robot cell: an arm that grinds the blades of a propeller on a tilting rotary table. The
/// finishing is within its reach as the table stands; the rows of `blades` cover all four blades,
/// and the far ones are not without the table turned.
/// Millimetres; the world's origin is the middle of the arm's foot.
struct RobotCell {
    Linkage arm;
    gp_Trsf armPlace;
    Linkage positioner;
    gp_Trsf positionerPlace;

    std::vector<PaintedBody> tool;    ///< in the flange's frame, where it is attached
    gp_Trsf cutterFrame, probeFrame;  ///< Z from the tip back into the tool

    PaintedBody workpiece;
    gp_Trsf workpieceOnFaceplate;
    TopoDS_Shape fixture;
    gp_Trsf fixtureOnFaceplate;
    std::vector<BladeTargets> blades;
    Finishing finishing;

    std::vector<ScanPoint> scan;  ///< of the workpiece, in its own frame
    gp_Trsf scanPlace;

    std::vector<StandingBody> surroundings, fence;
    std::vector<CellSensor> sensors;
    gp_Pnt cameraPosition, cameraTarget;
};

/// The cell, its arm posed so that the cutter touches a target. Throws std::runtime_error if the
/// arm does not reach it.
[[nodiscard]] RobotCell MakeCell();

/// Where links, tool, workpiece and targets stand in the world, at the present joint values.
[[nodiscard]] gp_Trsf FlangePlace(const RobotCell& cell);
[[nodiscard]] gp_Trsf FaceplatePlace(const RobotCell& cell);
[[nodiscard]] gp_Trsf TargetPlace(const RobotCell& cell, const BladeTargets& blade,
                                  const gp_Trsf& target);

}  // namespace vrn::examples
