#include "examples/cell/Surroundings.h"

#include <cmath>

#include "examples/cell/Forms.h"
#include "examples/cell/Livery.h"

namespace vrn::examples {

namespace {

using namespace livery;

// The floor, seen from the robot's place.
constexpr double floorLeft = -1150, floorRight = 3350, floorFront = -1550, floorBack = 1550;

constexpr double fenceHeight = 1900, fencePost = 60;

/// A flat slab from z0 to z1, its corners round, `inset` inside the floor's edge.
TopoDS_Shape FloorSlab(double inset, double cornerRadius, double z0, double z1) {
    const double r = cornerRadius, l = floorLeft + inset + r, f = floorFront + inset + r,
                 right = floorRight - inset - r, b = floorBack - inset - r;
    return PlateAlongZ({{l, f, r}, {right, f, r}, {right, b, r}, {l, b, r}}, z0, z1);
}

}  // namespace

PaintedBody MakeFloor() {
    const TopoDS_Shape groove = Cut(FloorSlab(60, 90, -1, 1), {FloorSlab(110, 50, -2, 2)});
    const TopoDS_Shape slab = Chamfered(FloorSlab(0, 140, -40, 0), 6, AtHeight(0));
    PaintedBody body = Painted("floor", {{Cut(slab, {groove}), concrete}});
    PaintFaces(body, warning, [](const FaceLook& face) {
        return face.isPlane && face.normal.Z() > 0.5 && std::abs(face.centre.Z() + 1) < 1e-3;
    });
    return body;
}

PaintedBody MakeFencePost() {
    const TopoDS_Shape foot = BoxAt({-75, -50, 0}, 150, 100, 10);
    const TopoDS_Shape post =
        SoftBox({-fencePost / 2, -fencePost / 2, 0}, fencePost, fencePost, fenceHeight + 40, 10, 6);
    return Painted("fence_post", {{Fused({post, foot}), warning}});
}

PaintedBody MakeFencePanel() {
    constexpr double below = 140, sheetTop = 760, rail = 30;
    constexpr double left = fencePost / 2 + 4, right = fencePanelLength - left;
    std::vector<TopoDS_Shape> rails;
    for (const double z : {below, sheetTop, fenceHeight - rail})
        rails.push_back(BoxAt({left, -rail / 2, z}, right - left, rail, rail));
    std::vector<TopoDS_Shape> bars;
    constexpr int barCount = 17;
    for (int i = 0; i < barCount; ++i) {
        const double x = left + 6 + (right - left - 12) * i / (barCount - 1);
        bars.push_back(
            CylinderAt({x, 0, sheetTop + rail}, {0, 0, fenceHeight - sheetTop - 2 * rail}, 6));
    }
    const TopoDS_Shape sheet =
        BoxAt({left, -3, below + rail}, right - left, 6, sheetTop - below - rail);
    return Painted("fence_panel",
                   {{Compound(rails), graphite}, {Compound(bars), graphite}, {sheet, darkSteel}});
}

PaintedBody MakeCabinet() {
    constexpr double width = 760, depth = 560, height = 1150, foot = 90;
    const TopoDS_Shape box =
        SoftBox({-width / 2, -depth / 2, foot}, width, depth, height - foot, 24, 14);
    const TopoDS_Shape plinth =
        BoxAt({-width / 2 + 20, -depth / 2 + 20, 0}, width - 40, depth - 40, foot);
    const double door = -depth / 2;
    const TopoDS_Shape leaf =
        Filleted(BoxAt({-width / 2 + 24, door - 16, foot + 24}, width - 48, 18, height - foot - 48),
                 5, AtDepth(door - 16));
    std::vector<TopoDS_Shape> louvres;
    for (int i = 0; i < 7; ++i)
        louvres.push_back(BoxAt({-220, door - 24, foot + 90 + 34.0 * i}, 440, 16, 14));
    const TopoDS_Shape screen =
        Filleted(BoxAt({-230, door - 26, height - 330}, 250, 20, 170), 5, AtDepth(door - 26));
    const TopoDS_Shape collar = CylinderAt({200, door - 14, height - 245}, {0, -16, 0}, 46);
    const TopoDS_Shape stop = Filleted(CylinderAt({200, door - 30, height - 245}, {0, -26, 0}, 32),
                                       9, AtDepth(door - 56));
    const TopoDS_Shape handle = SoftBox({300, door - 44, 560}, 26, 40, 170, 8, 6);
    return Painted("controller", {{box, ivory},
                                  {plinth, graphite},
                                  {leaf, petrol},
                                  {Compound(louvres), graphite},
                                  {screen, graphite},
                                  {collar, warning},
                                  {stop, ruby},
                                  {handle, steel}});
}

PaintedBody MakeStand() {
    const TopoDS_Shape top =
        RoundedPlateAlongZ({{-170, -170, 60}, {170, -170, 60}, {170, 170, 60}, {-170, 170, 60}},
                           standHeight - 36, standHeight, 8);
    std::vector<TopoDS_Shape> legs;
    for (const double x : {-150.0, 150.0}) {
        for (const double y : {-150.0, 150.0}) {
            legs.push_back(CylinderAt({x, y, 14}, {0, 0, standHeight - 50}, 30));
            legs.push_back(CylinderAt({x, y, 0}, {0, 0, 14}, 48));
        }
    }
    const TopoDS_Shape post = CylinderAt({0, 0, standHeight}, {0, 0, 60}, 44);
    return Painted("stand", {{top, petrol}, {Compound(legs), graphite}, {post, steel}});
}

}  // namespace vrn::examples
