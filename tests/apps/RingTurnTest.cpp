#include "apps/vrnview/drive/RingTurn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace vrn::test {
namespace {

using host::RingTurn;
using host::SightLine;
using Pos = rob::PosTemplate<double>;
using Vec = rob::Vec3Template<double>;

constexpr double pi = std::numbers::pi;

/// From a viewer high above and aside.
SightLine Towards(const Pos& point) {
    const Pos eye{100, -200, 500};
    return {eye, point - eye};
}

Pos OnRing(double angle) { return {30 * std::cos(angle), 30 * std::sin(angle), 0}; }

TEST(RingTurn, ThePointThatIsHeldStaysUnderTheCursor) {
    RingTurn turn({0, 0, 0}, {0, 0, 1}, OnRing(0.3), Towards(OnRing(0.3)));
    EXPECT_NEAR(turn.follow(Towards(OnRing(1.0))), 0.7, 1e-9);
    EXPECT_NEAR(turn.follow(Towards(OnRing(0.1))), -0.2, 1e-9);
    // Nearer to the middle is no turn.
    EXPECT_NEAR(turn.follow(Towards({10 * std::cos(0.1), 10 * std::sin(0.1), 0})), -0.2, 1e-9);
}

TEST(RingTurn, TurnsAddUpPastAFullOne) {
    RingTurn turn({0, 0, 0}, {0, 0, 1}, OnRing(0), Towards(OnRing(0)));
    double total = 0;
    for (int step = 1; step <= 30; ++step) total = turn.follow(Towards(OnRing(step * pi / 10)));
    EXPECT_NEAR(total, 3 * pi, 1e-9);
    for (int step = 29; step >= -10; --step) total = turn.follow(Towards(OnRing(step * pi / 10)));
    EXPECT_NEAR(total, -pi, 1e-9);
}

TEST(RingTurn, AnAxisTheOtherWayTurnsTheOtherWay) {
    RingTurn turn({0, 0, 0}, {0, 0, -1}, OnRing(0), Towards(OnRing(0)));
    EXPECT_NEAR(turn.follow(Towards(OnRing(0.5))), -0.5, 1e-9);
}

TEST(RingTurn, ALineThatMissesThePlaneLeavesTheTurn) {
    RingTurn turn({0, 0, 0}, {0, 0, 1}, OnRing(0), Towards(OnRing(0)));
    (void)turn.follow(Towards(OnRing(0.5)));
    EXPECT_NEAR(turn.follow({{0, 0, 500}, {1, 0, 1}}), 0.5, 1e-9);
    EXPECT_NEAR(turn.follow({{0, 0, 500}, {1, 0, 0}}), 0.5, 1e-9);
}

TEST(RingTurn, OfARingSeenFromTheEdgeTheNearSideFollowsTheCursor) {
    // The viewer stands in the plane of the ring, at -y; the near side is at (0, -30, 0).
    const auto at = [](double x) { return SightLine{{0, -500, 0}, {x, 470, 0}}; };
    RingTurn turn({0, 0, 0}, {0, 0, 1}, {0, -30, 0}, at(0));
    EXPECT_NEAR(turn.follow(at(15)), 0.5, 1e-9);
    EXPECT_NEAR(turn.follow(at(-3)), -0.1, 1e-9);
}

TEST(RingTurn, ARingSeenAlongItsPlaneIsHeldByItsRadiusAlone) {
    const auto at = [](double x) { return SightLine{{0, -500, 0}, {x, 470, 40}}; };
    RingTurn turn({0, 0, 0}, {0, 0, 1}, {0, -30, 40}, at(0));
    EXPECT_NEAR(turn.follow(at(15)), 0.5, 1e-9);
}

}  // namespace
}  // namespace vrn::test
