// Random cases of Box, Cone and Plane against references in double precision that go another way.
// Where the reference lies closer to the border than `tolerance`, either answer is right.

#include "selection/Box.h"
#include "selection/Cone.h"
#include "selection/Plane.h"
#include "selection/Ray.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <random>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Dir = rob::DirTemplate<float>;
using DVec = rob::Vec3Template<double>;
using Pose = rob::PoseTemplate<float>;
using Rotation = rob::RotationTemplate<float>;

// Coordinates stay within 100 units, where a float is good for 1e-5; the sums take a few of those.
constexpr double tolerance = 1e-3;

class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}
    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(engine);
    }
    Pos point(float size) {
        return {number(-size, size), number(-size, size), number(-size, size)};
    }
    Vec unit() {
        for (;;) {
            const Vec v = point(1.0f).asVec3();
            if (v.length() > 0.1f && v.length() < 1.0f) return v.normalized();
        }
    }
    Box box() {
        Box result;
        result.addPoint(point(50));
        result.addPoint(point(50));
        result.updateCenter();
        return result;
    }
    Pose pose() { return {point(20), Rotation(number(-3, 3), unit())}; }

private:
    std::mt19937 engine;
};

/// How far `p` lies outside the box in the largest-coordinate sense; negative inside. Convex in p.
double Outside(const Box& box, const DVec& p) {
    const auto side = [](double low, double high, double v) { return std::max(low - v, v - high); };
    return std::max({side(box.min.x, box.max.x, p.x), side(box.min.y, box.max.y, p.y),
                     side(box.min.z, box.max.z, p.z)});
}

/// The minimum of a convex function over [0, 1]; the place is found to 1e-8.
template <class Function>
double ConvexMinimum(const Function& f) {
    double low = 0, high = 1;
    for (int i = 0; i < 32; ++i) {
        const double a = low + (high - low) * 0.45, b = low + (high - low) * 0.55;
        if (f(a) <= f(b))
            high = b;
        else
            low = a;
    }
    return f((low + high) / 2);
}

/// Counts the clear cases of both kinds, so that a test of nothing cannot pass.
struct Tally {
    int met = 0, missed = 0;

    void check(double outside, bool answer, int i) {
        if (std::abs(outside) <= tolerance) return;
        EXPECT_EQ(answer, outside < 0) << "case " << i << " lies " << outside << " outside";
        ++(outside < 0 ? met : missed);
    }
    void expectBoth(int atLeast) const {
        EXPECT_GE(met, atLeast);
        EXPECT_GE(missed, atLeast);
    }
};

}  // namespace

TEST(GeometryProperty, RayMeetsTheBoxWhereItsClosestPointIsInside) {
    Random random(1);
    Tally tally;
    for (int i = 0; i < 20000; ++i) {
        const Box box = random.box();
        const Vec d = random.unit();
        if (std::min({std::abs(d.x), std::abs(d.y), std::abs(d.z)}) < 0.01f) continue;
        const Ray ray{random.point(40), Dir(d), random.number(0, 100)};
        const DVec o(ray.origin.asVec3()), step = DVec(d) * ray.maxDistance;
        tally.check(ConvexMinimum([&](double t) { return Outside(box, o + step * t); }),
                    box.intersect(ray), i);
    }
    tally.expectBoth(1000);
}

TEST(GeometryProperty, LineMeetsTheBoxWhereItsClosestPointIsInside) {
    Random random(2);
    Tally tally;
    for (int i = 0; i < 20000; ++i) {
        const Box box = random.box();
        const rob::LineTemplate<float> line{random.point(60), random.point(60)};
        const DVec a(line.start.asVec3()), step = DVec(line.end.asVec3()) - a;
        const DVec d = step.normalized();
        if (std::min({std::abs(d.x), std::abs(d.y), std::abs(d.z)}) < 0.01) continue;
        tally.check(ConvexMinimum([&](double t) { return Outside(box, a + step * t); }),
                    box.intersect(line), i);
    }
    tally.expectBoth(1000);
}

TEST(GeometryProperty, TriangleMeetsTheBoxWhereItsClosestPointIsInside) {
    Random random(3);
    Tally tally;
    for (int i = 0; i < 4000; ++i) {
        const Box box = random.box();
        const Pos corner = random.point(40);
        const float size = random.number(1, 60);
        const rob::TriangleTemplate<float> triangle{corner, corner + random.point(size).asVec3(),
                                                    corner + random.point(size).asVec3()};
        const DVec p0(triangle.p0.asVec3()), e1 = DVec(triangle.p1.asVec3()) - p0,
                                             e2 = DVec(triangle.p2.asVec3()) - p0;
        const double outside = ConvexMinimum([&](double u) {
            return ConvexMinimum(
                [&](double v) { return Outside(box, p0 + e1 * u + e2 * (v * (1 - u))); });
        });
        tally.check(outside, box.intersect(triangle), i);
    }
    tally.expectBoth(500);
}

TEST(GeometryProperty, PlaneMeetsTheBoxWhenCornersLieOnBothSides) {
    Random random(4);
    Tally tally;
    for (int i = 0; i < 20000; ++i) {
        const Box box = random.box();
        const Vec normal = random.unit();
        const Pos point = random.point(60);
        const DVec centre =
            (DVec(box.min.asVec3()) + DVec(box.max.asVec3())) * 0.5;  // taken as the origin
        double low = 1e9, high = -1e9;
        for (unsigned c = 0; c < 8; ++c) {
            const DVec corner = DVec(box.getCorner(c).asVec3()) - centre;
            const double side = DVec(normal).dot(corner - DVec(point.asVec3()));
            low = std::min(low, side);
            high = std::max(high, side);
        }
        tally.check(std::max(low, -high), box.intersect(normal, point), i);
    }
    tally.expectBoth(1000);
}

TEST(GeometryProperty, BoxesOverlapWhenTheClosestPointOfOneIsInTheOther) {
    Random random(5);
    Tally tally;
    for (int i = 0; i < 20000; ++i) {
        const Box a = random.box(), b = random.box();
        const DVec closest{std::clamp<double>(a.center.x, b.min.x, b.max.x),
                           std::clamp<double>(a.center.y, b.min.y, b.max.y),
                           std::clamp<double>(a.center.z, b.min.z, b.max.z)};
        tally.check(Outside(a, closest), a.intersect(b), i);
    }
    tally.expectBoth(1000);
}

TEST(GeometryProperty, TransformedBoxHoldsEveryPointOfTheBoxAndTouchesItsCorners) {
    Random random(6);
    for (int i = 0; i < 2000; ++i) {
        const Box box = random.box();
        const Pose pose = random.pose();
        const Box moved = box.transformed(pose);
        Box wanted;
        for (int k = 0; k < 8; ++k) {
            const Pos p{k & 1 ? box.min.x : box.max.x, k & 2 ? box.min.y : box.max.y,
                        k & 4 ? box.min.z : box.max.z};
            wanted.addPoint(
                Pos(TransformPoint(rob::PoseTemplate<double>(pose), rob::PosTemplate<double>(p))));
        }
        for (unsigned axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(component(moved.min, axis), component(wanted.min, axis), tolerance) << i;
            EXPECT_NEAR(component(moved.max, axis), component(wanted.max, axis), tolerance) << i;
        }
    }
}

TEST(GeometryProperty, PointOfTheConeIsOneWhoseTurnedBackPlaceIsInside) {
    Random random(7);
    Tally tally;
    for (int i = 0; i < 20000; ++i) {
        const Cone cone{random.number(0, 20), random.number(0, 20), random.number(1, 40)};
        const Pose pose = random.pose();
        const Vec point = (pose.position + random.point(25).asVec3()).asVec3();
        const rob::PoseTemplate<double> wide(pose);
        const DVec local = wide.rotation.inverse() * (DVec(point) - wide.position.asVec3());
        const double radius =
            cone.nearRadius + (cone.farRadius - cone.nearRadius) * (local.z / cone.height);
        const double outside =
            std::max({-local.z, local.z - cone.height, std::hypot(local.x, local.y) - radius});
        tally.check(outside, cone.isPointInside(pose, point), i);
    }
    tally.expectBoth(500);
}

TEST(GeometryProperty, PlaneIntersectionLiesInThePlaneAndOnTheLine) {
    Random random(8);
    for (int i = 0; i < 20000; ++i) {
        const Plane plane{Dir(random.unit()), random.number(-50, 50)};
        const Pos origin = random.point(50);
        const Dir direction(random.unit());
        const DVec normal(plane.normal.asVec3()), along(direction.asVec3());
        if (std::abs(normal.dot(along)) < 0.05) continue;
        const double t =
            (static_cast<double>(plane.d) - normal.dot(DVec(origin.asVec3()))) / normal.dot(along);
        const DVec wanted = DVec(origin.asVec3()) + along * t;
        const Pos got = plane.intersection(origin, direction);
        // Divided by up to 1/0.05, a rounding of 1e-5 grows to 2e-4 and more with the length.
        EXPECT_NEAR(plane.distance(origin, direction), t, 0.01) << i;
        EXPECT_LT((DVec(got.asVec3()) - wanted).length(), 0.01) << i;
    }
}

}  // namespace vrn::visual
