#include "view/UpAxis.h"

#include <gtest/gtest.h>

namespace vrn::visual {

namespace {

void ExpectTurn(int verticalDir, const Ogre::Vector3& from, const Ogre::Vector3& to) {
    const Ogre::Vector3 is = UpAxisTurn(verticalDir) * from;
    EXPECT_NEAR(is.x, to.x, 1e-6f);
    EXPECT_NEAR(is.y, to.y, 1e-6f);
    EXPECT_NEAR(is.z, to.z, 1e-6f);
}

}  // namespace

TEST(UpAxis, IsTheAxisOfTheNumber) {
    EXPECT_EQ(UpAxis(0), Ogre::Vector3::UNIT_X);
    EXPECT_EQ(UpAxis(1), Ogre::Vector3::UNIT_Y);
    EXPECT_EQ(UpAxis(2), Ogre::Vector3::UNIT_Z);
}

TEST(UpAxis, AnyOtherNumberCountsAsZ) {
    for (const int dir : {-1, 3, 1000}) {
        EXPECT_EQ(UpAxis(dir), Ogre::Vector3::UNIT_Z);
        EXPECT_EQ(UpAxisTurn(dir), Ogre::Quaternion::IDENTITY);
    }
}

TEST(UpAxis, TurnsAreTheGivenQuaternions) {
    EXPECT_EQ(UpAxisTurn(0), Ogre::Quaternion(0.5f, 0.5f, 0.5f, 0.5f));
    EXPECT_EQ(UpAxisTurn(1), Ogre::Quaternion(-0.5f, 0.5f, 0.5f, 0.5f));
    EXPECT_EQ(UpAxisTurn(2), Ogre::Quaternion::IDENTITY);
}

TEST(UpAxis, TurnTakesZToTheVerticalAndKeepsTheAxesInOrder) {
    ExpectTurn(0, Ogre::Vector3::UNIT_Z, Ogre::Vector3::UNIT_X);
    ExpectTurn(0, Ogre::Vector3::UNIT_X, Ogre::Vector3::UNIT_Y);
    ExpectTurn(0, Ogre::Vector3::UNIT_Y, Ogre::Vector3::UNIT_Z);
    ExpectTurn(1, Ogre::Vector3::UNIT_Z, Ogre::Vector3::UNIT_Y);
    ExpectTurn(1, Ogre::Vector3::UNIT_X, Ogre::Vector3::UNIT_Z);
    ExpectTurn(1, Ogre::Vector3::UNIT_Y, Ogre::Vector3::UNIT_X);
}

}  // namespace vrn::visual
