#include "examples/cell/Cell.h"

#include <BRepBuilderAPI_Copy.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <gp_Ax1.hxx>
#include <gp_Ax3.hxx>
#include <gp_Quaternion.hxx>

#include <cstddef>
#include <numbers>
#include <stdexcept>

#include "examples/cell/Positioner.h"
#include "examples/cell/Spindle.h"
#include "examples/cell/Surroundings.h"

namespace vrn::examples {

namespace {

constexpr double degree = std::numbers::pi / 180;

constexpr int rowsPerBlade = 8, placesPerRow = 96;
// The target that the cutter stands on.
constexpr const char* touchedTarget = "b2_tip";

gp_Trsf At(const gp_Vec& position) {
    gp_Trsf trsf;
    trsf.SetTranslation(position);
    return trsf;
}

gp_Trsf TurnedAt(const gp_Vec& position, double degreesAboutZ) {
    gp_Trsf trsf;
    trsf.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), degreesAboutZ * degree);
    trsf.SetTranslationPart(position);
    return trsf;
}

/// The frame at `origin` with its Z along `z` and its X towards `x`.
gp_Trsf Frame(const gp_Pnt& origin, const gp_Dir& z, const gp_Dir& x) {
    gp_Trsf trsf;
    trsf.SetTransformation(gp_Ax3(origin, z, x), gp_Ax3());
    return trsf;
}

/// A tool frame of the spindle: from its tip back, along the flange's X.
gp_Trsf ToolFrame(double x, double z) {
    return Frame(gp_Pnt(x, 0, z), gp_Dir(-1, 0, 0), gp_Dir(0, 0, -1));
}

BladeTargets TargetsOn(const Propeller& propeller, int blade) {
    BladeTargets targets;
    targets.name = "blade_" + std::to_string(blade + 1);
    targets.userFrame = TurnedAt({0, 0, 0}, 360.0 * blade / propeller.blades);
    targets.objectFrame = At({propeller.radius / 2, 0, propeller.hubHeight / 2});
    const gp_Trsf fromWorkpiece = (targets.userFrame * targets.objectFrame).Inverted();
    for (const SurfaceRow& row : RowsOnBlade(propeller, blade, rowsPerBlade, placesPerRow)) {
        std::vector<gp_Trsf>& made = targets.rows.emplace_back();
        for (const SurfacePlace& place : row)
            made.push_back(fromWorkpiece * Frame(place.point, place.normal, place.along));
    }
    return targets;
}

std::vector<ScanPoint> ScanOf(const TopoDS_Shape& workpiece) {
    // A copy: the triangles are the scanner's alone.
    const TopoDS_Shape copy = BRepBuilderAPI_Copy(workpiece, /*copyGeom=*/false).Shape();
    BRepMesh_IncrementalMesh(copy, 0.8, /*isRelative=*/false, 0.3);
    Scanner scanner;
    scanner.places = {{-250, -1650, 1250}, {1550, 750, 1150}, {-1450, 900, 1000}};
    return Scan(copy, scanner);
}

std::vector<StandingBody> MakeFence() {
    StandingBody posts{MakeFencePost(), {}}, panels{MakeFencePanel(), {}};
    const gp_Vec corner(-1000, 1400, 0);
    const auto run = [&](const gp_Vec& along, double degrees, int count) {
        for (int i = 0; i < count; ++i) {
            panels.places.push_back(TurnedAt(corner + along * (i * fencePanelLength), degrees));
            posts.places.push_back(
                TurnedAt(corner + along * ((i + 1) * fencePanelLength), degrees));
        }
    };
    posts.places.push_back(At(corner));
    run({1, 0, 0}, 0, 4);
    run({0, -1, 0}, -90, 1);
    return {posts, panels};
}

/// The posture that brings the cutter onto the touched target.
ArmPosture PostureOnTarget(const RobotCell& cell) {
    const gp_Trsf cutter = TargetPlace(cell, cell.finishing, touchedTarget);
    const gp_Trsf flange = cell.armPlace.Inverted() * cutter * cell.cutterFrame.Inverted();
    const std::optional<ArmPosture> posture = PostureAt(flange);
    if (!posture) throw std::runtime_error("the arm does not reach its target");
    return *posture;
}

}  // namespace

gp_Trsf FlangePlace(const RobotCell& cell) { return cell.armPlace * LinkPlaces(cell.arm).back(); }

gp_Trsf FaceplatePlace(const RobotCell& cell) {
    return cell.positionerPlace * LinkPlaces(cell.positioner).back();
}

gp_Trsf TargetPlace(const RobotCell& cell, const BladeTargets& blade, const gp_Trsf& target) {
    return FaceplatePlace(cell) * cell.workpieceOnFaceplate * blade.userFrame * blade.objectFrame *
           target;
}

RobotCell MakeCell() {
    const Propeller propeller;
    RobotCell cell;
    cell.arm = MakeArm();
    cell.positioner = MakePositioner();
    cell.positionerPlace = At({2200, 0, 0});
    cell.positioner.valuesDegrees = {6, 160};

    cell.tool = MakeSpindle();
    cell.cutterFrame = ToolFrame(spindle::cutterX, spindle::cutterZ);
    cell.probeFrame = ToolFrame(spindle::probeX, spindle::probeZ);

    cell.workpiece = MakePropeller(propeller);
    cell.fixture = MakeFixture();
    cell.fixtureOnFaceplate = At({0, 0, positioner::plateThickness});
    cell.workpieceOnFaceplate = At({0, 0, positioner::plateThickness + fixtureSeat});
    for (int i = 0; i < propeller.blades; ++i) cell.blades.push_back(TargetsOn(propeller, i));
    cell.finishing = MakeFinishing(cell);

    cell.scan = ScanOf(cell.workpiece.shape);
    cell.scanPlace = TurnedAt({1420, -1000, standHeight + 60}, 20);

    cell.surroundings = {{MakeFloor(), {gp_Trsf()}},
                         {MakeCabinet(), {TurnedAt({-420, 1020, 0}, 0)}},
                         {MakeStand(), {At({1420, -1000, 0})}}};
    cell.fence = MakeFence();
    cell.sensors = {
        {"light_barrier", {-1000, -1420, 420}, {4240, 0, 0}, {}, 5},
        {"part_gate", {1240, -1165, standHeight}, {0, 0, 120}, gp_Vec(0, 170, 0)},
    };
    cell.cameraPosition = {3950, -3420, 2780};
    cell.cameraTarget = {1280, 20, 865};

    const ArmPosture posture = PostureOnTarget(cell);
    for (std::size_t i = 0; i < posture.size(); ++i) cell.arm.valuesDegrees[i] = posture[i];
    return cell;
}

}  // namespace vrn::examples
