#pragma once

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

#include <unordered_map>
#include <vector>

namespace vrn::visual {
class Box;
class Camera;
}  // namespace vrn::visual

namespace vrn::selection {

class BVHPrimitive;
class BVHTree;
class PointCloudObject;
class SensitivePoints;

/// Finds the points of clouds inside a free-hand polygon of the screen, by the even-odd rule, in
/// normalised device coordinates. A point at the eye or behind it is outside. Thread: render.
class VRN_VISUAL_API LassoSelector {
public:
    struct Point {
        float x = 0, y = 0;
    };
    struct AABB {
        float minX, minY, maxX, maxY;
    };
    enum Class { Outside = 0, Inside = 1, Partly = 2 };

    /// `pixels`: x and y are window pixels. A camera without a viewport gives an empty polygon,
    /// which holds nothing. Throws std::invalid_argument for a null camera.
    LassoSelector(visual::Camera* lassoCamera, const std::vector<rob::PosTemplate<float>>& pixels);

    /// False for fewer than three corners.
    [[nodiscard]] bool isPointInPolygon(const Point& point) const;
    /// True if an edge of the polygon crosses or touches one of the box.
    [[nodiscard]] bool polygonIntersectsAABB(const AABB& box) const;
    [[nodiscard]] int classifyAABBPolygon(const AABB& box) const;
    /// `pose` carries the box into the world. Partly for a box that reaches behind the eye, Outside
    /// for one that lies there and for an empty one.
    [[nodiscard]] int classifyBoxPolygon(const visual::Box& box,
                                         const rob::PoseTemplate<float>& pose) const;

    /// The primitives of the tree, whose space `pose` carries into the world, that are not outside.
    [[nodiscard]] std::vector<BVHPrimitive*> selectBVH(const BVHTree& tree,
                                                       const rob::PoseTemplate<float>& pose) const;
    /// Appends the numbers of the chunk's points inside.
    void selectPoints(const SensitivePoints* points, std::vector<unsigned int>& indices) const;
    /// Appends the numbers of the cloud's points inside, under the visual's id. A cloud without one
    /// adds no entry.
    void selectPointCloud(
        PointCloudObject* object,
        std::unordered_map<unsigned int, std::vector<unsigned long>>& result) const;

    std::vector<Point> polygon;
    visual::Camera* camera;  ///< not owned
};

}  // namespace vrn::selection
