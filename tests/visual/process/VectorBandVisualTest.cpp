#include "visual/process/VectorBandVisual.h"

#include <gmock/gmock.h>
#include <OgreEntity.h>
#include <OgreHardwareVertexBuffer.h>
#include <OgreManualObject.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <Geom_BezierCurve.hxx>
#include <gp_Pnt.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS_Edge.hxx>

#include <stdexcept>

#include "mesh/DynamicLines.h"
#include "suite/sdf/SdfManager.h"
#include "tests/support/EngineFixture.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/process/BandVectorVisual.h"

namespace vrn::test {

using geometry::MfgVectors;
using task::EdgeMfgShape;
using visual::BandVectorVisual;
using visual::VectorBandVisual;
using visual::Visual;
using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using testing::ThrowsMessage;

namespace {

const char* const noLength = "0-length vector cannot be normalized.";

TopoDS_Edge LineEdge(double from, double to) {
    return BRepBuilderAPI_MakeEdge(gp_Pnt(from, 0, 0), gp_Pnt(to, 0, 0));
}

/// Along x from `from`, 100 long, the tool in `first` at its start and in `last` at its end.
MfgVectors Stretch(double from, const rob::DirTemplate<double>& first,
                   const rob::DirTemplate<double>& last) {
    return {LineEdge(from, from + 100), {{0, first}, {100, last}}};
}

EdgeMfgShape OneEdge() {
    EdgeMfgShape shape;
    shape.addEdge(Stretch(0, {0, 0, 1}, {0, 0, 1}));
    return shape;
}

EdgeMfgShape TwoEdges() {
    EdgeMfgShape shape = OneEdge();
    shape.addEdge(Stretch(100, {0, 0, 1}, {0, 1, 0}));
    return shape;
}

/// The tool runs along the second edge at its end.
EdgeMfgShape Parallel() {
    EdgeMfgShape shape = OneEdge();
    shape.addEdge(Stretch(100, {0, 0, 1}, {1, 0, 0}));
    return shape;
}

struct Vertex {
    Pos position;
    Vec normal;
};

std::vector<Vertex> VerticesOf(const Ogre::ManualObject* ribbon) {
    std::vector<Vertex> result;
    if (ribbon->getSections().empty()) return result;
    const Ogre::VertexData* data = ribbon->getSections().front()->getRenderOperation()->vertexData;
    const auto buffer = data->vertexBufferBinding->getBuffer(0);
    const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_READ_ONLY);
    const std::size_t stride = buffer->getVertexSize() / sizeof(float);
    const auto* v = static_cast<const float*>(lock.pData);
    for (std::size_t i = 0; i < data->vertexCount; ++i, v += stride)
        result.push_back({{v[0], v[1], v[2]}, {v[3], v[4], v[5]}});
    return result;
}

Ogre::Vector4 ColourOf(const Ogre::ManualObject* ribbon) {
    return ribbon->getSections().front()->getCustomParameter(0);
}

Ogre::Vector4 ColourOf(const BandVectorVisual* vector) {
    return vector->getLines().front()->getCustomParameter(0);
}

std::string MaterialOf(const BandVectorVisual* vector) {
    return vector->getLines().front()->getMaterial()->getName();
}

void ExpectNear(const Pos& is, const Pos& expected) {
    EXPECT_NEAR((is - expected).length(), 0, 1e-3);
}

}  // namespace

class VectorBandVisualTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        carrier = new Visual(scene().root);
    }
    VectorBandVisual* show(const EdgeMfgShape& shape) {
        return new VectorBandVisual(sdf::SdfManager::GenerateTransientId(), carrier, shape);
    }
    static std::size_t manualObjects() {
        return scene().sceneManager->getMovableObjects("ManualObject").size();
    }
    Visual* carrier = nullptr;
};

TEST_F(VectorBandVisualTest, AnEdgeWithTwoVectorsIsARibbonAndTwoLines) {
    const VectorBandVisual* band = show(OneEdge());
    ASSERT_EQ(band->getBand()->getSections().size(), 1u);
    EXPECT_EQ(band->getBand()->getSections()[0]->getMaterialName(), "VectorBand");
    EXPECT_EQ(band->getBand()->getSections()[0]->getRenderOperation()->operationType,
              Ogre::RenderOperation::OT_TRIANGLE_STRIP);
    EXPECT_EQ(band->getVectors().size(), 2u);
    EXPECT_EQ(band->getRangeBand(), nullptr);
    EXPECT_EQ(band->getPreviewVector(), nullptr);
    EXPECT_EQ(band->getSelectedVector(), nullptr);
    frame();
}

TEST_F(VectorBandVisualTest, EachPointGivesOneOnTheEdgeThenOneTwentyFiveAlongTheTool) {
    const EdgeMfgShape shape = OneEdge();
    const auto vertices = VerticesOf(show(shape)->getBand());
    const auto points = shape.getPathPointsForRender();
    ASSERT_EQ(vertices.size(), 2 * points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto x = static_cast<float>(points[i].param);
        ExpectNear(vertices[2 * i].position, {x, 0, 0});
        ExpectNear(vertices[2 * i + 1].position, {x, 0, 25});
        // The tangent, x, crossed with the tool, z.
        EXPECT_EQ(vertices[2 * i].normal, (Vec{0, -1, 0}));
        EXPECT_EQ(vertices[2 * i + 1].normal, (Vec{0, -1, 0}));
    }
}

TEST_F(VectorBandVisualTest, TheRibbonGoesOnAsOneStripAcrossAJoint) {
    const EdgeMfgShape shape = TwoEdges();
    const VectorBandVisual* band = show(shape);
    EXPECT_EQ(band->getBand()->getSections().size(), 1u);
    const auto vertices = VerticesOf(band->getBand());
    EXPECT_EQ(vertices.size(), 2 * shape.getPathPointsForRender().size());
    ExpectNear(vertices.front().position, {0, 0, 0});
    ExpectNear(vertices.back().position, {200, 25, 0});
    EXPECT_EQ(band->getVectors().size(), 4u);
}

TEST_F(VectorBandVisualTest, AVectorsLineRunsFromTheEdgeToTheFarBorder) {
    const EdgeMfgShape shape = TwoEdges();
    const VectorBandVisual* band = show(shape);
    const BandVectorVisual* last = band->getVectors().back();
    EXPECT_EQ(static_cast<int>(last->type), 11);
    ASSERT_EQ(last->getLines().size(), 1u);
    const auto& points = last->getLines()[0]->getPoints();
    ASSERT_EQ(points.size(), 2u);
    ExpectNear(points[0], {200, 0, 0});
    ExpectNear(points[1], VerticesOf(band->getBand()).back().position);
    EXPECT_TRUE(last->getEdge().IsSame(shape.getUsedMfgVectors().back().edge));
    EXPECT_EQ(last->getVector().parameter, 100);
}

TEST_F(VectorBandVisualTest, StatesHaveTheirColoursInTheRibbon) {
    VectorBandVisual* band = show(OneEdge());
    const Ogre::Vector4 normal(0.34509805f, 0.9882353f, 0.99215686f, 0.5f);
    EXPECT_EQ(ColourOf(band->getBand()), normal);
    band->setSelected();
    EXPECT_EQ(ColourOf(band->getBand()), Ogre::Vector4(0.9882353f, 1, 0.21176471f, 0.5f));
    band->setHighlighted();
    EXPECT_EQ(ColourOf(band->getBand()), Ogre::Vector4(0.9882353f, 1, 0.21176471f, 0.1f));
    band->resetAppearance();
    EXPECT_EQ(ColourOf(band->getBand()), normal);
    band->setColor(Ogre::Vector4(1, 0, 0, 1));
    EXPECT_EQ(ColourOf(band->getBand()), Ogre::Vector4(1, 0, 0, 1));
}

TEST_F(VectorBandVisualTest, StatesOfAVectorHaveTheirColoursAndMaterials) {
    BandVectorVisual* vector = show(OneEdge())->getVectors().front();
    EXPECT_EQ(ColourOf(vector), Ogre::Vector4(1, 1, 1, 1));
    EXPECT_EQ(MaterialOf(vector), "BandVector");
    vector->setSelected();
    EXPECT_EQ(ColourOf(vector), Ogre::Vector4(0.8901961f, 0.5647059f, 0.80784315f, 1));
    EXPECT_EQ(MaterialOf(vector), "BandVectorSelect");
    vector->setHighlighted();
    EXPECT_EQ(ColourOf(vector), Ogre::Vector4(0, 0, 1, 1));
    EXPECT_EQ(MaterialOf(vector), "BandVectorHighlight");
    vector->resetAppearance();
    EXPECT_EQ(ColourOf(vector), Ogre::Vector4(1, 1, 1, 1));
}

TEST_F(VectorBandVisualTest, ThereIsOnePreviewHoweverOftenItIsAskedFor) {
    VectorBandVisual* band = show(TwoEdges());
    const std::size_t children = band->getChildren().size();
    band->previewVector(TwoEdges(), {0, 50});
    band->previewVector(TwoEdges(), {1, 50});
    EXPECT_EQ(band->getChildren().size(), children + 1);
    ASSERT_NE(band->getPreviewVector(), nullptr);
    EXPECT_EQ(MaterialOf(band->getPreviewVector()), "BandVectorHighlight");
    const auto& points = band->getPreviewVector()->getLines()[0]->getPoints();
    ExpectNear(points[0], {150, 0, 0});
    ExpectNear(points[1], {150, 17.67767f, 17.67767f});
    band->clearPreviewVector();
    band->clearPreviewVector();
    EXPECT_EQ(band->getPreviewVector(), nullptr);
    EXPECT_EQ(band->getChildren().size(), children);
}

TEST_F(VectorBandVisualTest, TheSelectedVectorIsOneBesideThePreview) {
    VectorBandVisual* band = show(TwoEdges());
    band->selectVector(TwoEdges(), {0, 50});
    band->previewVector(TwoEdges(), {0, 60});
    band->selectVector(TwoEdges(), {0, 70});
    EXPECT_EQ(MaterialOf(band->getSelectedVector()), "BandVectorSelect");
    ExpectNear(band->getSelectedVector()->getLines()[0]->getPoints()[0], {70, 0, 0});
    EXPECT_NE(band->getPreviewVector(), nullptr);
}

TEST_F(VectorBandVisualTest, APointOnNoUsedEdgeIsRefused) {
    VectorBandVisual* band = show(OneEdge());
    EXPECT_THROW(band->previewVector(OneEdge(), {1, 0}), std::out_of_range);
    EXPECT_THROW(band->selectVector(OneEdge(), {-1, 0}), std::out_of_range);
    EXPECT_EQ(band->getPreviewVector(), nullptr);
}

TEST_F(VectorBandVisualTest, ASelectedRangeIsARibbonOfItsOwnInItsColour) {
    VectorBandVisual* band = show(TwoEdges());
    const auto check = [&] {
        ASSERT_NE(band->getRangeBand(), nullptr);
        ASSERT_EQ(band->getRangeBand()->getSections().size(), 1u);
        EXPECT_EQ(band->getRangeBand()->getSections()[0]->getMaterialName(), "SelectedBand");
        EXPECT_EQ(ColourOf(band->getRangeBand()),
                  Ogre::Vector4(0.9882353f, 0.39215687f, 0.21176471f, 0.5f));
        const auto vertices = VerticesOf(band->getRangeBand());
        ExpectNear(vertices[0].position, {30, 0, 0});
        ExpectNear(vertices[1].position, {30, 0, 25});
        ExpectNear(vertices[vertices.size() - 2].position, {140, 0, 0});
        EXPECT_EQ(vertices[0].normal, (Vec{0, -1, 0}));
    };
    band->selectRange(TwoEdges(), {0, 30}, {1, 40});
    check();
    const Ogre::ManualObject* const range = band->getRangeBand();
    band->clearSelectedRange();
    EXPECT_TRUE(range->getSections().empty());
    band->updateSelectedBand(TwoEdges(), {0, 30}, {1, 40});
    EXPECT_EQ(band->getRangeBand(), range);
    check();
    frame();
}

TEST_F(VectorBandVisualTest, UpdatingTheSelectedBandIsSelectingTheRange) {
    VectorBandVisual *selected = show(TwoEdges()), *updated = show(TwoEdges());
    selected->selectRange(TwoEdges(), {0, 30}, {1, 40});
    updated->updateSelectedBand(TwoEdges(), {0, 10}, {0, 20});  // the first time too
    updated->updateSelectedBand(TwoEdges(), {0, 30}, {1, 40});
    const Ogre::ManualObject *is = updated->getRangeBand(), *expected = selected->getRangeBand();
    ASSERT_NE(is, nullptr);
    ASSERT_EQ(is->getSections().size(), 1u);
    EXPECT_EQ(is->getSections()[0]->getMaterialName(), "SelectedBand");
    EXPECT_EQ(ColourOf(is), ColourOf(expected));
    const auto vertices = VerticesOf(is), wanted = VerticesOf(expected);
    ASSERT_EQ(vertices.size(), wanted.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        EXPECT_EQ(vertices[i].position, wanted[i].position) << i;
        EXPECT_EQ(vertices[i].normal, wanted[i].normal) << i;
    }
    EXPECT_THAT([&] { updated->updateSelectedBand(Parallel(), {0, 0}, {1, 100}); },
                ThrowsMessage<std::overflow_error>(noLength));
}

TEST_F(VectorBandVisualTest, ARangeOfNothingIsEmpty) {
    VectorBandVisual* band = show(OneEdge());
    EXPECT_NO_THROW(band->selectRange(OneEdge(), {5, 0}, {6, 0}));
    EXPECT_TRUE(band->getRangeBand()->getSections().empty());
    frame();
}

TEST_F(VectorBandVisualTest, UpdatingTakesPreviewAndSelectionAndLeavesTheRange) {
    VectorBandVisual* band = show(OneEdge());
    band->previewVector(OneEdge(), {0, 50});
    band->selectVector(OneEdge(), {0, 60});
    band->selectRange(OneEdge(), {0, 30}, {0, 40});
    band->setSelected();
    band->updateBand(TwoEdges());
    EXPECT_EQ(band->getPreviewVector(), nullptr);
    EXPECT_EQ(band->getSelectedVector(), nullptr);
    EXPECT_FALSE(VerticesOf(band->getRangeBand()).empty());
    EXPECT_EQ(band->getVectors().size(), 4u);
    EXPECT_EQ(band->getChildren().size(), 4u);
    ExpectNear(VerticesOf(band->getBand()).back().position, {200, 25, 0});
    EXPECT_EQ(ColourOf(band->getBand()).x, 0.34509805f);
}

TEST_F(VectorBandVisualTest, ClearingItsLookLeavesTheRangeInExistenceAndEmpty) {
    VectorBandVisual* band = show(OneEdge());
    band->previewVector(OneEdge(), {0, 50});
    band->selectVector(OneEdge(), {0, 60});
    band->selectRange(OneEdge(), {0, 30}, {0, 40});
    band->setHighlighted();
    band->clearHighlightOrSelect();
    EXPECT_EQ(band->getPreviewVector(), nullptr);
    EXPECT_EQ(band->getSelectedVector(), nullptr);
    ASSERT_NE(band->getRangeBand(), nullptr);
    EXPECT_TRUE(band->getRangeBand()->getSections().empty());
    EXPECT_EQ(ColourOf(band->getBand()).x, 0.34509805f);
}

TEST_F(VectorBandVisualTest, TheStartArrowHangsBesideTheBandAndIsReplaced) {
    VectorBandVisual* band = show(OneEdge());
    ASSERT_NE(band->getStartArrow(), nullptr);
    EXPECT_EQ(band->getStartArrow()->getParent(), carrier);
    EXPECT_EQ(band->getStartArrow()->getPosition(), (Pos{0, 0, 0}));
    EXPECT_NEAR((band->getStartArrow()->getPose().rotation * Vec{0, 0, 1}).x, 1, 1e-6);
    band->updateBand(TwoEdges());
    EXPECT_EQ(carrier->getChildren().size(), 2u);
    scene().deleteVisual(band);
    EXPECT_TRUE(carrier->getChildren().empty());
}

TEST_F(VectorBandVisualTest, ItGoesWithItsParentInEitherOrder) {
    const std::size_t before = manualObjects();
    show(OneEdge())->selectRange(OneEdge(), {0, 30}, {0, 40});
    VectorBandVisual* second = show(OneEdge());
    second->updateBand(TwoEdges());
    // What is taken out swaps with the last: the arrow now comes before its band.
    scene().deleteVisual(carrier->getChildren().front());
    scene().deleteVisual(carrier);
    carrier = nullptr;
    EXPECT_EQ(manualObjects(), before);
}

TEST_F(VectorBandVisualTest, AnArrowThatTheHostDeletedIsNotDeletedAgain) {
    VectorBandVisual* band = show(OneEdge());
    scene().deleteVisual(band->getStartArrow());
    EXPECT_NO_THROW(band->updateBand(OneEdge()));
    EXPECT_EQ(carrier->getChildren().size(), 2u);
}

TEST_F(VectorBandVisualTest, ABandThatHangsElsewhereTakesItsArrowAlongWhenItIsDrawnOrGoes) {
    auto* other = new Visual(scene().root);
    VectorBandVisual *moved = show(OneEdge()), *updated = show(OneEdge());
    other->attachVisual(moved);
    scene().deleteVisual(moved);
    EXPECT_EQ(carrier->getChildren().size(), 2u);
    other->attachVisual(updated);
    updated->updateBand(OneEdge());
    EXPECT_TRUE(carrier->getChildren().empty());
    EXPECT_EQ(updated->getStartArrow()->getParent(), other);
    scene().deleteVisual(updated);
    EXPECT_TRUE(other->getChildren().empty());
}

TEST_F(VectorBandVisualTest, ABandThatHangsNowhereHasNoArrowUntilItIsDrawnUnderAParent) {
    VectorBandVisual* band = show(OneEdge());
    band->detach();
    EXPECT_NO_THROW(band->updateBand(TwoEdges()));
    EXPECT_EQ(band->getStartArrow(), nullptr);
    EXPECT_EQ(band->getVectors().size(), 4u);
    EXPECT_TRUE(carrier->getChildren().empty());
    carrier->attachVisual(band);
    band->updateBand(TwoEdges());
    EXPECT_EQ(band->getStartArrow()->getParent(), carrier);
}

TEST_F(VectorBandVisualTest, AnArrowThatTheHostDeletedIsForgottenAndWhatComesThereIsTheHosts) {
    VectorBandVisual* band = show(OneEdge());
    scene().deleteVisual(band->getStartArrow());
    EXPECT_EQ(band->getStartArrow(), nullptr);
    // The allocator gives the same place out again, sooner or later.
    std::vector<Visual*> own;
    for (int i = 0; i < 8; ++i)
        own.push_back(visual::MeshVisual::BuildArrow(carrier, {5, 5, 5}, {0, 0, 1}));
    band->updateBand(OneEdge());
    EXPECT_EQ(carrier->getChildren().size(), own.size() + 2);
    EXPECT_THAT(carrier->getChildren(), testing::IsSupersetOf(own));
}

TEST_F(VectorBandVisualTest, ABandThatWasHungUnderItsOwnArrowIsDrawnAndGoesWithIt) {
    VectorBandVisual* band = show(OneEdge());
    Visual* arrow = band->getStartArrow();
    arrow->attachVisual(band);
    EXPECT_NO_THROW(band->updateBand(OneEdge()));
    ASSERT_NE(band->getStartArrow(), nullptr);
    EXPECT_EQ(band->getStartArrow()->getParent(), arrow);
    band->getStartArrow()->attachVisual(band);
    scene().deleteVisual(arrow);
    EXPECT_TRUE(carrier->getChildren().empty());
}

TEST_F(VectorBandVisualTest, WhatIsDrawnOnAHiddenBandIsHiddenToo) {
    VectorBandVisual* band = show(OneEdge());
    const auto shown = [band] {
        std::vector<bool> all{band->getBand()->getVisible(), band->getRangeBand()->getVisible(),
                              band->getStartArrow()->getEntity()->getVisible()};
        for (const BandVectorVisual* vector :
             {band->getVectors().front(), band->getPreviewVector(), band->getSelectedVector()})
            all.push_back(vector->getLines().front()->getVisible());
        return all;
    };
    carrier->setVisible(false, /*cascade=*/true);
    band->updateBand(OneEdge());
    band->selectRange(OneEdge(), {0, 10}, {0, 50});
    band->previewVector(OneEdge(), {0, 50});
    band->selectVector(OneEdge(), {0, 60});
    EXPECT_THAT(shown(), testing::Each(false));
    band->setVisible(true, /*cascade=*/true);
    EXPECT_THAT(shown(), testing::Each(true));
}

TEST_F(VectorBandVisualTest, AToolAlongTheEdgeIsRefusedAndNothingIsLeft) {
    const std::size_t before = manualObjects();
    EXPECT_THAT([&] { (void)show(Parallel()); }, ThrowsMessage<std::overflow_error>(noLength));
    EXPECT_EQ(manualObjects(), before);
    EXPECT_TRUE(carrier->getChildren().empty());
}

TEST_F(VectorBandVisualTest, ABandWhoseUpdateThrewCanBeUpdatedAgain) {
    VectorBandVisual* band = show(OneEdge());
    EXPECT_THAT([&] { band->updateBand(Parallel()); },
                ThrowsMessage<std::overflow_error>(noLength));
    EXPECT_TRUE(band->getVectors().empty());
    EXPECT_EQ(band->getBand()->getSections().size(), 1u);  // begun, and never ended
    EXPECT_THAT([&] { band->selectRange(Parallel(), {0, 0}, {1, 100}); },
                ThrowsMessage<std::overflow_error>(noLength));
    frame();
    EXPECT_NO_THROW(band->updateBand(TwoEdges()));
    EXPECT_NO_THROW(band->selectRange(TwoEdges(), {0, 0}, {1, 100}));
    EXPECT_EQ(band->getVectors().size(), 4u);
    frame();
}

TEST_F(VectorBandVisualTest, ABandWhoseUpdatesThrewIsUsedAndDeletedLikeAnyOther) {
    const std::size_t before = manualObjects();
    VectorBandVisual* band = show(OneEdge());
    for (int i = 0; i < 2; ++i) {
        EXPECT_THROW(band->updateBand(Parallel()), std::overflow_error);
        EXPECT_THROW(band->selectRange(Parallel(), {0, 0}, {1, 100}), std::overflow_error);
    }
    band->setSelected();
    band->clearHighlightOrSelect();
    band->previewVector(OneEdge(), {0, 50});
    EXPECT_TRUE(band->getRangeBand()->getSections().empty());
    frame();
    EXPECT_THROW(band->selectRange(Parallel(), {0, 0}, {1, 100}), std::overflow_error);
    scene().deleteVisual(band);
    EXPECT_EQ(manualObjects(), before);
    frame();
}

TEST_F(VectorBandVisualTest, AToolAlongTheEdgeAtItsVeryStartLeavesTheBandUsable) {
    EdgeMfgShape atOnce;
    atOnce.addEdge(Stretch(0, {1, 0, 0}, {0, 0, 1}));
    VectorBandVisual* band = show(OneEdge());
    EXPECT_THROW(band->updateBand(atOnce), std::overflow_error);
    frame();
    EXPECT_NO_THROW(band->updateBand(OneEdge()));
    EXPECT_FALSE(VerticesOf(band->getBand()).empty());
}

TEST_F(VectorBandVisualTest, AFirstEdgeWithoutADirectionThrowsOnceRibbonAndVectorsAreThere) {
    TColgp_Array1OfPnt poles(1, 3);  // the first two at one point
    poles.Init(gp_Pnt(0, 0, 0));
    poles.SetValue(3, gp_Pnt(100, 0, 0));
    const opencascade::handle<Geom_BezierCurve> curve = new Geom_BezierCurve(poles);
    EdgeMfgShape shape;
    shape.addEdge({BRepBuilderAPI_MakeEdge(curve), {}});  // without vectors it has no ribbon
    shape.addEdge(Stretch(100, {0, 0, 1}, {0, 0, 1}));
    VectorBandVisual* band = show(TwoEdges());
    band->setSelected();
    EXPECT_THAT([&] { band->updateBand(shape); }, ThrowsMessage<std::overflow_error>(noLength));
    EXPECT_FALSE(VerticesOf(band->getBand()).empty());
    EXPECT_EQ(ColourOf(band->getBand()), Ogre::Vector4(0.34509805f, 0.9882353f, 0.99215686f, 0.5f));
    EXPECT_EQ(band->getVectors().size(), 2u);
    EXPECT_EQ(band->getStartArrow(), nullptr);
    frame();
}

TEST_F(VectorBandVisualTest, AShapeWithoutEdgesIsAnEmptyBand) {
    VectorBandVisual* band = show(EdgeMfgShape());
    EXPECT_TRUE(band->getBand()->getSections().empty());
    EXPECT_EQ(band->getStartArrow(), nullptr);
    band->setSelected();
    frame();
    band->updateBand(OneEdge());
    ASSERT_NE(band->getStartArrow(), nullptr);
    band->updateBand(EdgeMfgShape());
    EXPECT_EQ(band->getStartArrow(), nullptr);
    EXPECT_EQ(carrier->getChildren(), std::vector<Visual*>{band});
}

TEST_F(VectorBandVisualTest, AVectorOnAnEdgeWithoutACurveIsRefused) {
    EXPECT_THROW(BandVectorVisual(carrier, TopoDS_Edge(), {}), std::invalid_argument);
    EXPECT_TRUE(carrier->getChildren().empty());
}

TEST_F(VectorBandVisualTest, TheRibbonIsSeenThroughInItsColour) {
    show(TwoEdges());
    lookFrom({60, -150, 12}, {60, 0, 12});
    const auto picture = frame();
    const auto at = [&](const Pos& p) {
        const auto pixel = project(p);
        return picture.at(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    };
    const auto ribbon = at({52, 0, 12}), ground = at({52, 0, 40});
    EXPECT_GT(ribbon.g, ribbon.r + 20);
    EXPECT_GT(ribbon.b, ribbon.r + 20);
    EXPECT_NE(ribbon.g, ground.g);
}

}  // namespace vrn::test
