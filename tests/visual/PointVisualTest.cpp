#include "visual/geometry/PointVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include <OgreManualObject.h>
#include <OgreMaterial.h>
#include <OgreSceneNode.h>

#include <BRepBuilderAPI_MakeVertex.hxx>
#include <gp_Pnt.hxx>
#include <TopoDS_Vertex.hxx>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/layout/Body.h"
#include "suite/sdf/SdfManager.h"
#include "tests/visual/StationFixture.h"

namespace vrn::test {

using visual::PointVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

class PointVisuals : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        part = model.make<layout::Part>("part");
        body = model.make<layout::Body>("corner", "corner", "brep");
        part->addBody(*body);
    }
    static Ogre::ManualObject& pictureOf(const Visual* visual) {
        return dynamic_cast<Ogre::ManualObject&>(*visual->node->getAttachedObject(0));
    }
    static std::string lookOfPoint(const Visual* visual) {
        return pictureOf(visual).getSection(0)->getMaterial()->getName();
    }
    static Ogre::Vector4 colourOf(const Visual* visual) {
        return pictureOf(visual).getSection(0)->getCustomParameter(0);
    }
    PointVisual* buildBody(const Pos& point = {1, 2, 3}) {
        return PointVisual::Build(root(), body, point);
    }

    layout::Part* part = nullptr;
    layout::Body* body = nullptr;
    const Ogre::Vector4 white{1, 1, 1, 1}, orange{1, 0.5f, 0, 1}, yellow{1, 1, 0, 1};
};

// --- previews

TEST_F(PointVisuals, APreviewPointIsInNoRegistryAndLooksTheSameInAllStates) {
    const auto before = traces();
    Visual* parent = addPlain(VisualType::Part);
    PointVisual* point = PointVisual::Build(parent, {5, 6, 7});
    EXPECT_EQ(point->type, VisualType::Point);
    EXPECT_GE(point->id, sdf::SdfManager::firstTransientId);
    EXPECT_EQ(point->getParent(), parent);
    EXPECT_EQ(point->getPntPos(), (Pos{5, 6, 7}));
    EXPECT_EQ(traces().registered, before.registered + 1);  // the parent
    EXPECT_FALSE(isPickable(point));
    EXPECT_EQ(lookOfPoint(point), "PointPreview");
    point->setSelected();
    EXPECT_EQ(lookOfPoint(point), "PointPreview");
    point->setHighlighted();
    EXPECT_EQ(lookOfPoint(point), "PointPreview");
}

TEST_F(PointVisuals, APreviewPointOfAnIdStandsUnderTheRootAndInTheRegistry) {
    PointVisual* point = PointVisual::Build(4711, 0.5, -1e10, 2.25);
    EXPECT_EQ(point->id, 4711u);
    EXPECT_EQ(scene().visuals.at(4711), point);
    EXPECT_EQ(point->getParent(), root());
    EXPECT_EQ(point->getPntPos(), (Pos{0.5f, -1e10f, 2.25f}));
    EXPECT_EQ(lookOfPoint(point), "PointPreview");
    EXPECT_FALSE(isPickable(point));
}

// --- bodies of one vertex

TEST_F(PointVisuals, ABrepBodyOfOneVertexInAPartIsAPointThere) {
    auto* vertex = model.make<layout::Body>(
        "vertex", "vertex", BRepBuilderAPI_MakeVertex(gp_Pnt(1.5, 2.5, 3.1)).Vertex());
    auto* holder = model.make<layout::Part>("holder");
    holder->addBody(*vertex);
    scene().addPart(holder);
    pump();
    const auto* point = dynamic_cast<PointVisual*>(visualOf(vertex));
    ASSERT_NE(point, nullptr);
    EXPECT_EQ(point->getParent(), visualOf(holder));
    EXPECT_EQ(point->getPntPos(), (Pos{1.5f, 2.5f, 3.1f}));
    scene().setVisualSelected(holder->id);
    pump();
    EXPECT_EQ(lookOfPoint(point), "PointSelected");
    EXPECT_EQ(colourOf(point), orange);
}

TEST_F(PointVisuals, ABodyIsRegisteredPickableAndNamedLikeItsModelObject) {
    PointVisual* point = buildBody();
    EXPECT_EQ(visualOf(body), point);
    EXPECT_EQ(point->id, body->id);
    EXPECT_EQ(point->getName(), "corner_" + std::to_string(body->id));
    EXPECT_EQ(point->type, VisualType::Point);
    EXPECT_TRUE(isPickable(point));
    EXPECT_EQ(lookOfPoint(point), "Point");
}

TEST_F(PointVisuals, TheVertexStandsAtThePointInANodeThatIsNotMovedThere) {
    const PointVisual* point = buildBody({1, 2, 3});
    EXPECT_EQ(point->getPosition(), (Pos{0, 0, 0}));
    EXPECT_EQ(pictureOf(point).getBoundingBox().getMinimum(), Ogre::Vector3(1, 2, 3));
    EXPECT_EQ(pictureOf(point).getBoundingBox().getMaximum(), Ogre::Vector3(1, 2, 3));
}

TEST_F(PointVisuals, APoseOfTheBodyMovesTheNode) {
    body->setPose({{100, 0, 0}, {}});
    const PointVisual* point = buildBody({1, 2, 3});
    EXPECT_EQ(point->getPosition(), (Pos{100, 0, 0}));
    EXPECT_EQ(point->getPntPos(), (Pos{1, 2, 3}));
}

TEST_F(PointVisuals, EachStateHasItsMaterialAndColour) {
    PointVisual* point = buildBody();
    EXPECT_EQ(colourOf(point), white);
    scene().setVisualHighlighted(point);
    pump();
    EXPECT_EQ(lookOfPoint(point), "PointHighlighted");
    EXPECT_EQ(colourOf(point), yellow);
    scene().setVisualSelected(point);
    pump();
    EXPECT_EQ(lookOfPoint(point), "PointSelected");
    EXPECT_EQ(colourOf(point), orange);
    scene().clearSelections();
    pump();
    EXPECT_EQ(lookOfPoint(point), "Point");
    EXPECT_EQ(colourOf(point), white);
}

TEST_F(PointVisuals, AColourIsGivenWithItsAlpha) {
    PointVisual* point = buildBody();
    point->setColor({0.1f, 0.2f, 0.3f}, 0.4f);
    EXPECT_EQ(colourOf(point), Ogre::Vector4(0.1f, 0.2f, 0.3f, 0.4f));
}

TEST_F(PointVisuals, DetectableIsReadFromThePart) {
    auto* picking = selection::VisualSelection::Get();
    EXPECT_TRUE(picking->getObject(buildBody())->detectable);
    scene().deleteVisual(visualOf(body));
    part->setDetectable(false);
    EXPECT_FALSE(picking->getObject(buildBody())->detectable);
    scene().deleteVisual(visualOf(body));
    part->element->set("detectable", std::string("yes"));
    const auto before = traces();
    EXPECT_THROW(buildBody(), std::bad_any_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(PointVisuals, ItsBoxIsFiveUnitsRoundThePointAsItStandsInTheVisual) {
    PointVisual* point = buildBody({1, 2, 3});
    point->setPosition(1000, 0, 0);
    pump();
    const auto* object = selection::VisualSelection::Get()->getObject(point);
    EXPECT_EQ(object->kind, selection::ObjectKind::Point);
    EXPECT_EQ(object->box.min, (Pos{-4, -3, -2}));
    EXPECT_EQ(object->box.max, (Pos{6, 7, 8}));
    EXPECT_EQ(object->worldPose.position, (Pos{1000, 0, 0}));
    EXPECT_EQ(object->inverseWorldPose.position, (Pos{-1000, 0, 0}));
}

TEST_F(PointVisuals, APointThatIsNotFiniteShowsNothingAndHarmsNothing) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float refused : {nan, 2e15f, -3e38f}) {
        PointVisual* preview = PointVisual::Build(root(), {0, 0, refused});
        EXPECT_EQ(pictureOf(preview).getNumSections(), 0u) << refused;
    }
    PointVisual* point = buildBody({nan, 0, 0});
    point->setSelected();
    point->setColor({1, 0, 0}, 1);
    EXPECT_NO_THROW(frame());
}

TEST_F(PointVisuals, APointIsDrawnWhereItStands) {
    const headless::Picture empty = frame();
    PointVisual* point = PointVisual::Build(root(), {0, 0, 150});
    point->setColor({1, 0, 1}, 1);
    const headless::Picture picture = frame();
    const auto at = project({0, 0, 150});
    const auto seen = picture.at(static_cast<int>(at.x), static_cast<int>(at.y));
    EXPECT_GT(seen.r, 200);
    EXPECT_LT(seen.g, 60);
    EXPECT_GT(seen.b, 200);
}

TEST_F(PointVisuals, RemovingOneLeavesNothing) {
    const auto before = traces();
    buildBody();
    scene().removeVisual(body->id);
    pump();
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
