#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include <OgreColourValue.h>
#include <TopoDS_Edge.hxx>

#include "engine/SceneSettings.h"
#include "suite/rob/PoseTypes.h"
#include "visual/VisualStateManager.h"
#include "visual/VisualType.h"
#include "visual/VrnVisualApi.h"

class gp_Pnt;
class TopoDS_Face;
class TopoDS_Shape;
class TopoDS_Wire;

namespace cadcam {
template <class T>
struct TMesh;
}

namespace Ogre {
class AxisAlignedBox;
class InstanceManager;
class SceneManager;
}  // namespace Ogre

namespace vrn::geometry {
struct PointList;
}

namespace vrn::layout {
class Manipulator;
}

namespace vrn::rob {
class TPCircle;
}

namespace vrn::sdf {
class SdfNode;
}

namespace vrn::task {
class MoveInst;
class Path;
class Task;
}  // namespace vrn::task

namespace vrn::visual {

class Camera;
class EdgeVisual;
class GuiVisual;
class Grid;
class SolidVisual;
class TcpTraceVisual;
class UVIndicatorVisual;
class Visual;

/// The one object through which a host changes what the viewport shows, from any thread.
///
/// Nearly every public operation packs its arguments into a closure and posts it; the host's render
/// thread runs the closures in the order of posting:
///
///     // any thread                              // render thread, each frame
///     Scene::Get()->setVisualPose(id, pose);     Scene::Get()->processMsgs();
///                                                VisualSelection::Get()->update();
///                                                gRenderEngine->root->renderOneFrame();
///
/// Thread words: "any" posts (or is guarded), "render" touches the scene at once, "caller" works on
/// the calling thread and assumes that one interactive thread does so. Raw pointers given to a
/// posting operation must live until its task has run. Where an operation looks an id up strictly,
/// an unknown one throws std::out_of_range with the text "unordered_map::at": on the caller, or out
/// of processMsgs when the look-up stands in the task.
class VRN_VISUAL_API Scene {
public:
    /// One unit of the queue: a key to coalesce by, 0 for none, and what to run.
    struct RenderTask {
        unsigned long key;
        std::function<void()> fn;
    };

    /// What the viewport draws of solids: filled faces, their edges, or all triangles as wires.
    enum class DisplayMode : std::int32_t {
        Shaded = 0,
        ShadedWithEdges = 1,
        EdgesOnly = 2,
        TriangleWires = 3
    };

    enum class VisualCollisionState : std::int32_t { None = 0, GroupA = 1, GroupB = 2 };

    /// An edge of a visual; null when `visual` is.
    struct VisEdge {
        Visual* visual = nullptr;
        TopoDS_Edge edge;

        [[nodiscard]] bool isNull() const { return visual == nullptr; }
        void clear() {
            visual = nullptr;
            edge.Nullify();
        }
    };

    /// A face of a solid by its 1-based index; null when `solid` is.
    struct VisFace {
        SolidVisual* solid = nullptr;
        std::uint32_t faceIndex = 0;

        [[nodiscard]] bool isNull() const { return solid == nullptr; }
        bool operator==(const VisFace&) const = default;
        void clear() { *this = VisFace{}; }
    };

    // --- what the library's own classes read; thread: render ---
    std::unordered_map<std::uint32_t, Visual*> visuals;      ///< every addressable visual
    std::unordered_map<std::uint32_t, Visual*> tempVisuals;  ///< those of addTempVisual
    SceneSettings settings;
    std::string name;
    Ogre::SceneManager* sceneManager = nullptr;
    /// The managers of frame and arrow instances, by the names that the visuals use.
    std::unordered_map<std::string, Ogre::InstanceManager*> instanceManagers;
    Visual* root = nullptr;            ///< the world visual, parent of what has no other
    GuiVisual* attachedGui = nullptr;  ///< the handle attached to a visual; null for none
    Grid* grid = nullptr;              ///< null until setGrid(true)
    std::unique_ptr<VisualStateManager> stateManager;

    // --- life cycle ---
    /// Null before Init. Thread: any.
    static Scene* Get() { return Instance; }
    /// Makes the scene, its camera "camera0", the world frame and the lights. Thread: render.
    static void Init(const SceneSettings& settingsIn);
    /// A camera on a node of its own, both named `cameraName`. Thread: render.
    Camera* createCamera(const std::string& cameraName);

    // --- the queue ---
    /// Appends a task and signals broker::SignalBroker::updateScene. With a key other than 0, every
    /// waiting task of that key goes, and the new one runs after all that waits. An empty `fn` is
    /// stored and makes processMsgs throw std::bad_function_call. Handlers of the signal must not
    /// post on the same thread. Thread: any.
    void addRenderTask(std::function<void()>&& fn, unsigned long key);
    /// Adds work that runs at the end of the next station load. Thread: the one that calls
    /// LoadStation, before it does.
    void addLoadTask(std::function<void()> fn);
    /// Runs the tasks that wait now, in order; what they post runs next time. A task that throws
    /// ends the batch: the exception goes to the host and the tasks behind it are lost. Signals
    /// updateScene once if a task or setting asked for a further frame. Thread: render.
    void processMsgs();
    /// Asks for one updateScene signal at the end of the next batch. Thread: any.
    void requestUpdate() { needsUpdate = true; }

    // --- scene set-up; thread: render unless said otherwise ---
    void setAmbientLight(const Ogre::ColourValue& colour);
    /// Lights are numbered 1 to 4; any other index throws Ogre::ItemIdentityException on the
    /// caller. The direction is where the light comes from, taken as it stands, whichever axis is
    /// up; one of zero length is ignored, one that is not finite, or too long for that, throws
    /// std::invalid_argument. Each of these signals updateScene.
    void setLightDir(int index, float x, float y, float z);
    void setLightEnable(int index, bool on);
    void setLightDiffuse(int index, float r, float g, float b);
    void setLightSpecular(int index, float r, float g, float b);
    /// Switches the outline round selected bodies. Does nothing before the camera has a viewport or
    /// without the compositor "BorderHighlight".
    void setBorderHighlightEnabled(bool on);
    /// Makes the grid of 20 cells of 1000 once; false does nothing.
    void setGrid(bool on);

    // --- settings; thread: any ---
    /// Turns grid and camera to another vertical: 0 X, 1 Y, 2 Z; the setting is stored on the
    /// caller.
    void setGridNormalDir(int dir);
    void setDisplayMode(DisplayMode mode);
    /// Resizes the visuals of one kind and remembers the size for later ones of it, but only if
    /// there is one now: with none in the scene nothing changes. Tcp frames are remembered in
    /// `frameSize`.
    void setFrameSize(unsigned int size, VisualType type);
    void setArrowSizeLevel(unsigned int level);
    void setHandleScale(float scale);
    /// These four store the setting on the caller. Arrows stand on the segments of paths that have
    /// a line. Switched on while they are on, arrows and targets are made a second time, and the
    /// first ones stay until their move goes: post a change only.
    void setDrawPathArrow(bool on);
    void setDrawTargetVisual(bool on);
    void setDrawTargetZAxisOnly(bool on);
    /// updatePath for every path. Thread: caller.
    void setDrawSegVisual(bool on);
    void cleanupInstanceBatches();

    // --- station; thread: any ---
    // Null for a model node throws std::invalid_argument in the task.

    /// Shows the station that layout::Layout holds, then hides what its visibilities() name.
    void LoadStation();
    void addPart(sdf::SdfNode* modelNode);
    void addAssembly(sdf::SdfNode* modelNode);
    /// A manipulator, tool or device, without `buildChildren` without the parts of its links; any
    /// other kind does nothing.
    void addMechanism(sdf::SdfNode* modelNode, bool buildChildren);
    /// A user component, a sensor or a spray; any other kind does nothing. Sprays are shown by this
    /// alone: a station that is loaded shows none. What is shown already throws
    /// Ogre::ItemIdentityException in the task.
    void addSmartComponent(sdf::SdfNode* modelNode);
    /// Shows a sensor anew after its properties changed, selected if its id is, hidden if it is.
    /// The id is looked up strictly in the task; for another kind of visual it is what that one's
    /// update does.
    void updateSensor(std::uint32_t id);
    void addPointCloud(sdf::SdfNode* modelNode);
    void addFrame(sdf::SdfNode* modelNode);
    void addTaskFrame(std::uint32_t id, const rob::PoseTemplate<double>& pose);
    /// The work objects of a task, then its tools' centre points, then its paths, each with its
    /// moves. The id is looked up strictly in the task that is posted; an object that is no task
    /// throws std::bad_cast there.
    void addTask(std::uint32_t id);
    /// The centre point of a tool, under the visual of its parent id. The item and that visual are
    /// looked up strictly in the task; for the update the item's visual too, which is made anew.
    void addToolData(std::uint32_t id);
    void updateToolData(std::uint32_t id);
    void addWObj(sdf::SdfNode* modelNode);
    /// Moves a work object to its model's parent and poses; it and the parent's visual are looked
    /// up strictly in the task.
    void updateWObj(std::uint32_t id);
    /// Builds a body's solid anew with another shape, where it hangs now. Its visual is looked up
    /// strictly in the task. Other solids that share the body's URI keep the mesh that they show,
    /// and then the new one shows it too.
    void updateSolidVisual(sdf::SdfNode* modelNode, const TopoDS_Shape& shape);
    void removeVisual(std::uint32_t id);
    void removeTempVisual(std::uint32_t id);
    void attachVisual(std::uint32_t parentId, Visual* visual);
    /// Under the root, with its local pose kept.
    void detachVisual(Visual* visual);
    void reparentVisual(std::uint32_t id, std::uint32_t parentId);
    /// To `parentId`, 0 meaning the root, and to `worldPose` there.
    void moveVisualToParent(std::uint32_t id, std::uint32_t parentId,
                            const rob::PoseTemplate<float>& worldPose);
    void addAttachment(std::uint32_t childId, std::uint32_t parentId,
                       const rob::PoseTemplate<double>& pose);
    void deleteAttachment(std::uint32_t childId, std::uint32_t oldParentId,
                          std::uint32_t newParentId, const rob::PoseTemplate<double>& pose);

    // --- paths; thread: any, but for what is said to be of the caller ---
    // A move's visual hangs under that of the object frame of its work object, or, with a target
    // given by joint values, under that of its task's parent, where 0 and the station logic's id
    // stand for the root. Updates leave hidden what is hidden. Ids and objects are looked up
    // strictly in the task, unless said otherwise; one of another kind throws std::bad_cast there.
    // Null for a path or a move throws std::invalid_argument on the caller; a move's predecessor
    // may be null.

    /// The path, then each of its moves, in a task of its own. The parents of the moves are looked
    /// up strictly on the caller too. Thread: caller.
    void addPath(task::Path* path);
    /// Moves targets and arrows of a path to where the model has them, and makes its lines anew. A
    /// path without moves is left as it is, with the lines that it has.
    void updatePath(std::uint32_t id);
    void updatePaths(const std::vector<std::uint32_t>& ids);
    /// removeVisual for each move of the path, then for the path, which is looked up strictly.
    /// Thread: caller.
    void removePathVisual(std::uint32_t id);
    /// Shows a move without an arrow; the lines of its path stay as they are.
    void buildMoveInstruction(task::MoveInst* move);
    /// Shows moves, each given with its predecessor and the id of what it hangs under, then makes
    /// the lines of the last one's path anew if that is shown: all should be of one path.
    void buildMoveInstructions(
        std::vector<std::tuple<task::MoveInst*, task::MoveInst*, std::uint32_t>>&& moves);
    /// updatePath for one move.
    void updateInstruction(task::MoveInst* prev, task::MoveInst* cur);
    /// Spelling is part of the interface.
    void upadateInstructionParent(std::uint32_t id, std::uint32_t parentId);
    /// The trace that clearTcpTrace deletes; null for none. An earlier one is left to the host.
    /// Thread: render.
    void setTcpTrace(TcpTraceVisual* trace);
    /// Deletes the trace; the host makes and names a new one.
    void clearTcpTrace();

    // --- previews: what a dialog shows before it exists; thread: any, unless said otherwise ---
    // They stay until they are removed, also while a station loads, and none of them can be picked.
    // Lists that are given as pointers must live until the task has run; null for one throws
    // std::invalid_argument on the caller. Ids are looked up strictly in the task. A pose that is
    // not finite throws std::invalid_argument there.

    /// Shows an edge, in the pose, over the scene; one that was never triangulated is passed over.
    void previewEdge(const TopoDS_Edge& edge, const rob::PoseTemplate<float>& pose);
    void previewEdges(std::vector<TopoDS_Edge>* edges, const rob::PoseTemplate<float>& pose);
    /// The edges of a wire, in their order along it.
    void previewWire(const TopoDS_Wire& wire, const rob::PoseTemplate<float>& pose);
    void previewCurves(std::vector<TopoDS_Wire>* wires, const rob::PoseTemplate<float>& pose);
    /// A curve for each sequence of points, in the frame that the visual has now. The curves carry
    /// the visual's id; removePreviewCurve takes away one of them.
    void addPreviewCurves(unsigned int id, geometry::PointList* list);
    /// The same, each with an arrow along `direction`, at its first point, or at that of the place
    /// `arrowAt` in its sequence; none for a direction without length or a place past the points.
    /// Throws in the task what PreviewCurve::Build throws.
    void addPreviewCurvesWithDirection(unsigned int id, geometry::PointList* list,
                                       const rob::Vec3Template<float>& direction);
    void addPreviewCurvesWithDirection(unsigned int id, geometry::PointList* list,
                                       const rob::Vec3Template<float>& direction,
                                       unsigned int arrowAt);
    void removePreviewCurves();
    /// The first of the curves with that id; does nothing if there is none.
    void removePreviewCurve(unsigned int id);
    /// Points in the frame of a visual.
    void previewPoints(std::vector<gp_Pnt>* points, unsigned int id,
                       const rob::ColorTemplate<float>& color);
    /// Shows targets in the world in place of the targets and points previewed so far.
    void previewTargets(const std::vector<rob::PoseTemplate<float>>& poses);
    /// Removes previewed points and targets.
    void removePreviewedPoints();
    /// Faces in the frame of a visual; an unknown id throws std::bad_optional_access in the task.
    void previewFace(const TopoDS_Face& face, unsigned int id);
    void previewFaces(const std::vector<TopoDS_Face>& faces, unsigned int id);
    void removePreviewFaces();
    /// Segments in the world, such as the sides of triangles, until removePreviewCurves.
    void previewTriangleMesh(
        const std::vector<std::pair<rob::PosTemplate<float>, rob::PosTemplate<float>>>& segments);
    /// A mesh of the machining side in the world, in place of an earlier one. The mesh must live
    /// until the task has run.
    void debugViewCamMesh(cadcam::TMesh<double>* mesh);
    /// The axis of a joint, in place of an earlier one; hidden until setPreviewedJointVisible.
    void createPreviewedJointVisual();
    void removePreviewedJointVisual();
    /// From `start` to `end` in the world; throws in the task what
    /// PreviewedJointVisual::setStartAndEnd throws. Does nothing at all without a previewed joint.
    /// Thread: caller.
    void setPreviewedJointVisible(const rob::PosTemplate<double>& start,
                                  const rob::PosTemplate<double>& end);
    void setPreviewedJointInvisible();
    /// A frame of the world under a key of the host's, `plain` or dashed, hidden until it is given
    /// its place. In place of an earlier one of that key; the other three look the key up strictly
    /// in the task.
    void createPreviewedFrameVisual(unsigned int id, bool plain);
    void removePreviewedFrameVisual(unsigned int id);
    void setPreviewedFrameVisible(unsigned int id, const rob::PoseTemplate<double>& worldPose);
    void setPreviewedFrameInvisible(unsigned int id);
    /// A translucent copy of a visual where it would come to stand, in place of the copy of another
    /// one. A kind of visual that cannot be copied shows nothing.
    void showCopiedVisual(unsigned int id, const rob::PoseTemplate<float>& worldPose);
    /// Both do nothing without a copy.
    void hideCopiedVisual();
    void deleteCopiedVisual();
    /// Hides what PreviewVisualsHelper shows of a frame or direction being picked.
    void removeAllPositionVisuals();

    // --- measures, indicators, free lines; in the world; thread: any ---
    void createDistanceVisual(const rob::PosTemplate<double>& a, const rob::PosTemplate<double>& b);
    /// The legs from `vertex` to `a` and `b`, and the arc of `angle` radians from the shorter one
    /// towards the other. Legs without length or in one line throw std::overflow_error in the task,
    /// and nothing is shown.
    void createAngleVisual(const rob::PosTemplate<double>& vertex,
                           const rob::PosTemplate<double>& a, const rob::PosTemplate<double>& b,
                           double angle);
    /// The arc of the circle's three points and a line from its start to its middle: a diameter if
    /// the points are spread over the whole circle.
    void createDiameterVisual(const rob::TPCircle& circle);
    void removeDimensionVisual();
    /// A line through the points; `withArrow` puts an arrow on its first point, towards the second.
    /// Throws in the task what PolylineVisual::Build throws. The number has no effect.
    void drawPolyline(const std::vector<rob::PosTemplate<float>>& points, unsigned int unused,
                      bool withArrow);
    void drawPolylines(const std::vector<std::vector<rob::PosTemplate<float>>>& lines,
                       unsigned int unused, bool withArrow);
    void removePolylines();
    /// The directions of a face's surface parameters, in the middle of its range. Throws in the
    /// task what UVIndicatorVisual::show throws.
    void showUVIndicatorVisual(const TopoDS_Face& face);
    /// Both do nothing without an indicator.
    void hideUVIndicatorVisual();
    void deleteUVIndicatorVisual();

    // --- handles; thread: any ---
    void showDragHandle();
    void hideDragHandle();
    /// Ends a drag: every part of the handle is shown again as at rest.
    void resetDragHandle();
    /// Hangs a handle under a visual, in a local pose; it is then the scene's attached one, which
    /// survives the removal of that visual. It is shown, hidden and enabled by itself, whatever the
    /// visual is. The id is looked up strictly in the task; null for a pointer throws
    /// std::invalid_argument on the caller.
    void attachGuiTo(GuiVisual* gui, Visual* visual, const rob::PoseTemplate<float>& pose);
    void attachGuiTo(GuiVisual* gui, unsigned int visualId, const rob::PoseTemplate<float>& pose);
    /// Takes a handle out of the visual that it is attached to. Parts that the host has enabled
    /// stay enabled, and would be picked where they were: disable them first.
    void detachGui(GuiVisual* gui);

    // --- paint; thread: any ---
    /// Lets a spray paint on the meshes of a visual and of what hangs below it; those without a
    /// record or normals are passed over. On what is hidden the paint is hidden too. Sprays are
    /// counted: the paint stays until the last one is removed. An unknown target does nothing, here
    /// and in the other four.
    void createPaintVisual(unsigned int target, unsigned int sprayId);
    void removePaintVisual(unsigned int target, unsigned int sprayId);
    /// Paints what the cone of a spray visual reaches, from where that visual stands now. `a` and
    /// `b` are the cone's diameters at its origin and at `height`; the pose has no effect. An id
    /// that is no spray's throws std::bad_optional_access in the task, if there is paint to spray.
    void spray(unsigned int sprayId, unsigned int target, const rob::PoseTemplate<double>& pose,
               double a, double b, double height);
    /// Makes all paint transparent.
    void resetSpray(unsigned int target);
    /// For what is sprayed from then on; components from 0 to 1.
    void setPaintColor(unsigned int target, float r, float g, float b);
    /// Shows a spray anew after its properties changed. Its visual is looked up strictly in the
    /// task; throws there what SprayVisual::Build throws.
    void rebuildSprayVisual(sdf::SdfNode* modelNode);

    // --- poses; thread: any ---
    void setVisualPose(std::uint32_t id, const rob::PoseTemplate<float>& pose);
    void setVisualPose(Visual* visual, const rob::PoseTemplate<float>& pose);
    void setVisualWorldPose(std::uint32_t id, const rob::PoseTemplate<float>& pose);
    void setVisualWorldPose(Visual* visual, const rob::PoseTemplate<float>& pose);
    /// Lists of unequal length throw std::invalid_argument on the caller.
    void setVisualsOrientations(const std::vector<std::uint32_t>& ids,
                                const std::vector<rob::OrientTemplate<double>>& orientations);
    /// Moves the visual's own origin from the frame `oldOrigin` to `newOrigin`, both in the world,
    /// while its children stay where they are.
    void setLocalOrigin(std::uint32_t id, const rob::PoseTemplate<float>& oldOrigin,
                        const rob::PoseTemplate<float>& newOrigin);
    void setCameraPose(const rob::PoseTemplate<float>& worldPose);

    // --- visibility; thread: any ---
    /// Does nothing for an id that the model does not know.
    void setVisualVisible(std::uint32_t id, bool show);
    void setFrameVisualVisible(bool show);
    void setTcpVisualVisible(bool show);
    /// The only one of the four that goes down into the children.
    void setWObjVisualVisible(bool show);
    void setTargetVisualVisible(bool show);

    // --- highlight and selection; thread: any for the posts, caller for the bookkeeping ---
    /// Highlights a visual in place of what is highlighted now; what is selected is left alone.
    /// Null clears.
    void setVisualHighlighted(Visual* visual);
    void setVisualHighlighted(std::uint32_t id);
    void clearHighlightedVisual();
    void clearHighlightedBody();
    /// Highlights one face of a solid, counted from 1, in place of what is highlighted now; a
    /// selected face is left alone. Null clears. A number past the faces throws Standard_OutOfRange
    /// in the task.
    void highlightFace(SolidVisual* solid, unsigned int index);
    void clearHighlightedFace();
    /// Shows one edge highlighted, below the visual that it belongs to, in place of the edge
    /// highlighted now and of nothing else. Null clears.
    void highlightEdge(Visual* visual, const TopoDS_Edge& edge);
    void clearHighlightedEdge();
    /// Selects one visual, or several, in place of the selection so far, and turns the outline on.
    /// An id without a visual of its own is looked up in the model: a task selects its paths, its
    /// tools, work objects and joint targets, and its robot.
    void setVisualSelected(std::uint32_t id);
    void setVisualSelected(Visual* visual);
    void setVisualsSelected(const std::vector<std::uint32_t>& ids);
    void clearSelectedVisuals();
    void clearSelections();
    /// Adds a face of a solid, counted from 1, to the selected ones, in the colour of a base or of
    /// a side. Does nothing for another kind of visual and for a face that is selected. The id is
    /// looked up strictly on the caller; a number past the faces throws Standard_OutOfRange in the
    /// task.
    void selectBaseFace(std::uint32_t id, unsigned int index);
    void selectSideFace(std::uint32_t id, unsigned int index);
    /// The id is looked up strictly on the caller.
    void clearSelectedFace(std::uint32_t id, unsigned int index);
    void clearSelectedFaces();
    /// Thread: caller.
    [[nodiscard]] bool faceIsSelected(SolidVisual* solid, unsigned int index) const;
    /// Adds the generated edge of a visual to the selection; does nothing if it has no such edge.
    void selectGeneratedEdge(std::uint32_t id, const TopoDS_Edge& edge);
    /// Selects points of clouds, by the clouds' ids, in place of the selection so far. In the task
    /// an id is looked up strictly, and one of another kind of visual throws std::bad_cast.
    void selectPointCloud(
        const std::unordered_map<unsigned int, std::vector<unsigned long>>& indices);
    /// True if the visual or one of its ancestors up to the first top-level one is selected.
    /// Thread: caller.
    [[nodiscard]] bool isSelected(const Visual* visual) const;

    // --- materials and collision; thread: any; ids are looked up strictly on the caller ---
    void bodyVisualUseMaterial(std::uint32_t id, const std::string& materialName);
    void bodyVisualUseDefaultMaterial(std::uint32_t id);
    void setVisualCollisionEmphasizeState(std::uint32_t id, VisualCollisionState state);
    void clearVisualCollisionEmphasizeState(std::uint32_t id);
    /// Marks the bodies of a visual as in contact, or no longer.
    void setCollision(std::uint32_t id, bool on);
    /// Marks the bodies of several visuals as near misses, or no longer, in one post.
    void setCollisionHighlights(const std::vector<std::uint32_t>& ids, bool on);
    void clearAllCollisionContacts();

    // --- colours; thread: any ---
    /// Breadth-first from the visual, on each solid and mesh. `alpha` is 1 for opaque.
    void setVisualColor(std::uint32_t id, const rob::ColorTemplate<float>& color, float alpha);
    void setVisualColor(Visual* visual, const rob::ColorTemplate<float>& color, float alpha);
    void resetColor(std::uint32_t id);
    void resetColor(Visual* visual);

    // --- edges and arrows; thread: any; ids are looked up strictly in the task ---
    /// Shows an edge below a visual until it is removed; an edge that was never triangulated is
    /// passed over.
    void addGeneratedEdge(std::uint32_t id, const TopoDS_Edge& edge);
    /// These three do nothing if the visual has no such edge below it. An arrow on an edge without
    /// a direction there throws std::overflow_error in the task.
    void removeGeneratedEdge(std::uint32_t id, const TopoDS_Edge& edge);
    void addEdgeArrow(std::uint32_t id, const TopoDS_Edge& edge, bool atEnd);
    void clearEdgeArrow(std::uint32_t id, const TopoDS_Edge& edge);
    /// These two do nothing for a visual that is no curve.
    void addCurveArrow(std::uint32_t id, bool atEnd);
    void clearCurveArrow(std::uint32_t id);

    // --- reach of robots; thread: any ---
    /// Shows what a robot reaches in place of what was shown before: the profile as an outline
    /// under the visual of `parentId`, and hidden the surface that it sweeps about the robot's z
    /// axis from `minAngle` to `maxAngle` radians, under the robot. `normals` belong to the
    /// profile's points. In the tasks the robot is looked up strictly, another kind of visual is
    /// passed over, and without a visual of `parentId` nothing is shown. Throws there what
    /// WorkEnvelope3DVisual::Build throws.
    void addWorkEnvelopeVisual(std::uint32_t manipulatorId, std::uint32_t parentId,
                               const std::vector<rob::PosTemplate<double>>& points,
                               const std::vector<rob::DirTemplate<double>>& normals, float minAngle,
                               float maxAngle);
    /// These two look the robot up strictly in the task and pass over another kind of visual.
    void updateWorkEnvelopeVisual(std::uint32_t id, bool show2D, bool show3D);
    void removeWorkEnvelopeVisual(std::uint32_t id);

    // --- camera poses for a host to go to; they move nothing; thread: render ---
    /// Frames what the scene shows, seen along `dir`: the sphere round its box, of radius 10 at
    /// least, just fits into the narrower angle of view. What is hidden, the ground grid, the world
    /// frame, handles and previews do not count. The scene's vertical is up; for a view along it
    /// the camera's present x axis stays. Needs no unit length, but throws std::overflow_error for
    /// a direction of none.
    [[nodiscard]] rob::PoseTemplate<float> getViewPoseForDir(
        const rob::DirTemplate<float>& dir) const;
    /// The same with `up` up on the picture, as far as it is not along `dir`: then throws
    /// std::overflow_error.
    [[nodiscard]] rob::PoseTemplate<float> getViewPoseForDir(
        const rob::DirTemplate<float>& dir, const rob::DirTemplate<float>& up) const;
    /// The same in the present direction.
    [[nodiscard]] rob::PoseTemplate<float> getViewAllPose() const;
    /// From the present position towards the middle of what the scene shows. Throws
    /// std::overflow_error if the camera stands there.
    [[nodiscard]] rob::PoseTemplate<float> getViewCenterPose() const;
    /// Frames one visual with all below it, or the target of a move, in the present direction and
    /// with the present rotation. What is hidden counts only where nothing is shown. The id is
    /// looked up strictly.
    [[nodiscard]] rob::PoseTemplate<float> getVisualFocusPose(std::uint32_t id) const;

    // --- queries; they read the live scene without a lock; thread: render, or caller ---
    /// A face of a solid by its number from 1, in the frame of its body or in the world. Throws
    /// std::out_of_range
    /// ("unordered_map::at") for an unknown id, std::bad_cast for another kind of visual, and what
    /// SolidVisual::getFace throws.
    [[nodiscard]] TopoDS_Face GetBodyFace(std::uint32_t id, int index) const;
    [[nodiscard]] TopoDS_Face GetBodyFaceInWorld(std::uint32_t id, int index) const;

    // --- helpers of the library's own builders; thread: render ---
    /// Enters a visual under its id. Silent for null.
    void addTempVisual(Visual* visual);
    /// Deletes a visual with all below it. Silent for null and for one that stands in no map.
    void deleteVisual(Visual* visual);
    /// Work objects, tools' centre points, paths and moves of a task. Throws std::out_of_range,
    /// "unordered_map::at", for an unknown id, and std::bad_cast for another object's.
    void buildTask(std::uint32_t id);
    /// The visual that a model object hangs under: that of its parent id, or the root when the id
    /// is 0, the station logic's, or no visual's. Throws std::invalid_argument for null.
    [[nodiscard]] Visual* resolveParentVisual(const sdf::SdfNode* modelNode) const;

private:
    explicit Scene(std::string sceneName);
    void createInstanceManagers();
    void createLights();
    template <class Task>
    void post(Task task) {
        addRenderTask(std::move(task), /*key=*/0);
    }
    /// Posts an action on the visual that has the id when the task runs, looked up strictly.
    template <class Action>
    void postToVisual(std::uint32_t id, Action action) {
        post([this, id, action = std::move(action)] { action(visuals.at(id)); });
    }

    void doLoadStation();
    void buildManipulator(layout::Manipulator* robot);
    void buildMechanism(sdf::SdfNode* modelNode, bool buildChildren);
    void buildSmartComponent(sdf::SdfNode* modelNode);
    void buildToolData(sdf::SdfNode* item);
    void buildPaths(const task::Task& job);
    void doUpdatePath(std::uint32_t id);
    void doUpdateInstruction(task::MoveInst* prev, task::MoveInst* cur);
    void doSetDrawPathArrow(bool on);
    /// Empties a list, deleting what is in it from the end.
    void deleteAll(std::vector<Visual*>& list);
    void doPreviewEdge(const TopoDS_Edge& edge, const rob::PoseTemplate<float>& pose);
    void doPreviewEdges(const std::vector<TopoDS_Edge>& edges,
                        const rob::PoseTemplate<float>& pose);
    void doPreviewWire(const TopoDS_Wire& wire, const rob::PoseTemplate<float>& pose);
    void doPreviewCurves(const std::vector<TopoDS_Wire>& wires,
                         const rob::PoseTemplate<float>& pose);
    void doAddPreviewCurves(unsigned int id, const geometry::PointList& list);
    void doAddPreviewCurvesWithDirection(unsigned int id, const geometry::PointList& list,
                                         const rob::Vec3Template<float>& direction,
                                         unsigned int arrowAt);
    void doRemovePreviewCurve(unsigned int id);
    void doPreviewPoints(const std::vector<gp_Pnt>& points, unsigned int id,
                         const rob::ColorTemplate<float>& color);
    void doPreviewTargets(const std::vector<rob::PoseTemplate<float>>& poses);
    void doRemovePreviewedPoints();
    void doPreviewFace(const TopoDS_Face& face, unsigned int id);
    void doPreviewFaces(const std::vector<TopoDS_Face>& faces, unsigned int id);
    void doCreatePreviewedFrameVisual(unsigned int id, bool plain);
    void doShowCopiedVisual(unsigned int id, const rob::PoseTemplate<float>& worldPose);
    void doDeleteCopiedVisual();
    void doCreateDistanceVisual(const rob::PosTemplate<double>& a,
                                const rob::PosTemplate<double>& b);
    void doCreateAngleVisual(const rob::PosTemplate<double>& vertex,
                             const rob::PosTemplate<double>& a, const rob::PosTemplate<double>& b,
                             double angle);
    void doCreateDiameterVisual(const rob::TPCircle& circle);
    void doDrawPolyline(const std::vector<rob::PosTemplate<float>>& points, bool withArrow);
    void doShowUVIndicatorVisual(const TopoDS_Face& face);
    void doAttachGui(GuiVisual* gui, Visual* visual, const rob::PoseTemplate<float>& pose);
    /// True if the dying visual is not to be deleted: the attached handle, or one of Init's.
    bool releaseAttachedGui(const Visual* dying);
    void doCreatePaintVisual(unsigned int target, unsigned int sprayId);
    void doRemovePaintVisual(unsigned int target, unsigned int sprayId);
    void doSpray(unsigned int sprayId, unsigned int target, double a, double b, double height);
    void doResetSpray(unsigned int target);
    void doSetPaintColor(unsigned int target, float r, float g, float b);
    void doRebuildSprayVisual(sdf::SdfNode* modelNode);
    void doRestoreCamera();
    void keepForNextBatch(std::vector<RenderTask>&& batch);
    void drainLoadTasks();
    void doRemoveVisual(std::uint32_t id);
    void doMoveVisualToParent(std::uint32_t id, std::uint32_t parentId,
                              const rob::PoseTemplate<float>& worldPose);
    void doAddAttachment(std::uint32_t childId, std::uint32_t parentId,
                         const rob::PoseTemplate<double>& pose);
    void doDeleteAttachment(std::uint32_t childId, std::uint32_t newParentId,
                            const rob::PoseTemplate<double>& pose);
    void doSetLocalOrigin(std::uint32_t id, const rob::PoseTemplate<float>& oldOrigin,
                          const rob::PoseTemplate<float>& newOrigin);
    void doSetVisible(const std::function<bool(const Visual*)>& predicate, bool show);
    void doSetVisualVisible(std::uint32_t id, bool show);
    void doSetTypeVisible(VisualType type, bool show, bool cascade);
    void doSetFramesSize(unsigned int size, VisualType type);
    void doSetArrowSizeLevel(unsigned int level);
    void doSetDisplayMode(DisplayMode mode);
    void doSelectVisual(std::uint32_t id);
    void doSelectModelObject(std::uint32_t id);
    void doClearSelectedVisuals();
    void selectFace(std::uint32_t id, unsigned int index, const std::string& hexColor);
    void doHighlightEdge(Visual* visual, const TopoDS_Edge& edge);
    void doClearHighlightedEdge();
    EdgeVisual* findLastingEdge(const Visual* owner, const TopoDS_Edge& edge) const;
    void doUpdateSensor(std::uint32_t id);
    void doAddWorkEnvelopeVisual(std::uint32_t manipulatorId, std::uint32_t parentId,
                                 const std::vector<rob::PosTemplate<double>>& points,
                                 const std::vector<rob::DirTemplate<double>>& normals,
                                 float minAngle, float maxAngle);
    [[nodiscard]] bool isFurniture(const Visual* visual) const;
    [[nodiscard]] Ogre::AxisAlignedBox sceneBox() const;
    void doUpdateSolidVisual(sdf::SdfNode* modelNode, const TopoDS_Shape& shape);
    /// Drop a visual that is about to die from the bookkeeping of faces, edges and tasks.
    void forgetFaces(const Visual* visual);
    void forgetEdges(const Visual* visual);
    void forgetEnvelope(const Visual* visual);
    void forgetTaskVisual(const Visual* visual);
    void forgetPreview(const Visual* visual);
    void forgetMeasure(const Visual* visual);
    void doSetLayer(Visual* visual, VisualStateLayer layer, bool on,
                    const std::string& materialName = {});
    void doSetColor(Visual* visual, const rob::ColorTemplate<float>& color, float alpha);
    void doResetColor(Visual* visual);

    static Scene* Instance;

    // Apart from each other: a thread that waits for the mutex would take the queue's cache line
    // away from the one that holds it.
    alignas(64) std::mutex taskMutex;  ///< guards the two below and nothing else
    alignas(64) std::vector<RenderTask> renderTasks;
    std::vector<RenderTask> spareTasks;  ///< empty; memory that the next batch fills again
    std::deque<std::function<void()>> loadTasks;
    Visual* copiedVisual = nullptr;
    Visual* camMesh = nullptr;  ///< of debugViewCamMesh
    Visual* highlightedVisual = nullptr;
    VisEdge highlightedEdge;
    std::optional<Visual*> highlightedEdgeVisual;
    VisFace highlightedFace;
    std::list<VisFace> selectedFaces;
    std::vector<std::uint32_t> selectedVisuals;  ///< in order of selection
    std::uint32_t gridCells = 0, gridCellSize = 0;
    Visual* previewedJoint = nullptr;
    std::unordered_map<std::uint32_t, Visual*> previewedFrames;
    std::vector<Visual*> polylines;
    std::vector<Visual*> dimensions;
    // The operations of these names are why the fields end in an underscore.
    std::vector<Visual*> previewCurves_;
    std::vector<Visual*> previewPoints_;
    std::vector<Visual*> previewFaces_;
    UVIndicatorVisual* uvIndicator = nullptr;
    Visual* tcpTrace = nullptr;  ///< null for none
    /// Set from two threads, so atomic: a frame has to follow the next batch.
    std::atomic<bool> needsUpdate{false};
};

}  // namespace vrn::visual
