#pragma once

#include "selection/PrimitiveContainer.h"
#include "visual/VrnVisualApi.h"

#include <array>
#include <atomic>
#include <memory>
#include <unordered_map>
#include <unordered_set>

class TopoDS_Shape;

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

/// The registry of what can be picked, and the mark that tells whether it is up to date.
///
/// Visuals register themselves when they are built and are taken out by Scene::deleteVisual. Every
/// change of the registry and every move of a registered visual sets `dirty`; the host calls update
/// once a frame, before it asks. A visual that was never registered is passed over by every
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
    /// Does nothing unless `dirty`; else updates the world boxes, clears the mark, and signals
    /// broker::SignalBroker::snapResultInvalidated on this thread. What throws leaves the mark set.
    void update();

    // --- what the library's own classes read ---
    std::unordered_map<visual::Visual*, SelectableObject*> objects;
    /// 0 for all but point clouds, 1 for these: an ordinary pick does not pay for clouds. They own
    /// the objects.
    std::array<PrimitiveContainer, 2> containers;
    std::atomic<bool> dirty = false;

private:
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
