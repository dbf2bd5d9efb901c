#include "visual/handle/GuiVisual.h"

#include <cmath>
#include <stdexcept>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/EngineFixture.h"
#include "view/Camera.h"
#include "visual/handle/DragHandle.h"

namespace vrn::test {

namespace {

using Pos = rob::PosTemplate<float>;
using Pose = rob::PoseTemplate<float>;
using Pixel = rob::Vec2Template<float>;
using Rotation = rob::RotationTemplate<float>;
using Vec = rob::Vec3Template<float>;
using VecD = rob::Vec3Template<double>;
using visual::GuiVisual;
using visual::Visual;

VecD Widened(const Vec& v) { return VecD(v); }

void ExpectNear(const Vec& is, const VecD& expected, double tolerance) {
    EXPECT_NEAR(is.x, expected.x, tolerance);
    EXPECT_NEAR(is.y, expected.y, tolerance);
    EXPECT_NEAR(is.z, expected.z, tolerance);
}

/// What one set of free axes stands for.
struct Row {
    Vec axes;
    VecD e0, e1, e2;
};

const std::vector<Row> rows{
    {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}, {0, 1, 0}}, {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {1, 0, 0}},
    {{0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {1, 0, 0}}, {{1, 1, 0}, {0, 0, 1}, {1, 1, 0}, {1, 1, 0}},
    {{1, 0, 1}, {0, 1, 0}, {1, 0, 0}, {1, 0, 0}}, {{0, 1, 1}, {0, 1, 1}, {1, 0, 0}, {1, 0, 0}},
    {{1, 1, 1}, {0, 1, 1}, {1, 0, 0}, {1, 0, 0}},
};

struct Sight {
    VecD origin, direction;
};

Sight SightAt(const Pixel& pixel) {
    Pos origin;
    Vec direction;
    visual::Camera::Get()->cameraToViewportRay(pixel.x, pixel.y, origin, direction);
    return {Widened(origin.asVec3()), Widened(direction)};
}

/// The displacement by the rule, in double precision; the rotation is done by the caller.
VecD DisplacementByRule(const Row& row, const Pixel& from, const Pixel& to, const VecD& handle) {
    const Sight a = SightAt(from), b = SightAt(to);
    const bool second = std::abs(row.e0.dot(b.direction)) < std::abs(row.e2.dot(b.direction));
    const VecD normal = second ? row.e2 : row.e0, removed = second ? row.e0 : row.e1;
    const double d = normal.dot(handle);
    const VecD unit = normal.normalized();
    const auto meet = [&](const Sight& s) {
        return s.origin + s.direction * ((d - unit.dot(s.origin)) / unit.dot(s.direction));
    };
    const VecD way = meet(b) - meet(a);
    return way - removed * way.dot(removed);
}

}  // namespace

class GuiVisualTest : public EngineTest {
protected:
    static Vec drag(const Pixel& from, const Pixel& to, const Pose& pose, const Vec& axes) {
        return GuiVisual::MouseDisplacement(from, to, pose, axes);
    }
};

TEST_F(GuiVisualTest, IsAHelper) {
    EXPECT_EQ(static_cast<int>(visual::DragHandle::Get()->type), 19);
}

TEST_F(GuiVisualTest, EverySetOfAxesDragsInThePlaneAndAlongWhatItsTableSays) {
    for (const Pos& eye : {Pos{900, -300, 250}, Pos{-200, -900, 300}, Pos{150, 260, 900}}) {
        lookFrom(eye, {0, 0, 0});
        for (const Row& row : rows) {
            const Pixel from{300, 220}, to{350, 260};
            const Pos handle{20, -30, 10};
            const Vec is = drag(from, to, {handle, {}}, row.axes);
            const VecD expected = DisplacementByRule(row, from, to, Widened(handle.asVec3()));
            SCOPED_TRACE(testing::Message() << "axes " << row.axes.x << row.axes.y << row.axes.z);
            ExpectNear(is, expected, 0.02 + 1e-4 * expected.length());
        }
    }
}

TEST_F(GuiVisualTest, TheTableIsThatOfTheHandlesOwnAxes) {
    lookFrom({900, -300, 250}, {0, 0, 0});
    const Rotation turn(0.6f, Vec{0.26726124f, 0.5345225f, 0.8017837f});
    for (const Row& row : rows) {
        const auto turned = [&](const VecD& v) { return rob::RotationTemplate<double>(turn) * v; };
        const Row world{row.axes, turned(row.e0), turned(row.e1), turned(row.e2)};
        const Pixel from{300, 220}, to{350, 260};
        const VecD expected = DisplacementByRule(world, from, to, {20, -30, 10});
        ExpectNear(drag(from, to, {{20, -30, 10}, turn}, row.axes), expected,
                   0.02 + 1e-4 * expected.length());
    }
}

TEST_F(GuiVisualTest, WithOneAxisMarkedOnlyThatAxisRemains) {
    const Rotation turn(0.6f, Vec{0.26726124f, 0.5345225f, 0.8017837f});
    for (const Pos& eye : {Pos{900, -300, 250}, Pos{-200, -900, 300}, Pos{150, 260, 900}}) {
        lookFrom(eye, {0, 0, 0});
        for (const Vec& axis : {Vec{1, 0, 0}, Vec{0, 1, 0}, Vec{0, 0, 1}}) {
            const Vec way = drag({300, 220}, {350, 260}, {{20, -30, 10}, turn}, axis);
            EXPECT_GT(way.length(), 1);
            EXPECT_LT(way.cross(turn * axis).length(), 1e-3f * way.length() + 1e-3f);
        }
    }
}

TEST_F(GuiVisualTest, FromAboveTheXArrowFollowsTheCursorsXAndTheYArrowItsY) {
    lookFrom({0.5f, 0, 1000}, {0.5f, 0.001f, 0});
    const Pixel from = project({0, 0, 0}), to = project({30, 10, 0});
    ExpectNear(drag(from, to, {}, {1, 0, 0}), {30, 0, 0}, 0.05);
    ExpectNear(drag(from, to, {}, {0, 1, 0}), {0, 10, 0}, 0.05);
}

TEST_F(GuiVisualTest, OfTwoPlanesThatFaceTheCameraAlikeTheFirstIsTaken) {
    lookFrom({500, 0, 500}, {0, 0, 0});
    // Some pixel of the middle row is seen along equal x and z to the last bit.
    Pixel to{0, windowHeight / 2};
    const auto alike = [&] {
        const VecD direction = SightAt(to).direction;
        return std::abs(direction.x) == std::abs(direction.z);
    };
    while (to.x < windowWidth && !alike()) to.x += 0.125f;
    ASSERT_LT(to.x, windowWidth);
    const Pixel from{to.x + 60, to.y - 80};
    const Row first{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {1, 0, 0}};
    const Row second{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {1, 0, 0}};
    const VecD expected = DisplacementByRule(first, from, to, {}),
               other = DisplacementByRule(second, from, to, {});
    ASSERT_GT((expected - other).length(), 1);
    ExpectNear(drag(from, to, {}, {0, 1, 0}), expected, 0.05);
}

TEST_F(GuiVisualTest, OnlyComponentsAboveZeroMarkAnAxis) {
    lookFrom({900, -300, 250}, {0, 0, 0});
    const Vec x = drag({300, 220}, {350, 260}, {}, {0.001f, 0, 0});
    EXPECT_EQ(x, drag({300, 220}, {350, 260}, {}, {5, -1, 0}));
    EXPECT_EQ(x, drag({300, 220}, {350, 260}, {}, {1, 0, -3}));
}

TEST_F(GuiVisualTest, WithoutAMarkedAxisThePlaneHasNoNormal) {
    EXPECT_THAT(
        [] { (void)drag({300, 220}, {350, 260}, {}, {0, 0, 0}); },
        testing::ThrowsMessage<std::overflow_error>("0-length vector cannot be normalized."));
}

TEST_F(GuiVisualTest, ALineOfSightInThePlaneIsRefused) {
    // Both planes of z hold the line of sight that comes from above.
    lookFrom({0, 0, 1000}, {0, 0.001f, 0});
    EXPECT_THAT([] { (void)drag({320, 240}, {320, 240}, {}, {0, 0, 1}); },
                testing::ThrowsMessage<std::logic_error>("The line is parallel with the plane"));
}

}  // namespace vrn::test
