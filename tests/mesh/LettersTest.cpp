#include "mesh/Letters.h"

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <locale>
#include <memory>
#include <span>
#include <string>

namespace vrn::visual {
namespace {

std::unique_ptr<Mesh> Text(const std::string& text, double number = 3.0) {
    return std::unique_ptr<Mesh>(MeshManager::CreateTextMesh(text, number));
}

TEST(Letters, CoverExclamationMarkToTilde) {
    EXPECT_EQ(Letters().size(), 94u);
    EXPECT_EQ(FindLetter('!'), &Letters()[0]);
    EXPECT_EQ(FindLetter('~'), &Letters()[93]);
    for (const char c : {' ', '\n', '\0', '\x7f', '\x80', '\xff'})
        EXPECT_EQ(FindLetter(c), nullptr);
}

TEST(Letters, ExclamationMarkIsAStemAndADot) {
    const Letter& mark = *FindLetter('!');
    EXPECT_EQ(mark.vertexCount, 11);
    EXPECT_EQ(mark.triangleCount, 7);
    EXPECT_NEAR(mark.advance, 0.4385f, 1e-4f);
}

class EachLetter : public testing::TestWithParam<int> {};

TEST_P(EachLetter, IndexesItsOwnVertices) {
    const Letter& letter = *FindLetter(static_cast<char>(GetParam()));
    ASSERT_GT(letter.vertexCount, 0);
    ASSERT_GT(letter.triangleCount, 0);
    const std::span indices(letter.indices, static_cast<std::size_t>(letter.triangleCount) * 3);
    EXPECT_LT(std::ranges::max(indices), static_cast<std::uint32_t>(letter.vertexCount));
}

TEST_P(EachLetter, TrianglesFaceTheReader) {
    const Letter& letter = *FindLetter(static_cast<char>(GetParam()));
    const auto x = [&](int corner) { return letter.vertices[2 * letter.indices[corner]]; };
    const auto y = [&](int corner) { return letter.vertices[2 * letter.indices[corner] + 1]; };
    for (int t = 0; t < letter.triangleCount; ++t) {
        const int a = 3 * t, b = a + 1, c = a + 2;
        const float area = (x(b) - x(a)) * (y(c) - y(a)) - (y(b) - y(a)) * (x(c) - x(a));
        EXPECT_GT(area, 0.0f) << "triangle " << t;
    }
}

TEST_P(EachLetter, StaysInItsCell) {
    const Letter& letter = *FindLetter(static_cast<char>(GetParam()));
    for (int i = 0; i < letter.vertexCount; ++i) {
        EXPECT_GE(letter.vertices[2 * i], 0.0f);
        EXPECT_LE(letter.vertices[2 * i], letter.advance);
        // Two lines of text, 1.4 apart, must not touch.
        EXPECT_GT(letter.vertices[2 * i + 1], -0.29f);
        EXPECT_LT(letter.vertices[2 * i + 1], 1.13f);
    }
}

INSTANTIATE_TEST_SUITE_P(Letters, EachLetter, testing::Range(int{'!'}, '~' + 1));

TEST(Letters, CapitalsAndDigitsAreOneHigh) {
    for (const char c : std::string("ABCDEFGHIJKLMNOPRSTUVWXYZ0123456789")) {
        const auto mesh = Text(std::string(1, c));
        EXPECT_NEAR(mesh->getBox().max.y, 1.0f, 0.01f) << c;
        EXPECT_NEAR(mesh->getBox().min.y, 0.0f, 0.01f) << c;
    }
}

TEST(TextMesh, IsNamedByItsTextAndFacesZ) {
    const auto mesh = Text("Hi");
    EXPECT_EQ(mesh->name, "Hi");
    ASSERT_EQ(mesh->normals.size(), mesh->vertices.size());
    for (const auto& normal : mesh->normals) EXPECT_EQ(normal, (rob::Vec3Template<float>{0, 0, 1}));
    for (const auto& vertex : mesh->vertices) EXPECT_EQ(vertex.z, 0.0f);
}

TEST(TextMesh, EmptyTextIsAnEmptyMesh) {
    const auto mesh = Text("");
    EXPECT_TRUE(mesh->vertices.empty());
    EXPECT_TRUE(mesh->indices.empty());
}

TEST(TextMesh, SecondLetterStandsAnAdvanceFurtherWithItsOwnIndices) {
    const auto one = Text("!"), two = Text("!!");
    ASSERT_EQ(two->vertices.size(), 22u);
    ASSERT_EQ(two->indices.size(), 42u);
    for (std::size_t i = 0; i < 11; ++i) {
        EXPECT_FLOAT_EQ(two->vertices[11 + i].x, one->vertices[i].x + FindLetter('!')->advance);
        EXPECT_FLOAT_EQ(two->vertices[11 + i].y, one->vertices[i].y);
    }
    for (std::size_t i = 0; i < 21; ++i) EXPECT_EQ(two->indices[21 + i], one->indices[i] + 11);
}

TEST(TextMesh, LineFeedGoesBackAndDown) {
    const auto one = Text("!"), two = Text("A\n!");
    const std::size_t base = two->vertices.size() - 11;
    for (std::size_t i = 0; i < 11; ++i) {
        EXPECT_FLOAT_EQ(two->vertices[base + i].x, one->vertices[i].x);
        EXPECT_FLOAT_EQ(two->vertices[base + i].y, one->vertices[i].y - 1.4f);
    }
}

TEST(TextMesh, BlankMovesThePen) {
    const auto one = Text("!"), moved = Text(" !");
    EXPECT_FLOAT_EQ(moved->vertices[0].x, one->vertices[0].x + 0.4f);
    EXPECT_EQ(moved->vertices.size(), 11u);
}

TEST(TextMesh, OtherCharactersArePassedOverWithoutMovingThePen) {
    const auto one = Text("!"), odd = Text("\x7f\t\xc2\xb0\xff!");
    EXPECT_EQ(odd->vertices, one->vertices);
    EXPECT_EQ(odd->indices, one->indices);
}

TEST(TextMesh, NumberHasNoEffect) {
    EXPECT_EQ(Text("A", 3.0)->vertices, Text("A", 77.0)->vertices);
}

}  // namespace
}  // namespace vrn::visual
