#include "visual/station/WristVisual.h"

#include <limits>

#include <gtest/gtest.h>

#include <OgreSceneNode.h>

#include "tests/visual/StationFixture.h"

namespace vrn::test {

using visual::Visual;
using visual::WristVisual;

class Wrists : public StationVisuals {
protected:
    layout::Wrist* makeWrist() { return model.make<layout::Wrist>("wrist"); }
};

TEST_F(Wrists, AWristIsABareRegisteredPlace) {
    layout::Wrist* wrist = makeWrist();
    wrist->setPose({{0.1, 2, 3}, {0, 0, 0, 1}});
    Visual* parent = addPlain(VisualType::Link);
    WristVisual::Build(parent, wrist);
    Visual* visual = visualOf(wrist);
    EXPECT_EQ(visual->type, VisualType::Wrist);
    EXPECT_EQ(visual->id, wrist->id);
    EXPECT_EQ(visual->getParent(), parent);
    EXPECT_EQ(visual->getPosition(), (rob::PosTemplate<float>{0.1f, 2, 3}));
    EXPECT_TRUE(visual->getWorldRotation().isApprox({0, 0, 0, 1}));
    EXPECT_TRUE(visual->getChildren().empty());
    EXPECT_EQ(visual->node->numAttachedObjects(), 0u);
    EXPECT_FALSE(isPickable(visual));
}

TEST_F(Wrists, AWristWithoutAPoseStandsAtItsParent) {
    layout::Wrist* wrist = makeWrist();
    WristVisual::Build(root(), wrist);
    EXPECT_EQ(visualOf(wrist)->getPosition(), (rob::PosTemplate<float>{0, 0, 0}));
}

TEST_F(Wrists, APoseThatIsNotFiniteThrowsAndNothingIsLeft) {
    layout::Wrist* wrist = makeWrist();
    wrist->setPose({{std::numeric_limits<double>::quiet_NaN(), 0, 0}, {}});
    const auto before = traces();
    EXPECT_THROW(WristVisual::Build(root(), wrist), std::invalid_argument);
    wrist->element->set("pose", 5);
    EXPECT_THROW(WristVisual::Build(root(), wrist), std::bad_any_cast);
    EXPECT_EQ(traces(), before);
}

}  // namespace vrn::test
