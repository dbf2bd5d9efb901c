#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/vrnview/ContentScene.h"
#include "apps/vrnview/program/ProgramPlan.h"
#include "apps/vrnview/program/RobotProgram.h"
#include "apps/vrnview/readers/Content.h"
#include "suite/broker/SignalBroker.h"
#include "suite/layout/Layout.h"
#include "suite/sdf/SdfManager.h"
#include "suite/task/Task.h"
#include "tests/apps/ArmStation.h"
#include "tests/support/EngineFixture.h"
#include "visual/task/TcpTraceVisual.h"
#include "visual/Visual.h"

namespace vrn::test {

/// The arm's station in the scene, and the plan of its task.
class ProgramStage : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        writeBoxStl("box.stl", {-20, -20, 0}, {20, 20, 60});
        content = host::ReadStation(
            ArmStation(R"("tasks": [)" + DrawTask(DrawMoves()) + "]", "", /*withBodies=*/true),
            folder() / "arm.station.json");
        ASSERT_THAT(content.problems, testing::IsEmpty());
        plan = host::ProgramPlan::Make(host::ProgramOf(content, *content.tasks.at(0)));
        for (const visual::Visual* child : scene().root->getChildren()) furniture.insert(child);
        host::ShowContent(content);
        ASSERT_THAT(content.problems, testing::IsEmpty());
        pump();
    }
    void TearDown() override {
        scene().clearTcpTrace();
        pump();
        for (const visual::Visual* child : scene().root->getChildren())
            if (!furniture.contains(child)) scene().removeVisual(child->id);
        pump();
        layout::Layout::inst()->clear();
        for (const task::Task* task : content.tasks) task::RemoveTask(*task);
        content = {};
        EngineTest::TearDown();
    }

    [[nodiscard]] const host::JointedObject& robot() const { return content.jointed.at(0); }
    /// Null without one.
    [[nodiscard]] static visual::TcpTraceVisual* findTrace() {
        for (visual::Visual* child : scene().root->getChildren())
            if (auto* trace = dynamic_cast<visual::TcpTraceVisual*>(child)) return trace;
        return nullptr;
    }

    host::Content content;
    host::ProgramPlan plan;

private:
    std::unordered_set<const visual::Visual*> furniture;
};

}  // namespace vrn::test
