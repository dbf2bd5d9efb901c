#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <stdexcept>

#include <gmock/gmock.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreManualObject.h>
#include <OgreMaterial.h>
#include <OgreSceneManager.h>

#include "mesh/DynamicLines.h"
#include "suite/layout/Mechanism.h"
#include "tests/visual/StationFixture.h"
#include "visual/station/ManipulatorVisual.h"
#include "visual/station/WorkEnvelope2DVisual.h"
#include "visual/station/WorkEnvelope3DVisual.h"

namespace vrn::test {

using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::ManipulatorVisual;
using visual::Visual;
using visual::WorkEnvelope2DVisual;
using visual::WorkEnvelope3DVisual;
using Points = std::vector<rob::PosTemplate<double>>;
using Normals = std::vector<rob::DirTemplate<double>>;
using Vec = rob::Vec3Template<float>;

namespace {

const Points profile{{100, 0, 0}, {200, 0, 50}, {150, 0, 120}, {50, 0, 200}};
const Normals normals{{0, 0, -1}, {1, 0, 0}, {1, 0, 0}, {0, 0, 1}};
constexpr float halfPi = std::numbers::pi_v<float> / 2;

struct Vertex {
    Vec position, normal;
};

std::vector<Vertex> VerticesOf(const WorkEnvelope3DVisual* visual) {
    const auto& data = *visual->getSurface()->getSection(0)->getRenderOperation()->vertexData;
    const auto buffer = data.vertexBufferBinding->getBuffer(0);
    const auto& declaration = *data.vertexDeclaration;
    const std::size_t at = declaration.findElementBySemantic(Ogre::VES_POSITION)->getOffset();
    const std::size_t to = declaration.findElementBySemantic(Ogre::VES_NORMAL)->getOffset();
    std::vector<char> bytes(buffer->getSizeInBytes());
    buffer->readData(0, bytes.size(), bytes.data());
    std::vector<Vertex> vertices(data.vertexCount);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const char* vertex = bytes.data() + i * buffer->getVertexSize();
        std::memcpy(&vertices[i].position, vertex + at, sizeof(Vec));
        std::memcpy(&vertices[i].normal, vertex + to, sizeof(Vec));
    }
    return vertices;
}

std::vector<std::uint16_t> IndicesOf(const WorkEnvelope3DVisual* visual) {
    const auto& data = *visual->getSurface()->getSection(0)->getRenderOperation()->indexData;
    std::vector<std::uint16_t> indices(data.indexCount);
    data.indexBuffer->readData(0, indices.size() * sizeof(std::uint16_t), indices.data());
    return indices;
}

void ExpectNear(const Vec& a, const Vec& b) { EXPECT_LT((a - b).length(), 1e-3f); }

}  // namespace

class WorkEnvelopes : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        robot = model.make<layout::Manipulator>("robot", "abb");
        link = addLink(robot, "link");
        ManipulatorVisual::Build(root(), robot, /*buildChildren=*/true);
        visual = dynamic_cast<ManipulatorVisual*>(visualOf(robot));
    }
    void add() {
        scene().addWorkEnvelopeVisual(robot->id, link->id, profile, normals, 0, halfPi);
        pump();
    }
    static std::vector<Visual*> envelopesBelow(const Visual* parent) {
        std::vector<Visual*> found;
        for (Visual* child : parent->getChildren())
            if (child->type == VisualType::WorkEnvelope) found.push_back(child);
        return found;
    }
    WorkEnvelope3DVisual* surfaceOf(const Points& points, float minAngle, float maxAngle) {
        return WorkEnvelope3DVisual::Build(root(), "surface", points,
                                           Normals(points.size(), {1, 0, 0}), minAngle, maxAngle);
    }

    layout::Manipulator* robot = nullptr;
    layout::Link* link = nullptr;
    ManipulatorVisual* visual = nullptr;
};

// --- the outline

TEST_F(WorkEnvelopes, TheOutlineIsAStripThatIsNotClosed) {
    auto* outline = WorkEnvelope2DVisual::Build(root(), "outline", profile);
    EXPECT_EQ(outline->type, VisualType::WorkEnvelope);
    ASSERT_EQ(outline->getLines().size(), 1u);
    const visual::DynamicLines& line = *outline->getLines().front();
    EXPECT_EQ(line.getOpType(), visual::RenderOpType::LineStrip);
    ASSERT_EQ(line.getPoints().size(), profile.size());
    EXPECT_EQ(line.getPoints().back(), (rob::PosTemplate<float>{50, 0, 200}));
    EXPECT_FALSE(line.isDirty());
    EXPECT_TRUE(isDrawn(outline));
}

TEST_F(WorkEnvelopes, TheOutlineLooksTheSameInEveryState) {
    auto* outline = WorkEnvelope2DVisual::Build(root(), "outline", profile);
    const visual::DynamicLines& line = *outline->getLines().front();
    EXPECT_EQ(line.getMaterial()->getName(), "PreviewCurve");
    EXPECT_EQ(outline->selectedMaterial, "PreviewCurve");
    EXPECT_EQ(outline->highlightedMaterial, "PreviewCurve");
}

TEST_F(WorkEnvelopes, AnOutlineOfNothingSurvivesAFrame) {
    WorkEnvelope2DVisual::Build(root(), "outline", {});
    WorkEnvelope2DVisual::Build(root(), "outline", {{1, 2, 3}});
    EXPECT_NO_THROW(frame());
}

// --- the surface

TEST_F(WorkEnvelopes, TheSurfaceHasFiftyOneRowsAndAHundredTrianglesPerSegment) {
    const auto* surface = surfaceOf(profile, 0, halfPi);
    ASSERT_EQ(surface->getSurface()->getNumSections(), 1u);
    EXPECT_EQ(VerticesOf(surface).size(), 51 * profile.size());
    EXPECT_EQ(IndicesOf(surface).size(), 3 * 100 * (profile.size() - 1));
    EXPECT_EQ(surface->getSurface()->getSection(0)->getRenderOperation()->operationType,
              Ogre::RenderOperation::OT_TRIANGLE_LIST);
}

TEST_F(WorkEnvelopes, TheTrianglesOfAFieldShareItsDiagonal) {
    const auto indices = IndicesOf(surfaceOf(profile, 0, halfPi));
    EXPECT_THAT(std::vector(indices.begin(), indices.begin() + 12),
                testing::ElementsAre(0, 1, 4, 4, 1, 5, 1, 2, 5, 5, 2, 6));
    EXPECT_EQ(indices.back(), 51 * 4 - 1);
}

TEST_F(WorkEnvelopes, EachRowIsTheProfileTurnedAboutZ) {
    const auto* surface =
        WorkEnvelope3DVisual::Build(root(), "surface", profile, normals, -halfPi, halfPi);
    const auto vertices = VerticesOf(surface);
    ExpectNear(vertices[1].position, {0, -200, 50});
    ExpectNear(vertices[1].normal, {0, -1, 0});
    ExpectNear(vertices[25 * 4 + 1].position, {200, 0, 50});
    ExpectNear(vertices[50 * 4 + 1].position, {0, 200, 50});
    ExpectNear(vertices[50 * 4 + 1].normal, {0, 1, 0});
    ExpectNear(vertices[50 * 4].normal, {0, 0, -1});
}

TEST_F(WorkEnvelopes, EqualAnglesPutAllRowsInOnePlace) {
    const auto vertices = VerticesOf(surfaceOf(profile, halfPi, halfPi));
    for (std::size_t i = 0; i < vertices.size(); ++i)
        EXPECT_EQ(vertices[i].position, vertices[i % 4].position) << i;
}

TEST_F(WorkEnvelopes, OnePointMakesNoTriangles) {
    auto* surface = surfaceOf({{100, 0, 0}}, 0, halfPi);
    EXPECT_EQ(surface->getSurface()->getNumSections(), 0u);
    surface->setVisible(true, true);
    EXPECT_NO_THROW(frame());
}

TEST_F(WorkEnvelopes, AnEmptyProfileThrowsAndLeavesNothing) {
    const auto before = traces();
    EXPECT_THAT([&] { surfaceOf({}, 0, halfPi); },
                ThrowsMessage<std::out_of_range>(HasSubstr("vector::_M_range_check")));
    EXPECT_EQ(traces(), before);
}

TEST_F(WorkEnvelopes, ProfilesThatCannotBeDrawnAreRefused) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const auto before = traces();
    for (const double bad : {nan, 1e300, 2e38, -1.001e15}) {
        EXPECT_THROW(surfaceOf({{0, 0, bad}, {1, 0, 0}}, 0, halfPi), std::invalid_argument) << bad;
        EXPECT_THROW(
            WorkEnvelope3DVisual::Build(root(), "surface", {{1, 0, 0}}, {{bad, 0, 0}}, 0, halfPi),
            std::invalid_argument)
            << bad;
    }
    EXPECT_THROW(surfaceOf(profile, 0, static_cast<float>(nan)), std::invalid_argument);
    EXPECT_THROW(WorkEnvelope3DVisual::Build(root(), "surface", profile, {{1, 0, 0}}, 0, 1),
                 std::invalid_argument);
    EXPECT_EQ(traces(), before);
}

TEST_F(WorkEnvelopes, TheFarthestProfileIsDrawn) {
    constexpr double far = 1e15;
    surfaceOf({{far, far, -far}, {-far, 0, far}}, 0, halfPi)->setVisible(true, true);
    EXPECT_NO_THROW(frame());
}

TEST_F(WorkEnvelopes, TheSurfaceShowsTheMaterialOfSurfacesAndStartsHidden) {
    const auto* surface = surfaceOf(profile, 0, halfPi);
    EXPECT_EQ(surface->type, VisualType::WorkEnvelope);
    EXPECT_EQ(surface->getSurface()->getSection(0)->getMaterial()->getName(), "WorkEnvelope3D");
    EXPECT_FALSE(surface->visible);
    EXPECT_FALSE(isDrawn(surface));
}

TEST_F(WorkEnvelopes, ASecondSurfaceTakesThePlaceOfTheFirst) {
    auto* surface = surfaceOf(profile, 0, halfPi);
    surface->createRevolvedSurface({{10, 0, 0}, {20, 0, 0}}, {{0, 0, 1}, {0, 0, 1}}, 0, 1);
    EXPECT_EQ(surface->getSurface()->getNumSections(), 1u);
    EXPECT_EQ(VerticesOf(surface).size(), 102u);
}

TEST_F(WorkEnvelopes, TheSurfaceGoesWithItsVisual) {
    auto* surface = surfaceOf(profile, 0, halfPi);
    const std::string name = surface->getSurface()->getName();
    EXPECT_TRUE(scene().sceneManager->hasMovableObject(name, Ogre::MOT_MANUAL_OBJECT));
    scene().deleteVisual(surface);
    EXPECT_FALSE(scene().sceneManager->hasMovableObject(name, Ogre::MOT_MANUAL_OBJECT));
}

// --- the robot's

TEST_F(WorkEnvelopes, TheTwoHangUnderTheRobotAndUnderTheGivenParent) {
    add();
    ASSERT_EQ(envelopesBelow(visual).size(), 1u);
    ASSERT_EQ(envelopesBelow(visualOf(link)).size(), 1u);
    EXPECT_EQ(envelopesBelow(visual).front(), visual->getWorkEnvelope3D());
    EXPECT_EQ(envelopesBelow(visualOf(link)).front(), visual->getWorkEnvelope2D());
    const std::string base = "work_envelope_" + std::to_string(robot->id);
    const auto* surface = visual->getWorkEnvelope3D();
    const auto* outline = visual->getWorkEnvelope2D();
    EXPECT_EQ(surface->getName(), base + "_3d" + std::to_string(surface->id));
    EXPECT_EQ(outline->getName(), base + "_2d" + std::to_string(outline->id));
    EXPECT_FALSE(scene().visuals.contains(surface->id));
    EXPECT_FALSE(scene().visuals.contains(outline->id));
}

TEST_F(WorkEnvelopes, ALinkCarriesTheOutlineAndNotTheSurface) {
    add();
    scene().setVisualPose(link->id, {{0, 0, 500}, {}});
    pump();
    EXPECT_EQ(visual->getWorkEnvelope2D()->getWorldPosition().z, 500);
    EXPECT_EQ(visual->getWorkEnvelope3D()->getWorldPosition().z, 0);
}

TEST_F(WorkEnvelopes, AddedTheOutlineShowsAndTheSurfaceDoesNotUntilToldSo) {
    add();
    EXPECT_TRUE(isDrawn(visual->getWorkEnvelope2D()));
    EXPECT_FALSE(isDrawn(visual->getWorkEnvelope3D()));
    scene().updateWorkEnvelopeVisual(robot->id, /*show2D=*/false, /*show3D=*/true);
    pump();
    EXPECT_FALSE(isDrawn(visual->getWorkEnvelope2D()));
    EXPECT_TRUE(isDrawn(visual->getWorkEnvelope3D()));
}

TEST_F(WorkEnvelopes, AddedTwiceThereIsOnePair) {
    add();
    add();
    EXPECT_EQ(envelopesBelow(visual).size(), 1u);
    EXPECT_EQ(envelopesBelow(visualOf(link)).size(), 1u);
}

TEST_F(WorkEnvelopes, RemovedBothAreGone) {
    add();
    scene().removeWorkEnvelopeVisual(robot->id);
    scene().removeWorkEnvelopeVisual(robot->id);
    pump();
    EXPECT_TRUE(envelopesBelow(visual).empty());
    EXPECT_TRUE(envelopesBelow(visualOf(link)).empty());
    EXPECT_EQ(visual->getWorkEnvelope2D(), nullptr);
    EXPECT_EQ(visual->getWorkEnvelope3D(), nullptr);
    scene().updateWorkEnvelopeVisual(robot->id, true, true);
    EXPECT_NO_THROW(pump());
}

TEST_F(WorkEnvelopes, AnAbsentParentBuildsNothingAndSaysNothing) {
    scene().addWorkEnvelopeVisual(robot->id, 123456789, profile, normals, 0, halfPi);
    EXPECT_NO_THROW(pump());
    EXPECT_TRUE(envelopesBelow(visual).empty());
    EXPECT_TRUE(envelopesBelow(root()).empty());
}

TEST_F(WorkEnvelopes, AnUnknownRobotThrowsInTheRemovalThatIsPostedFirst) {
    const auto expectMiss = [] {
        EXPECT_THAT([] { scene().processMsgs(); },
                    ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    };
    scene().addWorkEnvelopeVisual(123456789, 987654321, profile, normals, 0, halfPi);
    expectMiss();  // an absent parent alone would be silent
    scene().updateWorkEnvelopeVisual(123456789, true, true);
    expectMiss();
    scene().removeWorkEnvelopeVisual(123456789);
    expectMiss();
}

TEST_F(WorkEnvelopes, AVisualOfAnotherKindIsPassedOver) {
    scene().addWorkEnvelopeVisual(link->id, link->id, profile, normals, 0, halfPi);
    scene().updateWorkEnvelopeVisual(link->id, true, true);
    scene().removeWorkEnvelopeVisual(link->id);
    EXPECT_NO_THROW(pump());
    EXPECT_TRUE(envelopesBelow(visualOf(link)).empty());
}

TEST_F(WorkEnvelopes, TheListsAreCopiedWhenPosted) {
    {
        Points points = profile;
        scene().addWorkEnvelopeVisual(robot->id, link->id, points, normals, 0, halfPi);
        points.clear();
    }
    pump();
    EXPECT_EQ(visual->getWorkEnvelope2D()->getLines().front()->getPoints().size(), profile.size());
}

TEST_F(WorkEnvelopes, ARobotForgetsAnOutlineThatDiesWithItsParent) {
    Visual* carrier = addPlain(VisualType::None);
    scene().addWorkEnvelopeVisual(robot->id, carrier->id, profile, normals, 0, halfPi);
    pump();
    scene().deleteVisual(carrier);
    EXPECT_EQ(visual->getWorkEnvelope2D(), nullptr);
    scene().updateWorkEnvelopeVisual(robot->id, true, true);
    scene().removeWorkEnvelopeVisual(robot->id);
    EXPECT_NO_THROW(pump());
}

TEST_F(WorkEnvelopes, AnOutlineUnderAnotherParentGoesWithItsRobot) {
    Visual* carrier = addPlain(VisualType::None);
    scene().addWorkEnvelopeVisual(robot->id, carrier->id, profile, normals, 0, halfPi);
    pump();
    ASSERT_EQ(envelopesBelow(carrier).size(), 1u);
    scene().removeVisual(robot->id);
    pump();
    EXPECT_TRUE(envelopesBelow(carrier).empty());
    scene().deleteVisual(carrier);
}

TEST_F(WorkEnvelopes, ARobotGoesWithAnOutlineOnItsLinkOrBesideIt) {
    add();  // the outline dies first, while the robot is no longer in the registry
    scene().removeVisual(robot->id);
    EXPECT_NO_THROW(pump());

    Visual* cell = addPlain(VisualType::None);
    auto* other = model.make<layout::Manipulator>("other", "abb");
    ManipulatorVisual::Build(cell, other, /*buildChildren=*/true);
    scene().addWorkEnvelopeVisual(other->id, cell->id, profile, normals, 0, halfPi);
    pump();
    ASSERT_EQ(envelopesBelow(cell).size(), 1u);
    EXPECT_NO_THROW(scene().deleteVisual(cell));  // whose children are both
}

TEST_F(WorkEnvelopes, ARobotThatGivesItsOutlineAwayLeavesItAlone) {
    add();
    WorkEnvelope2DVisual* outline = visual->getWorkEnvelope2D();
    outline->attachTo(root());
    visual->setWorkEnvelope2DVisual(nullptr);
    auto* heir = model.make<layout::Manipulator>("heir", "abb");
    ManipulatorVisual::Build(root(), heir, /*buildChildren=*/true);
    auto* heirVisual = dynamic_cast<ManipulatorVisual*>(visualOf(heir));
    visual->setWorkEnvelope2DVisual(outline);
    heirVisual->setWorkEnvelope2DVisual(outline);
    EXPECT_EQ(visual->getWorkEnvelope2D(), nullptr);
    scene().removeVisual(robot->id);
    pump();
    EXPECT_EQ(envelopesBelow(root()), std::vector<Visual*>{outline});
    scene().removeVisual(heir->id);
    pump();
    EXPECT_TRUE(envelopesBelow(root()).empty());
}

TEST_F(WorkEnvelopes, WhatIsSwitchedOffStaysSoWhenTheRobotIsHiddenAndShown) {
    const auto hideAndShow = [this] {
        scene().setVisualVisible(robot->id, false);
        pump();
        EXPECT_FALSE(isDrawn(visual->getWorkEnvelope2D()));
        EXPECT_FALSE(isDrawn(visual->getWorkEnvelope3D()));
        scene().setVisualVisible(robot->id, true);
        pump();
    };
    add();
    hideAndShow();
    EXPECT_TRUE(isDrawn(visual->getWorkEnvelope2D()));
    EXPECT_FALSE(isDrawn(visual->getWorkEnvelope3D()));  // never switched on
    scene().updateWorkEnvelopeVisual(robot->id, /*show2D=*/false, /*show3D=*/true);
    pump();
    hideAndShow();
    EXPECT_FALSE(isDrawn(visual->getWorkEnvelope2D()));
    EXPECT_TRUE(isDrawn(visual->getWorkEnvelope3D()));
}

TEST_F(WorkEnvelopes, HidingTheRobotLeavesAnOutlineElsewhereAsItIs) {
    Visual* carrier = addPlain(VisualType::None);
    scene().addWorkEnvelopeVisual(robot->id, carrier->id, profile, normals, 0, halfPi);
    pump();
    scene().updateWorkEnvelopeVisual(robot->id, /*show2D=*/false, /*show3D=*/false);
    scene().setVisualVisible(robot->id, true);
    pump();
    EXPECT_FALSE(isDrawn(visual->getWorkEnvelope2D()));
    scene().updateWorkEnvelopeVisual(robot->id, /*show2D=*/true, /*show3D=*/false);
    scene().setVisualVisible(robot->id, false);
    pump();
    EXPECT_TRUE(isDrawn(visual->getWorkEnvelope2D()));
    scene().deleteVisual(carrier);
}

}  // namespace vrn::test
