// What the tour shows, family by family.

#include "apps/vrnview/tour/Tour.h"

#include <BRep_Tool.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <gp_Pnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>

#include <cmath>
#include <memory>
#include <stdexcept>

#include "apps/vrnview/ProgramPlayer.h"
#include "apps/vrnview/ProgramRun.h"
#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/Mechanism.h"
#include "suite/rob/ShapeTypes.h"
#include "suite/sdf/SdfManager.h"
#include "suite/smart/SmartComponent.h"
#include "suite/task/EdgeMfgShape.h"
#include "suite/task/Task.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/handle/DragHandle.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/handle/VectorHandle.h"
#include "visual/preview/PreviewVisualsHelper.h"
#include "visual/process/VectorBandVisual.h"
#include "visual/Visual.h"

namespace vrn::host {

namespace {

using Mode = visual::Scene::DisplayMode;
using Pose = rob::PoseTemplate<float>;
using Pos = rob::PosTemplate<float>;
using PosD = rob::PosTemplate<double>;
using Rotation = rob::RotationTemplate<float>;
using visual::DragHandle;
using visual::Scene;
using visual::SolidVisual;
using visual::Visual;

// ---- where the camera stands

const CameraSpot overview{{3950, -3420, 2780}, {1280, 20, 865}};
const CameraSpot atArm{{2300, -2700, 1900}, {500, 0, 950}};
const CameraSpot atPropeller{{3000, -900, 1450}, {2190, 0, 800}};
const CameraSpot atBlade{{2620, -760, 1120}, {2260, -160, 820}};
const CameraSpot atTable{{2050, -1900, 1050}, {1420, -1000, 520}};
const CameraSpot atTableTop{{1640, -1420, 720}, {1420, -1010, 440}};
/// On the part of the table that its post hides nothing of.
const CameraSpot atTableFront{{1570, -1400, 700}, {1420, -1085, 430}};
const CameraSpot atRing{{1100, -2000, 420}, {700, -1500, 60}};

// ---- what several stops need

Scene& TheScene() { return *Scene::Get(); }

SolidVisual* SolidOf(const TourStage& stage, const std::string& object) {
    return dynamic_cast<SolidVisual*>(stage.find(object, VisualType::Solid));
}

/// The face of the most triangles, by its number from 1.
unsigned LargestFace(const SolidVisual& solid) {
    unsigned best = 1;
    int most = -1;
    const int count = solid.getFaceMap().Extent();
    for (int i = 1; i <= count; ++i) {
        TopLoc_Location place;
        const auto triangles = BRep_Tool::Triangulation(solid.getFace(i), place);
        const int n = triangles.IsNull() ? 0 : triangles->NbTriangles();
        if (n > most) {
            most = n;
            best = static_cast<unsigned>(i);
        }
    }
    return best;
}

TopoDS_Wire OuterWire(const TopoDS_Face& face) {
    return TopoDS::Wire(TopExp_Explorer(face, TopAbs_WIRE).Current());
}

/// Without what stands on it.
void ClearTable(TourStage& stage) {
    stage.hide("scan");
    stage.hide("part_gate");
    stage.hide("stand_frame");
}

// ---- display

void ShowNothingMore(TourStage& /*stage*/) {}

void SelectArm(TourStage& stage) {
    TheScene().setVisualSelected(stage.find("arm")->id);
    stage.afterwards([] { TheScene().clearSelections(); });
}

void HighlightController(TourStage& stage) {
    TheScene().setVisualHighlighted(stage.find("controller")->id);
    stage.afterwards([] { TheScene().clearHighlightedVisual(); });
}

void SelectFaces(TourStage& stage) {
    const SolidVisual* blade = SolidOf(stage, "propeller");
    constexpr int nearestBlade = 9, hubSide = 2;
    TheScene().selectBaseFace(blade->id, nearestBlade);
    TheScene().selectSideFace(blade->id, hubSide);
    stage.afterwards([] { TheScene().clearSelections(); });
}

void MarkCollision(TourStage& stage) {
    const std::uint32_t tool = stage.find("spindle")->id, piece = stage.find("propeller")->id;
    TheScene().setCollision(tool, true);
    TheScene().setCollisionHighlights({piece}, true);
    stage.afterwards([tool, piece] {
        TheScene().setCollision(tool, false);
        TheScene().setCollisionHighlights({piece}, false);
    });
}

void EmphasizeGroups(TourStage& stage) {
    for (const auto& [object, group] :
         {std::pair("controller", Scene::VisualCollisionState::GroupA),
          std::pair("propeller", Scene::VisualCollisionState::GroupB)}) {
        const std::uint32_t id = SolidOf(stage, object)->id;
        TheScene().setVisualCollisionEmphasizeState(id, group);
        stage.afterwards([id] { TheScene().clearVisualCollisionEmphasizeState(id); });
    }
}

void ColourBodies(TourStage& stage) {
    const std::uint32_t stand = stage.find("stand")->id, piece = stage.find("propeller")->id;
    TheScene().setVisualColor(stand, {0.85f, 0.25f, 0.2f}, 1);
    TheScene().setVisualColor(piece, {0.3f, 0.55f, 0.85f}, 1);
    stage.afterwards([stand, piece] {
        TheScene().resetColor(stand);
        TheScene().resetColor(piece);
    });
}

void SeeThrough(TourStage& stage) {
    const std::uint32_t body = SolidOf(stage, "propeller")->id;
    TheScene().bodyVisualUseMaterial(body, "TransBody");
    stage.afterwards([body] { TheScene().bodyVisualUseDefaultMaterial(body); });
}

void HideFence(TourStage& stage) {
    stage.hide("fence");
    stage.hide("controller");
}

void SelectPoints(TourStage& stage) {
    std::vector<unsigned long> chosen;
    for (unsigned long i = 0; i < 29'000; i += 1)
        if (i % 7'000 < 3'000) chosen.push_back(i);
    TheScene().selectPointCloud({{stage.find("scan")->id, chosen}});
    stage.afterwards([] { TheScene().clearSelections(); });
}

void ShowEdges(TourStage& stage) {
    ClearTable(stage);
    const SolidVisual* solid = SolidOf(stage, "stand");
    const std::uint32_t id = solid->id;
    std::vector<TopoDS_Edge> shown;
    for (TopExp_Explorer it(solid->getShape(), TopAbs_EDGE); it.More(); it.Next()) {
        const TopoDS_Edge edge = TopoDS::Edge(it.Current());
        Pos at;
        rob::DirTemplate<float> along;
        geometry::GetEdgeStartPointInfo(edge, at, along);
        if (at.z > 400) shown.push_back(edge);
    }
    for (const TopoDS_Edge& edge : shown) TheScene().addGeneratedEdge(id, edge);
    TheScene().addEdgeArrow(id, shown.front(), true);
    stage.afterwards([id, shown] {
        for (const TopoDS_Edge& edge : shown) TheScene().removeGeneratedEdge(id, edge);
    });
}

// ---- programs, sensors, reach

void DrawProgram(TourStage& stage) {
    TheScene().setDrawPathArrow(true);
    TheScene().setArrowSizeLevel(12);
    TheScene().setDrawTargetZAxisOnly(true);
    stage.afterwards([] {
        TheScene().setDrawPathArrow(false);
        TheScene().setArrowSizeLevel(5);
        TheScene().setDrawTargetZAxisOnly(false);
    });
}

void DrawTrace(TourStage& stage) {
    const auto planned = std::make_shared<PlannedTask>(
        PlanTask(stage.getViewer().getContents().front(), /*name=*/std::nullopt));
    const auto player = std::make_shared<ProgramPlayer>(*planned->robot, planned->plan);
    player->start();
    player->goTo(planned->plan.getSeconds() * 0.6);
    stage.afterwards([planned, player] {
        player->goTo(0);
        player->clearTrace();
    });
}

void SelectSensors(TourStage& stage) {
    TheScene().setVisualsSelected({stage.find("light_barrier")->id, stage.find("part_gate")->id});
    stage.afterwards([] { TheScene().clearSelections(); });
}

void ShowReach(TourStage& stage) {
    const std::uint32_t arm = stage.find("arm")->id;
    TheScene().updateWorkEnvelopeVisual(arm, true, true);
    stage.afterwards([arm] { TheScene().updateWorkEnvelopeVisual(arm, true, false); });
}

// ---- handles

void AttachHandle(TourStage& stage, float scale) {
    Visual* piece = stage.find("propeller");
    TheScene().attachGuiTo(DragHandle::Get(), piece, {});
    TheScene().setHandleScale(scale);
    stage.afterwards([] {
        TheScene().detachGui(DragHandle::Get());
        TheScene().resetDragHandle();
        TheScene().setHandleScale(1);
        TourStage::settle();
        DragHandle::Get()->setAssistHandleVisible(false);
    });
}

void ShowHandle(TourStage& stage) { AttachHandle(stage, 7); }

void TurnHandle(TourStage& stage) {
    AttachHandle(stage, 7);
    TourStage::settle();
    DragHandle::Get()->setMode(DragHandle::HandleType::Roll);
}

/// Three edges on the table, a line, an arc, a line, with the tool leaning over along the way.
task::EdgeMfgShape ChainOnTable() {
    constexpr double z = 424;
    const gp_Pnt a(1290, -1080, z), b(1450, -1080, z), c(1520, -1010, z), d(1520, -920, z);
    const gp_Pnt onArc(1450 + 70 * std::sqrt(0.5), -1010 - 70 * std::sqrt(0.5), z);
    task::EdgeMfgShape chain;
    const auto add = [&chain](const TopoDS_Edge& edge, const rob::DirTemplate<double>& first,
                              const rob::DirTemplate<double>& last) {
        geometry::GenerateMesh(edge, 0.0, 0.0);
        double from = 0, to = 0;
        static_cast<void>(BRep_Tool::Curve(edge, from, to));
        chain.addEdge({edge, {{from, first}, {(from + to) / 2, first}, {to, last}}});
    };
    const rob::DirTemplate<double> up{0, 0, 1}, out{0.5, -0.3, 0.81}, aside{0.7, 0, 0.714};
    add(BRepBuilderAPI_MakeEdge(a, b), up, up);
    add(BRepBuilderAPI_MakeEdge(GC_MakeArcOfCircle(b, onArc, c).Value()), up, out);
    add(BRepBuilderAPI_MakeEdge(c, d), out, aside);
    return chain;
}

visual::VectorBandVisual* ShowBand(TourStage& stage) {
    ClearTable(stage);
    return stage.add<visual::VectorBandVisual>(sdf::SdfManager::GenerateTransientId(),
                                               TheScene().root, ChainOnTable());
}

void EditVector(TourStage& stage) {
    ShowBand(stage);
    auto* handle = visual::VectorHandle::Get();
    handle->attachTo(TheScene().root);
    const task::EdgeMfgShape chain = ChainOnTable();
    const geometry::MfgVectors first = chain.getUsedMfgVectors().front();
    handle->setPose(Pose(first.getVectorAtParam(first.vectors[1].parameter).getPose(first.edge)));
    handle->setTilt(0.6);
    handle->setTwist(-0.4);
    TheScene().setHandleScale(3);
    stage.afterwards([handle] {
        handle->setTilt(0);
        handle->setTwist(0);
        handle->detach();
        TheScene().setHandleScale(1);
    });
}

void ShowPathEnds(TourStage& stage) {
    ShowBand(stage);
    auto* ends = visual::PathEndsHandle::Get();
    task::EdgeMfgShape chain = ChainOnTable();
    auto start = chain.getStart(), end = chain.getEnd();
    ends->attachTo(TheScene().root);
    chain.setRange(start, end);
    ends->updatePosition(chain);
    ends->setVisible(true, /*cascade=*/true);
    stage.lookFrom({{1480, -1330, 560}, {1420, -1020, 430}});
    stage.afterwards([ends] {
        ends->setVisible(false, /*cascade=*/true);
        ends->detach();
    });
}

// ---- processes

void ShowPlainBand(TourStage& stage) { ShowBand(stage); }

void ShowBandMarks(TourStage& stage) {
    visual::VectorBandVisual* band = ShowBand(stage);
    const task::EdgeMfgShape chain = ChainOnTable();
    band->selectRange(chain, {0, 90}, chain.getEnd());
    band->previewVector(chain, {0, 30});
    band->selectVector(chain, {0, 60});
}

/// A gun above the ring that paints where it passes.
void PaintRing(TourStage& stage, bool showGun) {
    auto gun = std::make_shared<smartcomp::SprayComponent>("gun");
    gun->id = sdf::SdfManager::inst()->generateId();
    gun->setProperty(3, rob::Vec3Template<double>{0.95, 0.75, 0.2});
    gun->setProperty(6, 8.0);
    gun->setProperty(7, 130.0);
    gun->setProperty(8, 70.0);
    sdf::SdfManager::inst()->add(*gun);
    const std::uint32_t id = gun->id, target = stage.find("ring")->id;
    TheScene().addSmartComponent(gun.get());
    TheScene().createPaintVisual(target, id);
    const Rotation down(3.1415927f, rob::Vec3Template<float>{1, 0, 0});
    const Pos centre = stage.find("ring")->getWorldPosition();
    for (int i = 0; i <= 36; ++i) {
        const float angle = static_cast<float>(i) * 0.12f;
        const float blue = static_cast<float>(i) / 36;
        TheScene().setPaintColor(target, 0.85f - 0.7f * blue, 0.2f, 0.15f + 0.75f * blue);
        const Pos place =
            centre + rob::Vec3Template<float>{120 * std::cos(angle), 120 * std::sin(angle), 150};
        TheScene().setVisualPose(id, {place, down});
        TheScene().spray(id, target, {}, 8, 70, 130);
    }
    if (!showGun) TheScene().removeVisual(id);
    stage.afterwards([gun, id, target, showGun] {
        TheScene().removePaintVisual(target, id);
        if (showGun) TheScene().removeVisual(id);
        TourStage::settle();
    });
}

void ShowSpray(TourStage& stage) { PaintRing(stage, true); }

void ShowPaint(TourStage& stage) { PaintRing(stage, false); }

// ---- previews

void PreviewWire(TourStage& stage) {
    const SolidVisual* piece = SolidOf(stage, "propeller");
    for (int i = 1; i <= piece->getFaceMap().Extent(); ++i)
        TheScene().previewWire(OuterWire(piece->getFace(i)), piece->getWorldPose());
    stage.afterwards([] { TheScene().removePreviewCurves(); });
}

void PreviewCurvesWithArrows(TourStage& stage) {
    ClearTable(stage);
    const auto list = std::make_shared<geometry::PointList>();
    for (int row = 0; row < 5; ++row) {
        auto& points = list->sequences.emplace_back();
        for (int i = 0; i <= 40; ++i)
            points.push_back({i * 6.0 - 120, row * 40.0 - 80, 510 + 22 * std::sin(0.25 * i + row)});
    }
    TheScene().addPreviewCurvesWithDirection(stage.find("stand")->id, list.get(), {0, 0, 1}, 20);
    stage.afterwards([list] { TheScene().removePreviewCurves(); });
}

void PreviewFace(TourStage& stage) {
    const SolidVisual* piece = SolidOf(stage, "propeller");
    TheScene().previewFace(piece->getFace(static_cast<int>(LargestFace(*piece))), piece->id);
    stage.afterwards([] { TheScene().removePreviewFaces(); });
}

void PreviewPointsAndTargets(TourStage& stage) {
    ClearTable(stage);
    std::vector<Pose> targets;
    for (int i = 0; i < 8; ++i) {
        const float angle = static_cast<float>(i) * 0.785f;
        targets.push_back({{1420 + 110 * std::cos(angle), -1000 + 110 * std::sin(angle), 430},
                           Rotation(angle, rob::Vec3Template<float>{0, 0, 1})});
    }
    TheScene().previewTargets(targets);
    const auto points = std::make_shared<std::vector<gp_Pnt>>();
    for (int i = 0; i < 60; ++i)
        points->emplace_back(60 * std::cos(0.35 * i), 60 * std::sin(0.35 * i), 424 + i);
    TheScene().previewPoints(points.get(), stage.find("stand")->id, {0.98f, 0.85f, 0.2f});
    stage.afterwards([points] { TheScene().removePreviewedPoints(); });
}

void PreviewJoint(TourStage& stage) {
    TheScene().createPreviewedJointVisual();
    TourStage::settle();
    TheScene().setPreviewedJointVisible({2400, -500, 800}, {2050, 400, 1300});
    stage.afterwards([] { TheScene().removePreviewedJointVisual(); });
}

void PreviewFrames(TourStage& stage) {
    ClearTable(stage);
    TheScene().createPreviewedFrameVisual(1, true);
    TheScene().createPreviewedFrameVisual(2, false);
    TheScene().setPreviewedFrameVisible(1, {{1330, -1120, 430}, {}});
    TheScene().setPreviewedFrameVisible(2, {{1480, -1120, 430}, {}});
    stage.afterwards([] {
        TheScene().removePreviewedFrameVisual(1);
        TheScene().removePreviewedFrameVisual(2);
    });
}

void PickThreePoints(TourStage& stage) {
    ClearTable(stage);
    visual::PreviewVisualsHelper* helper = visual::PreviewVisualsHelper::Get();
    helper->doAddSelectFramePoint1({1330, -1130, 424});
    helper->doAddSelectFramePoint2({1530, -1130, 424});
    helper->doAddSelectFramePoint3({1360, -1050, 424});
    helper->doAddPreviewUserFrame({{1330, -1130, 424}, {}});
    helper->doSetPrimaryLineSelected(true);
    stage.afterwards([helper] {
        helper->doSetPrimaryLineSelected(false);
        helper->doRemoveAllVisuals();
    });
}

void ShowCopy(TourStage& stage) {
    const Visual* piece = stage.find("propeller");
    Pose moved = piece->getWorldPose();
    moved.position.x += 250;
    moved.position.y -= 520;
    TheScene().showCopiedVisual(piece->id, moved);
    stage.afterwards([] { TheScene().deleteCopiedVisual(); });
}

// ---- measures

const Visual* FindIndicator() {
    for (const Visual* child : TheScene().root->getChildren())
        if (child->type == VisualType::UVIndicator) return child;
    throw std::logic_error("the scene shows no indicator");
}

void Measure(TourStage& stage) {
    ClearTable(stage);
    constexpr double z = 424;
    TheScene().createDistanceVisual({1310, -1150, z}, {1560, -1150, z});
    TheScene().createAngleVisual({1320, -1115, z}, {1320, -1045, z}, {1410, -1075, z},
                                 std::atan2(90, 40));
    TheScene().createDiameterVisual(
        rob::TPCircle({1550, -1090, z}, {1490, -1055, z}, {1490, -1125, z}));
    stage.afterwards([] { TheScene().removeDimensionVisual(); });
}

void ShowDirections(TourStage& stage) {
    ClearTable(stage);
    constexpr int tableTop = 11;
    const SolidVisual* stand = SolidOf(stage, "stand");
    TheScene().showUVIndicatorVisual(TheScene().GetBodyFaceInWorld(stand->id, tableTop));
    TourStage::settle();
    // Both arrows and their letters.
    const PosD at = PosD(FindIndicator()->getWorldPosition()) + rob::Vec3Template<double>{40, 0, 0};
    stage.lookFrom({at + rob::Vec3Template<double>{110, -220, 180}, at});
    stage.afterwards([] { TheScene().deleteUVIndicatorVisual(); });
}

void DrawLines(TourStage& stage) {
    ClearTable(stage);
    std::vector<std::vector<Pos>> lines;
    for (int i = 0; i < 4; ++i) {
        const float y = -1155 + 28 * static_cast<float>(i);
        lines.push_back({{1290, y, 424}, {1360, y + 25, 460}, {1460, y - 10, 440}, {1550, y, 424}});
    }
    TheScene().drawPolylines(lines, 0, /*withArrow=*/true);
    stage.afterwards([] { TheScene().removePolylines(); });
}

}  // namespace

const std::vector<TourStop>& TourStops() {
    static const std::vector<TourStop> stops{
        {"shaded", "A station", "Robots, tools, parts, fences, scanned points and a program.",
         overview, Mode::Shaded, ShowNothingMore},
        {"edges", "With edges", "Bodies with the edges of their faces.", overview,
         Mode::ShadedWithEdges, ShowNothingMore},
        {"lines", "Edges alone", "The edges without the faces.", overview, Mode::EdgesOnly,
         ShowNothingMore},
        {"triangles", "Triangles", "The triangles that are drawn.", atPropeller,
         Mode::TriangleWires, ShowNothingMore},
        {"selected", "Selected", "What is selected is blue and has an outline.", atArm,
         Mode::Shaded, SelectArm},
        {"highlighted", "Pointed at", "What the mouse is over.", overview, Mode::Shaded,
         HighlightController},
        {"faces", "Faces", "Single faces selected as base and side.", atPropeller, Mode::Shaded,
         SelectFaces},
        {"generated_edges", "Edges of a dialog", "Edges shown on a body, one with an arrow.",
         atTable, Mode::Shaded, ShowEdges},
        {"collision", "Contact", "Bodies in contact, and a near miss.", atPropeller, Mode::Shaded,
         MarkCollision},
        {"groups", "Groups", "The two groups of a collision check.", overview, Mode::Shaded,
         EmphasizeGroups},
        {"colours", "Colours", "Bodies in colours of their own, given back afterwards.", overview,
         Mode::Shaded, ColourBodies},
        {"see_through", "Materials", "A body in a material by name, here a translucent one.",
         atPropeller, Mode::Shaded, SeeThrough},
        {"hidden", "Hidden", "Objects taken out of the picture.", overview, Mode::Shaded,
         HideFence},
        {"cloud", "Points", "A scanned cloud with points selected.", atTable, Mode::Shaded,
         SelectPoints},
        {"program", "A program", "Paths with arrows, and targets by their approach alone.", atBlade,
         Mode::Shaded, DrawProgram},
        {"trace", "A trace", "Where the tool went, coloured by its speed.", atPropeller,
         Mode::Shaded, DrawTrace},
        {"sensors", "Sensors", "A light barrier and a plane.", overview, Mode::Shaded,
         SelectSensors},
        {"reach", "Reach", "What the arm reaches, as an outline and as a surface.", overview,
         Mode::Shaded, ShowReach},
        {"drag_handle", "The drag handle", "Arrows and rings of one size on the screen.",
         atPropeller, Mode::Shaded, ShowHandle},
        {"turning", "Turning", "One ring engaged, and the faint band that completes its circle.",
         atPropeller, Mode::Shaded, TurnHandle},
        {"vector_handle", "The vector handle",
         "The tool's direction with the rings that tilt and twist it, and the angles turned.",
         atTableTop, Mode::Shaded, EditVector},
        {"path_ends", "The ends of a path", "Markers to drag along the edge.", atTableTop,
         Mode::Shaded, ShowPathEnds},
        {"band", "A band", "A process along edges: the ribbon leans as the tool does.", atTableTop,
         Mode::Shaded, ShowPlainBand},
        {"band_marks", "Marks on a band", "A preview, a selected direction, a selected range.",
         atTableTop, Mode::Shaded, ShowBandMarks},
        {"spray", "A spray", "The reach of a paint gun, and the paint it leaves.", atRing,
         Mode::Shaded, ShowSpray},
        {"paint", "Paint", "What the gun's cone reached, in the colour it had there.", atRing,
         Mode::Shaded, ShowPaint},
        {"preview_wire", "Previewed curves", "The borders of faces, before they become curves.",
         atPropeller, Mode::Shaded, PreviewWire},
        {"preview_curves", "Previewed curves with a direction",
         "Curves through points, with an arrow each.", atTableTop, Mode::Shaded,
         PreviewCurvesWithArrows},
        {"preview_face", "A previewed face", "A face that a dialog is about to use.", atPropeller,
         Mode::Shaded, PreviewFace},
        {"preview_points", "Previewed points and targets", "Points and targets that are not yet.",
         atTableTop, Mode::Shaded, PreviewPointsAndTargets},
        {"preview_joint", "A previewed joint", "The axis of a joint being defined.", atPropeller,
         Mode::Shaded, PreviewJoint},
        {"preview_frames", "Previewed frames", "A plain frame and a dashed one.", atTableFront,
         Mode::Shaded, PreviewFrames},
        {"three_points", "Three points", "The points that fix a frame, being picked.", atTableFront,
         Mode::Shaded, PickThreePoints},
        {"copy", "A copy", "Where an object would come to stand.", overview, Mode::Shaded,
         ShowCopy},
        {"measures", "Measures", "A distance, an angle and a diameter.", atTableFront, Mode::Shaded,
         Measure},
        {"directions", "Directions of a face", "U and V of a surface.", atTableTop, Mode::Shaded,
         ShowDirections},
        {"polylines", "Free lines", "Lines that a host draws, with arrows at their starts.",
         atTableFront, Mode::Shaded, DrawLines},
    };
    return stops;
}

}  // namespace vrn::host
