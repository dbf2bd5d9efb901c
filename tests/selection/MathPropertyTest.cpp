// Random cases of Math and the planes against other ways to the answer: triangles and lines on a
// grid of whole numbers, where determinants are exact in 64 bits, and planes in double precision.
//
// The grid keeps what lies off a plane further from it than the tolerance of 0.001 (its normals are
// shorter than 700), so that the tolerance changes no answer. What only touches is passed over:
// there the single-precision test may go either way.

#include "selection/Box.h"
#include "selection/Math.h"
#include "selection/PlaneBoundedVolume.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>

namespace vrn::selection {

namespace {

using Pos = Math::Pos;
using Line = Math::Line;
using Triangle = Math::Triangle;
using Int = std::int64_t;
using DVec = rob::Vec3Template<double>;

constexpr int reach = 7;

struct Grid {
    Int x = 0, y = 0, z = 0;
    friend Grid operator-(const Grid& a, const Grid& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend Grid operator+(const Grid& a, const Grid& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend Grid operator*(const Grid& a, Int s) { return {a.x * s, a.y * s, a.z * s}; }
};
using GridTriangle = std::array<Grid, 3>;

Grid Cross(const Grid& a, const Grid& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Int Dot(const Grid& a, const Grid& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Grid NormalOf(const GridTriangle& t) { return Cross(t[1] - t[0], t[2] - t[0]); }
bool HasArea(const GridTriangle& t) {
    const Grid n = NormalOf(t);
    return Dot(n, n) != 0;
}
/// Above 0 on the side of the normal.
Int Side(const GridTriangle& t, const Grid& p) { return Dot(NormalOf(t), p - t[0]); }
int Sign(Int v) { return v > 0 ? 1 : v < 0 ? -1 : 0; }

Pos ToPos(const Grid& p, float scale = 1) {
    return {static_cast<float>(p.x) * scale, static_cast<float>(p.y) * scale,
            static_cast<float>(p.z) * scale};
}
Triangle ToTriangle(const GridTriangle& t, float scale = 1) {
    return {ToPos(t[0], scale), ToPos(t[1], scale), ToPos(t[2], scale)};
}
DVec ToDouble(const Grid& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}
    Int whole(Int low, Int high) { return std::uniform_int_distribution<Int>(low, high)(engine); }
    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(engine);
    }
    Grid point() { return {whole(-reach, reach), whole(-reach, reach), whole(-reach, reach)}; }
    GridTriangle triangle() {
        for (;;) {
            const GridTriangle t{point(), point(), point()};
            if (HasArea(t)) return t;
        }
    }
    /// In the plane of `t`.
    Grid pointInPlane(const GridTriangle& t) {
        return t[0] + (t[1] - t[0]) * whole(-2, 2) + (t[2] - t[0]) * whole(-2, 2);
    }
    GridTriangle triangleInPlane(const GridTriangle& t) {
        for (;;) {
            const GridTriangle s{pointInPlane(t), pointInPlane(t), pointInPlane(t)};
            if (HasArea(s)) return s;
        }
    }

private:
    std::mt19937 engine;
};

/// Upright planes at 45 degrees between x and y are flattened to a line: of equal components x and
/// y the tests in a plane drop z.
bool IsFlattened(const GridTriangle& t) {
    const Grid n = NormalOf(t);
    return n.z == 0 && (n.x == n.y || n.x == -n.y);
}

/// Where a segment stands to a triangle: strictly through its inside, at most touching, or apart.
enum class Meeting { Through, Touching, Apart };

Meeting Meet(const GridTriangle& t, const Grid& p, const Grid& q) {
    const int sp = Sign(Side(t, p)), sq = Sign(Side(t, q));
    if (sp * sq > 0) return Meeting::Apart;
    if (sp == 0 && sq == 0) return Meeting::Touching;  // in the plane: judged elsewhere
    std::array<int, 3> turn{};
    for (std::size_t i = 0; i < 3; ++i)
        turn[i] = Sign(Dot(Cross(t[(i + 1) % 3] - t[i], p - t[i]), q - t[i]));
    const int low = std::min({turn[0], turn[1], turn[2]});
    const int high = std::max({turn[0], turn[1], turn[2]});
    if (low < 0 && high > 0) return Meeting::Apart;
    return low * high > 0 && sp * sq < 0 ? Meeting::Through : Meeting::Touching;
}

Meeting Meet(const GridTriangle& s, const GridTriangle& t) {
    bool touching = false;
    for (std::size_t i = 0; i < 3; ++i)
        for (const Meeting m : {Meet(s, t[i], t[(i + 1) % 3]), Meet(t, s[i], s[(i + 1) % 3])}) {
            if (m == Meeting::Through) return m;
            touching = touching || m == Meeting::Touching;
        }
    return touching ? Meeting::Touching : Meeting::Apart;
}

/// The same of triangles in one plane, by the lines along their edges: one that has them on
/// different sides parts them.
Meeting MeetInPlane(const GridTriangle& s, const GridTriangle& t) {
    Meeting result = Meeting::Through;
    const Grid n = NormalOf(s);
    for (const auto& [own, other] : {std::pair(&s, &t), std::pair(&t, &s)})
        for (std::size_t i = 0; i < 3; ++i) {
            const Grid& a = (*own)[i];
            const Grid out = Cross((*own)[(i + 1) % 3] - a, n);
            const int inner = Sign(Dot(out, (*own)[(i + 2) % 3] - a));
            Int nearest = INT64_MIN;
            for (const Grid& p : *other) nearest = std::max(nearest, Dot(out, p - a) * inner);
            if (nearest < 0) return Meeting::Apart;
            if (nearest == 0) result = Meeting::Touching;
        }
    return result;
}

/// How long the triangles overlap along the line of their planes, negative for a gap; in units of
/// the whole span. Where that is next to nothing, the single-precision test may go either way.
double OverlapAlongTheLine(const GridTriangle& s, const GridTriangle& t) {
    const DVec along = ToDouble(Cross(NormalOf(s), NormalOf(t))).normalized();
    const auto interval = [&](const GridTriangle& own, const GridTriangle& plane) {
        std::pair<double, double> ends{1e300, -1e300};
        for (std::size_t i = 0; i < 3; ++i) {
            const Grid &a = own[i], &b = own[(i + 1) % 3];
            const auto da = static_cast<double>(Side(plane, a));
            const auto db = static_cast<double>(Side(plane, b));
            if (da * db > 0 || da == db) continue;
            const DVec p = ToDouble(a) + (ToDouble(b) - ToDouble(a)) * (da / (da - db));
            ends = {std::min(ends.first, along.dot(p)), std::max(ends.second, along.dot(p))};
        }
        return ends;
    };
    const auto i = interval(s, t), j = interval(t, s);
    return std::min(i.second, j.second) - std::max(i.first, j.first);
}

/// Counts the clear cases of both kinds, so that a test of nothing cannot pass.
struct Tally {
    int met = 0, missed = 0;

    void check(bool expected, bool answer, int i) {
        EXPECT_EQ(answer, expected) << "case " << i;
        ++(expected ? met : missed);
    }
    void expectBoth(int atLeast) const {
        EXPECT_GE(met, atLeast);
        EXPECT_GE(missed, atLeast);
    }
};

bool SeesApart(const GridTriangle& s, const GridTriangle& t) {
    const Grid d = Cross(NormalOf(s), NormalOf(t));
    return Dot(d, d) == 0;
}

}  // namespace

TEST(MathProperty, TrianglesMeetWhereAnEdgeOfOnePassesThroughTheOther) {
    Random random(1);
    Tally tally;
    for (int i = 0; i < 200000; ++i) {
        const GridTriangle s = random.triangle(), t = random.triangle();
        if (SeesApart(s, t)) continue;
        const Meeting meeting = Meet(s, t);
        if (meeting == Meeting::Touching) continue;
        if (std::abs(OverlapAlongTheLine(s, t)) < 1e-3) continue;
        tally.check(meeting == Meeting::Through, Math::Intersect(ToTriangle(s), ToTriangle(t)), i);
    }
    tally.expectBoth(20000);
}

TEST(MathProperty, TheAnswerOnTrianglesIsTheSameAtAnySizeAndInAnyOrder) {
    Random random(2);
    Tally tally;
    for (int i = 0; i < 20000; ++i) {
        const GridTriangle s = random.triangle(), t = random.triangle();
        if (SeesApart(s, t) || Meet(s, t) == Meeting::Touching ||
            std::abs(OverlapAlongTheLine(s, t)) < 1e-3)
            continue;
        const bool expected = Meet(s, t) == Meeting::Through;
        // Up to 28 kilometres: the products of the test would have left the range of a float long
        // before.
        for (const float scale : {2.0f, 64.0f, 1024.0f, 4096.0f})
            ASSERT_EQ(Math::Intersect(ToTriangle(s, scale), ToTriangle(t, scale)), expected)
                << "case " << i << " times " << scale;
        const GridTriangle turned{t[1], t[2], t[0]}, mirrored{s[1], s[0], s[2]};
        ASSERT_EQ(Math::Intersect(ToTriangle(t), ToTriangle(s)), expected);
        ASSERT_EQ(Math::Intersect(ToTriangle(mirrored), ToTriangle(turned)), expected);
        tally.check(expected, Math::Intersect(ToTriangle(s), ToTriangle(t)), i);
    }
    tally.expectBoth(2000);
}

TEST(MathProperty, TrianglesThatShareAVertexAlwaysTouch) {
    Random random(3);
    int checked = 0;
    for (int i = 0; i < 100000; ++i) {
        const GridTriangle s = random.triangle();
        GridTriangle t = random.triangle();
        t[static_cast<std::size_t>(random.whole(0, 2))] =
            s[static_cast<std::size_t>(random.whole(0, 2))];
        if (!HasArea(t) || SeesApart(s, t)) continue;
        EXPECT_TRUE(Math::Intersect(ToTriangle(s), ToTriangle(t))) << "case " << i;
        ++checked;
    }
    EXPECT_GE(checked, 90000);
}

TEST(MathProperty, CoplanarTrianglesMeetUnlessALinePartsThem) {
    Random random(4);
    Tally tally;
    for (int i = 0; i < 100000; ++i) {
        const GridTriangle s = random.triangle(), t = random.triangleInPlane(s);
        if (IsFlattened(s)) continue;
        const Meeting meeting = MeetInPlane(s, t);
        if (meeting == Meeting::Touching) continue;
        tally.check(meeting == Meeting::Through, Math::Intersect(ToTriangle(s), ToTriangle(t)), i);
    }
    tally.expectBoth(5000);
}

TEST(MathProperty, ALineHitsWhereItPassesThroughTheTriangle) {
    Random random(5);
    Tally tally;
    for (int i = 0; i < 300000; ++i) {
        const GridTriangle t = random.triangle();
        const Grid p = random.point(), q = random.point();
        if (Side(t, p) == Side(t, q)) continue;  // parallel
        const Meeting meeting = Meet(t, p, q);
        if (meeting == Meeting::Touching) continue;
        const Result hit = Math::Intersect(Line{ToPos(p), ToPos(q)}, ToTriangle(t));
        tally.check(meeting == Meeting::Through, hit.hit, i);
        if (!hit.hit) continue;
        const auto sp = static_cast<double>(Side(t, p)), sq = static_cast<double>(Side(t, q));
        ASSERT_NEAR(hit.distance, sp / (sp - sq), 1e-5) << "case " << i;
        const DVec at = ToDouble(p) + (ToDouble(q) - ToDouble(p)) * (sp / (sp - sq));
        ASSERT_LT((DVec(hit.position.asVec3()) - at).length(), 1e-4) << "case " << i;
    }
    tally.expectBoth(10000);
}

TEST(MathProperty, ALineInThePlaneHitsWhereItEntersTheTriangle) {
    Random random(6);
    Tally tally;
    for (int i = 0; i < 100000; ++i) {
        const GridTriangle t = random.triangle();
        const Grid p = random.pointInPlane(t), q = random.pointInPlane(t);
        const Grid way = q - p, n = NormalOf(t);
        if (Dot(way, way) == 0 || IsFlattened(t)) continue;
        // Cut to what lies on the inner side of each edge.
        double enter = 0, leave = 1;
        bool alongEdge = false;
        for (std::size_t k = 0; k < 3; ++k) {
            const Grid in = Cross(n, t[(k + 1) % 3] - t[k]);
            const auto at = static_cast<double>(Dot(in, p - t[k]));
            const auto change = static_cast<double>(Dot(in, way));
            if (change > 0) enter = std::max(enter, -at / change);
            if (change < 0) leave = std::min(leave, -at / change);
            if (change == 0 && at < 0) leave = -1;
            alongEdge = alongEdge || (change == 0 && at == 0);
        }
        if (std::abs(leave - enter) < 1e-6 || alongEdge) continue;
        const Result hit = Math::Intersect(Line{ToPos(p), ToPos(q)}, ToTriangle(t));
        tally.check(enter < leave, hit.hit, i);
        if (!hit.hit) continue;
        ASSERT_NEAR(hit.distance, enter, 1e-5) << "case " << i;
    }
    tally.expectBoth(5000);
}

TEST(MathProperty, ALineBesideItsParallelPlaneMisses) {
    Random random(7);
    int checked = 0;
    for (int i = 0; i < 100000; ++i) {
        const GridTriangle t = random.triangle();
        const Grid p = random.point();
        const Grid q = p + (random.pointInPlane(t) - t[0]);
        const Grid way = q - p;
        if (Side(t, p) == 0 || Dot(way, way) == 0) continue;
        EXPECT_FALSE(Math::Intersect(Line{ToPos(p), ToPos(q)}, ToTriangle(t)).hit) << "case " << i;
        ++checked;
    }
    EXPECT_GE(checked, 50000);
}

TEST(MathProperty, TheIntersectionPointLiesInBothTrianglesWheneverOneIsThere) {
    Random random(8);
    Tally tally;
    for (int i = 0; i < 100000; ++i) {
        const GridTriangle s = random.triangle(), t = random.triangle();
        if (SeesApart(s, t)) continue;
        const Meeting meeting = Meet(s, t);
        if (meeting == Meeting::Touching || std::abs(OverlapAlongTheLine(s, t)) < 1e-3) continue;
        const Triangle a = ToTriangle(s), b = ToTriangle(t);
        const auto [found, p] = Math::GetIntersectionPoint(a.p0, a.p1, a.p2, b.p0, b.p1, b.p2);
        tally.check(meeting == Meeting::Through, found, i);
        if (!found) continue;
        for (const GridTriangle& own : {s, t}) {
            const DVec n = ToDouble(NormalOf(own)).normalized();
            const DVec q(p.asVec3());
            ASSERT_LT(std::abs(n.dot(q - ToDouble(own[0]))), 2e-3) << "case " << i;
            for (std::size_t k = 0; k < 3; ++k) {
                const DVec edge = ToDouble(own[(k + 1) % 3]) - ToDouble(own[k]);
                ASSERT_GT(n.cross(edge).normalized().dot(q - ToDouble(own[k])), -2e-3)
                    << "case " << i;
            }
        }
    }
    tally.expectBoth(10000);
}

TEST(MathProperty, ABoxLiesOnTheSideOfAllItsCorners) {
    Random random(9);
    Tally tally;
    for (int i = 0; i < 50000; ++i) {
        const auto at = [&] {
            return Ogre::Vector<3, float>(random.number(-50, 50), random.number(-50, 50),
                                          random.number(-50, 50));
        };
        const Plane plane(at(), at(), at());
        visual::Box box;
        for (int k = 0; k < 2; ++k) {
            const auto corner = at();
            box.addPoint({corner[0], corner[1], corner[2]});
        }
        double low = 1e300, high = -1e300;
        for (unsigned k = 0; k < 8; ++k) {
            const Pos c = box.getCorner(k);
            const DVec n(plane.normal[0], plane.normal[1], plane.normal[2]);
            const double s = n.dot(DVec(c.asVec3())) + static_cast<double>(plane.d);
            low = std::min(low, s);
            high = std::max(high, s);
        }
        if (std::min(std::abs(low), std::abs(high)) < 1e-3) continue;
        const int expected = low > 0 ? Plane::Positive : high < 0 ? Plane::Negative : Plane::Both;
        EXPECT_EQ(plane.intersect(box), expected) << "case " << i;
        ++(expected == Plane::Both ? tally.met : tally.missed);
    }
    tally.expectBoth(5000);
}

}  // namespace vrn::selection
