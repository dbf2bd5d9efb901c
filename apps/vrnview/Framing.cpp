#include "apps/vrnview/Framing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vrn::host {

namespace {

using Pos = rob::PosTemplate<double>;
using Vec = rob::Vec3Template<double>;

/// How much of the half picture the scene may take.
constexpr double filled = 0.92;

bool IsFinite(const Pos& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The picture's axes in the world.
struct ViewAxes {
    Vec right, up, forward;
};

ViewAxes AxesOf(StandardView view) {
    const auto axes = [](const Vec& forward, const Vec& up) {
        const Vec right = forward.cross(up).normalized();
        return ViewAxes{right, right.cross(forward).normalized(), forward.normalized()};
    };
    switch (view) {
        case StandardView::Front:
            return axes({0, 1, 0}, {0, 0, 1});
        case StandardView::Back:
            return axes({0, -1, 0}, {0, 0, 1});
        case StandardView::Left:
            return axes({1, 0, 0}, {0, 0, 1});
        case StandardView::Right:
            return axes({-1, 0, 0}, {0, 0, 1});
        case StandardView::Top:
            return axes({0, 0, -1}, {0, 1, 0});
        // As in a drawing, the view from below is the front view tilted up: +X stays to the right.
        case StandardView::Bottom:
            return axes({0, 0, 1}, {0, -1, 0});
        case StandardView::Iso:
            break;
    }
    return axes({-1, 1, -1}, {0, 0, 1});
}

/// What the two planes of the frustum that face along one picture axis ask of the camera.
struct Fit {
    double tangent;                                             ///< of the half angle
    double highest = -std::numeric_limits<double>::infinity();  ///< of across + tangent * towards
    double lowest = std::numeric_limits<double>::infinity();    ///< of across - tangent * towards

    /// `across`: along the picture axis; `towards`: towards the camera. Both from the scene's
    /// centre.
    void add(double across, double towards) {
        highest = std::max(highest, across + tangent * towards);
        lowest = std::min(lowest, across - tangent * towards);
    }
    /// How far from the centre both planes just touch the scene, and where across the camera is
    /// then.
    [[nodiscard]] double distance() const { return (highest - lowest) / (2 * tangent); }
    [[nodiscard]] double across() const { return (highest + lowest) / 2; }
};

/// Sizes below this, against the coordinates' own, are lost to rounding.
double SmallestRadius(const Bounds& bounds) {
    const Pos c = bounds.getCentre();
    return std::max(1e-6, 1e-6 * std::max({std::abs(c.x), std::abs(c.y), std::abs(c.z)}));
}

Bounds FallbackBounds(const Bounds& furniture) {
    if (furniture.isEmpty()) return {{-1, -1, -1}, {1, 1, 1}};
    const Pos c = furniture.getCentre();
    const double r = furniture.getRadius() / 5;
    return {{c.x - r, c.y - r, c.z}, {c.x + r, c.y + r, c.z}};
}

}  // namespace

const std::vector<std::string_view>& StandardViewNames() {
    static const std::vector<std::string_view> names{"iso",   "front", "back",  "left",
                                                     "right", "top",   "bottom"};
    return names;
}

std::vector<Pos> CornersOf(const Bounds& box) {
    std::vector<Pos> corners;
    if (box.isEmpty()) return corners;
    const Pos a = box.getMin(), b = box.getMax();
    for (const double x : {a.x, b.x})
        for (const double y : {a.y, b.y})
            for (const double z : {a.z, b.z}) corners.push_back({x, y, z});
    return corners;
}

CameraPlacement FramePoints(std::span<const Pos> points, const Bounds& furniture, StandardView view,
                            const FieldOfView& fov) {
    Bounds whole;
    for (const Pos& point : points) whole.add(point);
    if (whole.isEmpty())
        return FramePoints(CornersOf(FallbackBounds(furniture)), furniture, view, fov);

    const ViewAxes axes = AxesOf(view);
    const Pos centre = whole.getCentre();
    const double radius = std::max(whole.getRadius(), SmallestRadius(whole));
    const double tangent = std::tan(fov.horizontalRad / 2);
    Fit sideways{filled * tangent}, upright{filled * tangent / fov.aspect};
    double nearest = -radius, farthest = radius;  // towards the camera, from the centre
    for (const Pos& point : points) {
        if (!IsFinite(point)) continue;
        const Vec offset = point - centre;
        const double towards = -offset.dot(axes.forward);
        sideways.add(offset.dot(axes.right), towards);
        upright.add(offset.dot(axes.up), towards);
        nearest = std::max(nearest, towards);
        farthest = std::min(farthest, towards);
    }
    // A line along the view direction or a single point asks for no distance at all; a bar seen
    // from its end asks for very little.
    const double distance =
        std::max({sideways.distance(), upright.distance(), nearest + 1e-4 * radius});
    const Vec eye =
        axes.right * sideways.across() + axes.up * upright.across() - axes.forward * distance;

    CameraPlacement placement;
    placement.pose.position = centre + eye;
    placement.pose.rotation =
        rob::RotationTemplate<double>::FromAxes(axes.right, axes.up, -axes.forward);
    placement.nearClip = (distance - nearest) / 2;
    double depth = distance - farthest;
    for (const Pos& corner : CornersOf(furniture))
        depth = std::max(depth, (corner - placement.pose.position).dot(axes.forward));
    placement.farClip = depth * 1.1;
    return placement;
}

CameraPlacement LookFrom(const CameraSpot& spot, std::span<const Pos> points,
                         const Bounds& furniture) {
    const Vec way = spot.target - spot.position;
    const Vec forward = way.length() > rob::zeroLength ? way.normalized() : Vec{0, 1, 0};
    constexpr double upright = 1e-6;  // of the sine of the angle to the vertical
    const bool isSteep = forward.cross({0, 0, 1}).length() < upright;
    const Vec right = forward.cross(isSteep ? Vec{0, 1, 0} : Vec{0, 0, 1}).normalized();
    return StandAt({spot.position,
                    rob::RotationTemplate<double>::FromAxes(right, right.cross(forward), -forward)},
                   way.length(), points, furniture);
}

CameraPlacement StandAt(const rob::PoseTemplate<double>& pose, double depthOfNothing,
                        std::span<const Pos> points, const Bounds& furniture) {
    const Vec forward = pose.rotation * Vec{0, 0, -1};
    double nearest = std::numeric_limits<double>::infinity(), farthest = 0;
    const auto see = [&](const Pos& point) {
        const double depth = (point - pose.position).dot(forward);
        if (!std::isfinite(depth) || depth <= 0) return;
        nearest = std::min(nearest, depth);
        farthest = std::max(farthest, depth);
    };
    for (const Pos& point : points) see(point);
    const double nearestPoint = nearest;
    for (const Pos& corner : CornersOf(furniture)) see(corner);
    if (farthest <= 0) farthest = std::max(depthOfNothing, 1.0);

    CameraPlacement placement;
    placement.pose = pose;
    placement.farClip = farthest * 1.1;
    // The graphics card tells depths apart over no more than some five orders of magnitude; a body
    // that the camera stands in or close to asks for the nearest.
    const double least = placement.farClip * 1e-5;
    placement.nearClip =
        std::isfinite(nearestPoint) ? std::max(nearestPoint / 2, least) : farthest / 100;
    return placement;
}

}  // namespace vrn::host
