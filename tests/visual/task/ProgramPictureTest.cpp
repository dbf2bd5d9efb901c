#include <cstdlib>

#include <gmock/gmock.h>

#include "tests/visual/task/ProgramFixture.h"
#include "view/Grid.h"

namespace vrn::test {

class ProgramPictures : public Programs {
protected:
    /// The colour of path lines and arrows, lit or not.
    static bool isYellow(const headless::Rgba& c) { return c.r > c.b + 60 && c.g > c.b + 40; }
    /// Whether there is such a pixel within two of where the point is drawn.
    static bool hasYellowAt(const headless::Picture& picture, const Pos& world) {
        const auto pixel = project(world);
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx)
                if (isYellow(
                        picture.at(static_cast<int>(pixel.x) + dx, static_cast<int>(pixel.y) + dy)))
                    return true;
        return false;
    }
    /// Writes the picture where the environment variable VRN_KEEP_PICTURES names a folder.
    static void keep(const headless::Picture& picture, const std::string& name) {
        if (const char* kept = std::getenv("VRN_KEEP_PICTURES"))
            picture.savePng(std::filesystem::path(kept) / (name + ".png"));
    }
};

TEST_F(ProgramPictures, EveryKindOfSegmentIsDrawnWhereItLeads) {
    scene().settings.drawPathArrow = true;
    scene().settings.drawTargetVisual = true;
    scene().settings.robTargetFrameSize = 25;
    scene().grid->visual->setVisible(false, /*cascade=*/true);
    lookFrom({50, 0, 650}, {50, 0, 0});
    addLinear({-200, -100, 0});
    addLinear({0, -100, 0});
    addCircular({100, 0, 0}, {0, 100, 0});
    addJoint({-200, 100, 0});
    addLinear({-200, 200, 0});
    addJointTarget({100, 200, 0});
    addLinear({200, 200, 0});
    addLinear({250, -150, 0});
    showPath();
    const headless::Picture picture = frame();
    keep(picture, "program");
    scene().grid->visual->setVisible(true, /*cascade=*/true);
    EXPECT_TRUE(hasYellowAt(picture, {-150, -100, 0}));     // straight
    EXPECT_TRUE(hasYellowAt(picture, {70.7f, -70.7f, 0}));  // on the arc
    EXPECT_FALSE(hasYellowAt(picture, {0, 50, 0}));         // on its chord
    EXPECT_TRUE(hasYellowAt(picture, {-15, 100, 0}));       // first dash
    EXPECT_FALSE(hasYellowAt(picture, {-35, 100, 0}));      // first gap
    EXPECT_TRUE(hasYellowAt(picture, {-100, 100, 0}));      // the arrow of the dashed way
    EXPECT_FALSE(hasYellowAt(picture, {0, 200, 0}));        // to the joint target
    EXPECT_FALSE(hasYellowAt(picture, {150, 200, 0}));      // and from it
    EXPECT_TRUE(hasYellowAt(picture, {225, 25, 0}));
}

TEST_F(ProgramPictures, APathFollowsItsWorkObjectInTheNextFrame) {
    lookFrom({0, 0, 650}, {0, 0, 0});
    scene().settings.drawPathArrow = true;
    addLinear({-100, 50, 20});
    addLinear({100, 50, 20});
    showPath();
    EXPECT_TRUE(hasYellowAt(frame(), {-50, 50, 20}));
    scene().setVisualPose(wobj->id, {{0, -120, 0}, {}});
    const headless::Picture moved = frame();
    EXPECT_FALSE(hasYellowAt(moved, {-50, 50, 20}));
    EXPECT_TRUE(hasYellowAt(moved, {-50, -70, 20}));
    EXPECT_TRUE(hasYellowAt(moved, {0, -70, 20}));
}

}  // namespace vrn::test
