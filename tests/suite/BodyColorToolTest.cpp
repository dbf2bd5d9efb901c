#include "suite/geom/BodyColorTool.h"

#include "suite/layout/Body.h"
#include "suite/sdf/ObjectStore.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using vrn::geometry::BodyColorTool;
using vrn::layout::Body;

class BodyColorToolTest : public testing::Test {
protected:
    vrn::sdf::ObjectStore store;
    Body* body = store.make<Body>("b", "b.stl", std::string("stl"));
};

TEST_F(BodyColorToolTest, UnknownIdIsRedAllOver) {
    EXPECT_EQ(BodyColorTool::GetBodyColor(0u), "#ED1C24");
    EXPECT_EQ(BodyColorTool::GetFaceColor(0u, 3), "#ED1C24");
    EXPECT_EQ(BodyColorTool::GetColorInfo(0u).bodyColor, "#ED1C24");
    EXPECT_TRUE(BodyColorTool::GetColorInfo(0u).faceColors.empty());
    EXPECT_EQ(BodyColorTool::GetBodyColor(std::shared_ptr<vrn::sdf::Element>()), "#ED1C24");
}

TEST_F(BodyColorToolTest, BodyWithoutStoredColourHasTheDefault) {
    EXPECT_EQ(BodyColorTool::GetBodyColor(body->id), BodyColorTool::defaultBodyColor);
    EXPECT_EQ(BodyColorTool::GetFaceColor(body->id, 1), BodyColorTool::defaultBodyColor);
    EXPECT_EQ(body->element->get("visual"), nullptr);  // asking has not created it
}

TEST_F(BodyColorToolTest, StoredColoursAreAnsweredInEveryForm) {
    BodyColorTool::SetBodyColor(body->element, "#112233");
    BodyColorTool::SetFaceColor(body->element, 3, "#aaBBcc");
    EXPECT_EQ(BodyColorTool::GetBodyColor(body->id), "#112233");
    EXPECT_EQ(BodyColorTool::GetBodyColor(body->element), "#112233");
    EXPECT_EQ(BodyColorTool::GetFaceColor(body->id, 3), "#aaBBcc");
    EXPECT_EQ(BodyColorTool::GetFaceColor(body->id, 2), "#112233");
    const vrn::ColorInfo info = BodyColorTool::GetColorInfo(body->id);
    EXPECT_EQ(info.bodyColor, "#112233");
    EXPECT_EQ(info.faceColors.size(), 1u);
    EXPECT_EQ(info.faceColors.at(3), "#aaBBcc");
    BodyColorTool::ClearFaceColors(body->element);
    EXPECT_EQ(BodyColorTool::GetFaceColor(body->id, 3), "#112233");
}

TEST_F(BodyColorToolTest, MalformedColoursAreRefused) {
    for (const char* color : {"", "112233", "#11223", "#1122334", "#11223g", "red"})
        EXPECT_THROW(BodyColorTool::SetBodyColor(body->element, color), std::invalid_argument);
    EXPECT_THROW(BodyColorTool::SetFaceColor(body->element, 1, "#"), std::invalid_argument);
    EXPECT_THROW(BodyColorTool::SetBodyColor(nullptr, "#112233"), std::invalid_argument);
}

}  // namespace
