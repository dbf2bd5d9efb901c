#include "visual/station/WObjVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include <OgreSceneNode.h>

#include "mesh/DynamicLines.h"
#include "selection/SelectableObject.h"
#include "selection/VisualSelection.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/DataItem.h"
#include "tests/visual/StationFixture.h"
#include "visual/station/FrameVisual.h"
#include "visual/VisualIterator.h"

namespace vrn::test {

using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;
using visual::FrameVisual;
using visual::Visual;
using visual::WObjVisual;
using Pos = rob::PosTemplate<float>;

class WObjs : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        item = makeItem("wobj");
    }
    task::WObjDataItem* makeItem(const std::string& name, bool fixed = true) {
        auto* made = model.make<task::WObjDataItem>(name, fixed);
        auto* frame = model.make<task::ObjectFrame>(name + " frame");
        frame->setPose({{0, 0, 10}, {}});
        made->setObjectFrame(*frame);
        made->setPose({{100, 0, 0}, {}});
        return made;
    }
    WObjVisual* build() {
        WObjVisual::Build(root(), item);
        return dynamic_cast<WObjVisual*>(visualOf(item));
    }
    static float sizeOf(const FrameVisual* frame) {
        return frame->getLines().at(0)->getPoints().at(1).x;
    }

    task::WObjDataItem* item = nullptr;
};

TEST_F(WObjs, AWorkObjectIsAUserFrameWithAnObjectFrameInIt) {
    WObjVisual* wobj = build();
    EXPECT_EQ(wobj->type, VisualType::WObj);
    EXPECT_EQ(wobj->id, item->id);
    EXPECT_EQ(wobj->getName(), "__WOBJ_" + std::to_string(item->id));
    EXPECT_EQ(wobj->Visual::node->numAttachedObjects(), 0u);
    EXPECT_THAT(wobj->getChildren(), ElementsAre(wobj->getUserFrame()));
    EXPECT_THAT(wobj->getUserFrame()->getChildren(), ElementsAre(wobj->getObjectFrame()));
    EXPECT_EQ(wobj->getUserFrame()->type, VisualType::WObjUserFrame);
    EXPECT_EQ(wobj->getObjectFrame()->type, VisualType::WObjObjectFrame);
    EXPECT_EQ(wobj->getUserFrame()->getName(), "uframe" + std::to_string(item->id));
    EXPECT_EQ(wobj->getObjectFrame()->getName(),
              "oframe" + std::to_string(item->getObjectFrame()->id));
}

TEST_F(WObjs, TheObjectFrameIsRegisteredAndTheUserFrameIsNot) {
    const auto before = traces();
    WObjVisual* wobj = build();
    EXPECT_EQ(visualOf(item->getObjectFrame()), wobj->getObjectFrame());
    EXPECT_GE(wobj->getUserFrame()->id, sdf::SdfManager::firstTransientId);
    EXPECT_FALSE(scene().visuals.contains(wobj->getUserFrame()->id));
    EXPECT_EQ(traces().registered, before.registered + 2);
    EXPECT_TRUE(isPickable(wobj->getUserFrame()));
    EXPECT_TRUE(isPickable(wobj->getObjectFrame()));
    EXPECT_FALSE(isPickable(wobj));
}

TEST_F(WObjs, TheConstructorRegistersWithoutTheSelection) {
    auto* wobj = new WObjVisual(root(), item);
    EXPECT_EQ(visualOf(item), wobj);
    EXPECT_EQ(visualOf(item->getObjectFrame()), wobj->getObjectFrame());
    EXPECT_FALSE(isPickable(wobj->getUserFrame()));
}

TEST_F(WObjs, BothFramesHaveTheSizeOfWorkObjects) {
    scene().settings.wobjFrameSize = 77;
    const WObjVisual* wobj = build();
    EXPECT_EQ(sizeOf(wobj->getUserFrame()), 77.0f);
    EXPECT_EQ(sizeOf(wobj->getObjectFrame()), 77.0f);
}

TEST_F(WObjs, AFixedUserFrameStandsAtItsPose) {
    const WObjVisual* wobj = build();
    EXPECT_EQ(wobj->getPosition(), (Pos{100, 0, 0}));
    EXPECT_EQ(wobj->getUserFrame()->getPosition(), (Pos{0, 0, 0}));
    EXPECT_EQ(wobj->getObjectFrame()->getWorldPosition(), (Pos{100, 0, 10}));
}

TEST_F(WObjs, WithoutAFixedUserFrameItStandsWhereItsParentIs) {
    item->setFixedUFrame(false);
    const WObjVisual* wobj = build();
    EXPECT_EQ(wobj->getPosition(), (Pos{0, 0, 0}));
    EXPECT_EQ(wobj->getObjectFrame()->getWorldPosition(), (Pos{0, 0, 10}));
}

TEST_F(WObjs, TheObjectFrameIsSetInTheUserFrame) {
    WObjVisual* wobj = build();
    wobj->setObjectFrame({{1, 2, 3}, {0, 0, 0, 1}});
    EXPECT_EQ(wobj->getObjectFrame()->getPosition(), (Pos{1, 2, 3}));
    EXPECT_EQ(wobj->getObjectFrame()->getWorldPosition(), (Pos{101, 2, 3}));
}

TEST_F(WObjs, SeveralHaveFramesOfTheirOwn) {
    const WObjVisual* first = build();
    item = makeItem("wobj");
    const WObjVisual* second = build();
    EXPECT_NE(first->getUserFrame(), second->getUserFrame());
    EXPECT_NE(first->getName(), second->getName());
}

TEST_F(WObjs, WithItsObjectFrameRemovedTheUserFrameGoesOn) {
    WObjVisual* wobj = build();
    scene().removeVisual(item->getObjectFrame()->id);
    pump();
    EXPECT_EQ(wobj->getObjectFrame(), nullptr);
    scene().setFrameSize(33, VisualType::WObj);
    pump();
    EXPECT_EQ(sizeOf(wobj->getUserFrame()), 33.0f);
    wobj->setSelected();
    wobj->setHighlighted();
    wobj->resetAppearance();
    EXPECT_NO_THROW(wobj->setObjectFrame({{1, 2, 3}, {}}));
}

TEST_F(WObjs, AUserFrameThatIsDeletedIsForgottenWithWhatHangsInIt) {
    WObjVisual* wobj = build();
    scene().deleteVisual(wobj->getUserFrame());
    EXPECT_EQ(wobj->getUserFrame(), nullptr);
    EXPECT_EQ(wobj->getObjectFrame(), nullptr);
    item->parentId = addPlain(VisualType::Part)->id;
    scene().updateWObj(item->id);
    scene().setFrameSize(33, VisualType::WObj);
    scene().setVisualHighlighted(item->id);
    scene().setVisualSelected(item->id);
    scene().clearSelections();
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(wobj->getPosition(), (Pos{100, 0, 0}));
}

TEST_F(WObjs, AUserFrameThatHangsElsewhereIsTheWorkObjectsNoMore) {
    Visual* carrier = addPlain(VisualType::Part);
    WObjVisual* wobj = build();
    FrameVisual* userFrame = wobj->getUserFrame();
    scene().attachVisual(carrier->id, userFrame);
    pump();
    ASSERT_EQ(userFrame->getParent(), carrier);
    EXPECT_EQ(wobj->getUserFrame(), nullptr);
    EXPECT_EQ(wobj->getObjectFrame(), visualOf(item->getObjectFrame()));
    scene().setFrameSize(33, VisualType::WObj);
    pump();
    EXPECT_EQ(sizeOf(userFrame), 90.0f);
    EXPECT_EQ(sizeOf(wobj->getObjectFrame()), 33.0f);
    scene().removeVisual(carrier->id);
    scene().setVisualSelected(item->id);
    EXPECT_NO_THROW(pump());
    EXPECT_EQ(wobj->getObjectFrame(), nullptr);
}

// --- refusals

TEST_F(WObjs, WithoutAnObjectFrameNothingIsBuilt) {
    item->removeChild(*item->getObjectFrame());
    const auto before = traces();
    EXPECT_THAT([&] { WObjVisual::Build(root(), item); },
                ThrowsMessage<std::invalid_argument>(testing::HasSubstr("no object frame")));
    EXPECT_EQ(traces(), before);
}

TEST_F(WObjs, APoseThatIsNotFiniteThrowsAndNothingIsLeft) {
    const auto before = traces();
    item->setPose({{std::numeric_limits<double>::quiet_NaN(), 0, 0}, {}});
    EXPECT_THROW(WObjVisual::Build(root(), item), std::invalid_argument);
    item->setPose({});
    item->getObjectFrame()->setPose(
        {{0, 0, 0}, {1, std::numeric_limits<double>::infinity(), 0, 0}});
    EXPECT_THROW(WObjVisual::Build(root(), item), std::invalid_argument);
    EXPECT_EQ(traces(), before);
    EXPECT_NO_THROW(frame());
}

TEST_F(WObjs, OnlyAWorkObjectCanBeBuiltAsOne) {
    const auto before = traces();
    EXPECT_THROW(WObjVisual::Build(root(), model.make<task::ToolDataItem>("tcp")), std::bad_cast);
    EXPECT_EQ(traces(), before);
}

// --- visibility and looks

TEST_F(WObjs, CascadesOfAParentAndWalksLeaveItAlone) {
    Visual* part = showBoxPart("carrier");
    WObjVisual* wobj = build();
    part->attachVisual(wobj);
    part->setVisible(false, /*cascade=*/true);
    EXPECT_TRUE(wobj->visible);
    EXPECT_TRUE(isDrawn(wobj->getUserFrame()));
    for (visual::VisualIterator it(part, /*includeAttached=*/false); it.next();)
        EXPECT_NE(it.value(), wobj);
}

TEST_F(WObjs, TheSwitchOfAllWorkObjectsReachesBothFrames) {
    WObjVisual* wobj = build();
    scene().setWObjVisualVisible(false);
    pump();
    EXPECT_FALSE(isDrawn(wobj->getUserFrame()));
    EXPECT_FALSE(isDrawn(wobj->getObjectFrame()));
    scene().setWObjVisualVisible(true);
    pump();
    EXPECT_TRUE(isDrawn(wobj->getUserFrame()));
    EXPECT_TRUE(isDrawn(wobj->getObjectFrame()));
}

TEST_F(WObjs, BothFramesTakeItsLook) {
    WObjVisual* wobj = build();
    const auto expectLook = [&](const std::vector<std::string>& look) {
        EXPECT_EQ(axisLooks(wobj->getUserFrame()), look);
        EXPECT_EQ(axisLooks(wobj->getObjectFrame()), look);
    };
    scene().setVisualHighlighted(wobj);
    pump();
    expectLook({"WhiteFrameLine", "WhiteFrameLine", "WhiteFrameLine"});
    scene().setVisualSelected(wobj);
    pump();
    expectLook({"RedFrameLineSelected", "GreenFrameLineSelected", "BlueFrameLineSelected"});
    scene().clearSelections();
    pump();
    expectLook({"RedFrameLine", "GreenFrameLine", "BlueFrameLine"});
}

// --- update

TEST_F(WObjs, AnUpdateMovesToTheParentAndThePosesOfTheModel) {
    Visual* carrier = addPlain(VisualType::Part);
    carrier->setPosition(0, 1000, 0);
    WObjVisual* wobj = build();
    item->parentId = carrier->id;
    item->setPose({{5, 0, 0}, {}});
    item->getObjectFrame()->setPose({{0, 0, 20}, {}});
    wobj->update();
    EXPECT_EQ(wobj->getParent(), carrier);
    EXPECT_EQ(wobj->getWorldPosition(), (Pos{5, 1000, 0}));
    EXPECT_EQ(wobj->getObjectFrame()->getWorldPosition(), (Pos{5, 1000, 20}));
}

TEST_F(WObjs, AnUpdateTakesThePoseAlsoWithoutAFixedUserFrame) {
    Visual* carrier = addPlain(VisualType::Part);
    item->setFixedUFrame(false);
    item->parentId = carrier->id;
    WObjVisual* wobj = build();
    ASSERT_EQ(wobj->getPosition(), (Pos{0, 0, 0}));
    scene().updateWObj(item->id);
    pump();
    EXPECT_EQ(wobj->getPosition(), (Pos{100, 0, 0}));
}

TEST_F(WObjs, AnUpdateMarksBothFramesDirty) {
    Visual* carrier = addPlain(VisualType::Part);
    item->parentId = carrier->id;
    WObjVisual* wobj = build();
    pump();
    auto* picking = selection::VisualSelection::Get();
    ASSERT_FALSE(picking->dirty);
    wobj->update();
    EXPECT_TRUE(picking->dirty);
    EXPECT_TRUE(picking->getObject(wobj->getUserFrame())->worldBoxDirty);
    EXPECT_TRUE(picking->getObject(wobj->getObjectFrame())->worldBoxDirty);
}

TEST_F(WObjs, AnUpdateNeedsTheVisualOfItsParent) {
    WObjVisual* wobj = build();
    for (const std::uint32_t parentId : {0u, 123456789u}) {
        item->parentId = parentId;
        EXPECT_THAT([&] { wobj->update(); },
                    ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
        EXPECT_EQ(wobj->getParent(), root());
    }
}

TEST_F(WObjs, RemovingItTakesTheObjectFrameOutOfTheRegistry) {
    const auto before = traces();
    build();
    scene().removeVisual(item->id);
    pump();
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
