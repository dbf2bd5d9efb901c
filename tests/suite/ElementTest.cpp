#include "suite/sdf/Element.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <any>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using vrn::rob::PoseTemplate;
using vrn::rob::Vec3Template;
using vrn::sdf::Element;

TEST(Element, GetAnswersNullForAnAbsentKey) {
    const auto element = Element::Make("part");
    EXPECT_EQ(element->get("pose"), nullptr);
    EXPECT_EQ(element->get(""), nullptr);
    EXPECT_TRUE(element->getChildren().empty());
}

TEST(Element, GetKnowsNoPaths) {
    const auto element = Element::Make("body");
    element->touch("geometry/uri");
    EXPECT_EQ(element->get("geometry/uri"), nullptr);
    EXPECT_NE(element->get("geometry"), nullptr);
}

TEST(Element, TouchCreatesEmptyElementsOnTheWayOnce) {
    const auto element = Element::Make("body");
    const auto name = element->touch("visual/material/name");
    ASSERT_NE(name, nullptr);
    EXPECT_FALSE(name->getValue().has_value());
    EXPECT_EQ(name->getTypeName(), "name");
    EXPECT_EQ(element->get("visual")->get("material")->get("name"), name);
    EXPECT_EQ(element->touch("visual/material/name"), name);
    EXPECT_EQ(element->touch("visual")->touch("material/name"), name);
}

TEST(Element, TouchPassesOverEmptySteps) {
    const auto element = Element::Make("body");
    EXPECT_EQ(element->touch(""), element);
    EXPECT_EQ(element->touch("/"), element);
    EXPECT_EQ(element->touch("/geometry//uri/"), element->touch("geometry/uri"));
    EXPECT_EQ(element->getChildren().size(), 1u);
}

TEST(Element, ChildrenKeepTheirOrderAndMayShareATypeName) {
    const auto element = Element::Make("spray");
    const auto first = element->append("property");
    element->append("pose");
    const auto second = element->append("property");
    EXPECT_EQ(element->get("property"), first);
    const auto children = element->getChildren();
    ASSERT_EQ(children.size(), 3u);
    EXPECT_EQ(children[0], first);
    EXPECT_EQ(children[2], second);
}

TEST(Element, ValueOfAnotherTypeRaisesBadAnyCast) {
    const auto element = Element::Make("body");
    element->set("geometry/uri", std::string("a.stl"));
    EXPECT_EQ(element->touch("geometry/uri")->as<std::string>(), "a.stl");
    EXPECT_THROW((void)element->touch("geometry/uri")->as<bool>(), std::bad_any_cast);
    EXPECT_THROW((void)element->touch("geometry/file_type")->as<std::string>(), std::bad_any_cast);
}

TEST(Element, PoseIsReadFromTheKeyOrTheElementItself) {
    const PoseTemplate<double> pose({1, 2, 3}, {0, 1, 0, 0});
    const auto element = Element::Make("part");
    element->set("pose", pose);
    EXPECT_EQ(element->asPose("pose"), pose);
    EXPECT_EQ(element->get("pose")->asPose(""), pose);
    EXPECT_THROW((void)element->asPose(""), std::bad_any_cast);
    EXPECT_THROW((void)element->asPose("absent"), std::bad_any_cast);
    element->set("pose", std::string("1 2 3"));
    EXPECT_THROW((void)element->asPose("pose"), std::bad_any_cast);
}

TEST(Element, VectorIsReadFromTheKeyOrTheElementItself) {
    const auto element = Element::Make("property");
    element->set("value", Vec3Template<double>{1, 2, 3});
    EXPECT_EQ(element->asVec3("value"), (Vec3Template<double>{1, 2, 3}));
    EXPECT_EQ(element->get("value")->asVec3(""), (Vec3Template<double>{1, 2, 3}));
    EXPECT_THROW((void)element->asPose("value"), std::bad_any_cast);
}

TEST(Element, IdIsItsOwnOrThatOfTheNearestAbove) {
    const auto owner = Element::Make("spray");
    const auto value = owner->append("property")->append("value");
    EXPECT_EQ(value->getId(/*ownOnly=*/false), 0u);
    owner->setId(7);
    EXPECT_EQ(value->getId(/*ownOnly=*/true), 0u);
    EXPECT_EQ(value->getId(/*ownOnly=*/false), 7u);
    owner->get("property")->setId(3);
    EXPECT_EQ(value->getId(/*ownOnly=*/false), 3u);
}

TEST(Element, AppendingMovesAnElementToItsNewParent) {
    const auto part = Element::Make("part"), other = Element::Make("part");
    const auto body = part->append("body");
    EXPECT_EQ(body->getParent(), part);
    other->append(body);
    EXPECT_EQ(body->getParent(), other);
    EXPECT_EQ(part->get("body"), nullptr);
    body->detach();
    EXPECT_EQ(body->getParent(), nullptr);
    EXPECT_EQ(other->get("body"), nullptr);
    body->detach();  // once more does nothing
}

TEST(Element, ElementCannotStandBelowItself) {
    const auto part = Element::Make("part");
    const auto body = part->append("body");
    EXPECT_THROW(body->append(part), std::invalid_argument);
    EXPECT_THROW(part->append(part), std::invalid_argument);
    EXPECT_THROW(part->append(std::shared_ptr<Element>()), std::invalid_argument);
    EXPECT_EQ(body->getParent(), part);
}

TEST(Element, ParentThatIsGoneIsNull) {
    auto part = Element::Make("part");
    const auto body = part->append("body");
    part.reset();
    EXPECT_EQ(body->getParent(), nullptr);
}

TEST(Element, SeveralThreadsTouchOnePath) {
    const auto element = Element::Make("body");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                element->set("visual/color", std::string("#FFFFFF"));
                (void)element->touch("visual/color")->as<std::string>();
                (void)element->touch("geometry/uri");
            }
        });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(element->getChildren().size(), 2u);
}

}  // namespace
