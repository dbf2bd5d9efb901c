#include "visual/handle/VectorHandle.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>
#include <OgreEntity.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreManualObject.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "tests/support/EngineFixture.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/handle/TiltHandle.h"
#include "visual/handle/TwistHandle.h"

namespace vrn::test {

using visual::RingHandle;
using visual::VectorHandle;
using Vec = rob::Vec3Template<float>;

namespace {

constexpr double degree = 3.14159265358979323846 / 180;

struct SectorVertex {
    Vec position, normal;
};

/// What the sector of a ring is drawn from; empty for none.
std::vector<SectorVertex> SectorOf(const RingHandle* ring) {
    std::vector<SectorVertex> result;
    const auto& sections = ring->getSector()->getSections();
    if (sections.empty()) return result;
    const Ogre::VertexData* data = sections.front()->getRenderOperation()->vertexData;
    const auto buffer = data->vertexBufferBinding->getBuffer(0);
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
    const std::size_t stride = buffer->getVertexSize() / sizeof(float);
    const auto* values = static_cast<const float*>(lock.pData);
    for (std::size_t i = 0; i < data->vertexCount; ++i, values += stride)
        result.push_back({{values[0], values[1], values[2]}, {values[3], values[4], values[5]}});
    return result;
}

float SideOf(const std::vector<SectorVertex>& sector, const Vec& axis) {
    return sector[1].position.cross(sector.back().position).dot(axis);
}

}  // namespace

class VectorHandleTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        handle = VectorHandle::Get();
        ASSERT_NE(handle, nullptr);
    }
    void TearDown() override {
        handle->setTilt(0);
        handle->setTwist(0);
        handle->detach();
        EngineTest::TearDown();
    }
    VectorHandle* handle = nullptr;
};

TEST_F(VectorHandleTest, TheTiltRingTurnsWithTheTwistAndTheDirectionWithBoth) {
    EXPECT_EQ(handle->getName(), "VectorHandle");
    EXPECT_EQ(handle->getParent(), nullptr);
    EXPECT_EQ(handle->twistHandle->getParent(), handle);
    EXPECT_EQ(handle->tiltHandle->getParent(), handle->twistHandle);
    EXPECT_EQ(handle->dirHandle->getParent(), handle->tiltHandle);
    handle->setTwist(90 * degree);
    handle->setTilt(90 * degree);
    const Vec z = handle->dirHandle->getWorldRotation() * Vec{0, 0, 1};
    EXPECT_NEAR(z.x, 1, 1e-5);  // tilted to x, which the twist about x leaves
    handle->setTilt(0);
    EXPECT_NEAR((handle->dirHandle->getWorldRotation() * Vec{0, 0, 1}).y, -1, 1e-5);
}

TEST_F(VectorHandleTest, EachPartIsMadeAfterTheOneItHangsOn) {
    EXPECT_LT(handle->id, handle->twistHandle->id);
    EXPECT_LT(handle->twistHandle->id, handle->tiltHandle->id);
    EXPECT_LT(handle->tiltHandle->id, handle->dirHandle->id);
}

TEST_F(VectorHandleTest, NamesMeshesMaterialsAndColoursAreTheAgreedOnes) {
    const std::vector<std::tuple<visual::HandleMeshVisual*, std::string, std::string>> parts{
        {handle->tiltHandle, "TiltHandle", "#F20c00"},
        {handle->twistHandle, "TwistHandle", "#16A951"},
        {handle->dirHandle, "VectorDirHandle", "#418AB4"}};
    for (const auto& [part, name, colour] : parts) {
        EXPECT_EQ(part->getName(), name);
        EXPECT_EQ(part->getMeshName(), name);
        EXPECT_EQ(part->material, "Axis");
        EXPECT_EQ(part->selectedMaterial, "");
        EXPECT_EQ(part->highlightedMaterial, "HandleHighlight");
        EXPECT_EQ(part->getEntity()->getRenderQueueGroup(), 80);
        const auto c = visual::Hex2RGB(colour);
        EXPECT_EQ(part->getEntity()->getSubEntity(0)->getCustomParameter(0),
                  Ogre::Vector4(c.r, c.g, c.b, 1));
    }
}

TEST_F(VectorHandleTest, ASectorHasAStepForEachFiveDegreesBegunAndARimPointMore) {
    const std::vector<std::pair<double, std::size_t>> cases{{5, 2}, {7, 2}, {12, 3}, {33, 7}};
    for (const auto& [degrees, steps] : cases) {
        handle->setTilt(degrees * degree);
        handle->setTwist(-degrees * degree);
        EXPECT_EQ(SectorOf(handle->tiltHandle).size(), 1 + steps + 1) << degrees;
        EXPECT_EQ(SectorOf(handle->twistHandle).size(), 1 + steps + 1) << degrees;
    }
}

TEST_F(VectorHandleTest, ATurnBelowOneDegreeLeavesAnEmptySectorWhateverWasDrawn) {
    handle->setTilt(40 * degree);
    handle->setTilt(0.99 * degree);
    EXPECT_TRUE(SectorOf(handle->tiltHandle).empty());
    handle->setTilt(-0.99 * degree);
    EXPECT_TRUE(SectorOf(handle->tiltHandle).empty());
    handle->setTilt(degree);  // back in degrees exactly 1
    EXPECT_EQ(SectorOf(handle->tiltHandle).size(), 3u);
}

TEST_F(VectorHandleTest, TheSectorRunsFromTheTurnedRingBackToItsRest) {
    for (const double angle : {33.0, -33.0}) {
        handle->setTilt(angle * degree);
        const auto sector = SectorOf(handle->tiltHandle);
        EXPECT_EQ(sector[0].position, (Vec{0, 0, 0}));
        EXPECT_EQ(sector[1].position, (Vec{0, 0, 150}));
        // In the ring's own frame the rest position lies behind the turn.
        const Vec last = sector.back().position;
        EXPECT_NEAR(last.x, -150 * std::sin(angle * degree), 1e-3);
        EXPECT_NEAR(last.z, 150 * std::cos(angle * degree), 1e-3);
        for (const SectorVertex& v : sector) EXPECT_EQ(v.normal, (Vec{0, 1, 0}));
    }
}

TEST_F(VectorHandleTest, TheSignOfTheAngleChangesTheSideAndNotTheNumberOfPoints) {
    handle->setTwist(33 * degree);
    const auto one = SectorOf(handle->twistHandle);
    handle->setTwist(-33 * degree);
    const auto other = SectorOf(handle->twistHandle);
    EXPECT_EQ(one.size(), other.size());
    EXPECT_LT(SideOf(one, {1, 0, 0}) * SideOf(other, {1, 0, 0}), 0);
}

TEST_F(VectorHandleTest, SectorsAreTranslucentInTheirColoursOverTheScene) {
    handle->setTilt(33 * degree);
    handle->setTwist(33 * degree);
    const auto look = [](const RingHandle* ring) {
        return ring->getSector()->getSections().front()->getCustomParameter(0);
    };
    EXPECT_EQ(look(handle->tiltHandle), Ogre::Vector4(0.9490196f, 0.0470588f, 0, 0.4f));
    EXPECT_EQ(look(handle->twistHandle), Ogre::Vector4(0.1019608f, 0.9843137f, 0.4745098f, 0.4f));
    EXPECT_EQ(handle->tiltHandle->getSector()->getRenderQueueGroup(), 80);
    handle->tiltHandle->resetAppearance();
    EXPECT_EQ(handle->tiltHandle->getSector()->getSections().front()->getMaterialName(),
              "TransparentHandle");
}

TEST_F(VectorHandleTest, PointedAtARingTakesTheHighlightAndGivesItBack) {
    const auto material = [&] {
        return handle->tiltHandle->getEntity()->getSubEntity(0)->getMaterialName();
    };
    handle->tiltHandle->setHighlighted();
    EXPECT_EQ(material(), "HandleHighlight");
    handle->tiltHandle->clearHighlightOrSelect();
    EXPECT_EQ(material(), "Axis");
    handle->selectTilt();
    handle->selectTwist();
    EXPECT_EQ(material(), "Axis");
}

TEST_F(VectorHandleTest, AnAngleThatIsNoneIsRefusedAndChangesNothing) {
    handle->setTilt(33 * degree);
    const auto pose = handle->tiltHandle->getPose();
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), 1e12}) {
        EXPECT_THROW(handle->setTilt(bad), std::invalid_argument);
        EXPECT_THROW(handle->setTwist(bad), std::invalid_argument);
    }
    EXPECT_EQ(handle->tiltHandle->getPose(), pose);
    EXPECT_EQ(SectorOf(handle->tiltHandle).size(), 9u);
}

TEST_F(VectorHandleTest, ATurnedRingShowsItsSectorInThePicture) {
    handle->attachTo(scene().root);
    lookFrom({0, -4000, 0}, {0, 0, 0});
    handle->setTilt(80 * degree);
    frame();
    const auto picture = frame();
    // Between rest, which is up, and the tilt, which is to the right.
    const float scale = handle->node->getScale().x;
    const auto inside = project(rob::PosTemplate<float>{70 * scale, 0, 70 * scale}),
               outside = project(rob::PosTemplate<float>{-70 * scale, 0, 70 * scale});
    const auto at = [&](const auto& p) {
        return picture.at(static_cast<int>(p.x), static_cast<int>(p.y));
    };
    EXPECT_GT(at(inside).r, at(inside).g + 20);
    EXPECT_LT(std::abs(at(outside).r - at(outside).g), 20);
}

}  // namespace vrn::test
