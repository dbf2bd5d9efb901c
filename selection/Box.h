// Namespace vrn::visual: the mesh pipeline uses these boxes as much as picking does.
#pragma once

#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <cfloat>
#include <iosfwd>
#include <span>

namespace vrn::visual {

struct Ray;

/// The component of a point, direction or vector on `axis`: 0 x, 1 y, anything else z. Thread:
/// pure.
template <class Triple>
[[nodiscard]] constexpr float component(const Triple& triple, unsigned axis) {
    return axis == 0 ? triple.x : axis == 1 ? triple.y : triple.z;
}

/// An axis-aligned box with a cached center, all in single precision and in model units.
///
/// A new box is empty: its `min` lies above its `max`, so that the first point or box that is added
/// becomes its bounds. The center is kept beside the bounds and may be stale after addPoint; a box
/// that somebody tests against triangles must be up to date (updateCenter).
///
/// NaN: addPoint and addBox pass a NaN coordinate over; every test answers false for a NaN in its
/// argument or in the bounds it reads. Thread: pure, all of it; nothing is shared between boxes.
class VRN_VISUAL_API Box {
public:
    using Pos = rob::PosTemplate<float>;

    /// The empty box: `min` all FLT_MAX, `max` all -FLT_MAX, `center` zero and up to date.
    Box() = default;
    /// The bounds as given, unordered ones too; the center is computed at once.
    Box(float minX, float minY, float minZ, float maxX, float maxY, float maxZ) {
        set(minX, minY, minZ, maxX, maxY, maxZ);
    }
    /// An exact copy, a stale center included.
    Box(const Box&) = default;
    /// Takes the bounds and computes the center; assigning a box to itself changes nothing.
    Box& operator=(const Box& other) {
        if (this == &other) return *this;
        min = other.min;
        max = other.max;
        updateCenter();
        return *this;
    }
    ~Box() = default;

    /// The bounds as given; the center is computed at once.
    void set(float minX, float minY, float minZ, float maxX, float maxY, float maxZ) {
        min = {minX, minY, minZ};
        max = {maxX, maxY, maxZ};
        updateCenter();
    }

    /// True if `max` is at least `min` on all three axes; a box of a single point is valid.
    [[nodiscard]] bool isValid() const {
        return max.x >= min.x && max.y >= min.y && max.z >= min.z;
    }

    /// Computes the center from the bounds.
    void updateCenter() {
        center = {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
        dirty = false;
    }
    /// The center, computed first if it was stale.
    [[nodiscard]] const Pos& getCenter() {
        if (dirty) updateCenter();
        return center;
    }

    /// Grows the bounds and leaves the center stale, so that adding many points stays cheap.
    void addPoint(const Pos& point) {
        if (point.x < min.x) min.x = point.x;
        if (point.y < min.y) min.y = point.y;
        if (point.z < min.z) min.z = point.z;
        if (point.x > max.x) max.x = point.x;
        if (point.y > max.y) max.y = point.y;
        if (point.z > max.z) max.z = point.z;
        dirty = true;
    }
    /// addPoint for each; an empty list changes nothing.
    void addPoints(std::span<const Pos> points);
    /// Grows the bounds and computes the center. An empty box leaves the bounds alone.
    void addBox(const Box& other) {
        // Side by side, not as two points: the bounds of an empty box must not count.
        if (other.min.x < min.x) min.x = other.min.x;
        if (other.min.y < min.y) min.y = other.min.y;
        if (other.min.z < min.z) min.z = other.min.z;
        if (other.max.x > max.x) max.x = other.max.x;
        if (other.max.y > max.y) max.y = other.max.y;
        if (other.max.z > max.z) max.z = other.max.z;
        updateCenter();
    }

    /// The axis of the largest extent: 0 x, 1 y, 2 z. A tie goes to the later axis.
    [[nodiscard]] unsigned maxDim() const;
    /// `max` minus `min` on an axis: 0 x, 1 y, anything else z. Minus infinity for the empty box.
    [[nodiscard]] float getExtent(unsigned axis) const;
    /// The whole surface from the extents. Infinite for the empty box.
    [[nodiscard]] float getArea() const;
    /// The same area from the half extents; the last bits may differ from getArea.
    [[nodiscard]] float getSurfaceArea() const;

    /// Moves each face out by one unit. The center is neither computed nor marked stale: it stays
    /// right because the growth is symmetric.
    void expand() {
        min = {min.x - 1.0f, min.y - 1.0f, min.z - 1.0f};
        max = {max.x + 1.0f, max.y + 1.0f, max.z + 1.0f};
    }

    /// True inside and on all six faces.
    [[nodiscard]] bool isPointInside(float x, float y, float z) const;
    /// Corners 0 to 3 lie at `min.z`: (min.x, min.y), (max.x, min.y), (max.x, max.y),
    /// (min.x, max.y); 4 to 7 are the same at `max.z`. Any other number gives (0, 0, 0).
    [[nodiscard]] Pos getCorner(unsigned i) const;

    /// The box round the eight corners of this one after rotation and translation by `pose`.
    /// Empty for a box that is not valid.
    [[nodiscard]] Box transformed(const rob::PoseTemplate<float>& pose) const;
    /// transformed, in place.
    void transform(const rob::PoseTemplate<float>& pose);

    /// True if the ray meets the box between 0 and its `maxDistance`, touching included.
    ///
    /// Slab test (Kay and Kajiya, "Ray tracing complex scenes", SIGGRAPH 1986). An axis on which
    /// the direction is below 0.001 counts as parallel: there only the origin decides.
    [[nodiscard]] bool intersect(const Ray& ray) const;
    /// The ray test from the start of the line, as far as the line is long.
    /// Throws std::overflow_error for an empty line or one with a NaN: it has no direction.
    [[nodiscard]] bool intersect(const rob::LineTemplate<float>& line) const;
    /// True if the boxes overlap or touch on all axes.
    [[nodiscard]] bool intersect(const Box& other) const;
    /// True if the plane through `point` with `normal` meets a box of this size whose center is the
    /// origin; where this box lies plays no part. A zero normal meets it. `normal` needs no length.
    [[nodiscard]] bool intersect(const rob::Vec3Template<float>& normal, const Pos& point) const;
    /// True if the triangle meets the box, touching included.
    ///
    /// Reads the stored `center` without looking at `dirty`: after addPoint call updateCenter
    /// first. Separating axes (Akenine-Moeller, "Fast 3D triangle-box overlap testing", 2001),
    /// tested in the order edge axes, plane of the triangle, box axes.
    [[nodiscard]] bool intersect(const rob::TriangleTemplate<float>& triangle) const;

    /// Writes "box:", the `min` values and the `max` values, each on a line; the last is flushed.
    void dump(std::ostream& out) const;

    Pos min{FLT_MAX, FLT_MAX, FLT_MAX};
    Pos max{-FLT_MAX, -FLT_MAX, -FLT_MAX};
    Pos center{};
    /// True while `center` does not belong to the bounds.
    bool dirty = false;
};

/// Box::dump.
VRN_VISUAL_API std::ostream& operator<<(std::ostream& out, const Box& box);

}  // namespace vrn::visual
