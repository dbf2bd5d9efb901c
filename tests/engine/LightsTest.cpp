#include <array>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <OgreException.h>
#include <OgreLight.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "suite/broker/SignalBroker.h"
#include "tests/support/EngineFixture.h"

namespace vrn::test {

namespace {

struct LightRow {
    const char* name;
    float diffuse;
    float specular;
    Ogre::Vector3 direction;
};

const std::array lightRows{
    LightRow{"light1", 0.3f, 0.3f, {-1.5f, 0.0f, 0.3f}},
    LightRow{"light2", 0.4f, 0.3f, {0.5f, -1.0f, 1.0f}},
    LightRow{"light3", 0.3f, 0.25f, {2.0f, 1.0f, 1.75f}},
    LightRow{"light4", 0.1f, 0.0f, {0.0f, 0.0f, -1.0f}},
};

Ogre::ColourValue Grey(float level) { return Ogre::ColourValue(level, level, level, 1.0f); }

Ogre::Light* FindLight(const std::string& name) {
    return visual::Scene::Get()->sceneManager->getLight(name);
}

void ExpectDirection(const Ogre::Light* light, Ogre::Vector3 expected) {
    expected.normalise();
    const Ogre::Vector3 is = light->getDerivedDirection();
    EXPECT_NEAR(is.x, expected.x, 1e-5) << light->getName();
    EXPECT_NEAR(is.y, expected.y, 1e-5) << light->getName();
    EXPECT_NEAR(is.z, expected.z, 1e-5) << light->getName();
}

}  // namespace

/// Puts the lights back as they were.
class Lights : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        ambient = scene().sceneManager->getAmbientLight();
        for (std::size_t i = 0; i < lightRows.size(); ++i) {
            const Ogre::Light* light = FindLight(lightRows[i].name);
            saved[i] = {light->getParentSceneNode()->getOrientation(), light->getDiffuseColour(),
                        light->getSpecularColour()};
        }
    }
    void TearDown() override {
        scene().sceneManager->setAmbientLight(ambient);
        for (std::size_t i = 0; i < lightRows.size(); ++i) {
            Ogre::Light* light = FindLight(lightRows[i].name);
            light->getParentSceneNode()->setOrientation(saved[i].orientation);
            light->setDiffuseColour(saved[i].diffuse);
            light->setSpecularColour(saved[i].specular);
            light->setVisible(true);
        }
        EngineTest::TearDown();
    }

private:
    struct State {
        Ogre::Quaternion orientation;
        Ogre::ColourValue diffuse, specular;
    };
    std::array<State, lightRows.size()> saved;
    Ogre::ColourValue ambient;
};

TEST_F(Lights, FourDirectionalOnesHaveTheirNamesAndColours) {
    for (const LightRow& row : lightRows) {
        const Ogre::Light* light = FindLight(row.name);
        EXPECT_EQ(light->getType(), Ogre::Light::LT_DIRECTIONAL) << row.name;
        EXPECT_EQ(light->getDiffuseColour(), Grey(row.diffuse)) << row.name;
        EXPECT_EQ(light->getSpecularColour(), Grey(row.specular)) << row.name;
        EXPECT_TRUE(light->getVisible()) << row.name;
    }
}

TEST_F(Lights, ShineInTheDirectionsOfAZUpWorld) {
    ASSERT_EQ(scene().settings.verticalDir, 2);
    for (const LightRow& row : lightRows) ExpectDirection(FindLight(row.name), row.direction);
}

TEST_F(Lights, HangOnANodeEachDirectlyUnderTheRoot) {
    std::set<Ogre::SceneNode*> nodes;
    for (const LightRow& row : lightRows) {
        Ogre::SceneNode* node = FindLight(row.name)->getParentSceneNode();
        EXPECT_EQ(node->getParentSceneNode(), scene().sceneManager->getRootSceneNode());
        nodes.insert(node);
    }
    EXPECT_EQ(nodes.size(), lightRows.size());
}

TEST_F(Lights, AmbientIsThreeTenthsOfWhite) {
    EXPECT_EQ(scene().sceneManager->getAmbientLight(), Grey(0.3f));
}

TEST_F(Lights, AmbientGoesToTheSceneAtOnceAndSignals) {
    int signals = 0;
    const auto subscription = broker::SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setAmbientLight(Ogre::ColourValue(0.1f, 0.2f, 0.3f, 0.5f));
    EXPECT_EQ(scene().sceneManager->getAmbientLight(), Ogre::ColourValue(0.1f, 0.2f, 0.3f, 0.5f));
    EXPECT_EQ(signals, 1);
}

TEST_F(Lights, DirectionIsTakenAsItStandsInAYUpWorld) {
    scene().settings.verticalDir = 1;
    scene().setLightDir(1, 1.0f, 2.0f, -2.0f);
    ExpectDirection(FindLight("light1"), {1.0f, 2.0f, -2.0f});
    scene().setLightDir(1, 0.0f, 0.0f,
                        1.0f);  // straight against the direction that a node starts with
    ExpectDirection(FindLight("light1"), {0.0f, 0.0f, 1.0f});
}

TEST_F(Lights, DirectionOfZeroLengthIsIgnored) {
    scene().setLightDir(2, 0.0f, 3.0f, 4.0f);
    scene().setLightDir(2, 0.0f, 0.0f, 0.0f);
    ExpectDirection(FindLight("light2"), {0.0f, 3.0f, 4.0f});
}

TEST_F(Lights, EachIndexMeansTheLightOfThatNumber) {
    for (int index = 1; index <= 4; ++index) {
        const auto level = static_cast<float>(index) / 8;
        scene().setLightDiffuse(index, level, 0, 0);
    }
    for (int index = 1; index <= 4; ++index)
        EXPECT_EQ(FindLight("light" + std::to_string(index))->getDiffuseColour(),
                  Ogre::ColourValue(static_cast<float>(index) / 8, 0, 0));
}

TEST_F(Lights, SettersChangeOneLightAtOnceAndSignalEach) {
    int signals = 0;
    const auto subscription = broker::SignalBroker::onUpdateScene([&] { ++signals; });
    scene().setLightDir(3, 1, 0, 0);
    EXPECT_EQ(signals, 1);
    scene().setLightEnable(3, false);
    EXPECT_EQ(signals, 2);
    EXPECT_FALSE(FindLight("light3")->getVisible());
    scene().setLightEnable(3, true);
    EXPECT_EQ(signals, 3);
    EXPECT_TRUE(FindLight("light3")->getVisible());
    scene().setLightDiffuse(3, 0.1f, 0.2f, 0.3f);
    EXPECT_EQ(signals, 4);
    EXPECT_EQ(FindLight("light3")->getDiffuseColour(), Ogre::ColourValue(0.1f, 0.2f, 0.3f));
    scene().setLightSpecular(3, 0.4f, 0.5f, 0.6f);
    EXPECT_EQ(signals, 5);
    EXPECT_EQ(FindLight("light3")->getSpecularColour(), Ogre::ColourValue(0.4f, 0.5f, 0.6f));
    EXPECT_EQ(FindLight("light4")->getDiffuseColour(), Grey(0.1f));
}

TEST_F(Lights, AWrongIndexThrowsOnTheCallerAndSignalsNothing) {
    int signals = 0;
    const auto subscription = broker::SignalBroker::onUpdateScene([&] { ++signals; });
    for (const int index : {0, 5, -1, std::numeric_limits<int>::max()}) {
        EXPECT_THROW(scene().setLightDir(index, 1, 0, 0), Ogre::ItemIdentityException);
        EXPECT_THROW(scene().setLightEnable(index, true), Ogre::ItemIdentityException);
        EXPECT_THROW(scene().setLightDiffuse(index, 1, 1, 1), Ogre::ItemIdentityException);
        EXPECT_THROW(scene().setLightSpecular(index, 1, 1, 1), Ogre::ItemIdentityException);
    }
    EXPECT_EQ(signals, 0);
}

TEST_F(Lights, SwitchedOffTheyLeaveABodyToTheAmbientLight) {
    showBoxPart("lit");
    const auto brightness = [this] {
        const auto middle = project({0, 0, 0});
        const headless::Rgba pixel =
            frame().at(static_cast<int>(middle.x), static_cast<int>(middle.y));
        return pixel.r + pixel.g + pixel.b;
    };
    const int lit = brightness();
    for (int index = 1; index <= 4; ++index) scene().setLightEnable(index, false);
    const int ambientOnly = brightness();
    scene().setAmbientLight(Grey(0.0f));
    const int dark = brightness();
    EXPECT_LT(ambientOnly, lit - 30);
    EXPECT_LT(dark, ambientOnly - 30);
}

TEST_F(Lights, ADirectionThatIsNoneIsRefusedAndLeavesTheLightWhereItShines) {
    const Ogre::Quaternion before = FindLight("light2")->getParentSceneNode()->getOrientation();
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 3e38f})
        EXPECT_THROW(scene().setLightDir(2, 0, bad, 1), std::invalid_argument);
    EXPECT_EQ(FindLight("light2")->getParentSceneNode()->getOrientation(), before);
    frame();
}

}  // namespace vrn::test
