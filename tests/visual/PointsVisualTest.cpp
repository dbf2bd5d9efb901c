#include "visual/geometry/PointsVisual.h"

#include <limits>

#include <gtest/gtest.h>

#include <OgreManualObject.h>
#include <OgreMaterial.h>
#include <OgreSceneNode.h>

#include "tests/visual/StationFixture.h"

namespace vrn::test {

using visual::PointsVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

class PointsVisuals : public StationVisuals {
protected:
    static Ogre::ManualObject& pictureOf(const Visual* visual) {
        return dynamic_cast<Ogre::ManualObject&>(*visual->node->getAttachedObject(0));
    }
};

TEST_F(PointsVisuals, ASetOfPointsIsOnePictureInOneColour) {
    const auto before = traces();
    const std::vector<Pos> points{{0, 0, 0}, {1, 2, 3}, {-1, 5, 0}};
    auto* visual = new PointsVisual(root(), points, {0.2f, 0.4f, 0.6f});
    EXPECT_EQ(visual->type, VisualType::None);
    EXPECT_EQ(visual->getPoints(), points);
    EXPECT_EQ(traces().registered, before.registered);
    EXPECT_FALSE(isPickable(visual));
    Ogre::ManualObject& picture = pictureOf(visual);
    ASSERT_EQ(picture.getNumSections(), 1u);
    EXPECT_EQ(picture.getSection(0)->getMaterial()->getName(), "PointPreview");
    EXPECT_EQ(picture.getSection(0)->getCustomParameter(0), Ogre::Vector4(0.2f, 0.4f, 0.6f, 1));
    EXPECT_EQ(picture.getBoundingBox().getMinimum(), Ogre::Vector3(-1, 0, 0));
    EXPECT_EQ(picture.getBoundingBox().getMaximum(), Ogre::Vector3(1, 5, 3));
    visual->setSelected();
    EXPECT_EQ(picture.getSection(0)->getMaterial()->getName(), "PointPreview");
}

TEST_F(PointsVisuals, TheColourCanBeChanged) {
    PointsVisual visual(root(), {{0, 0, 0}}, {1, 1, 1});
    visual.setColor({0.5f, 0, 0}, 0.25f);
    EXPECT_EQ(pictureOf(&visual).getSection(0)->getCustomParameter(0),
              Ogre::Vector4(0.5f, 0, 0, 0.25f));
}

TEST_F(PointsVisuals, WithoutPointsNothingIsDrawnAndNothingHarmed) {
    PointsVisual visual(root(), {}, {1, 1, 1});
    EXPECT_EQ(pictureOf(&visual).getNumSections(), 0u);
    visual.setColor({1, 0, 0}, 1);
    EXPECT_NO_THROW(frame());
}

TEST_F(PointsVisuals, PointsThatAreNotFiniteAreLeftOut) {
    const float inf = std::numeric_limits<float>::infinity();
    PointsVisual visual(root(), {{1, 1, 1}, {inf, 0, 0}, {0, -3e38f, 0}, {2, 2, 2}}, {1, 1, 1});
    EXPECT_EQ(pictureOf(&visual).getBoundingBox().getMaximum(), Ogre::Vector3(2, 2, 2));
    EXPECT_EQ(visual.getPoints().size(), 4u);
    EXPECT_NO_THROW(frame());
}

}  // namespace vrn::test
