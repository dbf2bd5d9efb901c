#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>

#include "mesh/DynamicLines.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Frame.h"
#include "tests/support/EngineFixture.h"
#include "visual/station/FrameVisual.h"

namespace vrn::test {

namespace {

using Pos = rob::PosTemplate<float>;
using selection::VisualSelection;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using visual::DynamicLines;
using visual::FrameVisual;
using visual::RenderOpType;
using visual::Visual;

const DynamicLines& Axis(const FrameVisual* frame, std::size_t axis) {
    return *frame->getLines().at(axis);
}

/// How long each axis is drawn; fails unless they are alike and lie on the axes.
float SizeOf(const FrameVisual* frame) {
    EXPECT_EQ(frame->getLines().size(), 3u);
    const float size = Axis(frame, 0).getPoints().back().x;
    EXPECT_EQ(Axis(frame, 0).getPoints().back(), (Pos{size, 0, 0}));
    EXPECT_EQ(Axis(frame, 1).getPoints().back(), (Pos{0, size, 0}));
    EXPECT_EQ(Axis(frame, 2).getPoints().back(), (Pos{0, 0, size}));
    return size;
}

std::vector<std::string> MaterialsOf(const FrameVisual* frame) {
    std::vector<std::string> names;
    for (const auto& line : frame->getLines()) names.push_back(line->getMaterial()->getName());
    return names;
}

const auto normalLook = ElementsAre("RedFrameLine", "GreenFrameLine", "BlueFrameLine");
const auto selectedLook =
    ElementsAre("RedFrameLineSelected", "GreenFrameLineSelected", "BlueFrameLineSelected");
const auto highlightedLook = ElementsAre("WhiteFrameLine", "WhiteFrameLine", "WhiteFrameLine");

}  // namespace

class FrameVisuals : public EngineTest {
protected:
    static Visual* root() { return scene().root; }
};

// --- forms

TEST_F(FrameVisuals, AnAnonymousTriadHasTheGivenSize) {
    const auto* frame = new FrameVisual(root(), 25.0f);
    EXPECT_EQ(frame->type, VisualType::Frame);
    EXPECT_GE(frame->id, sdf::SdfManager::firstTransientId);
    EXPECT_EQ(frame->getName(), "__FRAME_" + std::to_string(frame->id) + "__");
    EXPECT_EQ(SizeOf(frame), 25.0f);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(Axis(frame, i).getOpType(), RenderOpType::LineList);
        EXPECT_EQ(Axis(frame, i).getPoints().size(), 2u);
        EXPECT_EQ(Axis(frame, i).getPoints().front(), (Pos{0, 0, 0}));
        EXPECT_FALSE(Axis(frame, i).isDirty());
    }
    EXPECT_EQ(frame->node->numAttachedObjects(), 3u);
    EXPECT_THAT(MaterialsOf(frame), normalLook);
}

TEST_F(FrameVisuals, TheSizeComesFromTheSettingOfTheType) {
    const auto sizeOf = [](VisualType type) {
        return SizeOf(new FrameVisual(root(), 0, "sized", type));
    };
    scene().settings.frameSize = 11;
    scene().settings.tcpFrameSize = 12;
    scene().settings.robTargetFrameSize = 13;
    scene().settings.jointTargetFrameSize = 14;
    scene().settings.wobjFrameSize = 15;
    EXPECT_EQ(sizeOf(VisualType::Frame), 11);
    EXPECT_EQ(sizeOf(VisualType::Tcp), 12);
    EXPECT_EQ(sizeOf(VisualType::RobTarget), 13);
    EXPECT_EQ(sizeOf(VisualType::JointTarget), 14);
    EXPECT_EQ(sizeOf(VisualType::WObjUserFrame), 15);
    EXPECT_EQ(sizeOf(VisualType::WObjObjectFrame), 15);
    EXPECT_EQ(sizeOf(VisualType::WObj), 0);
    EXPECT_EQ(sizeOf(VisualType::Sensor), 0);
    EXPECT_EQ(sizeOf(VisualType::Helper), 0);
}

TEST_F(FrameVisuals, ATypeOfZeroStandsForAFrame) {
    const auto* plain = new FrameVisual(root(), 7, "plain", VisualType::None);
    const auto* dashed = new FrameVisual(root(), "dashed", VisualType::None, 2);
    for (const FrameVisual* frame : {plain, dashed}) {
        EXPECT_EQ(frame->type, VisualType::Frame);
        EXPECT_EQ(SizeOf(frame), 100);
    }
}

TEST_F(FrameVisuals, ATypeWithoutASizeDrawsNothingWithoutComplaint) {
    new FrameVisual(root(), 7, "sizeless", VisualType::Wrist);
    EXPECT_NO_THROW(frame());
}

TEST_F(FrameVisuals, WithoutANameTheIdMakesOne) {
    EXPECT_EQ((new FrameVisual(root(), 42, "", VisualType::Frame))->getName(), "__FRAME_42__");
    EXPECT_EQ((new FrameVisual(root(), 42, "Tool Frame", VisualType::Frame))->getName(),
              "Tool Frame");
    const auto* dashed = new FrameVisual(root(), "", VisualType::Frame, 2);
    EXPECT_EQ(dashed->getName(), "__FRAME_" + std::to_string(dashed->id) + "__");
}

TEST_F(FrameVisuals, SeveralMayCarryOneName) {
    const auto* first = new FrameVisual(root(), 0, "Local Frame", VisualType::Frame);
    const auto* second = new FrameVisual(root(), 0, "Local Frame", VisualType::Frame);
    const auto* dashed = new FrameVisual(root(), "Local Frame", VisualType::Frame, 3);
    for (const FrameVisual* frame : {first, second, dashed})
        EXPECT_EQ(frame->getName(), "Local Frame");
    EXPECT_EQ(first->id, 0u);
    EXPECT_EQ(second->id, 0u);
    EXPECT_GE(dashed->id, sdf::SdfManager::firstTransientId);
    EXPECT_FALSE(scene().visuals.contains(0));
}

// --- dashes

TEST(FrameDashes, OneDashIsAPlainLine) {
    EXPECT_THAT(FrameVisual::dashPoints(100, 1), ElementsAre(0, 100));
}

TEST(FrameDashes, NoDashesCountAsOne) {
    EXPECT_THAT(FrameVisual::dashPoints(100, 0), ElementsAre(0, 100));
}

TEST(FrameDashes, ThreeDashesOf100HaveAUnitOf100Over6854AndEndAt100) {
    // unit = 14.590; 0 | 23.6 -> 23 | 37.59 -> 37 | 60.6 -> 60 | 74.59 -> 74 | 100
    EXPECT_THAT(FrameVisual::dashPoints(100, 3), ElementsAre(0, 23, 37, 60, 74, 100));
}

TEST(FrameDashes, EachEndIsTruncatedFromTheTruncatedOneBefore) {
    for (const double size : {1.0, 33.0, 250.0, 999.5}) {
        for (unsigned n = 1; n < 12; ++n) {
            const std::vector<float> points = FrameVisual::dashPoints(size, n);
            ASSERT_EQ(points.size(), 2 * n);
            const double unit = size / (n * 2.618 - 1);
            EXPECT_EQ(points.front(), 0.0f);
            EXPECT_EQ(points.back(), static_cast<float>(size));
            for (unsigned i = 1; i + 1 < points.size(); ++i) {
                const double step = i % 2 ? 1.618 * unit : unit;
                EXPECT_EQ(points[i], std::trunc(static_cast<double>(points[i - 1]) + step));
            }
        }
    }
}

TEST_F(FrameVisuals, ADashedTriadDrawsTheDashesOnEachAxis) {
    const auto* frame = new FrameVisual(root(), "dashed", VisualType::Frame, 3);
    const std::vector<float> dashes{0, 23, 37, 60, 74, 100};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        std::vector<Pos> expected;
        for (const float p : dashes)
            expected.push_back({axis == 0 ? p : 0, axis == 1 ? p : 0, axis == 2 ? p : 0});
        EXPECT_EQ(Axis(frame, axis).getPoints(), expected);
        EXPECT_EQ(Axis(frame, axis).getOpType(), RenderOpType::LineList);
    }
    EXPECT_THAT(MaterialsOf(frame), normalLook);
}

// --- size

TEST_F(FrameVisuals, SettingTheSizeMovesTheEndsAndSendsThem) {
    auto* frame = new FrameVisual(root(), 25.0f);
    frame->setFrameSize(70);
    EXPECT_EQ(SizeOf(frame), 70);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(Axis(frame, i).getPoints().front(), (Pos{0, 0, 0}));
        EXPECT_FALSE(Axis(frame, i).isDirty());
    }
}

TEST_F(FrameVisuals, OnADashedTriadOnlyTheFirstDashFollows) {
    auto* frame = new FrameVisual(root(), "dashed", VisualType::Frame, 3);
    frame->setFrameSize(500);
    EXPECT_THAT(Axis(frame, 2).getPoints(),
                ElementsAre(Pos{0, 0, 0}, Pos{0, 0, 500}, Pos{0, 0, 37}, Pos{0, 0, 60},
                            Pos{0, 0, 74}, Pos{0, 0, 100}));
}

TEST_F(FrameVisuals, AHiddenTriadTakesItsNewSizeWhenItIsShown) {
    auto* frame = new FrameVisual(root(), 25.0f);
    frame->setVisible(false, false);
    frame->setFrameSize(70);
    EXPECT_TRUE(Axis(frame, 0).isDirty());
    frame->setVisible(true, false);
    EXPECT_FALSE(Axis(frame, 0).isDirty());
    EXPECT_EQ(SizeOf(frame), 70);
}

// --- looks

TEST_F(FrameVisuals, EachStateHasItsMaterials) {
    auto* frame = new FrameVisual(root(), 25.0f);
    frame->setSelected();
    EXPECT_THAT(MaterialsOf(frame), selectedLook);
    frame->setHighlighted();
    EXPECT_THAT(MaterialsOf(frame), highlightedLook);
    frame->resetAppearance();
    EXPECT_THAT(MaterialsOf(frame), normalLook);
    frame->setSelected();
    frame->clearHighlightOrSelect();
    EXPECT_THAT(MaterialsOf(frame), normalLook);
}

TEST_F(FrameVisuals, AFrameOfTheStationFollowsHighlightAndSelection) {
    auto* node = model.make<layout::Frame>("user frame");
    FrameVisual::Build(root(), node);
    auto* frame = dynamic_cast<FrameVisual*>(scene().visuals.at(node->id));
    scene().setVisualHighlighted(frame);
    pump();
    EXPECT_THAT(MaterialsOf(frame), highlightedLook);
    scene().setVisualSelected(frame);
    pump();
    EXPECT_THAT(MaterialsOf(frame), selectedLook);
    scene().clearSelections();
    pump();
    EXPECT_THAT(MaterialsOf(frame), normalLook);
}

TEST_F(FrameVisuals, TheAxesAreRedGreenAndBlueInThePicture) {
    new FrameVisual(root(), 100.0f);
    for (Visual* other : root()->getChildren()) other->setVisible(false, true);
    auto* shown = new FrameVisual(root(), 200.0f);
    lookFrom({600, 500, 400}, {60, 60, 60});
    const headless::Picture picture = frame();
    const auto strongest = [&](const Pos& at) {
        const auto p = project(at);
        headless::Rgba most{};
        int best = -1;
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx) {
                const auto c = picture.at(static_cast<int>(p.x) + dx, static_cast<int>(p.y) + dy);
                const int spread = std::max({c.r, c.g, c.b}) - std::min({c.r, c.g, c.b});
                if (spread > best) best = spread, most = c;
            }
        return most;
    };
    const auto x = strongest({150, 0, 0}), y = strongest({0, 150, 0}), z = strongest({0, 0, 150});
    EXPECT_TRUE(x.r > x.g && x.r > x.b);
    EXPECT_TRUE(y.g > y.r && y.g > y.b);
    EXPECT_TRUE(z.b > z.r && z.b > z.g);
    scene().deleteVisual(shown);
    for (Visual* other : root()->getChildren()) other->setVisible(true, true);
}

// --- builders

TEST_F(FrameVisuals, APreviewFrameIsHiddenSelectedAndInNoRegistry) {
    const auto registered = scene().visuals;
    for (const unsigned dashes : {1u, 3u}) {
        const FrameVisual* frame = FrameVisual::Build(root(), dashes);
        EXPECT_EQ(frame->getName(), "frame");
        EXPECT_EQ(frame->type, VisualType::Frame);
        EXPECT_FALSE(frame->visible);
        EXPECT_FALSE(frame->node->getAttachedObject(0)->getVisible());
        EXPECT_THAT(MaterialsOf(frame), selectedLook);
        EXPECT_EQ(Axis(frame, 0).getPoints().size(), 2 * dashes);
    }
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(FrameVisuals, ATaskFrameIsRegisteredButNotPickable) {
    const std::uint32_t id = sdf::SdfManager::inst()->generateId();
    FrameVisual::Build(root(), id, {{1, 2, 3}, {0, 1, 0, 0}});
    const Visual* frame = scene().visuals.at(id);
    EXPECT_EQ(frame->getName(), "task frame for controller");
    EXPECT_EQ(frame->type, VisualType::Frame);
    EXPECT_EQ(frame->getPose(), (rob::PoseTemplate<float>{{1, 2, 3}, {0, 1, 0, 0}}));
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(FrameVisuals, TwoRobotsHaveATaskFrameEach) {
    for (int i = 0; i < 2; ++i) {
        const std::uint32_t id = sdf::SdfManager::inst()->generateId();
        FrameVisual::Build(root(), id, {});
        EXPECT_EQ(scene().visuals.at(id)->getName(), "task frame for controller");
    }
}

TEST_F(FrameVisuals, AFrameOfTheStationIsRegisteredAndPickable) {
    auto* node = model.make<layout::Frame>("user frame");
    node->setPose({{1.5, 2.5, 3.5}, {0, 0, 1, 0}});
    FrameVisual::Build(root(), node);
    auto* frame = scene().visuals.at(node->id);
    EXPECT_EQ(frame->id, node->id);
    EXPECT_EQ(frame->getName(), "user frame");
    EXPECT_EQ(frame->getPose(), (rob::PoseTemplate<float>{{1.5f, 2.5f, 3.5f}, {0, 0, 1, 0}}));
    EXPECT_TRUE(VisualSelection::Get()->hasVisual(frame));
}

TEST_F(FrameVisuals, APoseThatIsRefusedLeavesNothing) {
    const auto registered = scene().visuals;
    const std::vector<Visual*> children = root()->getChildren();
    const rob::PoseTemplate<double> broken{{std::numeric_limits<double>::quiet_NaN(), 0, 0}, {}};
    auto* node = model.make<layout::Frame>("user frame");
    node->setPose(broken);
    EXPECT_THROW(FrameVisual::Build(root(), node), std::invalid_argument);
    scene().addTaskFrame(sdf::SdfManager::inst()->generateId(), broken);
    EXPECT_THROW(scene().processMsgs(), std::invalid_argument);
    EXPECT_EQ(scene().visuals, registered);
    EXPECT_EQ(root()->getChildren(), children);
    EXPECT_EQ(pickableCount(), 0u);
}

TEST_F(FrameVisuals, AFrameWithoutANameIsNamedByItsId) {
    auto* node = model.make<layout::Frame>("");
    FrameVisual::Build(root(), node);
    EXPECT_EQ(scene().visuals.at(node->id)->getName(),
              "__FRAME_" + std::to_string(node->id) + "__");
}

}  // namespace vrn::test
