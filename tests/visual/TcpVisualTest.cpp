#include "visual/station/TcpVisual.h"

#include <limits>

#include <gmock/gmock.h>

#include "mesh/DynamicLines.h"
#include "suite/task/DataItem.h"
#include "tests/visual/StationFixture.h"

namespace vrn::test {

using testing::ElementsAre;
using visual::TcpVisual;
using visual::Visual;

class Tcps : public StationVisuals {
protected:
    void SetUp() override {
        StationVisuals::SetUp();
        item = model.make<task::ToolDataItem>("tcp");
    }
    task::ToolDataItem* item = nullptr;
};

TEST_F(Tcps, ATcpStandsAtItsPoseNamedByItsId) {
    item->setPose({{1, 2, 300}, {0, 1, 0, 0}});
    TcpVisual::Build(root(), item);
    Visual* visual = visualOf(item);
    EXPECT_EQ(visual->type, VisualType::Tcp);
    EXPECT_EQ(visual->id, item->id);
    EXPECT_EQ(visual->getName(), "TCP_" + std::to_string(item->id));
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{1, 2, 300}));
    EXPECT_TRUE(visual->getWorldRotation().isApprox({0, 1, 0, 0}));
    EXPECT_TRUE(isPickable(visual));
    EXPECT_THAT(axisLooks(visual), ElementsAre("RedFrameLine", "GreenFrameLine", "BlueFrameLine"));
}

TEST_F(Tcps, ItsSizeIsTheSettingOfTcps) {
    scene().settings.tcpFrameSize = 33;
    const TcpVisual visual(root(), item);
    EXPECT_EQ(visual.getLines().at(2)->getPoints().at(1).z, 33.0f);
}

TEST_F(Tcps, APoseThatIsNotFiniteThrowsAndNothingIsLeft) {
    item->setPose({{0, 0, std::numeric_limits<double>::infinity()}, {}});
    const auto before = traces();
    EXPECT_THROW(TcpVisual::Build(root(), item), std::invalid_argument);
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
