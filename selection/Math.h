#pragma once

#include "selection/Result.h"
#include "suite/rob/ShapeTypes.h"
#include "visual/VrnVisualApi.h"

#include <optional>
#include <utility>

namespace vrn::selection {

/// The exact tests that picking rests on, in single precision; lengths are model units. The small
/// constants are part of the behaviour: hosts depend on what counts as touching.
///
/// A NaN never makes a hit; where a length is to be normalised it throws like a zero one. Thread:
/// pure.
class VRN_VISUAL_API Math {
public:
    using Pos = rob::PosTemplate<float>;
    using Vec = rob::Vec3Template<float>;
    using Vec2 = rob::Vec2Template<float>;
    using Line = rob::LineTemplate<float>;
    using Triangle = rob::TriangleTemplate<float>;

    /// Lengths below this, and what else is compared with it, count as nothing.
    static constexpr float tolerance = 0.001f;

    /// Where a triangle meets the other one's plane, along their common line, without a division:
    /// the ends are a + b / x0 and a + c / x1.
    struct Interval {
        float a, b, c, x0, x1;
        /// An end that is a vertex in that plane: the terms would round it, and triangles that
        /// share a vertex would miss each other by that.
        std::optional<float> vertex0, vertex1;
    };

    /// Puts the smaller value first.
    static void sort(float& a, float& b);
    /// |a - b| < 0.001.
    [[nodiscard]] static bool isEqual(float a, float b);

    /// True if the triangles touch. Vertices within 0.001 of the other plane count as in it, unless
    /// all three lie strictly on one side. A triangle without area counts as coplanar.
    ///
    /// Interval overlap without divisions: Moeller, "A fast triangle-triangle intersection test",
    /// Journal of Graphics Tools 2(2), 1997.
    [[nodiscard]] static bool Intersect(const Triangle& first, const Triangle& second);
    /// A hit's `distance` runs from 0 at the line's start to 1 at its end; both positions are where
    /// it lies. A line that runs within 0.001 of the triangle's plane hits where it first meets the
    /// triangle.
    ///
    /// A determinant below 0.001 counts as parallel, whatever the size of the triangle. Throws
    /// std::overflow_error for an empty line, SurfaceNormalNotAvailable for a triangle without
    /// area. Moeller and Trumbore, "Fast, minimum storage ray-triangle intersection", Journal of
    /// Graphics Tools 2(1), 1997.
    [[nodiscard]] static Result Intersect(const Line& line, const Triangle& triangle);

    /// `p0` to `p2`: the vertices along the common line; `d0` to `d2`: their distances to the other
    /// plane, in any common scale. Throws std::logic_error "Two triangles are on the same plane" if
    /// all three are 0.
    [[nodiscard]] static Interval computeTrianIntervals(float p0, float p1, float p2, float d0,
                                                        float d1, float d2, bool d0d1Positive,
                                                        bool d0d2Positive);
    /// True if the segments a0 a1 and b0 b1 cross or touch; parallel ones do not.
    [[nodiscard]] static bool edge2Edge2D(const Vec2& a0, const Vec2& a1, const Vec2& b0,
                                          const Vec2& b1);
    /// True if a0 a1 crosses or touches an edge of the triangle.
    [[nodiscard]] static bool edge2TrianEdges(const Vec2& a0, const Vec2& a1, const Vec2& t0,
                                              const Vec2& t1, const Vec2& t2);
    /// In either winding; a point on an edge is outside.
    [[nodiscard]] static bool pointInTriangle2D(const Vec2& p, const Vec2& a, const Vec2& b,
                                                const Vec2& c);
    /// True if two triangles of the plane with `normal` touch, seen along its largest component: x
    /// or y only as a strict maximum.
    [[nodiscard]] static bool trian2Trian2D(const Vec& normal, const Triangle& first,
                                            const Triangle& second);

    /// Where the segment p1 p2 first meets p3 p4: `distance` is the parameter on p1 p2.
    [[nodiscard]] static Result edgeToEdge2D(const Vec2& p1, const Vec2& p2, const Vec2& p3,
                                             const Vec2& p4);
    /// Where a line in the triangle's plane first meets it: `distance` is the parameter on the
    /// line, 0 if it starts inside. The axis is chosen as in trian2Trian2D.
    [[nodiscard]] static Result lineToTriangle2D(const Line& line, const Triangle& triangle);

    /// `p` is taken to lie in the plane of a, b, c; a point on an edge is outside.
    [[nodiscard]] static bool pointInTriangle3D(const Pos& p, const Pos& a, const Pos& b,
                                                const Pos& c);
    /// Positive on the normal's side; `normal` needs no unit length. Throws
    /// SurfaceNormalNotAvailable if it has none.
    [[nodiscard]] static float distanceOfPointToSurface(const Pos& p, const Pos& surfacePoint,
                                                        const Vec& normal);

    /// To the endless line through `a` and `b`, measured from the nearer of them. Throws
    /// std::overflow_error if they are at most 1e-7 apart.
    [[nodiscard]] static float DistancePointLine(const Pos& p, const Pos& a, const Pos& b);
    /// To the endless line; `direction` needs no unit length. Throws std::overflow_error if it is
    /// at most 1e-7 long.
    [[nodiscard]] static float DistancePointLine(const Pos& p, const Pos& origin,
                                                 const rob::DirTemplate<float>& direction);
    /// Positive on the side from which a, b, c run counter-clockwise. Throws std::overflow_error if
    /// their normal, twice the area long, is at most 1e-7.
    [[nodiscard]] static float SignedDistancePointPlane(const Pos& p, const Pos& a, const Pos& b,
                                                        const Pos& c);
    /// Throws like SignedDistancePointPlane.
    [[nodiscard]] static float DistancePointPlane(const Pos& p, const Pos& a, const Pos& b,
                                                  const Pos& c);
    /// Whether `p` lies on the positive side, and how far; not for a triangle whose normal, or a
    /// `p` whose way from `a`, is shorter than 0.001, nor where the cosine between them is 0.001 or
    /// less. The number is 0 then.
    [[nodiscard]] static std::pair<bool, float> PointOutsideOfPlane(const Pos& p, const Pos& a,
                                                                    const Pos& b, const Pos& c);
    [[nodiscard]] static bool PointOutsideOfPlane(const Pos& p, const Pos& point,
                                                  const Vec& normal);

    /// A point that the triangles abc and def have in common: a vertex of abc within 0.001 of the
    /// other plane and inside there, a vertex of def, where an edge of abc passes through def, or
    /// where one of def passes through abc; the first of these, edges from ab on. The point is the
    /// origin without one. Throws like SignedDistancePointPlane.
    [[nodiscard]] static std::pair<bool, Pos> GetIntersectionPoint(const Pos& a, const Pos& b,
                                                                   const Pos& c, const Pos& d,
                                                                   const Pos& e, const Pos& f);
};

}  // namespace vrn::selection
