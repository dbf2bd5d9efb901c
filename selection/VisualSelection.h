#pragma once

#include "selection/PrimitiveContainer.h"
#include "selection/Result.h"
#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <array>
#include <atomic>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vrn::visual {
class CurveVisual;
class InstanceFrameVisual;
class LineVisual;
class PointCloudVisual;
class PointVisual;
class SolidVisual;
class Visual;
}  // namespace vrn::visual

namespace vrn::selection {

class SelectableObject;

/// Points of clouds: the numbers of the points under the id of the cloud's visual.
using CloudPoints = std::unordered_map<unsigned int, std::vector<unsigned long>>;

/// The registry of what can be picked, and the queries that pick.
///
///     selection->update();                                  // once a frame, before the questions
///     const Result hit = selection->select(mouseX, mouseY);  // window pixels
///     if (hit.hit) use(hit.visual, hit.position);
///
/// Visuals register themselves when they are built and are taken out by Scene::deleteVisual. Every
/// change of the registry and every move of a registered visual sets `dirty`; the host calls update
/// once a frame, before it asks. It may do so both before and after Scene::processMsgs: an update
/// without a change costs nothing. A visual that was never registered is passed over by every
/// operation that does not say otherwise, and so is null. Thread: render.
class VRN_VISUAL_API VisualSelection {
public:
    VisualSelection() = default;
    VisualSelection(const VisualSelection&) = delete;
    VisualSelection& operator=(const VisualSelection&) = delete;
    ~VisualSelection();

    /// The selection that Init made; null before.
    [[nodiscard]] static VisualSelection* Get();

    // The add operations set `dirty` and append a new object to its container. For a visual that is
    // registered already the registry keeps the earlier object, and the container has both. Null
    // throws std::invalid_argument.

    /// `detectable`: contact tests see it.
    void addShape(const TopoDS_Shape& shape, visual::SolidVisual* visual, bool detectable);
    void addCurveVisual(const TopoDS_Shape& shape, visual::CurveVisual* visual, bool detectable);
    /// An object for each mesh and paint visual of the subtree.
    /// `priority`: a hit on it beats every distance.
    void addMeshVisual(visual::Visual* visual, bool detectable, bool priority);
    void addLineVisual(visual::LineVisual* visual);
    void addFrameVisual(visual::InstanceFrameVisual* visual);
    void addPointVisual(visual::PointVisual* visual, bool detectable);
    /// Goes to the container of clouds.
    void addPointCloudVisual(visual::PointCloudVisual* visual, bool detectable);

    [[nodiscard]] bool hasVisual(visual::Visual* visual) const;
    /// Throws std::out_of_range, "unordered_map::at", for a visual that is not registered.
    [[nodiscard]] SelectableObject* getObject(visual::Visual* visual) const;

    /// Takes effect at the next update.
    void setObjectEnabled(visual::Visual* visual, bool enabled);
    /// Takes effect at once and sets no mark.
    void setDetectable(visual::Visual* visual, bool detectable);
    /// Switches all line objects; those switched on catch up with their visuals at once. Sets the
    /// mark only if one of them really changed.
    void setLineEnabled(bool enabled);
    /// setObjectEnabled for the subtree; sets the mark in any case.
    void setCompoundObjectEnabled(visual::Visual* visual, bool enabled);

    /// Gives a solid whose visible faces changed a new object, detectable and enabled as the
    /// earlier one; what hangs below the solid keeps its own. Throws std::out_of_range for a visual
    /// that is not registered.
    void updateShapeFaces(visual::SolidVisual* visual);
    /// For a visual that shows something else now: its object finds that at the next update. Does
    /// nothing for one that is not registered.
    void rebuild(visual::Visual* visual);
    /// Takes the visual out and deletes its objects, also those of a repeated registration. `dirty`
    /// is set in any case. Throws std::out_of_range for a visual that is not registered.
    void removeObject(visual::Visual* visual);
    /// removeObject for every registered visual of the subtree; sets the mark in any case.
    void removeCompoundObject(visual::Visual* visual);

    /// Notes that the visual moved, with all below it. Sets the mark only if one of them is
    /// registered.
    void markDirty(visual::Visual* visual);

    /// Brings the world boxes of all objects up to date, registered or not.
    void updateWorldBoxes();
    /// Does nothing unless `dirty`; else updates the world boxes, builds the hierarchies over the
    /// enabled objects, clears the mark, and signals broker::SignalBroker::snapResultInvalidated on
    /// this thread. What throws leaves the mark set.
    void update();

    // The queries. While `dirty` is set no hierarchy is trusted, and the answer is that of an empty
    // scene without a ground. So it is where there is no view to look through: without a camera, a
    // render target or an extent of it, and for a coordinate that is not finite. What degenerate
    // geometry of a candidate throws passes through.

    /// What lies under a pixel, clouds left out: the nearest hit, of equally distant ones the one
    /// that is visited first; but the first hit on a `priority` object beats all others. A miss
    /// carries in `position` the point where the line of sight meets the ground plane through the
    /// origin, also behind the camera, or (0, 0, 0) if it runs along the ground. The empty Result
    /// without a view.
    [[nodiscard]] Result select(float x, float y);
    /// The same among the clouds alone.
    [[nodiscard]] Result selectPointInCloud(float x, float y);

    /// Contact tests: the first detectable object that is touched, which need not be the nearest.
    /// While `dirty` is set `valid` is false. A line without length, or with a NaN, throws
    /// std::overflow_error where there is anything to test.
    [[nodiscard]] Result sense(const rob::TriangleTemplate<float>& triangle);
    [[nodiscard]] Result sense(const rob::LineTemplate<float>& line);

    /// The visuals whose world box is at least partly under the rectangle between two opposite
    /// corners in window pixels, clouds left out; in the order in which they are found.
    [[nodiscard]] std::vector<visual::Visual*> boxSelect(float x0, float y0, float x1, float y1);
    /// The points of clouds under the rectangle, ascending for each object.
    [[nodiscard]] CloudPoints boxSelectPointCloud(float x0, float y0, float x1, float y1);
    /// The points of clouds inside a polygon of window pixels, by the even-odd rule.
    [[nodiscard]] CloudPoints lassoSelectPointCloud(
        const std::vector<rob::PosTemplate<float>>& polygon);
    /// lassoSelectPointCloud: a convex polygon is one as any other.
    [[nodiscard]] CloudPoints convexSelectPointCloud(
        const std::vector<rob::PosTemplate<float>>& polygon);

    // --- what the library's own classes read ---
    std::unordered_map<visual::Visual*, SelectableObject*> objects;
    /// 0 for all but point clouds, 1 for these: an ordinary pick does not pay for clouds. They own
    /// the objects.
    std::array<PrimitiveContainer, 2> containers;
    std::atomic<bool> dirty = false;

private:
    [[nodiscard]] Result pick(float x, float y, const PrimitiveContainer& container) const;
    template <class Shape>
    [[nodiscard]] Result senseFirst(const Shape& shape) const;
    void add(std::unique_ptr<SelectableObject> object, PrimitiveContainer& container);
    static void removeRepeated(visual::Visual* visual, PrimitiveContainer& container);
    void setDirty();

    /// Visuals with objects that no entry of `objects` leads to; they must not outlive the visual.
    std::unordered_set<visual::Visual*> repeated;
};

/// Makes the selection, empty and clean. Call once, before vrn::visual::Init and the first visual;
/// a second call starts over with an empty one and frees the earlier. Thread: render.
VRN_VISUAL_API void Init();
/// Does nothing; hosts call it as the counterpart of Init. The selection lives on. Thread: render.
VRN_VISUAL_API void Finish();

/// The selection. Set by Init, null before.
VRN_VISUAL_API extern VisualSelection* gVisSelection;

}  // namespace vrn::selection
