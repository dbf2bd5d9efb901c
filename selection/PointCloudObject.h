#pragma once

#include "selection/SelectableObject.h"

#include <span>
#include <vector>

namespace vrn::visual {
class PointCloudVisual;
}

namespace vrn::selection {

/// A point cloud in the picking world: all its points, selected and drawn or not, in chunks, so
/// that the hierarchy stays small whatever the size of the cloud. Contact tests never meet it.
/// Thread: render; workers of the cloud queries read `visual` and `worldPose`.
class VRN_VISUAL_API PointCloudObject : public SelectableObject {
public:
    explicit PointCloudObject(visual::PointCloudVisual* cloudVisual);

    /// The chunks and the tree over them; what was built before goes.
    void buildBVH();
    /// Appends the chunks of the points that `indices` names, which `bounds` is to be round.
    ///
    /// More than `chunkSize` points are parted at the middle of the longest side of `bounds`, below
    /// it left, all others right, and so on; the order within a chunk is that of `indices`. Points
    /// that cannot be parted, such as coincident ones, are cut into runs. The box of a chunk is
    /// `chunkMargin` wider than its points on each side: as far as a point is picked. Throws
    /// std::out_of_range for an index that `points` does not have.
    void buildPrimitives(const std::vector<rob::PosTemplate<float>>& points,
                         std::vector<unsigned int> indices, const visual::Box& bounds);
    void updateWorldBox() override;

    using SelectableObject::intersect;
    /// A hit tells the visual and the index of the point; `position` is in the world.
    [[nodiscard]] Result intersect(const visual::Ray& ray) override;

    static constexpr std::size_t chunkSize = 1000;
    static constexpr int chunkMargin = 3;

private:
    void addChunk(const std::vector<rob::PosTemplate<float>>& points,
                  std::span<const unsigned int> indices);
    void addRuns(const std::vector<rob::PosTemplate<float>>& points,
                 std::span<const unsigned int> indices);
    void bisect(const std::vector<rob::PosTemplate<float>>& points, std::span<unsigned int> indices,
                const visual::Box& bounds, std::vector<unsigned int>& spare);

    visual::PointCloudVisual* cloud;
};

}  // namespace vrn::selection
