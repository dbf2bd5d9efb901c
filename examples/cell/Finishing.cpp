#include "examples/cell/Finishing.h"

#include <gp_Ax3.hxx>

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <stdexcept>

#include "examples/cell/Cell.h"
#include "examples/cell/Propeller.h"

namespace vrn::examples {

namespace {

constexpr int rows = 9, places = 49;
// Along the blade, from the root outwards, and across it, from edge to edge.
constexpr std::array<std::size_t, 3> edgeRows{1, 4, 7};
constexpr std::size_t tipRow = 8, firstEdge = 4, lastEdge = 44, middle = 24;

constexpr double clearance = 90;  // of the places above, along the targets' Z
constexpr double lift = 1;        // of the cutter over the surface that it finishes

// Millimetres a second, and degrees a second between the blades.
constexpr double approachSpeed = 180, edgeSpeed = 260, tipSpeed = 70, rootSpeed = 140,
                 boreSpeed = 60, swingSpeed = 28;

class Programmer {
public:
    explicit Programmer(const RobotCell& robotCell)
        : cell(robotCell), workpiece(FaceplatePlace(cell) * cell.workpieceOnFaceplate) {
        made.workObject = "propeller_top";
        made.userFrame.SetTranslation(gp_Vec(0, 0, propeller.hubHeight));
        made.home = "home";
        made.homeDegrees = {0, -12, 20, 0, 70, 0};
    }

    Finishing run() {
        moves.push_back(toHome());
        for (const int blade : {1, 2, 3}) addBlade(blade);
        addBore();
        moves.push_back(toHome());
        made.paths.push_back({"edges", std::move(moves)});
        return std::move(made);
    }

private:
    [[nodiscard]] CellMove toHome() const {
        return {"joint", made.home, "", swingSpeed, /*isToJoints=*/true};
    }

    /// Round the blade: out along one edge, over the tip, back along the other, across the root.
    void addBlade(int blade) {
        const std::vector<SurfaceRow> surface = RowsOnBlade(propeller, blade, rows, places);
        const std::string prefix = 'b' + std::to_string(blade + 1) + '_';
        const auto add = [&](const std::string& name, std::size_t row, std::size_t place) {
            const SurfacePlace& at = surface[row][place];
            addTarget(prefix + name, at.point, at.normal, lift);
        };
        const SurfacePlace& start = surface[edgeRows[0]][firstEdge];
        addTarget(prefix + "above", start.point, start.normal, clearance);
        for (std::size_t i = 0; i < edgeRows.size(); ++i) {
            add("out" + std::to_string(i + 1), edgeRows[i], firstEdge);
            add("back" + std::to_string(i + 1), edgeRows[i], lastEdge);
        }
        add("tip", tipRow, middle);
        add("root", edgeRows[0] - 1, middle);
        moves.insert(moves.end(), {{"joint", prefix + "above", "", swingSpeed},
                                   {"linear", prefix + "out1", "", approachSpeed},
                                   {"linear", prefix + "out2", "", edgeSpeed},
                                   {"linear", prefix + "out3", "", edgeSpeed},
                                   {"circular", prefix + "back3", prefix + "tip", tipSpeed},
                                   {"linear", prefix + "back2", "", edgeSpeed},
                                   {"linear", prefix + "back1", "", edgeSpeed},
                                   {"circular", prefix + "out1", prefix + "root", rootSpeed},
                                   {"linear", prefix + "above", "", approachSpeed}});
    }

    /// The hub's upper face, half way between bore and edge, in two arcs.
    void addBore() {
        const double radius = propeller.boreRadius + 22;
        for (int i = 0; i < 4; ++i) {
            const double angle = std::numbers::pi / 2 * i;
            addTarget("bore_" + std::to_string(i + 1),
                      {radius * std::cos(angle), radius * std::sin(angle), propeller.hubHeight},
                      {0, 0, 1}, lift);
        }
        addTarget("bore_above", {radius, 0, propeller.hubHeight}, {0, 0, 1}, clearance);
        moves.insert(moves.end(), {{"joint", "bore_above", "", swingSpeed},
                                   {"linear", "bore_1", "", approachSpeed},
                                   {"circular", "bore_3", "bore_2", boreSpeed},
                                   {"circular", "bore_1", "bore_4", boreSpeed},
                                   {"linear", "bore_above", "", approachSpeed}});
    }

    /// Over a point of the workpiece, in its frame.
    void addTarget(const std::string& name, const gp_Pnt& point, const gp_Dir& normal,
                   double height) {
        const gp_Pnt raised = point.Translated(gp_Vec(normal) * height);
        const gp_Pnt world = raised.Transformed(workpiece);
        const gp_Vec z(normal.Transformed(workpiece)), towards(-world.X(), -world.Y(), 0);
        const gp_Dir x = gp_Dir(towards - z * (towards * z)).Transformed(workpiece.Inverted());
        gp_Trsf place;
        place.SetTransformation(gp_Ax3(raised, normal, x), gp_Ax3());
        made.targets.emplace_back(name, made.userFrame.Inverted() * place);
    }

    const RobotCell& cell;
    const Propeller propeller;
    const gp_Trsf workpiece;
    Finishing made;
    std::vector<CellMove> moves;
};

}  // namespace

Finishing MakeFinishing(const RobotCell& cell) { return Programmer(cell).run(); }

gp_Trsf TargetPlace(const RobotCell& cell, const Finishing& finishing, const std::string& target) {
    for (const auto& [name, place] : finishing.targets)
        if (name == target)
            return FaceplatePlace(cell) * cell.workpieceOnFaceplate * finishing.userFrame * place;
    throw std::out_of_range("no target " + target);
}

}  // namespace vrn::examples
