#include "mesh/DynamicLines.h"

#include "tests/support/EngineFixture.h"

#include <OgreCamera.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreTechnique.h>

#include <gtest/gtest.h>
#include <array>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

Ogre::RenderOperation OperationOf(DynamicRenderable& object) {
    Ogre::RenderOperation operation;
    object.getRenderOperation(operation);
    return operation;
}

Ogre::HardwareVertexBufferSharedPtr BufferOf(DynamicRenderable& object) {
    return OperationOf(object).vertexData->vertexBufferBinding->getBuffer(0);
}

std::vector<Pos> Sent(DynamicRenderable& object) {
    std::vector<Pos> points(OperationOf(object).vertexData->vertexCount);
    const Ogre::HardwareBufferLockGuard lock(BufferOf(object), Ogre::HardwareBuffer::HBL_READ_ONLY);
    std::memcpy(points.data(), lock.pData, points.size() * sizeof(Pos));
    return points;
}

void AddLine(DynamicLines& lines, int count) {
    for (int i = 0; i < count; ++i) lines.addPoint(static_cast<float>(i), 0, 0);
}

/// A renderable that leaves everything to its test.
class BareRenderable : public DynamicRenderable {
public:
    int declarations = 0;

protected:
    void createVertexDeclaration() override {
        ++declarations;
        mRenderOp.vertexData->vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT3,
                                                            Ogre::VES_POSITION);
    }
};

class DynamicLinesTest : public test::EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        node = scene().sceneManager->createSceneNode();
    }
    void TearDown() override {
        scene().sceneManager->destroySceneNode(node);
        EngineTest::TearDown();
    }

    Ogre::SceneNode* node = nullptr;  // attached to nothing
};

/// How many pixels near `at` are white in the picture.
int WhiteNear(const headless::Picture& picture, const rob::Vec2Template<float>& at) {
    constexpr int reach = 2;
    int white = 0;
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx) {
            const headless::Rgba pixel =
                picture.at(static_cast<int>(at.x) + dx, static_cast<int>(at.y) + dy);
            if (pixel.r > 250 && pixel.g > 250 && pixel.b > 250) ++white;
        }
    return white;
}

struct CapacityRow {
    const char* name;
    std::uint64_t present, count, wanted;
};

class DynamicRenderableCapacity : public testing::TestWithParam<CapacityRow> {};

}  // namespace

TEST_P(DynamicRenderableCapacity, HalvesBelowHalfAndDoublesWhenTooSmall) {
    const CapacityRow& row = GetParam();
    EXPECT_EQ(DynamicRenderable::nextCapacity(row.present, row.count), row.wanted);
}

INSTANTIATE_TEST_SUITE_P(Rows, DynamicRenderableCapacity,
                         testing::Values(CapacityRow{"FirstFillOfFive", 0, 5, 8},
                                         CapacityRow{"FirstFillOfTwo", 0, 2, 2},
                                         CapacityRow{"FirstFillOfOne", 0, 1, 1},
                                         CapacityRow{"FirstFillOfNone", 0, 0, 1},
                                         CapacityRow{"FiveOfEightAreKept", 8, 5, 8},
                                         CapacityRow{"EightOfEightAreKept", 8, 8, 8},
                                         CapacityRow{"FourOfEightAreKeptHalfIsNotBelow", 8, 4, 8},
                                         CapacityRow{"ThreeOfEightShrinkToFour", 8, 3, 4},
                                         CapacityRow{"TwoOfEightShrinkToFour", 8, 2, 4},
                                         CapacityRow{"OneOfEightShrinksToTwo", 8, 1, 2},
                                         CapacityRow{"NoneOfEightShrinksToOne", 8, 0, 1},
                                         CapacityRow{"FiveOfAThousandShrinkToEight", 1024, 5, 8},
                                         CapacityRow{"NineDoubleEight", 8, 9, 16},
                                         CapacityRow{"AThousandFromEight", 8, 1000, 1024},
                                         CapacityRow{"OddCapacityDoublesToo", 3, 7, 12}),
                         [](const auto& row) { return row.param.name; });

TEST_F(DynamicLinesTest, StartsDirtyWithoutPointsBufferOrBounds) {
    DynamicLines lines(RenderOpType::LineStrip);
    EXPECT_TRUE(lines.isDirty());
    EXPECT_TRUE(lines.getPoints().empty());
    EXPECT_EQ(lines.getVertexBufferCapacity(), 0u);
    EXPECT_FALSE(lines.getBox().isValid());
    EXPECT_TRUE(lines.getBoundingBox().isNull());
    EXPECT_EQ(lines.getBoundingRadius(), 0);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 0u);
    EXPECT_EQ(OperationOf(lines).indexData, nullptr);
    EXPECT_FALSE(OperationOf(lines).useIndexes);
    EXPECT_EQ(lines.getRenderQueueGroup(), 60);
}

TEST_F(DynamicLinesTest, VertexIsAPositionOfThreeFloatsAndNothingElse) {
    DynamicLines lines(RenderOpType::LineList);
    const auto& elements = OperationOf(lines).vertexData->vertexDeclaration->getElements();
    ASSERT_EQ(elements.size(), 1u);
    const Ogre::VertexElement& element = elements.front();
    EXPECT_EQ(element.getType(), Ogre::VET_FLOAT3);
    EXPECT_EQ(element.getSemantic(), Ogre::VES_POSITION);
    EXPECT_EQ(element.getSource(), 0);
    EXPECT_EQ(element.getOffset(), 0u);
}

TEST_F(DynamicLinesTest, EachOperationTypeHasItsOgreOperation) {
    using Operation = Ogre::RenderOperation;
    DynamicLines points(RenderOpType::PointList), list(RenderOpType::LineList),
        strip(RenderOpType::LineStrip);
    EXPECT_EQ(OperationOf(points).operationType, Operation::OT_POINT_LIST);
    EXPECT_EQ(OperationOf(list).operationType, Operation::OT_LINE_LIST);
    EXPECT_EQ(OperationOf(strip).operationType, Operation::OT_LINE_STRIP);
    EXPECT_EQ(strip.getOpType(), RenderOpType::LineStrip);
    EXPECT_EQ(static_cast<int>(RenderOpType::PointList), 0);
    EXPECT_EQ(static_cast<int>(RenderOpType::LineList), 1);
    EXPECT_EQ(static_cast<int>(RenderOpType::LineStrip), 2);
}

TEST_F(DynamicLinesTest, AnyOtherOperationTypeLeavesTheEarlierInForce) {
    DynamicLines lines(RenderOpType::PointList);
    lines.setOperationType(static_cast<RenderOpType>(3));
    EXPECT_EQ(OperationOf(lines).operationType, Ogre::RenderOperation::OT_POINT_LIST);
    lines.setOperationType(static_cast<RenderOpType>(-1));
    EXPECT_EQ(OperationOf(lines).operationType, Ogre::RenderOperation::OT_POINT_LIST);
    lines.setOperationType(RenderOpType::LineStrip);
    EXPECT_EQ(OperationOf(lines).operationType, Ogre::RenderOperation::OT_LINE_STRIP);
}

TEST_F(DynamicLinesTest, OnePointIsNotSentAndStaysDirty) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    lines.addPoint(1, 2, 3);
    lines.update();
    EXPECT_TRUE(lines.isDirty());
    EXPECT_EQ(lines.getVertexBufferCapacity(), 0u);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 0u);
    EXPECT_TRUE(lines.getBoundingBox().isNull());
}

TEST_F(DynamicLinesTest, TwoPointsAreSentInOrder) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    lines.addPoint(1, 2, 3);
    lines.addPoint(-4, 5.5f, 6);
    lines.update();
    EXPECT_FALSE(lines.isDirty());
    EXPECT_EQ(lines.getVertexBufferCapacity(), 2u);
    EXPECT_EQ(Sent(lines), (std::vector<Pos>{{1, 2, 3}, {-4, 5.5f, 6}}));
    EXPECT_EQ(lines.getPoints(), Sent(lines));
}

TEST_F(DynamicLinesTest, BufferIsDynamicWriteOnlyWithoutShadow) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    AddLine(lines, 2);
    lines.update();
    EXPECT_EQ(BufferOf(lines)->getUsage(), Ogre::HBU_CPU_TO_GPU | Ogre::HBU_DETAIL_WRITE_ONLY);
    EXPECT_FALSE(BufferOf(lines)->hasShadowBuffer());
    EXPECT_EQ(BufferOf(lines)->getVertexSize(), 12u);
    EXPECT_EQ(BufferOf(lines)->getNumVertices(), 2u);
}

TEST_F(DynamicLinesTest, FivePointsOfEightAreDrawnAndTheBufferServesUntilEight) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    AddLine(lines, 5);
    lines.update();
    const auto first = BufferOf(lines);
    EXPECT_EQ(lines.getVertexBufferCapacity(), 8u);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 5u);

    AddLine(lines, 3);
    lines.update();
    EXPECT_EQ(BufferOf(lines), first);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 8u);

    AddLine(lines, 1);
    lines.update();
    EXPECT_NE(BufferOf(lines), first);
    EXPECT_EQ(lines.getVertexBufferCapacity(), 16u);
    EXPECT_EQ(Sent(lines).size(), 9u);
}

TEST_F(DynamicLinesTest, BufferShrinksWhenTheCountFallsBelowHalf) {
    DynamicLines lines(RenderOpType::LineStrip);
    lines.prepareHardwareBuffers(5);
    const auto first = BufferOf(lines);
    lines.prepareHardwareBuffers(4);
    EXPECT_EQ(BufferOf(lines), first);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 4u);
    lines.prepareHardwareBuffers(3);
    EXPECT_NE(BufferOf(lines), first);
    EXPECT_EQ(lines.getVertexBufferCapacity(), 4u);
    EXPECT_EQ(BufferOf(lines)->getNumVertices(), 4u);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 3u);
}

TEST_F(DynamicLinesTest, MoreVerticesThanADrawCallCountsAreRefused) {
    DynamicLines lines(RenderOpType::LineStrip);
    lines.prepareHardwareBuffers(2);
    EXPECT_THROW(lines.prepareHardwareBuffers(2147483648ul), std::length_error);
    EXPECT_EQ(DynamicRenderable::nextCapacity(0, DynamicRenderable::maxVertexCount), 2147483648u);
    EXPECT_THROW(lines.prepareHardwareBuffers(std::numeric_limits<unsigned long>::max()),
                 std::length_error);
    EXPECT_EQ(lines.getVertexBufferCapacity(), 2u);
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 2u);
}

TEST_F(DynamicLinesTest, UpdateOfACleanObjectSendsNothing) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    AddLine(lines, 2);
    lines.update();
    lines.prepareHardwareBuffers(1);  // spoils the count, so that a second fill would show
    lines.update();
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 1u);
}

TEST_F(DynamicLinesTest, SetPointOverwritesAndIsSentByTheNextUpdate) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    AddLine(lines, 3);
    lines.update();
    lines.setPoint(1, {7, 8, 9});
    EXPECT_TRUE(lines.isDirty());
    EXPECT_EQ(Sent(lines)[1], (Pos{1, 0, 0}));
    lines.update();
    EXPECT_EQ(Sent(lines)[1], (Pos{7, 8, 9}));
}

TEST_F(DynamicLinesTest, SetPointPastTheEndThrowsAndChangesNothing) {
    DynamicLines lines(RenderOpType::LineStrip);
    EXPECT_THROW(lines.setPoint(0, {}), std::out_of_range);
    AddLine(lines, 2);
    lines.update();
    EXPECT_THROW(lines.setPoint(2, {}), std::out_of_range);
    EXPECT_THROW(lines.setPoint(4294967295u, {}), std::out_of_range);
    EXPECT_FALSE(lines.isDirty());
}

TEST_F(DynamicLinesTest, OgreBoundsKeepOldPositionsAndTheBoxForgetsThem) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    lines.addPoint(0, 0, 0);
    lines.addPoint(1, 2, 3);
    lines.update();
    lines.setPoint(0, {1000, 1000, 1000});
    lines.setPoint(1, {1001, 1002, 1003});
    lines.update();
    EXPECT_EQ(lines.getBoundingBox(), Ogre::AxisAlignedBox(0, 0, 0, 1001, 1002, 1003));
    EXPECT_EQ(lines.getBox().min, (Pos{999, 999, 999}));  // one unit of margin
    EXPECT_EQ(lines.getBox().max, (Pos{1002, 1003, 1004}));
    Box box = lines.getBox();
    EXPECT_EQ(box.getCenter(), (Pos{1000.5f, 1001, 1001.5f}));
}

TEST_F(DynamicLinesTest, PointThatIsNotFiniteIsSentAndBelongsToNoBounds) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    lines.addPoint(nan, 0, 0);
    lines.addPoint(0, std::numeric_limits<float>::infinity(), 0);
    lines.update();
    EXPECT_TRUE(lines.getBoundingBox().isNull());
    EXPECT_FALSE(lines.getBox().isValid());
    EXPECT_FALSE(lines.isDirty());

    lines.addPoint(1, 2, 3);
    lines.update();
    EXPECT_EQ(Sent(lines).size(), 3u);
    EXPECT_EQ(lines.getBoundingBox(), Ogre::AxisAlignedBox(1, 2, 3, 1, 2, 3));
    EXPECT_EQ(lines.getBox().min, (Pos{0, 1, 2}));
}

TEST_F(DynamicLinesTest, PointBeyondWhatBoundsCanHoldIsSentAndBelongsToNone) {
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    lines.addPoint(3e38f, 0, 0);
    lines.addPoint(-3e38f, 0, -1.01e15f);
    lines.update();
    EXPECT_TRUE(lines.getBoundingBox().isNull());
    EXPECT_FALSE(lines.getBox().isValid());
    EXPECT_EQ(Sent(lines), lines.getPoints());
    lines.addPoint(1e15f, 2, -1e15f);
    lines.update();
    EXPECT_EQ(lines.getBoundingBox(), Ogre::AxisAlignedBox(1e15f, 2, -1e15f, 1e15f, 2, -1e15f));
}

TEST_F(DynamicLinesTest, LineLengthIsTheStraightWayFromTheFirstPointToTheLast) {
    DynamicLines lines(RenderOpType::LineStrip);
    EXPECT_EQ(lines.getLineLength(), 0.0f);
    lines.addPoint(1, 1, 1);
    EXPECT_EQ(lines.getLineLength(), 0.0f);
    lines.addPoint(50, 60, 70);
    lines.addPoint(4, 5, 1);
    EXPECT_EQ(lines.getLineLength(), 5.0f);
}

TEST_F(DynamicLinesTest, LineLengthOfAClosedLineIsZero) {
    DynamicLines lines(RenderOpType::LineStrip);
    for (const Pos& p : {Pos{1, 1, 1}, Pos{9, 1, 1}, Pos{9, 9, 1}, Pos{1, 1, 1}})
        lines.addPoint(p.x, p.y, p.z);
    EXPECT_EQ(lines.getLineLength(), 0.0f);
}

TEST_F(DynamicLinesTest, MayBeFilledBeforeItIsAttached) {
    DynamicLines lines(RenderOpType::LineStrip);
    AddLine(lines, 2);
    lines.update();
    EXPECT_FALSE(lines.isDirty());
    EXPECT_EQ(Sent(lines).size(), 2u);
}

TEST_F(DynamicLinesTest, FillingWithoutPointsDrawsNothing) {
    DynamicLines lines(RenderOpType::LineStrip);
    lines.fillHardwareBuffers();
    EXPECT_EQ(OperationOf(lines).vertexData->vertexCount, 0u);
    EXPECT_FALSE(lines.getBox().isValid());
}

TEST_F(DynamicLinesTest, ParentNodeTakesTheNewBoundsInItsNextUpdate) {
    Ogre::SceneNode* root = scene().sceneManager->getRootSceneNode();
    root->addChild(node);
    node->setPosition(100, 0, 0);
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    AddLine(lines, 2);
    lines.update();
    root->_update(true, false);
    lines.addPoint(0, 50, 0);
    lines.update();
    root->_update(true, false);
    EXPECT_EQ(node->_getWorldAABB(), Ogre::AxisAlignedBox(100, 0, 0, 101, 50, 0));
    node->detachObject(&lines);
    root->removeChild(node);
}

TEST_F(DynamicLinesTest, BoundingRadiusIsThatOfTheFartherExtremeCorner) {
    DynamicLines lines(RenderOpType::LineStrip);
    lines.addPoint(-3, 0, -4);
    lines.addPoint(1, 1, 1);
    lines.update();
    EXPECT_FLOAT_EQ(lines.getBoundingRadius(), 5.0f);
    lines.addPoint(5, 1, 12);
    lines.update();
    EXPECT_FLOAT_EQ(lines.getBoundingRadius(), std::sqrt(25.0f + 1.0f + 144.0f));
}

TEST_F(DynamicLinesTest, ViewDepthIsTakenToTheMiddleOfTheBounds) {
    Ogre::SceneManager* manager = scene().sceneManager;
    Ogre::Camera* camera = manager->createCamera("DynamicLinesTest camera");
    node->attachObject(camera);
    node->setPosition(10, 20, 30);
    DynamicLines lines(RenderOpType::LineStrip);
    lines.addPoint(0, 0, 0);
    lines.addPoint(2, 4, 6);
    lines.update();
    EXPECT_FLOAT_EQ(lines.getSquaredViewDepth(camera), 81 + 18 * 18 + 27 * 27);
    node->detachObject(camera);
    manager->destroyCamera(camera);
}

TEST_F(DynamicLinesTest, StartsWithAMaterialThatCanBeDrawn) {
    DynamicLines lines(RenderOpType::LineStrip);
    const Ogre::MaterialPtr material = lines.getMaterial();
    ASSERT_TRUE(material);
    material->load();
    ASSERT_NE(material->getBestTechnique(), nullptr);
    EXPECT_TRUE(material->getBestTechnique()->getPass(0)->hasVertexProgram());
    EXPECT_TRUE(material->getBestTechnique()->getPass(0)->hasFragmentProgram());
}

TEST_F(DynamicLinesTest, IsDrawnWhiteBeforeAnybodyGaveItAMaterial) {
    const auto middle = project({0, 0, 200});
    ASSERT_EQ(WhiteNear(frame(), middle), 0);
    Ogre::SceneNode* root = scene().sceneManager->getRootSceneNode();
    root->addChild(node);
    DynamicLines lines(RenderOpType::LineStrip);
    node->attachObject(&lines);
    lines.addPoint(-50, 0, 200);
    lines.update();
    EXPECT_EQ(WhiteNear(frame(), middle), 0);  // a single point is not drawn
    lines.addPoint(50, 0, 200);
    lines.update();
    EXPECT_GT(WhiteNear(frame(), middle), 0);
    root->removeChild(node);
}

TEST_F(DynamicLinesTest, FillBeforeInitIsRefused) {
    BareRenderable bare;
    EXPECT_THROW(bare.prepareHardwareBuffers(2), std::logic_error);
}

TEST_F(DynamicLinesTest, InitMakesIndexDataWhereItIsWantedAndMayRunAgain) {
    BareRenderable bare;
    bare.init(RenderOpType::LineList, /*useIndices=*/true);
    EXPECT_TRUE(OperationOf(bare).useIndexes);
    EXPECT_NE(OperationOf(bare).indexData, nullptr);
    bare.prepareHardwareBuffers(5);
    EXPECT_EQ(bare.getVertexBufferCapacity(), 8u);
    bare.init(RenderOpType::PointList, /*useIndices=*/false);
    EXPECT_FALSE(OperationOf(bare).useIndexes);
    EXPECT_EQ(OperationOf(bare).indexData, nullptr);
    EXPECT_EQ(bare.getOpType(), RenderOpType::PointList);
    EXPECT_EQ(bare.getVertexBufferCapacity(), 0u);
    EXPECT_EQ(bare.declarations, 2);
}

}  // namespace vrn::visual
