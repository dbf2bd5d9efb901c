#include "examples/Workshop.h"

#include <cmath>
#include <numbers>

#include "examples/Gear.h"
#include "examples/Shapes.h"
#include "examples/StlWriter.h"

namespace vrn::examples {

namespace {

// The table. The world's origin stays on the floor beside its front right corner, where its frame
// is seen.
constexpr double tableLeft = -1720, tableFront = 140;
constexpr double tableLength = 1600, tableDepth = 900, tableThickness = 110;
constexpr double bedHeight = 240;
constexpr double top = bedHeight + tableThickness;

constexpr int slotCount = 5;
constexpr double slotPitch = 160;
constexpr double slotWidth = 22;

/// A point on the table's top, from its front left corner.
gp_Vec OnTable(double u, double v) { return {tableLeft + u, tableFront + v, top}; }

double SlotAt(int index) { return tableDepth / 2 + (index - (slotCount - 1) / 2.0) * slotPitch; }

/// A box standing on z = 0 about the Z axis with round upright edges.
TopoDS_Shape RoundedBlock(double dx, double dy, double dz, double radius) {
    return Filleted(BoxAt({-dx / 2, -dy / 2, 0}, dx, dy, dz), radius, IsUpright);
}

TopoDS_Shape MakeBed() {
    const TopoDS_Shape column = Filleted(RoundedBlock(1380, 700, 200, 60), 12, AtHeight(200));
    const TopoDS_Shape flange = Filleted(RoundedBlock(1480, 800, 40, 80), 10, AtHeight(40));
    std::vector<TopoDS_Shape> pieces{Moved(column, {0, 0, 40}), Moved(flange, {0, 0, 18})};
    for (const double x : {-660.0, 660.0}) {
        for (const double y : {-320.0, 320.0}) {
            pieces.push_back(CylinderAt({x, y, 0}, {0, 0, 12}, 46));
            pieces.push_back(CylinderAt({x, y, 12}, {0, 0, 10}, 26));
        }
    }
    const TopoDS_Shape opening =
        Filleted(BoxAt({-420, -500, 95}, 840, 1000, 95), 30,
                 [](const gp_Pnt& a, const gp_Pnt& b) { return a.Distance(b) > 999; });
    return Moved(Cut(Fused(pieces), {opening}),
                 {tableLeft + tableLength / 2, tableFront + tableDepth / 2, 0});
}

TopoDS_Shape MakeTable() {
    const TopoDS_Shape blank = Chamfered(
        Filleted(BoxAt({0, 0, 0}, tableLength, tableDepth, tableThickness), 24, IsUpright), 4,
        AtHeight(tableThickness));
    std::vector<TopoDS_Shape> slots;
    for (int i = 0; i < slotCount; ++i) {
        const double y = SlotAt(i), narrow = slotWidth / 2, wide = 20, throat = tableThickness - 26;
        slots.push_back(PrismAlongX(-1,
                                    {{y - narrow, tableThickness + 1},
                                     {y - narrow, throat},
                                     {y - wide, throat},
                                     {y - wide, throat - 18},
                                     {y + wide, throat - 18},
                                     {y + wide, throat},
                                     {y + narrow, throat},
                                     {y + narrow, tableThickness + 1}},
                                    tableLength + 2));
    }
    return Moved(Cut(blank, slots), {tableLeft, tableFront, bedHeight});
}

// The angle plate stands across two slots; its studs go where the slots are.
constexpr double plateU = 1300;
constexpr double plateStud = 130;  // from the middle of the plate to its studs, along X

TopoDS_Shape MakeAnglePlate() {
    constexpr double width = 380, depth = 300, height = 340, wall = 34;
    const TopoDS_Shape foot = RoundedBlock(width, depth, wall, 22);
    const TopoDS_Shape wallBlank =
        Filleted(BoxAt({-width / 2, depth / 2 - wall, 0}, width, wall, height), 60,
                 [](const gp_Pnt& a, const gp_Pnt& b) {
                     return std::abs(a.Z() - height) < 1e-6 && std::abs(b.Z() - height) < 1e-6 &&
                            std::abs(a.Y() - b.Y()) > 1;
                 });
    std::vector<TopoDS_Shape> pieces{foot, wallBlank,
                                     CylinderAt({0, depth / 2 - wall - 16, 205}, {0, 30, 0}, 84)};
    for (const double x : {-width / 2 + 26, width / 2 - 50})
        pieces.push_back(PrismAlongX(x,
                                     {{-depth / 2 + 40, wall - 1},
                                      {depth / 2 - wall + 1, wall - 1},
                                      {depth / 2 - wall + 1, 270}},
                                     24));
    std::vector<TopoDS_Shape> tools{CylinderAt({0, 0, 205}, {0, depth, 0}, 56)};
    for (int i = 0; i < 8; ++i) {
        const double angle = (i + 0.5) * std::numbers::pi / 4;
        tools.push_back(
            CylinderAt({70 * std::cos(angle), 0, 205 + 70 * std::sin(angle)}, {0, depth, 0}, 6.5));
    }
    for (const double x : {-plateStud, plateStud}) {
        for (const double y : {-slotPitch / 2, slotPitch / 2})
            tools.push_back(CylinderAt({x, y, -1}, {0, 0, wall + 2}, 11));
    }
    return Moved(Cut(Fused(pieces), tools), OnTable(plateU, (SlotAt(3) + SlotAt(4)) / 2));
}

/// Washer, nut and the end of a threaded stud, standing on z = 0.
TopoDS_Shape MakeStud() {
    const TopoDS_Shape washer = Chamfered(CylinderAt({0, 0, 0}, {0, 0, 5}, 20), 1.2, AtHeight(5));
    const TopoDS_Shape round = Chamfered(CylinderAt({0, 0, 5}, {0, 0, 18}, 18.4), 3, AtHeight(23));
    const TopoDS_Shape nut = Common(PolygonPrism({0, 0, 5}, 6, 32, 18), round);
    const TopoDS_Shape stud = Chamfered(CylinderAt({0, 0, -30}, {0, 0, 64}, 10), 2, AtHeight(34));
    return Fused({washer, nut, stud});
}

TopoDS_Shape MakeStuds() {
    constexpr double footHeight = 34;
    std::vector<TopoDS_Shape> studs;
    int turn = 0;
    for (const double x : {-plateStud, plateStud}) {
        for (const int slot : {3, 4}) {
            const TopoDS_Shape turned = TurnedAboutZ(MakeStud(), {0, 0, 0}, 17.0 * turn++);
            studs.push_back(
                Moved(turned, OnTable(plateU + x, SlotAt(slot)) + gp_Vec(0, 0, footHeight)));
        }
    }
    return Compound(studs);
}

// The shaft lies in two V-blocks, along X.
constexpr double shaftU = 90, shaftV = 215, shaftAxis = 128;
constexpr double seatRadius = 52;  // where the blocks hold it
constexpr double firstSeat = 95, secondSeat = 610;

TopoDS_Shape MakeVBlock() {
    constexpr double length = 90, width = 170;
    // The faces of a right-angled groove touch the shaft; their corner lies below its axis.
    const double corner = shaftAxis - seatRadius * std::numbers::sqrt2;
    const double blockTop = shaftAxis - 12;
    const double reach = blockTop - corner + 10;
    const TopoDS_Shape blank =
        Filleted(RoundedBlock(length, width, blockTop, 8), 4, AtHeight(blockTop));
    std::vector<TopoDS_Shape> tools{
        PrismAlongX(-length, {{0, corner}, {reach, corner + reach}, {-reach, corner + reach}},
                    2 * length),
        BoxAt({-length, -5, corner - 12}, 2 * length, 10, 30)};
    for (const double side : {-1.0, 1.0})
        tools.push_back(
            Filleted(BoxAt({-length, side * width / 2 - 14, 26}, 2 * length, 28, 26), 6,
                     [](const gp_Pnt& a, const gp_Pnt& b) { return std::abs(a.X() - b.X()) > 1; }));
    return Cut(blank, tools);
}

TopoDS_Shape MakeVBlocks() {
    const TopoDS_Shape block = MakeVBlock();
    return Compound({Moved(block, OnTable(shaftU + firstSeat, shaftV)),
                     Moved(block, OnTable(shaftU + secondSeat, shaftV))});
}

/// (position along the axis, radius): journals, grooves, a collar, a taper and chamfered ends.
TopoDS_Shape MakeShaft() {
    const TopoDS_Shape turned = TurnedAboutX(
        {{-40, 0},  {-40, 34}, {-36, 38}, {20, 38},  {20, 35},  {28, 35},  {28, 48},  {32, 52},
         {160, 52}, {160, 48}, {168, 48}, {168, 66}, {171, 69}, {225, 69}, {228, 66}, {228, 92},
         {232, 96}, {262, 96}, {266, 92}, {266, 66}, {270, 62}, {400, 62}, {540, 52}, {668, 52},
         {672, 48}, {672, 40}, {676, 40}, {676, 44}, {740, 44}, {740, 40}, {746, 40}, {746, 30},
         {750, 26}, {816, 26}, {820, 22}, {820, 0}});
    const TopoDS_Shape key = Filleted(BoxAt({310, -9, 54}, 70, 18, 30), 8.9, IsUpright);
    std::vector<TopoDS_Shape> tools{key};
    for (int i = 0; i < 6; ++i) {
        const double angle = i * std::numbers::pi / 3;
        tools.push_back(
            CylinderAt({220, 80 * std::sin(angle), 80 * std::cos(angle)}, {60, 0, 0}, 6));
    }
    return Moved(Cut(turned, tools), OnTable(shaftU, shaftV) + gp_Vec(0, 0, shaftAxis));
}

TopoDS_Shape MakeHousing() {
    constexpr double width = 400, depth = 250, height = 190;
    const TopoDS_Shape blank =
        Filleted(RoundedBlock(width, depth, height, 40), 16, AtHeight(height));
    const TopoDS_Shape flange = Filleted(RoundedBlock(width + 110, depth, 30, 40), 8, AtHeight(30));
    std::vector<TopoDS_Shape> tools{CylinderAt({0, 0, 40}, {0, 0, height}, 84),
                                    CylinderAt({0, 0, height - 22}, {0, 0, 40}, 100),
                                    CylinderAt({0, -depth, 96}, {0, 2 * depth, 0}, 38)};
    for (int i = 0; i < 8; ++i) {
        const double angle = (i + 0.5) * std::numbers::pi / 4;
        tools.push_back(
            CylinderAt({112 * std::cos(angle), 112 * std::sin(angle), height - 30}, {0, 0, 60}, 5));
    }
    for (const double x : {-228.0, 228.0}) {
        for (const double y : {-75.0, 75.0}) tools.push_back(CylinderAt({x, y, -1}, {0, 0, 60}, 9));
    }
    return Moved(Cut(Fused({blank, flange}), tools), OnTable(420, 640));
}

TopoDS_Shape MakeGearOnTable() {
    return Moved(TurnedAboutZ(MakeGear({}), {0, 0, 0}, 20), OnTable(1160, 190));
}

}  // namespace

std::vector<ExamplePart> MakeWorkshop() {
    return {
        {"machine_bed", "#4A5560", MakeBed()},        {"t_slot_table", "#AEB7BF", MakeTable()},
        {"angle_plate", "#E07B28", MakeAnglePlate()}, {"clamping_studs", "#3C434A", MakeStuds()},
        {"v_blocks", "#3E6C99", MakeVBlocks()},       {"turned_shaft", "#D9DDE2", MakeShaft()},
        {"gear", "#C9A24B", MakeGearOnTable()},       {"housing", "#2F8C86", MakeHousing()}};
}

std::vector<ExampleFile> WriteWorkshop(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::vector<ExampleFile> files;
    for (const ExamplePart& part : MakeWorkshop()) {
        const std::filesystem::path file = folder / (part.name + ".stl");
        WriteStl(part.shape, file);
        files.push_back({file, part.colour});
    }
    return files;
}

}  // namespace vrn::examples
