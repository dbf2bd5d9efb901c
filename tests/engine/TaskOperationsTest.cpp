#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include "suite/layout/Part.h"
#include "suite/task/DataItem.h"
#include "suite/task/Task.h"
#include "tests/support/EngineFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

using testing::StrEq;
using testing::ThrowsMessage;
using visual::Visual;
using Pos = rob::PosTemplate<float>;

class TaskOperations : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        carrier = showBoxPart("carrier", {{100, 0, 0}, {}});
    }
    task::ToolDataItem* makeToolData(std::uint32_t parentId) {
        auto* item = model.make<task::ToolDataItem>("tcp");
        item->parentId = parentId;
        return item;
    }
    task::WObjDataItem* makeWObj(std::uint32_t parentId) {
        auto* item = model.make<task::WObjDataItem>("wobj");
        item->setObjectFrame(*model.make<task::ObjectFrame>("oframe"));
        item->parentId = parentId;
        return item;
    }
    static Visual* shown(const sdf::SdfNode* object) { return scene().visuals.at(object->id); }
    static bool isShown(const sdf::SdfNode* object) { return scene().visuals.contains(object->id); }
    static void expectUnknownKeyInTask() {
        EXPECT_THAT([] { scene().processMsgs(); },
                    ThrowsMessage<std::out_of_range>(StrEq("unordered_map::at")));
    }

    Visual* carrier = nullptr;
    static constexpr std::uint32_t unknownId = 123456789;
};

TEST_F(TaskOperations, AnAddedTaskBringsItsWorkObjectsAndToolCentrePoints) {
    auto* job = model.make<task::Task>("job");
    auto* wobj = makeWObj(0);
    job->addChild(*wobj);
    auto* tcp = makeToolData(0);
    job->addChild(*tcp);
    tcp->parentId = carrier->id;
    scene().addTask(job->id);
    EXPECT_FALSE(isShown(wobj));
    pump();
    EXPECT_EQ(shown(wobj)->getParent(), scene().root);
    EXPECT_EQ(shown(tcp)->getParent(), carrier);
}

TEST_F(TaskOperations, ATaskIsBuiltAtOnceOnTheRenderThread) {
    auto* job = model.make<task::Task>("job");
    auto* wobj = makeWObj(0);
    job->addChild(*wobj);
    scene().buildTask(job->id);
    EXPECT_TRUE(isShown(wobj));
    EXPECT_THROW(scene().buildTask(unknownId), std::out_of_range);
    EXPECT_THROW(scene().buildTask(carrier->id), std::bad_cast);
}

TEST_F(TaskOperations, AnAddedTaskMustBeOneThatTheModelKnows) {
    scene().addTask(unknownId);
    expectUnknownKeyInTask();
    scene().addTask(carrier->id);
    EXPECT_THROW(scene().processMsgs(), std::bad_cast);
}

TEST_F(TaskOperations, AddedToolDataHangUnderTheVisualOfTheirParent) {
    auto* item = makeToolData(carrier->id);
    item->setPose({{0, 0, 50}, {}});
    scene().addToolData(item->id);
    pump();
    EXPECT_EQ(shown(item)->getParent(), carrier);
    EXPECT_EQ(shown(item)->getWorldPosition(), (Pos{100, 0, 50}));
}

TEST_F(TaskOperations, AddedToolDataDoNotFallBackToTheRoot) {
    for (const std::uint32_t parentId : {0u, unknownId}) {
        auto* item = makeToolData(parentId);
        scene().addToolData(item->id);
        expectUnknownKeyInTask();
        EXPECT_FALSE(isShown(item));
    }
    scene().addToolData(unknownId);
    expectUnknownKeyInTask();
}

TEST_F(TaskOperations, UpdatedToolDataAreMadeAnew) {
    auto* item = makeToolData(carrier->id);
    scene().addToolData(item->id);
    pump();
    Visual* other = showBoxPart("other");
    item->parentId = other->id;
    item->setPose({{0, 0, 70}, {}});
    scene().updateToolData(item->id);
    pump();
    EXPECT_EQ(shown(item)->getParent(), other);
    EXPECT_EQ(shown(item)->getPosition(), (Pos{0, 0, 70}));
    EXPECT_EQ(findBelow(carrier, VisualType::Tcp), nullptr);
}

TEST_F(TaskOperations, UpdatedToolDataMustBeShownAlready) {
    auto* item = makeToolData(carrier->id);
    scene().updateToolData(item->id);
    expectUnknownKeyInTask();
    EXPECT_FALSE(isShown(item));
}

TEST_F(TaskOperations, UpdatedToolDataWhoseParentIsGoneAreRemovedAndThrow) {
    auto* item = makeToolData(carrier->id);
    scene().addToolData(item->id);
    pump();
    item->parentId = unknownId;
    scene().updateToolData(item->id);
    expectUnknownKeyInTask();
    EXPECT_FALSE(isShown(item));
}

TEST_F(TaskOperations, AnAddedWorkObjectFallsBackToTheRoot) {
    auto* placed = makeWObj(carrier->id);
    auto* loose = makeWObj(0);
    auto* dangling = makeWObj(unknownId);
    for (task::WObjDataItem* item : {placed, loose, dangling}) scene().addWObj(item);
    EXPECT_FALSE(isShown(placed));
    pump();
    EXPECT_EQ(shown(placed)->getParent(), carrier);
    EXPECT_EQ(shown(loose)->getParent(), scene().root);
    EXPECT_EQ(shown(dangling)->getParent(), scene().root);
}

TEST_F(TaskOperations, AnUpdatedWorkObjectMovesToItsModel) {
    auto* item = makeWObj(carrier->id);
    scene().addWObj(item);
    item->setPose({{0, 0, 30}, {}});
    scene().updateWObj(item->id);
    pump();
    EXPECT_EQ(shown(item)->getWorldPosition(), (Pos{100, 0, 30}));
}

TEST_F(TaskOperations, AnUpdatedWorkObjectAndItsParentMustBeShown) {
    scene().updateWObj(unknownId);
    expectUnknownKeyInTask();
    auto* item = makeWObj(0);
    scene().addWObj(item);
    scene().updateWObj(item->id);
    expectUnknownKeyInTask();
}

}  // namespace vrn::test
