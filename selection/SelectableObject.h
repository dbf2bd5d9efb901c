#pragma once

#include "selection/BVHPrimitive.h"
#include "selection/PrimitiveContainer.h"
#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

#include <cstdint>
#include <string>

namespace vrn::visual {
class Visual;
}

namespace vrn::selection {

/// What a selectable object stands for.
enum class ObjectKind : std::int32_t {
    Shape = 0,
    Curve = 1,
    Mesh = 2,
    Line = 3,
    Point = 4,
    PointCloud = 5,
    Mfg = 6,
};

/// Stands for one visual in the picking world: a primitive of the global hierarchy, whose `box` is
/// the visual's bounds in the world, and at the same time the owner of the sensitive primitives and
/// of their hierarchy, which are in the visual's own frame.
///
/// VisualSelection makes and owns it; the visual must outlive it. What belongs to the visual's own
/// frame is built once, at the first updateWorldBox, so a move costs a box and an inverse pose
/// only; a visual that changed gets a new object. Queries come in world coordinates and see the
/// visual where the last updateWorldBox found it. Thread: render.
class VRN_VISUAL_API SelectableObject : public BVHPrimitive, public PrimitiveContainer {
public:
    /// Brings `box`, `worldPose` and `inverseWorldPose` up to date with the visual's place. Does
    /// nothing unless `worldBoxDirty`. A visual that shows nothing has the empty box, which no
    /// query meets. What a builder throws leaves the object as it was before the first call.
    virtual void updateWorldBox() = 0;
    /// The visual's name where the kind of object tells it; empty here.
    [[nodiscard]] virtual std::string getName() const;

    rob::PoseTemplate<float> inverseWorldPose;  ///< from the world to the visual's frame
    visual::Visual* visual;                     ///< not owned, never null
    ObjectKind kind;
    bool detectable = true;  ///< contact tests look at it, picking does not
    bool worldBoxDirty = true;
    bool priority = false;  ///< a hit on this object beats every distance
    bool bvhBuilt = false;  ///< the part in the visual's own frame is done
    rob::PoseTemplate<float> worldPose;

protected:
    /// Throws std::invalid_argument for a null visual.
    SelectableObject(visual::Visual* shown, ObjectKind objectKind);

    /// Reads the world pose from the visual and inverts it.
    void updateWorldPose();
    /// What updateWorldBox does where the box is that of the tree: nothing unless `worldBoxDirty`;
    /// `build` at the first time, then the world pose and the box.
    template <class Build>
    void updateLazily(const Build& build) {
        if (!worldBoxDirty) return;
        if (!bvhBuilt) {
            build();
            bvhBuilt = true;
        }
        updatePlace();
    }
    /// Deletes the primitives and forgets the tree over them: a build starts from nothing, also
    /// after one that threw.
    void clearPrimitives();
    /// Builds the tree over `primitives`.
    void buildTree();
    /// A point of the visual's frame in the world.
    [[nodiscard]] rob::PosTemplate<float> toWorld(const rob::PosTemplate<float>& local) const {
        return TransformPoint(worldPose, local);
    }

private:
    /// updateWorldPose, then `box` from the root of the tree, and clears `worldBoxDirty`.
    void updatePlace();
};

}  // namespace vrn::selection
