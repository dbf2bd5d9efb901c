#include "mesh/STLLoader.h"

#include "mesh/Mesh.h"
#include "mesh/StlText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <format>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace vrn::visual {
namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using testing::ElementsAre;
using testing::HasSubstr;

// ---- helpers

const std::string facet =
    "facet normal 0 0 1\n outer loop\n  vertex 1 2 3\n  vertex 4 5 6\n  vertex 7 8 9\n "
    "endloop\nendfacet\n";

/// A binary file of triangles that each have the normal (n, 0, 1) and corners from (n, 1, 2) on.
std::string Binary(std::uint32_t count, const std::string& header = "") {
    std::string bytes = header;
    bytes.resize(80);
    bytes.append(reinterpret_cast<const char*>(&count), 4);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto n = static_cast<float>(i);
        const std::array<float, 12> numbers{n, 0, 1, n, 1, 2, n, 4, 5, n, 7, 8};
        bytes.append(reinterpret_cast<const char*>(numbers.data()), 48);
        bytes.append("\x12\x34", 2);
    }
    return bytes;
}

Mesh ReadText(const std::string& text) {
    Mesh mesh("text");
    EXPECT_TRUE(STLLoader::readAscii(text.c_str(), &mesh));
    return mesh;
}

/// What reading `text` throws as std::runtime_error; empty if it does not throw.
std::string ErrorOf(const std::string& text) {
    Mesh mesh("text");
    try {
        STLLoader::readAscii(text.c_str(), &mesh);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return {};
}

/// The first vertex of a facet whose vertex line carries these three words.
Pos VertexOf(const std::string& words) {
    return ReadText("facet normal 0 0 1 vertex " + words + " endfacet").vertices.at(0);
}

class TemporaryFile {
public:
    TemporaryFile(const std::string& name, const std::string& bytes)
        : path(std::filesystem::path(testing::TempDir()) / name) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    ~TemporaryFile() { std::filesystem::remove(path); }

    const std::filesystem::path path;
};

// ---- binary form

TEST(StlBinary, ReadsTrianglesWithTheFacetNormalOnEachCorner) {
    const std::string bytes = Binary(2);
    Mesh mesh("b");
    EXPECT_TRUE(STLLoader::readBinary(bytes.data(), bytes.size(), &mesh));
    EXPECT_THAT(mesh.vertices, ElementsAre(Pos{0, 1, 2}, Pos{0, 4, 5}, Pos{0, 7, 8}, Pos{1, 1, 2},
                                           Pos{1, 4, 5}, Pos{1, 7, 8}));
    EXPECT_THAT(mesh.normals, ElementsAre(Vec{0, 0, 1}, Vec{0, 0, 1}, Vec{0, 0, 1}, Vec{1, 0, 1},
                                          Vec{1, 0, 1}, Vec{1, 0, 1}));
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST(StlBinary, OfNoTrianglesIsReadAndEmpty) {
    const std::string bytes = Binary(0);
    Mesh mesh("b");
    EXPECT_TRUE(STLLoader::readBinary(bytes.data(), bytes.size(), &mesh));
    EXPECT_TRUE(mesh.vertices.empty() && mesh.normals.empty() && mesh.indices.empty());
}

TEST(StlBinary, DeclinesEverySizeButTheExactOne) {
    const std::string bytes = Binary(2) + "xx";
    Mesh mesh("b");
    for (std::size_t size = 0; size <= bytes.size(); ++size)
        EXPECT_EQ(STLLoader::readBinary(bytes.data(), size, &mesh), size == 184u) << size;
    EXPECT_EQ(mesh.vertices.size(), 6u);
}

TEST(StlBinary, ShortDataIsNotLookedAtBehindItsEnd) {
    // Under the address sanitizer a look at offset 80 would be found out.
    const std::vector<char> bytes(83);
    Mesh mesh("b");
    EXPECT_FALSE(STLLoader::readBinary(bytes.data(), bytes.size(), &mesh));
}

TEST(StlBinary, ComparesSizesIn64Bits) {
    // 85899346 * 50 + 84 is 4294967384, which 32 bits would take for 88.
    std::string bytes(88, '\0');
    const std::uint32_t count = 85899346;
    static_assert(std::uint32_t{count * 50u + 84u} == 88);
    std::memcpy(bytes.data() + 80, &count, 4);
    Mesh mesh("b");
    EXPECT_FALSE(STLLoader::readBinary(bytes.data(), bytes.size(), &mesh));
}

TEST(StlBinary, KeepsNumbersThatAreNotFiniteAndBoundsPassThemOver) {
    std::string bytes = Binary(1);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::memcpy(bytes.data() + 84 + 12, &nan, 4);
    Mesh mesh("b");
    ASSERT_TRUE(STLLoader::readBinary(bytes.data(), bytes.size(), &mesh));
    EXPECT_TRUE(std::isnan(mesh.vertices[0].x));
    EXPECT_EQ(mesh.getBox().min, (Pos{0, 4, 5}));
    EXPECT_EQ(mesh.getBox().max, (Pos{0, 7, 8}));
}

TEST(StlBinary, AppendsWithRunningIndices) {
    const std::string bytes = Binary(1);
    Mesh mesh("b");
    STLLoader::readBinary(bytes.data(), bytes.size(), &mesh);
    STLLoader::readBinary(bytes.data(), bytes.size(), &mesh);
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST(StlReaders, RefuseNullPointers) {
    Mesh mesh("m");
    EXPECT_THROW(STLLoader::readStl(nullptr, 0, &mesh), std::invalid_argument);
    EXPECT_THROW(STLLoader::readStl("solid", 5, nullptr), std::invalid_argument);
    EXPECT_THROW(STLLoader::readBinary(nullptr, 84, &mesh), std::invalid_argument);
    EXPECT_THROW(STLLoader::readAscii(nullptr, &mesh), std::invalid_argument);
    EXPECT_THROW(STLLoader::readAscii("solid", nullptr), std::invalid_argument);
}

// ---- which form

TEST(StlForm, TextWhoseSizeFitsTheNumberAtOffset80IsBinary) {
    // 4 bytes "    " are the number 0x20202020; its file would be 27 GB. One byte of 1 and three
    // zeros cannot stand in a text, so the text ends there: what matters is the size alone.
    std::string text = "solid a" + std::string(73, ' ');
    const std::uint32_t count = 1;
    text.append(reinterpret_cast<const char*>(&count), 4);
    text.resize(134, ' ');
    Mesh mesh("m");
    EXPECT_TRUE(STLLoader::readStl(text.c_str(), text.size(), &mesh));
    EXPECT_EQ(mesh.vertices.size(), 3u);
}

TEST(StlForm, BinaryWhoseHeaderBeginsLikeTextIsBinary) {
    const std::string bytes = Binary(3, "solid facet normal");
    Mesh mesh("m");
    EXPECT_TRUE(STLLoader::readStl(bytes.c_str(), bytes.size(), &mesh));
    EXPECT_EQ(mesh.vertices.size(), 9u);
}

TEST(StlForm, FilesBelow84BytesAreText) {
    const std::string text = "facet normal 0 0 1 vertex 1 2 3 endfacet";
    ASSERT_LT(text.size(), 84u);
    Mesh mesh("m");
    EXPECT_TRUE(STLLoader::readStl(text.c_str(), text.size(), &mesh));
    EXPECT_EQ(mesh.vertices.size(), 1u);
}

// ---- text form

TEST(StlText, ReadsFacetsBetweenSolidAndEndsolid) {
    const Mesh mesh = ReadText("solid my part\n" + facet + facet + "endsolid my part\n");
    ASSERT_EQ(mesh.vertices.size(), 6u);
    EXPECT_EQ(mesh.vertices[4], (Pos{4, 5, 6}));
    EXPECT_THAT(mesh.normals, testing::Each(Vec{0, 0, 1}));
    EXPECT_THAT(mesh.indices, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST(StlText, NeedsNeitherSolidNorEndsolid) {
    EXPECT_EQ(ReadText(facet).vertices.size(), 3u);
    EXPECT_EQ(ReadText("solid\n" + facet).vertices.size(), 3u);
    EXPECT_EQ(ReadText(facet + "endsolid").vertices.size(), 3u);
}

TEST(StlText, NamesMayBeAnyWords) {
    EXPECT_EQ(
        ReadText("solid facet normal 1 endfacet\n" + facet + "endsolid facet x").vertices.size(),
        3u);
    EXPECT_EQ(ReadText("solid\n" + facet + "endsolid\n").vertices.size(), 3u);
    EXPECT_EQ(ReadText("solidname\n" + facet + "endsolid\n").vertices.size(), 3u);
    EXPECT_EQ(ReadText("solid \xc3\xa4\xff\n" + facet).vertices.size(), 3u);
}

TEST(StlText, TakesSeveralSolids) {
    const std::string solid = "solid a\n" + facet + "endsolid a\n";
    EXPECT_EQ(ReadText(solid + solid + "solid empty\nendsolid\n" + solid).vertices.size(), 9u);
}

TEST(StlText, TakesEveryLineEndAndWhiteSpace) {
    std::string text = "solid a\n" + facet + "endsolid a\n" + facet;
    std::string carriageReturns = text, both;
    std::ranges::replace(carriageReturns, '\n', '\r');
    for (const char c : text) both += c == '\n' ? "\r\n" : c == ' ' ? "\t\v\f " : std::string(1, c);
    EXPECT_EQ(ReadText(carriageReturns).vertices.size(), 6u);
    EXPECT_EQ(ReadText(both).vertices.size(), 6u);
}

TEST(StlText, OfAnEmptySolidIsAnEmptyMesh) {
    EXPECT_TRUE(ReadText("solid a\nendsolid a\n").vertices.empty());
}

TEST(StlText, FacetWithoutNormalHasNone) {
    const Mesh mesh = ReadText(facet + "facet vertex 1 2 3 endfacet");
    EXPECT_EQ(mesh.normals[3], (Vec{0, 0, 0}));
}

TEST(StlText, WordsThatBeginWithVertexAreVertices) {
    EXPECT_EQ(ReadText("facet vertexes 1 2 3 vertex0 4 5 6 endfacet").vertices.size(), 2u);
}

TEST(StlText, OtherWordsInAFacetPass) {
    EXPECT_EQ(ReadText("facet normal 0 0 1 color 1 0 0 facet solid loop vertex 1 2 3 endfacet")
                  .vertices.size(),
              1u);
}

struct BadText {
    const char* name;
    const char* text;
    const char* message;
};

void PrintTo(const BadText& c, std::ostream* out) { *out << c.name; }

class StlBadText : public testing::TestWithParam<BadText> {};

TEST_P(StlBadText, SaysWhatIsWrong) { EXPECT_EQ(ErrorOf(GetParam().text), GetParam().message); }

INSTANTIATE_TEST_SUITE_P(
    Stl, StlBadText,
    testing::Values(
        BadText{"Empty", "", "Bad STL File"}, BadText{"OnlyWhiteSpace", " \n\t", "Bad STL File"},
        BadText{"OnlySolid", "solid a\n", "Bad STL File"},
        BadText{"OnlyEndsolid", "endsolid a\n", "Bad STL File"},
        BadText{"EndsolidTwice", "solid a\nendsolid a\nendsolid a\n", "Bad STL File"},
        BadText{"SolidInSolid", "solid a\nsolid b\nendsolid\n", "Bad STL File"},
        BadText{"OtherWordFirst", "hello facet normal 0 0 1 endfacet", "Bad STL File"},
        BadText{"OtherWordBehindAFacet", "facet normal 0 0 1 endfacet hello", "Bad STL File"},
        BadText{"SolidBehindAFacet", "facet endfacet\nsolid b\n", "Bad STL File"},
        BadText{"UpperCase", "FACET NORMAL 0 0 1 ENDFACET", "Bad STL File"},
        BadText{"LoopOutsideAFacet", "solid a\nouter loop\n", "Bad STL File"},
        BadText{"CutFacet", "facet normal 0 0 1 outer loop vertex 1 2 3", "Bad STL File"},
        BadText{"CutBehindFacet", "solid a\nfacet", "Bad STL File"},
        BadText{"CutNormal", "facet normal 0 0", "Error in reading normal"},
        BadText{"WordInNormal", "facet normal 0 zero 1 endfacet", "Error in reading normal"},
        BadText{"CutVertex", "facet normal 0 0 1 vertex 1 2", "Error in reading vertex"},
        BadText{"WordInVertex", "facet normal 0 0 1 vertex a b c endfacet",
                "Error in reading vertex"},
        BadText{"DecimalComma", "facet vertex 1,5 2,5 3,5 endfacet", "Error in reading vertex"},
        BadText{"NumberWithTail", "facet vertex 1 2 3mm endfacet", "Error in reading vertex"},
        BadText{"TwoPoints", "facet vertex 1.2.3 4 5 endfacet", "Error in reading vertex"},
        BadText{"SignAlone", "facet vertex + 4 5 endfacet", "Error in reading vertex"},
        BadText{"TwoSigns", "facet vertex +-1 4 5 endfacet", "Error in reading vertex"},
        BadText{"Hexadecimal", "facet vertex 0x10 4 5 endfacet", "Error in reading vertex"},
        BadText{"TooLarge", "facet vertex 1e39 0 0 endfacet", "Error in reading vertex"},
        BadText{"TooLargeByItsDigits",
                "facet vertex 10000000000000000000000000000000000000000e5 0 0 endfacet",
                "Error in reading vertex"},
        BadText{"TooLargeExponent", "facet vertex 1e99999999999999999999 0 0 endfacet",
                "Error in reading vertex"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(StlNumbers, TakeTheFormsOfC) {
    EXPECT_EQ(VertexOf("1 -2 +3"), (Pos{1, -2, 3}));
    EXPECT_EQ(VertexOf("1.0e+000 -2.5E-1 .5"), (Pos{1, -0.25f, 0.5f}));
    EXPECT_EQ(VertexOf("1. 007 -0"), (Pos{1, 7, 0}));
    EXPECT_EQ(VertexOf("0.1 3.4028235e38 1.1754944e-38"),
              (Pos{0.1f, std::numeric_limits<float>::max(), std::numeric_limits<float>::min()}));
}

/// What the "C" locale's own conversion makes of it: the nearest float, ties to even.
float Nearest(const std::string& text) { return std::strtof(text.c_str(), nullptr); }

TEST(StlNumbers, AreTheNearestFloatAtHalfWays) {
    // The first four are, as double, just half-way between two floats, but not in truth. Then
    // between 2^24 and 2^24 + 2: a tie goes to the even one, and the smallest digit behind it
    // decides.
    for (const std::string text : {"0.06986991688609123",
                                   "0.0000908115653146524",
                                   "22.92427349090576",
                                   "1.030589997768402",
                                   "16777217",
                                   "16777217.0",
                                   "16777217.00000000000000001",
                                   "16777216.99999999999999999",
                                   "16777217.000000001",
                                   "16777216.999999999",
                                   "-16777217",
                                   "16777219",
                                   "1.6777217e7",
                                   "33554434",
                                   "33554438",
                                   "9007199254740993",
                                   "1e22",
                                   "1e23",
                                   "123456789e22",
                                   "0.000000000000000000000000001"})
        EXPECT_EQ(VertexOf(text + " 0 0").x, Nearest(text)) << text;
}

TEST(StlNumbers, AreTheNearestFloatInAnyNotation) {
    std::mt19937 random(20);  // a fixed seed: a failure comes again
    std::uniform_int_distribution<std::uint32_t> anyBits;
    std::uniform_int_distribution<int> anyPrecision(0, 24);
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<float>(anyBits(random));
        if (!std::isfinite(value)) continue;
        const int precision = anyPrecision(random);
        const auto number = static_cast<double>(value);
        // One more than the largest float may come out of rounding to few digits.
        for (const std::string& text : {std::format("{:.{}e}", number, precision),
                                        std::format("{:.{}g}", number, precision + 1)}) {
            if (std::isinf(Nearest(text))) continue;
            ASSERT_EQ(VertexOf(text + " 0 0").x, Nearest(text)) << text;
        }
        const std::string fixed =
            std::format("{:.{}f}", static_cast<double>(anyBits(random)) / 65536, precision);
        ASSERT_EQ(VertexOf(fixed + " 0 0").x, Nearest(fixed)) << fixed;
    }
}

TEST(StlNumbers, TooSmallForAFloatAreZero) {
    EXPECT_EQ(VertexOf("1e-50 -1e-99999999999999999999 0.000001e-45"), (Pos{0, 0, 0}));
    EXPECT_EQ(VertexOf("0.00000000000000000000000000000000000000000000000000001e2 0 0"),
              (Pos{0, 0, 0}));
    EXPECT_GT(VertexOf("1e-45 0 0").x, 0.0f);  // the smallest there is
}

TEST(StlNumbers, MayBeNanAndInfinite) {
    const Pos vertex = VertexOf("nan -inf +INFINITY");
    EXPECT_TRUE(std::isnan(vertex.x));
    EXPECT_EQ(vertex.y, -std::numeric_limits<float>::infinity());
    EXPECT_EQ(vertex.z, std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(VertexOf("-nan(ind) 0 0").x));
}

/// A decimal comma, as half the world writes it.
class Comma : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(StlNumbers, DoNotDependOnTheHostsLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    const Pos vertex = VertexOf("1.5 1000.25 -2.5e1");
    std::locale::global(before);
    EXPECT_EQ(vertex, (Pos{1.5f, 1000.25f, -25}));
}

// ---- pieces

TEST(StlPieces, EndBehindTheLastLineThatEndsAFacet) {
    const std::string two = "facet endfacet\nfacet endfacet \t\n";
    EXPECT_EQ(StlText::PieceLength(two), two.size());
    EXPECT_EQ(StlText::PieceLength(two + "facet endface"), two.size());
    EXPECT_EQ(StlText::PieceLength(two + "facet endfacet"),
              two.size());  // more of the word may follow
    EXPECT_EQ(StlText::PieceLength(two + "facet endfacet "), two.size());
    EXPECT_EQ(StlText::PieceLength("endfacet\r\n"), 9u);
}

TEST(StlPieces, EndNowhereElse) {
    EXPECT_EQ(StlText::PieceLength(""), 0u);
    EXPECT_EQ(StlText::PieceLength("facet normal 0 0 1\n"), 0u);
    EXPECT_EQ(StlText::PieceLength("facet endfacet facet normal\n"), 0u);
    EXPECT_EQ(StlText::PieceLength("facet xendfacet\n"), 0u);
    EXPECT_EQ(StlText::PieceLength("facet endfacets\n"), 0u);
    EXPECT_EQ(StlText::PieceLength("facet endfacet "), 0u);
}

// ---- files

TEST(StlLoad, NamesTheRecordByItsUri) {
    const TemporaryFile file("vrn part.stl", Binary(2));
    const std::unique_ptr<Mesh> mesh(STLLoader::Load(file.path.string()));
    EXPECT_EQ(mesh->name, file.path.string());
    EXPECT_EQ(mesh->vertices.size(), 6u);
}

TEST(StlLoad, ReadsTextWithoutATerminatingZeroInTheFile) {
    const TemporaryFile file("vrn_text.stl", "solid a\n" + facet + "endsolid");
    const std::unique_ptr<Mesh> mesh(STLLoader::Load("file://" + file.path.string()));
    EXPECT_EQ(mesh->vertices.size(), 3u);
}

/// A text of some megabytes whose lines end where a reader in pieces could go wrong.
std::string UnevenText() {
    std::mt19937 random(3);
    std::uniform_int_distribution<int> anyNumber(-99999, 99999), anyShape(0, 9);
    const auto three = [&] {
        return std::format("{} {}.5 {}e-3", anyNumber(random), anyNumber(random),
                           anyNumber(random));
    };
    std::string text = "solid endfacet\n";
    for (int i = 0; i < 25000; ++i) {
        const int shape = anyShape(random);
        const char gap = shape < 8 ? '\n' : ' ';
        text += std::format(
            "facet normal{}{}{} outer loop vertex {}{}vertex {} vertex{}{} endloop{}endfacet", gap,
            three(), gap, three(), gap, three(), gap, three(), gap);
        if (shape == 5) text += "\nendsolid endfacet\nsolid facet endfacet";
        text += shape == 9 ? "  " : shape == 7 ? " \t\r\n" : "\n";
    }
    return text + "endsolid";
}

TEST(StlLoad, ReadsALargeTextInPiecesAsInOne) {
    const std::string text = UnevenText();
    ASSERT_GT(text.size(), 3'000'000u);
    const TemporaryFile file("vrn_large.stl", text);
    const Mesh whole = ReadText(text);
    const std::unique_ptr<Mesh> pieces(STLLoader::Load(file.path.string()));
    EXPECT_EQ(whole.vertices.size(), 75000u);
    EXPECT_TRUE(pieces->vertices == whole.vertices);
    EXPECT_TRUE(pieces->normals == whole.normals);
    EXPECT_TRUE(pieces->indices == whole.indices);
}

TEST(StlLoad, ReadsALargeTextOnOneLine) {
    std::string text;
    for (int i = 0; i < 25000; ++i) text += facet;
    std::ranges::replace(text, '\n', ' ');
    ASSERT_GT(text.size(), 2'000'000u);
    const TemporaryFile file("vrn_line.stl", text);
    const std::unique_ptr<Mesh> mesh(STLLoader::Load(file.path.string()));
    EXPECT_EQ(mesh->vertices.size(), 75000u);
}

TEST(StlLoad, EndsATextAtItsFirstZeroAsReadersOfOnePieceDo) {
    std::string text = facet;
    text += '\0';
    text += "rubbish" + std::string(200, ' ');
    const TemporaryFile file("vrn_zero.stl", text);
    const std::unique_ptr<Mesh> mesh(STLLoader::Load(file.path.string()));
    EXPECT_EQ(mesh->vertices.size(), 3u);
}

TEST(StlLoad, ReadsALargeBinaryFileInPiecesAsInOne) {
    const std::string bytes = Binary(50001);
    const TemporaryFile file("vrn_binary.stl", bytes);
    Mesh whole("whole");
    STLLoader::readStl(bytes.data(), bytes.size(), &whole);
    const std::unique_ptr<Mesh> pieces(STLLoader::Load(file.path.string()));
    EXPECT_EQ(pieces->vertices.size(), 150003u);
    EXPECT_TRUE(pieces->vertices == whole.vertices);
    EXPECT_TRUE(pieces->normals == whole.normals);
    EXPECT_TRUE(pieces->indices == whole.indices);
}

TEST(StlLoad, RefusesALargeTextThatIsBrokenFarBehind) {
    std::string text = UnevenText();
    text.insert(text.find("vertex", 2'500'000), "vertex 1 2 x ");
    const TemporaryFile file("vrn_large_bad.stl", text);
    EXPECT_THROW(delete STLLoader::Load(file.path.string()), std::runtime_error);
}

std::string LoadError(const std::string& uri) {
    try {
        delete STLLoader::Load(uri);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return {};
}

TEST(StlLoad, SaysWhichFileIsMissing) {
    const std::string error = LoadError("/nowhere/part.stl");
    EXPECT_THAT(error, HasSubstr("/nowhere/part.stl"));
    EXPECT_THAT(error, HasSubstr("No such file"));
}

TEST(StlLoad, RefusesAFolder) {
    EXPECT_THAT(LoadError(testing::TempDir()), HasSubstr("directory"));
}

TEST(StlLoad, HandsOtherSchemesToTheResourceReader) {
    EXPECT_THAT(LoadError("resource://mesh/no such part.stl"), HasSubstr("no such part.stl"));
    EXPECT_THAT(LoadError("http://example.org/part.stl"), HasSubstr("http://example.org/part.stl"));
}

TEST(StlLoad, PassesOnWhatTheReaderThrows) {
    const TemporaryFile file("vrn_bad.stl", "this is no STL file");
    EXPECT_EQ(LoadError(file.path.string()), "Bad STL File");
    const TemporaryFile empty("vrn_empty.stl", "");
    EXPECT_EQ(LoadError(empty.path.string()), "Bad STL File");
}

// ---- what a fuzzer and other people's programs came up with

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

class StlRegressions : public testing::TestWithParam<const char*> {};

TEST_P(StlRegressions, EndInAMeshOrInAnError) {
    const auto files = FilesIn(GetParam());
    ASSERT_FALSE(files.empty());
    for (const auto& path : files) {
        SCOPED_TRACE(path.string());
        try {
            const std::unique_ptr<Mesh> mesh(STLLoader::Load(path.string()));
            EXPECT_EQ(mesh->normals.size(), mesh->vertices.size());
            EXPECT_EQ(mesh->indices.size(), mesh->vertices.size());
            EXPECT_TRUE(std::isfinite(mesh->getBox().min.x));
        } catch (const std::runtime_error& e) {
            EXPECT_THAT(e.what(), testing::AnyOf(testing::StrEq("Bad STL File"),
                                                 testing::StrEq("Error in reading normal"),
                                                 testing::StrEq("Error in reading vertex")));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Stl, StlRegressions, testing::Values(VRN_MESH_TEST_DATA, VRN_STL_CORPUS));

TEST(StlSharedFiles, AreAllRead) {
    const std::filesystem::path folder = std::filesystem::path(VRN_SHARED_DATA) / "stl";
    if (!std::filesystem::exists(folder))
        GTEST_SKIP() << "the shared STL files are not here: " << folder;
    for (const auto& path : FilesIn(folder)) {
        SCOPED_TRACE(path.string());
        const std::unique_ptr<Mesh> mesh(STLLoader::Load(path.string()));
        EXPECT_GT(mesh->vertices.size(), 0u);
        EXPECT_EQ(mesh->vertices.size() % 3, 0u);
        EXPECT_TRUE(mesh->getBox().isValid());
    }
}

}  // namespace
}  // namespace vrn::visual
