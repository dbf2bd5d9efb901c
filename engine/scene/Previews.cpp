// What a dialog shows before it exists: curves, points, faces, a joint, frames, a copy.

#include <BRepTools_WireExplorer.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Wire.hxx>
#include <TopTools_MapOfShape.hxx>

#include <algorithm>
#include <format>
#include <memory>
#include <optional>
#include <stdexcept>

#include "engine/Scene.h"
#include "suite/geom/ShapeTools.h"
#include "suite/sdf/SdfManager.h"
#include "visual/geometry/CamMeshVisual.h"
#include "visual/geometry/EdgeVisual.h"
#include "visual/geometry/PointsVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/geometry/TriangleMeshVisual.h"
#include "visual/preview/PreviewCurve.h"
#include "visual/preview/PreviewedJointVisual.h"
#include "visual/preview/PreviewVisualsHelper.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::visual {

namespace {

using Pose = rob::PoseTemplate<float>;

constexpr unsigned char overSceneQueueGroup = 80;
constexpr const char* curveLook = "PreviewCurve";
constexpr const char* copyLook = "TransBody";

template <class List>
List* Require(List* list) {
    if (!list) throw std::invalid_argument("what is to be previewed must not be null");
    return list;
}

// In their order along the wire; those that the walk does not reach, across a gap, come last.
std::vector<TopoDS_Edge> EdgesOf(const TopoDS_Wire& wire) {
    std::vector<TopoDS_Edge> edges;
    if (wire.IsNull()) return edges;
    TopTools_MapOfShape seen;
    for (BRepTools_WireExplorer walk(wire); walk.More(); walk.Next()) {
        seen.Add(walk.Current());
        edges.push_back(walk.Current());
    }
    for (TopoDS_Iterator it(wire); it.More(); it.Next())
        if (it.Value().ShapeType() == TopAbs_EDGE && seen.Add(it.Value()))
            edges.push_back(TopoDS::Edge(it.Value()));
    return edges;
}

// Null for an edge that cannot be shown. Ours until it is placed: a pose that is refused must leave
// nothing in the tree.
EdgeVisual* BuildPreviewedEdge(Visual* root, const std::string& name, const TopoDS_Edge& edge,
                               const Pose& pose) {
    std::unique_ptr<EdgeVisual> visual(
        EdgeVisual::Build(root, name, edge, curveLook, curveLook, curveLook, /*generated=*/false));
    if (!visual) return nullptr;
    visual->setPose(pose);
    visual->setRenderQueueGroup(overSceneQueueGroup);
    return visual.release();
}

}  // namespace

void Scene::deleteAll(std::vector<Visual*>& list) {
    while (!list.empty()) {
        Visual* last = list.back();
        list.pop_back();
        deleteVisual(last);
    }
}

// --- edges and wires

void Scene::previewEdge(const TopoDS_Edge& edge, const Pose& pose) {
    post([this, edge, pose] { doPreviewEdge(edge, pose); });
}

void Scene::doPreviewEdge(const TopoDS_Edge& edge, const Pose& pose) {
    if (EdgeVisual* visual = BuildPreviewedEdge(root, "_previewed_edge_", edge, pose))
        previewCurves_.push_back(visual);
}

void Scene::previewEdges(std::vector<TopoDS_Edge>* edges, const Pose& pose) {
    post([this, edges = Require(edges), pose] { doPreviewEdges(*edges, pose); });
}

void Scene::doPreviewEdges(const std::vector<TopoDS_Edge>& edges, const Pose& pose) {
    int index = 0;
    for (const TopoDS_Edge& edge : edges)
        if (EdgeVisual* visual =
                BuildPreviewedEdge(root, std::format("previewed_edge_{}", index++), edge, pose))
            previewCurves_.push_back(visual);
}

void Scene::previewWire(const TopoDS_Wire& wire, const Pose& pose) {
    post([this, wire, pose] { doPreviewWire(wire, pose); });
}

void Scene::doPreviewWire(const TopoDS_Wire& wire, const Pose& pose) {
    doPreviewEdges(EdgesOf(wire), pose);
}

void Scene::previewCurves(std::vector<TopoDS_Wire>* wires, const Pose& pose) {
    post([this, wires = Require(wires), pose] { doPreviewCurves(*wires, pose); });
}

void Scene::doPreviewCurves(const std::vector<TopoDS_Wire>& wires, const Pose& pose) {
    std::vector<TopoDS_Edge> all;
    for (const TopoDS_Wire& wire : wires) {
        const std::vector<TopoDS_Edge> edges = EdgesOf(wire);
        all.insert(all.end(), edges.begin(), edges.end());
    }
    doPreviewEdges(all, pose);
}

// --- lists of points

void Scene::addPreviewCurves(unsigned int id, geometry::PointList* list) {
    post([this, id, list = Require(list)] { doAddPreviewCurves(id, *list); });
}

void Scene::doAddPreviewCurves(unsigned int id, const geometry::PointList& list) {
    doAddPreviewCurvesWithDirection(id, list, {}, 0);
}

void Scene::addPreviewCurvesWithDirection(unsigned int id, geometry::PointList* list,
                                          const rob::Vec3Template<float>& direction) {
    addPreviewCurvesWithDirection(id, list, direction, 0);
}

void Scene::addPreviewCurvesWithDirection(unsigned int id, geometry::PointList* list,
                                          const rob::Vec3Template<float>& direction,
                                          unsigned int arrowAt) {
    post([this, id, list = Require(list), direction, arrowAt] {
        doAddPreviewCurvesWithDirection(id, *list, direction, arrowAt);
    });
}

void Scene::doAddPreviewCurvesWithDirection(unsigned int id, const geometry::PointList& list,
                                            const rob::Vec3Template<float>& direction,
                                            unsigned int arrowAt) {
    const Pose pose = visuals.at(id)->getWorldPose();
    int index = 0;
    for (const auto& points : list.sequences)
        previewCurves_.push_back(
            PreviewCurve::Build(std::format("previewed_curve_{}_{}", id, index++), id, pose, points,
                                direction, arrowAt));
}

void Scene::removePreviewCurves() {
    post([this] { deleteAll(previewCurves_); });
}

void Scene::removePreviewCurve(unsigned int id) {
    post([this, id] { doRemovePreviewCurve(id); });
}

void Scene::doRemovePreviewCurve(unsigned int id) {
    const auto found =
        std::ranges::find_if(previewCurves_, [id](const Visual* v) { return v->id == id; });
    if (found != previewCurves_.end()) deleteVisual(*found);  // which takes it out of the list
}

void Scene::previewTriangleMesh(
    const std::vector<std::pair<rob::PosTemplate<float>, rob::PosTemplate<float>>>& segments) {
    post([this, segments] { previewCurves_.push_back(TriangleMeshVisual::Build(segments, root)); });
}

void Scene::debugViewCamMesh(cadcam::TMesh<double>* mesh) {
    post([this, mesh = Require(mesh)] {
        Visual* shown = CamMeshVisual::Build(mesh, root);
        deleteVisual(camMesh);
        camMesh = shown;
    });
}

// --- points and targets

void Scene::previewPoints(std::vector<gp_Pnt>* points, unsigned int id,
                          const rob::ColorTemplate<float>& color) {
    post([this, points = Require(points), id, color] { doPreviewPoints(*points, id, color); });
}

void Scene::doPreviewPoints(const std::vector<gp_Pnt>& points, unsigned int id,
                            const rob::ColorTemplate<float>& color) {
    Visual* parent = visuals.at(id);
    std::vector<rob::PosTemplate<float>> narrowed;
    narrowed.reserve(points.size());
    for (const gp_Pnt& p : points)
        narrowed.emplace_back(rob::PosTemplate<double>(p.X(), p.Y(), p.Z()));
    previewPoints_.push_back(new PointsVisual(parent, std::move(narrowed), color));
}

void Scene::previewTargets(const std::vector<Pose>& poses) {
    post([this, poses] { doPreviewTargets(poses); });
}

void Scene::doPreviewTargets(const std::vector<Pose>& poses) {
    doRemovePreviewedPoints();
    for (const Pose& pose : poses) {
        auto* target = new RobtargetVisual(root, sdf::SdfManager::GenerateTransientId());
        previewPoints_.push_back(target);
        target->setPose(pose);
        target->preview();
    }
}

void Scene::removePreviewedPoints() {
    post([this] { doRemovePreviewedPoints(); });
}

void Scene::doRemovePreviewedPoints() { deleteAll(previewPoints_); }

// --- faces

void Scene::previewFace(const TopoDS_Face& face, unsigned int id) {
    post([this, face, id] { doPreviewFace(face, id); });
}

void Scene::doPreviewFace(const TopoDS_Face& face, unsigned int id) {
    const auto parent = visuals.find(id);
    if (parent == visuals.end()) throw std::bad_optional_access();
    previewFaces_.push_back(SolidVisual::Build(parent->second, face, "PreviewFace"));
}

void Scene::previewFaces(const std::vector<TopoDS_Face>& faces, unsigned int id) {
    post([this, faces, id] { doPreviewFaces(faces, id); });
}

void Scene::doPreviewFaces(const std::vector<TopoDS_Face>& faces, unsigned int id) {
    for (const TopoDS_Face& face : faces) doPreviewFace(face, id);
}

void Scene::removePreviewFaces() {
    post([this] { deleteAll(previewFaces_); });
}

// --- joint

void Scene::createPreviewedJointVisual() {
    post([this] {
        deleteVisual(previewedJoint);
        previewedJoint = new PreviewedJointVisual(root);
        previewedJoint->setVisible(false, /*cascade=*/true);
    });
}

void Scene::removePreviewedJointVisual() {
    post([this] { deleteVisual(previewedJoint); });
}

void Scene::setPreviewedJointVisible(const rob::PosTemplate<double>& start,
                                     const rob::PosTemplate<double>& end) {
    if (!previewedJoint) return;
    post([this, start, end] {
        auto* joint = dynamic_cast<PreviewedJointVisual*>(previewedJoint);
        if (!joint) return;  // removed meanwhile
        joint->setStartAndEnd(rob::PosTemplate<float>(start), rob::PosTemplate<float>(end));
        joint->setVisible(true, /*cascade=*/true);
    });
}

void Scene::setPreviewedJointInvisible() {
    post([this] {
        if (previewedJoint) previewedJoint->setVisible(false, /*cascade=*/true);
    });
}

// --- frames

void Scene::createPreviewedFrameVisual(unsigned int id, bool plain) {
    post([this, id, plain] { doCreatePreviewedFrameVisual(id, plain); });
}

void Scene::doCreatePreviewedFrameVisual(unsigned int id, bool plain) {
    constexpr unsigned plainDashes = 1, dashes = 3;
    const auto earlier = previewedFrames.find(id);
    if (earlier != previewedFrames.end()) deleteVisual(earlier->second);
    previewedFrames[id] = FrameVisual::Build(root, plain ? plainDashes : dashes);
}

void Scene::removePreviewedFrameVisual(unsigned int id) {
    post([this, id] { deleteVisual(previewedFrames.at(id)); });
}

void Scene::setPreviewedFrameVisible(unsigned int id, const rob::PoseTemplate<double>& worldPose) {
    post([this, id, worldPose] {
        Visual* frame = previewedFrames.at(id);
        frame->setWorldPose(Pose(worldPose));
        frame->setVisible(true, /*cascade=*/false);
    });
}

void Scene::setPreviewedFrameInvisible(unsigned int id) {
    post([this, id] { previewedFrames.at(id)->setVisible(false, /*cascade=*/false); });
}

// --- copy

void Scene::showCopiedVisual(unsigned int id, const Pose& worldPose) {
    post([this, id, worldPose] { doShowCopiedVisual(id, worldPose); });
}

void Scene::doShowCopiedVisual(unsigned int id, const Pose& worldPose) {
    if (copiedVisual && copiedVisual->id != id) doDeleteCopiedVisual();
    if (!copiedVisual) {
        copiedVisual = visuals.at(id)->copy(root).value_or(nullptr);
        if (!copiedVisual) return;
        copiedVisual->setMaterial(copyLook, copyLook, copyLook);
        for (ForestIterator<Visual> it(copiedVisual); it.next();) it.value()->resetAppearance();
    }
    copiedVisual->setVisible(true, /*cascade=*/true);
    copiedVisual->setWorldPose(worldPose);
}

void Scene::hideCopiedVisual() {
    post([this] {
        if (copiedVisual) copiedVisual->setVisible(false, /*cascade=*/true);
    });
}

void Scene::deleteCopiedVisual() {
    post([this] { doDeleteCopiedVisual(); });
}

void Scene::doDeleteCopiedVisual() { deleteVisual(copiedVisual); }

// --- what is picked point by point

void Scene::removeAllPositionVisuals() {
    post([] {
        if (PreviewVisualsHelper* helper = PreviewVisualsHelper::Get())
            helper->doRemoveAllVisuals();
    });
}

void Scene::forgetPreview(const Visual* visual) {
    if (PreviewVisualsHelper* helper = PreviewVisualsHelper::Get()) helper->forget(visual);
    for (auto* list : {&previewCurves_, &previewPoints_, &previewFaces_}) std::erase(*list, visual);
    std::erase_if(previewedFrames, [visual](const auto& entry) { return entry.second == visual; });
    for (Visual** single : {&previewedJoint, &copiedVisual, &camMesh})
        if (*single == visual) *single = nullptr;
}

}  // namespace vrn::visual
