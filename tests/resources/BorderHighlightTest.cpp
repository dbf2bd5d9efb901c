#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The compositor manager's header does not stand alone.
#include <OgreTexture.h>

#include <OgreCamera.h>
#include <OgreCompositorManager.h>
#include <OgreEntity.h>
#include <OgreRenderTarget.h>
#include <OgreViewport.h>

#include "tests/resources/Stage.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

namespace {

constexpr const char* compositor = "BorderHighlight";
constexpr Ogre::uint8 selectedQueue = 51;

const Colour outline(0.56f, 0.86f, 1.0f);
const Ogre::Vector4 grey(0.5f, 0.5f, 0.5f, 1);

void Enable(Stage& stage, bool on) {
    Ogre::CompositorManager::getSingleton().setCompositorEnabled(stage.viewport, compositor, on);
}

}  // namespace

class BorderHighlight : public EngineTest {
protected:
    void addTo(Stage& scene) {
        auto& compositors = Ogre::CompositorManager::getSingleton();
        ASSERT_TRUE(compositors.addCompositor(scene.viewport, compositor, -1));
        Enable(scene, true);
        added.push_back(scene.viewport);
    }
    /// Before the scene goes.
    void removeFrom(Stage& scene) {
        Ogre::CompositorManager::getSingleton().removeCompositorChain(scene.viewport);
        std::erase(added, scene.viewport);
    }
    void TearDown() override {
        for (Ogre::Viewport* viewport : added)
            Ogre::CompositorManager::getSingleton().removeCompositorChain(viewport);
        EngineTest::TearDown();
    }
    /// A square of 60 pixels in the middle, in the queue of what is selected.
    static Ogre::Entity* addSelected(Stage& scene,
                                     const Ogre::Vector3& centre = Ogre::Vector3::ZERO) {
        Ogre::Entity* square = scene.addSquare("Body", 60, grey, centre);
        square->setRenderQueueGroup(selectedQueue);
        return square;
    }
    /// The length in pixels of the outline on the row through the middle, left of the square.
    static int widthLeftOf(const headless::Picture& picture, int edge) {
        int width = 0;
        for (int x = edge - 8; x < edge; ++x)
            if (Distance(ColourAt(picture, x, picture.getHeight() / 2), outline) < 0.25f) ++width;
        return width;
    }
    Stage stage;

private:
    std::vector<Ogre::Viewport*> added;
};

TEST_F(BorderHighlight, DrawsAnOutlineOfTwoPixelsRoundTheSelectedQueue) {
    addSelected(stage);
    addTo(stage);
    const headless::Picture picture = stage.render();
    EXPECT_THAT(Complaints(logLines()), ::testing::IsEmpty());
    EXPECT_NEAR(widthLeftOf(picture, 50), 2, 1);
    EXPECT_GE(widthLeftOf(picture, 50), 1);
    // All four sides, and nothing inside.
    EXPECT_LT(Distance(ColourAt(picture, 49, 60), outline), 0.1f);
    EXPECT_LT(Distance(ColourAt(picture, 110, 60), outline), 0.1f);
    EXPECT_LT(Distance(ColourAt(picture, 80, 29), outline), 0.1f);
    EXPECT_LT(Distance(ColourAt(picture, 80, 90), outline), 0.1f);
    EXPECT_LT(LitDistance(ColourAt(picture, 52, 60), {0.5f, 0.5f, 0.5f}), 0.05f);
    EXPECT_LT(Distance(ColourAt(picture, 40, 60), Colour(stageBackground.data())), 0.01f);
}

TEST_F(BorderHighlight, LeavesOtherQueuesAlone) {
    stage.addSquare("Body", 30, grey, {-40, 0, 0})->setRenderQueueGroup(50);
    stage.addSquare("Body", 30, grey, {40, 0, 0})->setRenderQueueGroup(52);
    const auto plain = stage.render().getPixels();
    addTo(stage);
    EXPECT_TRUE(stage.render().getPixels() == plain);
}

TEST_F(BorderHighlight, ShowsNothingWhileDisabled) {
    addSelected(stage);
    const auto plain = stage.render().getPixels();
    addTo(stage);
    EXPECT_FALSE(stage.render().getPixels() == plain);
    Enable(stage, false);
    EXPECT_TRUE(stage.render().getPixels() == plain);
}

TEST_F(BorderHighlight, ShowsWhereTheSelectedStandsBehindOthers) {
    addSelected(stage, {0, 0, -100});
    stage.addSquare("Body", 110, {0.2f, 0.4f, 0.8f, 1}, {0, 0, 100});
    addTo(stage);
    EXPECT_GE(CountOf(stage.render(), outline, 0.2f), 150);
}

TEST_F(BorderHighlight, GoesRoundTheSilhouetteInTheWireModeToo) {
    addSelected(stage);
    addTo(stage);
    const int solid = CountOf(stage.render(), outline, 0.2f);
    stage.camera->setPolygonMode(Ogre::PM_WIREFRAME);
    EXPECT_NEAR(CountOf(stage.render(), outline, 0.2f), solid, 4);
}

TEST_F(BorderHighlight, IsAsWideInAViewportOfAnySize) {
    for (const auto& [width, height] :
         {std::pair(64, 200), std::pair(333, 77), std::pair(640, 480)}) {
        Stage sized(width, height);
        addSelected(sized);
        addTo(sized);
        const headless::Picture picture = sized.render();
        EXPECT_GE(CountOf(picture, outline, 0.25f), 2 * 60) << width;
        removeFrom(sized);
    }
}

TEST_F(BorderHighlight, FollowsAViewportThatChangesItsSize) {
    addSelected(stage);
    addTo(stage);
    stage.render();
    stage.viewport->setDimensions(0, 0, 0.5f, 0.5f);
    const headless::Picture picture = stage.render();
    // The same view at half the size: the square is 30 pixels wide, and the line as wide as before.
    EXPECT_LT(Distance(ColourAt(picture, 24, 30), outline), 0.2f);
    EXPECT_LT(LitDistance(ColourAt(picture, 27, 30), {0.5f, 0.5f, 0.5f}), 0.05f);
    EXPECT_LT(Distance(ColourAt(picture, 19, 30), Colour(stageBackground.data())), 0.02f);
}

TEST_F(BorderHighlight, OutlinesEveryLookOfASelectedBody) {
    for (const char* material :
         {"BodySelected", "MechanismSelected", "KUKASelected", "CollisionContact", "TransBody"}) {
        Stage one;
        Ogre::Entity* square = one.addSquare(material, 60, grey);
        square->setRenderQueueGroup(selectedQueue);
        addTo(one);
        const headless::Picture picture = one.render();
        EXPECT_LT(Distance(ColourAt(picture, 49, 60), outline), 0.1f) << material;
        removeFrom(one);
    }
}

}  // namespace vrn::test
