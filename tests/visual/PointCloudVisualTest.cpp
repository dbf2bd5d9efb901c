#include "visual/geometry/PointCloudVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include <OgreManualObject.h>
#include <OgreMaterial.h>
#include <OgreRenderOperation.h>
#include <OgreSceneNode.h>

#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/layout/PointCloud.h"
#include "tests/visual/StationFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::Pair;
using visual::PointCloudVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

class PointClouds : public StationVisuals {
protected:
    PointCloudVisual* build(std::vector<Pos> points) {
        cloud = model.make<layout::PointCloud>("scan", std::move(points));
        return PointCloudVisual::Build(root(), cloud);
    }
    PointCloudVisual* build() { return build({{0, 0, 0}, {10, 0, 0}, {0, 20, 0}, {0, 0, 30}}); }
    static Ogre::ManualObject& pictureOf(const Visual* visual) {
        return dynamic_cast<Ogre::ManualObject&>(*visual->node->getAttachedObject(0));
    }
    /// Material and number of points of each section.
    static std::vector<std::pair<std::string, std::size_t>> sectionsOf(const Visual* visual) {
        std::vector<std::pair<std::string, std::size_t>> sections;
        for (auto* section : pictureOf(visual).getSections())
            sections.emplace_back(section->getMaterial()->getName(),
                                  section->getRenderOperation()->vertexData->vertexCount);
        return sections;
    }
    static selection::VisualSelection& picking() { return *selection::VisualSelection::Get(); }

    layout::PointCloud* cloud = nullptr;
};

TEST_F(PointClouds, ACloudIsRegisteredAtItsPoseAndPickableAmongClouds) {
    cloud = model.make<layout::PointCloud>("scan", std::vector<Pos>{{1, 2, 3}});
    cloud->setPose({{100, 0, 0}, {}});
    const std::size_t others = picking().containers[0].primitives.size();
    PointCloudVisual* visual = PointCloudVisual::Build(root(), cloud);
    EXPECT_EQ(visualOf(cloud), visual);
    EXPECT_EQ(visual->type, VisualType::PointCloud);
    EXPECT_EQ(visual->getName(), "scan_" + std::to_string(cloud->id));
    EXPECT_EQ(visual->getPosition(), (Pos{100, 0, 0}));
    EXPECT_TRUE(isPickable(visual));
    EXPECT_EQ(picking().containers[0].primitives.size(), others);
    EXPECT_EQ(picking().containers[1].primitives.size(), 1u);
    EXPECT_EQ(picking().getObject(visual)->kind, selection::ObjectKind::PointCloud);
}

TEST_F(PointClouds, AllPointsAreOneSectionOfPoints) {
    PointCloudVisual* visual = build();
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 4)));
    const auto* section = pictureOf(visual).getSection(0);
    EXPECT_EQ(const_cast<Ogre::ManualObject::ManualObjectSection*>(section)
                  ->getRenderOperation()
                  ->operationType,
              Ogre::RenderOperation::OT_POINT_LIST);
    EXPECT_LT(section->getCustomParameter(0).w, 0.0f);  // each point has its own colour
}

TEST_F(PointClouds, SelectedPointsAreDrawnOnceMoreInTheirOwnColour) {
    PointCloudVisual* visual = build();
    visual->setSelectedIndices({1, 3});
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 2)));
    EXPECT_EQ(pictureOf(visual).getSection(1)->getCustomParameter(0), Ogre::Vector4(1, 0.5f, 0, 1));
    visual->setSelectedIndices({0});  // in place of the two
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 1)));
    EXPECT_EQ(visual->node->numAttachedObjects(), 1u);
}

TEST_F(PointClouds, AnIndexBeyondTheCloudIsNotDrawn) {
    PointCloudVisual* visual = build();
    visual->setSelectedIndices({3, 4, 1000000, std::numeric_limits<unsigned long>::max()});
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 1)));
    EXPECT_EQ(visual->getSelectedIndices().size(), 4u);
}

TEST_F(PointClouds, AnIndexGivenTwiceCountsOnce) {
    PointCloudVisual* visual = build();
    visual->setSelectedIndices({2, 2, 2});
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 1)));
}

TEST_F(PointClouds, HidingTheUnselectedTakesEffectAtTheNextUpdate) {
    PointCloudVisual* visual = build();
    visual->setSelectedIndices({1});
    visual->setUnselectedVisible(false);
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 1)));
    visual->updateRenderPrimitive();
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 1), Pair("PointCloudSelected", 1)));
    visual->setUnselectedVisible(true);
    visual->updateRenderPrimitive();
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 1)));
}

TEST_F(PointClouds, WithNothingSelectedAndTheRestHiddenNothingIsDrawn) {
    PointCloudVisual* visual = build();
    visual->setUnselectedVisible(false);
    visual->updateRenderPrimitive();
    EXPECT_THAT(sectionsOf(visual), ElementsAre());
    EXPECT_FALSE(visual->getBoundingBox().isValid());
    EXPECT_TRUE(isPickable(visual));  // the points are still there
    EXPECT_NO_THROW(frame());
}

TEST_F(PointClouds, ResettingBringsTheCloudBackWithNoSelection) {
    PointCloudVisual* visual = build();
    visual->setSelectedIndices({0, 1});
    visual->resetAppearance();
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 4)));
    EXPECT_TRUE(visual->getSelectedIndices().empty());
}

TEST_F(PointClouds, TheBoundsAreThoseOfWhatIsDrawn) {
    PointCloudVisual* visual = build();
    EXPECT_EQ(visual->getBoundingBox().min, (Pos{0, 0, 0}));
    EXPECT_EQ(visual->getBoundingBox().max, (Pos{10, 20, 30}));
    visual->setUnselectedVisible(false);
    visual->setSelectedIndices({1});
    EXPECT_EQ(visual->getBoundingBox().min, (Pos{10, 0, 0}));
    EXPECT_EQ(visual->getBoundingBox().max, (Pos{10, 0, 0}));
}

TEST_F(PointClouds, BeforeTheFirstUpdateThereIsNoPictureAndTheBoundsAreEmpty) {
    cloud = model.make<layout::PointCloud>("scan", std::vector<Pos>{{1, 2, 3}});
    const PointCloudVisual visual(root(), cloud);
    EXPECT_EQ(visual.node->numAttachedObjects(), 0u);
    EXPECT_FALSE(visual.getBoundingBox().isValid());
}

TEST_F(PointClouds, ItsBoxInTheWorldIsThreeUnitsWiderThanThePointsAndFollowsThePose) {
    PointCloudVisual* visual = build();
    visual->setPosition(100, 0, 0);
    pump();
    const auto* object = picking().getObject(visual);
    EXPECT_EQ(object->box.min, (Pos{97, -3, -3}));
    EXPECT_EQ(object->box.max, (Pos{113, 23, 33}));
}

TEST_F(PointClouds, AnEmptyCloudIsNotPickableUntilItHasPoints) {
    PointCloudVisual* visual = build({});
    EXPECT_FALSE(isPickable(visual));
    EXPECT_TRUE(scene().visuals.contains(cloud->id));
    EXPECT_NO_THROW(frame());
    cloud->points = {{1, 1, 1}};
    visual->updateRenderPrimitive();
    EXPECT_TRUE(isPickable(visual));
    cloud->points.clear();
    visual->updateRenderPrimitive();
    EXPECT_FALSE(isPickable(visual));
    EXPECT_TRUE(picking().containers[1].primitives.empty());
    EXPECT_EQ(pictureOf(visual).getNumSections(), 0u);
}

TEST_F(PointClouds, PointsThatComeBackArePickedIfTheCloudIsVisible) {
    PointCloudVisual* visual = build();
    const auto takePoints = [&] {
        cloud->points.clear();
        visual->updateRenderPrimitive();
    };
    const auto givePoints = [&] {
        cloud->points = {{4, 5, 6}};
        visual->updateRenderPrimitive();
    };
    scene().setVisualVisible(cloud->id, false);
    pump();
    takePoints();
    givePoints();
    EXPECT_FALSE(picking().getObject(visual)->enabled);
    takePoints();
    scene().setVisualVisible(cloud->id, true);
    pump();
    givePoints();
    EXPECT_TRUE(picking().getObject(visual)->enabled);
}

TEST_F(PointClouds, PointsThatComeBackAreAsDetectableAsTheHostHadSet) {
    PointCloudVisual* visual = build();
    picking().setDetectable(visual, false);
    cloud->points.clear();
    visual->updateRenderPrimitive();
    cloud->points = {{4, 5, 6}};
    visual->updateRenderPrimitive();
    EXPECT_FALSE(picking().getObject(visual)->detectable);
}

TEST_F(PointClouds, AnUpdateReadsThePointsAnew) {
    PointCloudVisual* visual = build();
    cloud->points.push_back({500, 0, 0});
    visual->updateRenderPrimitive();
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 5)));
    EXPECT_EQ(picking().containers[1].primitives.size(), 1u);
}

TEST_F(PointClouds, PointsThatAreNotFiniteAreNotDrawn) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    PointCloudVisual* visual = build({{nan, 0, 0}, {1, 2, 3}, {0, -inf, 0}});
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 1)));
    EXPECT_EQ(visual->getBoundingBox().max, (Pos{1, 2, 3}));
    visual->setSelectedIndices({0, 1});  // indices count them all the same
    EXPECT_THAT(sectionsOf(visual),
                ElementsAre(Pair("PointCloud", 1), Pair("PointCloudSelected", 1)));
    EXPECT_NO_THROW(frame());
}

TEST_F(PointClouds, DetectableIsReadFromTheElementAbove) {
    EXPECT_TRUE(picking().getObject(build())->detectable);
    auto* holder = model.make<layout::Assembly>("holder");
    cloud = model.make<layout::PointCloud>("scan", std::vector<Pos>{{1, 2, 3}});
    holder->addChild(*cloud);
    holder->element->set("detectable", false);
    EXPECT_FALSE(picking().getObject(PointCloudVisual::Build(root(), cloud))->detectable);
}

TEST_F(PointClouds, OnlyACloudCanBeBuiltAsOne) {
    const auto before = traces();
    EXPECT_THROW(PointCloudVisual::Build(root(), makeBoxPart("part")), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

TEST_F(PointClouds, SelectedAsAWholeItWearsTheSelectedMaterialUntilItIsCleared) {
    PointCloudVisual* visual = build();
    scene().setVisualSelected(cloud->id);
    pump();
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloudSelected", 4)));
    scene().clearSelections();
    pump();
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 4)));
}

TEST_F(PointClouds, RemovingOneLeavesNothing) {
    const auto before = traces();
    build();
    scene().removeVisual(cloud->id);
    pump();
    EXPECT_EQ(traces(), before);
    EXPECT_TRUE(picking().containers[1].primitives.empty());
}

TEST_F(PointClouds, SelectedPointsStandOutInThePicture) {
    PointCloudVisual* visual = build({{0, 0, 150}, {40, 0, 150}});
    const auto colourAt = [&](const headless::Picture& picture, const Pos& point) {
        const auto at = project(point);
        return picture.at(static_cast<int>(at.x), static_cast<int>(at.y));
    };
    visual->setSelectedIndices({1});
    const headless::Picture picture = frame();
    const auto plain = colourAt(picture, {0, 0, 150}), selected = colourAt(picture, {40, 0, 150});
    EXPECT_EQ(selected.r, 255);
    EXPECT_NEAR(selected.g, 128, 2);
    EXPECT_EQ(selected.b, 0);
    EXPECT_NE(plain.b, selected.b);
}

TEST_F(PointClouds, PointsAreTheLighterTheHigherTheyLie) {
    build({{0, 0, 100}, {40, 0, 150}, {80, 0, 200}});
    const headless::Picture picture = frame();
    const auto expectColour = [&](const Pos& point, const rob::ColorTemplate<float>& colour) {
        const auto at = project(point);
        const auto seen = picture.at(static_cast<int>(at.x), static_cast<int>(at.y));
        EXPECT_NEAR(seen.r, colour.r * 255, 2) << point.z;
        EXPECT_NEAR(seen.g, colour.g * 255, 2) << point.z;
        EXPECT_NEAR(seen.b, colour.b * 255, 2) << point.z;
    };
    const auto low = PointCloudVisual::lowColor, high = PointCloudVisual::highColor;
    expectColour({0, 0, 100}, low);
    expectColour({40, 0, 150}, {(low.r + high.r) / 2, (low.g + high.g) / 2, (low.b + high.b) / 2});
    expectColour({80, 0, 200}, high);
}

TEST_F(PointClouds, AFlatCloudHasTheColourBetween) {
    build({{0, 0, 150}, {40, 0, 150}});
    const auto at = project({0, 0, 150});
    const auto seen = frame().at(static_cast<int>(at.x), static_cast<int>(at.y));
    EXPECT_NEAR(seen.r, (PointCloudVisual::lowColor.r + PointCloudVisual::highColor.r) / 2 * 255,
                2);
}

TEST_F(PointClouds, PointsTooFarForTheEngineAreNotDrawn) {
    const float most = std::numeric_limits<float>::max();
    PointCloudVisual* visual = build({{0, 0, -most}, {0, most, 0}, {2e15f, 0, 0}, {0, 0, 1e15f}});
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 1)));
    EXPECT_NO_THROW(frame());
}

// --- Scene::selectPointCloud

TEST_F(PointClouds, SelectingPointsReplacesTheSelectionAndIsClearedWithIt) {
    PointCloudVisual* first = build();
    const std::uint32_t firstId = cloud->id;
    PointCloudVisual* second = build();
    Visual* part = showBoxPart("part");
    scene().setVisualSelected(part);
    pump();
    scene().selectPointCloud({{firstId, {0, 1}}, {cloud->id, {2}}});
    EXPECT_TRUE(first->getSelectedIndices().empty());  // only in the tasks
    pump();
    EXPECT_FALSE(scene().isSelected(part));
    EXPECT_EQ(lookOf(part), "Body");
    EXPECT_THAT(sectionsOf(first),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 2)));
    EXPECT_THAT(sectionsOf(second),
                ElementsAre(Pair("PointCloud", 4), Pair("PointCloudSelected", 1)));
    EXPECT_TRUE(scene().isSelected(first));
    scene().clearSelections();
    pump();
    EXPECT_THAT(sectionsOf(first), ElementsAre(Pair("PointCloud", 4)));
    EXPECT_THAT(sectionsOf(second), ElementsAre(Pair("PointCloud", 4)));
    EXPECT_FALSE(scene().isSelected(first));
}

TEST_F(PointClouds, SelectingPointsClearsTheHighlight) {
    build();
    Visual* part = showBoxPart("part");
    scene().setVisualHighlighted(part);
    pump();
    scene().selectPointCloud({{cloud->id, {0}}});
    pump();
    EXPECT_EQ(lookOf(part), "Body");
}

TEST_F(PointClouds, SelectingNoPointsClearsTheSelection) {
    PointCloudVisual* visual = build();
    scene().selectPointCloud({{cloud->id, {0, 1}}});
    pump();
    scene().selectPointCloud({});
    pump();
    EXPECT_THAT(sectionsOf(visual), ElementsAre(Pair("PointCloud", 4)));
}

TEST_F(PointClouds, SelectingPointsOfWhatIsNotThereOrNoCloudThrowsInTheTask) {
    scene().selectPointCloud({{123456789, {0}}});
    EXPECT_THROW(scene().processMsgs(), std::out_of_range);
    Visual* part = showBoxPart("part");
    scene().selectPointCloud({{part->id, {0}}});
    EXPECT_THROW(scene().processMsgs(), std::bad_cast);
    EXPECT_FALSE(scene().isSelected(part));
}

}  // namespace vrn::test
