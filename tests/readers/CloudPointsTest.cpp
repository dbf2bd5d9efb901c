#include "apps/vrnview/readers/CloudPoints.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "tests/readers/ReaderTest.h"

namespace vrn::host {
namespace {

using test::ErrorOf;
using Pos = rob::PosTemplate<double>;

/// The bytes of a value in the wanted order.
template <class T>
std::string Packed(T value, std::endian order = std::endian::little) {
    std::string bytes(sizeof(T), '\0');
    std::memcpy(bytes.data(), &value, sizeof(T));
    if (order != std::endian::native) std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

std::string PlyHeader(const std::string& format, const std::string& elements) {
    return "ply\nformat " + format + " 1.0\ncomment made by a test\n" + elements + "end_header\n";
}
const std::string twoVertices =
    "element vertex 2\nproperty float x\nproperty float y\nproperty float z\n";
const std::string xyz = "property float x\nproperty float y\nproperty float z\n";

TEST(ReadPly, TextGivesItsPoints) {
    const CloudPoints cloud = ReadPly(PlyHeader("ascii", twoVertices) + "1 2 3\n-4 5e1 6\n");
    EXPECT_EQ(cloud.points, (std::vector<Pos>{{1, 2, 3}, {-4, 50, 6}}));
    EXPECT_EQ(cloud.holes, 0u);
}

TEST(ReadPly, WindowsLineEndsAreTaken) {
    EXPECT_EQ(ReadPly("ply\r\nformat ascii 1.0\r\nelement vertex 1\r\nproperty float x\r\n"
                      "property float y\r\nproperty float z\r\nend_header\r\n1 2 3\r\n")
                  .points,
              (std::vector<Pos>{{1, 2, 3}}));
}

TEST(ReadPly, BothByteOrdersGiveTheSame) {
    for (const std::endian order : {std::endian::little, std::endian::big}) {
        const bool little = order == std::endian::little;
        std::string bytes =
            PlyHeader(little ? "binary_little_endian" : "binary_big_endian",
                      "element vertex 1\nproperty double x\nproperty uchar red\nproperty short y\n"
                      "property uint z\n");
        bytes += Packed(1.5, order) + Packed<std::uint8_t>(200, order) +
                 Packed<std::int16_t>(-7, order) + Packed<std::uint32_t>(4'000'000'000u, order);
        EXPECT_EQ(ReadPly(bytes).points, (std::vector<Pos>{{1.5, -7, 4e9}})) << little;
    }
}

TEST(ReadPly, OtherElementsAndListsArePassedOver) {
    std::string bytes = PlyHeader(
        "binary_little_endian",
        "element camera 1\nproperty float f\nproperty list uchar int ids\nelement vertex 1\n" +
            xyz + "element face 1\nproperty list uchar int vertex_indices\n");
    bytes += Packed(9.0f) + Packed<std::uint8_t>(2) + Packed(1) + Packed(2);
    bytes += Packed(1.0f) + Packed(2.0f) + Packed(3.0f);
    bytes += Packed<std::uint8_t>(3) + Packed(0) + Packed(0) + Packed(0);
    EXPECT_EQ(ReadPly(bytes).points, (std::vector<Pos>{{1, 2, 3}}));
}

TEST(ReadPly, TextListsArePassedOver) {
    EXPECT_EQ(ReadPly(PlyHeader("ascii",
                                "element face 1\nproperty list uchar int i\n"
                                "element vertex 1\n" +
                                    xyz) +
                      "3 7 8 9\n1 2 3")
                  .points,
              (std::vector<Pos>{{1, 2, 3}}));
}

TEST(ReadPly, PointsThatAreNotFiniteAreHoles) {
    const CloudPoints cloud = ReadPly(PlyHeader("ascii", twoVertices) + "nan 2 3\n4 5 6\n");
    EXPECT_EQ(cloud.points.size(), 1u);
    EXPECT_EQ(cloud.holes, 1u);
}

TEST(ReadPly, CutFilesEndTooEarly) {
    const std::string text = PlyHeader("ascii", twoVertices) + "1 2 3\n4 5";
    EXPECT_EQ(ErrorOf([&] { (void)ReadPly(text); }), "the file ends too early");
    const std::string binary =
        PlyHeader("binary_little_endian", twoVertices) + std::string(23, '\0');
    EXPECT_EQ(ErrorOf([&] { (void)ReadPly(binary); }), "the file ends too early");
    // What stands behind the points belongs to the file as well.
    const std::string faces =
        PlyHeader("ascii", twoVertices + "element face 2\nproperty list uchar int i\n") +
        "1 2 3 4 5 6 3 0 0 0 3 0";
    EXPECT_EQ(ErrorOf([&] { (void)ReadPly(faces); }), "the file ends too early");
    EXPECT_EQ(ErrorOf([&] { (void)ReadPly("ply\nformat ascii 1.0\n"); }), "the header has no end");
}

TEST(ReadPly, HugeCountsAreComparedWithTheFile) {
    for (const char* format : {"ascii", "binary_little_endian"}) {
        const std::string bytes =
            PlyHeader(format, "element vertex 18446744073709551615\n" + xyz) + "1 2 3\n";
        EXPECT_EQ(ErrorOf([&] { (void)ReadPly(bytes); }), "the file ends too early") << format;
    }
    // A count of what takes no bytes costs nothing.
    EXPECT_EQ(
        ReadPly(PlyHeader("ascii", "element void 18446744073709551615\nelement vertex 1\n" + xyz) +
                "1 2 3")
            .points.size(),
        1u);
    const std::string list =
        PlyHeader("binary_little_endian",
                  "element face 1\nproperty list uint double i\nelement vertex 1\n" + xyz) +
        Packed<std::uint32_t>(0xFFFFFFFFu) + std::string(64, '\0');
    EXPECT_EQ(ErrorOf([&] { (void)ReadPly(list); }), "the file ends too early");
}

TEST(ReadPly, BrokenListLengthsAreRefused) {
    const std::string header =
        PlyHeader("ascii", "element face 1\nproperty list float int i\n" + twoVertices);
    for (const char* length : {"-1", "nan", "1e30"})
        EXPECT_EQ(ErrorOf([&] { (void)ReadPly(header + length + " 1 2 3 4 5 6"); }),
                  "the file has a list of a negative or broken length")
            << length;
}

TEST(ReadPly, WhatIsWrongIsNamed) {
    const std::string end = "end_header\n";
    const std::vector<std::pair<std::string, std::string>> wrong{
        {"", "not a PLY file"},
        {"plyx\n", "not a PLY file"},
        {"ply\nelement vertex 1\n" + xyz + end, "the header names no format"},
        {"ply\nformat binary 1.0\n" + end, "the header has the unknown format 'binary'"},
        {"ply\nformat ascii 1.0\nproperty float x\n" + end,
         "the header has a property without an element"},
        {"ply\nformat ascii 1.0\nelement vertex -1\n" + end,
         "the header has no proper count for 'vertex'"},
        {"ply\nformat ascii 1.0\nelement vertex 1\nproperty real x\n" + end,
         "the header has a property of unknown type 'real'"},
        {"ply\nformat ascii 1.0\nnonsense\n" + end, "the header has an unknown line"},
        {"ply\nformat ascii 1.0\nelement face 0\n" + end, "the file has no vertices"},
        {"ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\n" + end + "1",
         "the vertices have no x, y and z"},
        {"ply\nformat ascii 1.0\nelement vertex 1\nproperty list uchar float x\n"
         "property float y\nproperty float z\n" +
             end,
         "the vertices have no x, y and z"},
        {"ply\nformat ascii 1.0\n" + twoVertices + twoVertices + end,
         "the header names vertices twice"},
        {"ply\nformat ascii 1.0\nelement vertex 0\n" + xyz + end, "the file holds no points"},
        {"ply\nformat ascii 1.0\nelement vertex 1\n" + xyz + end + "nan nan nan",
         "the file holds no points"},
        {"ply\nformat ascii 1.0\nelement vertex 1\n" + xyz + end + "1 two 3",
         "the file has a word where a number belongs"},
    };
    for (const auto& [bytes, message] : wrong)
        EXPECT_EQ(ErrorOf([&] { (void)ReadPly(bytes); }), message) << bytes;
}

std::string PcdHeader(const std::string& points, const std::string& data) {
    return "# .PCD v0.7 - Point Cloud Data file format\nVERSION 0.7\nFIELDS x y z\nSIZE 4 4 4\n"
           "TYPE F F F\nCOUNT 1 1 1\nWIDTH " +
           points + "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + points + "\nDATA " + data +
           "\n";
}

TEST(ReadPcd, TextGivesItsPoints) {
    const CloudPoints cloud = ReadPcd(PcdHeader("2", "ascii") + "1 2 3\nnan nan nan\n");
    EXPECT_EQ(cloud.points, (std::vector<Pos>{{1, 2, 3}}));
    EXPECT_EQ(cloud.holes, 1u);
}

TEST(ReadPcd, BinaryFieldsMayHaveAnyTypeOrderAndCount) {
    std::string bytes =
        "FIELDS normal z _ x y\nSIZE 4 8 1 2 4\nTYPE F F U I U\nCOUNT 3 1 5 1 1\nWIDTH 2\n"
        "HEIGHT 1\nPOINTS 2\nDATA binary\n";
    for (const double i : {1.0, 2.0}) {
        bytes += Packed(0.0f) + Packed(0.0f) + Packed(0.0f) + Packed(i + 0.25);
        bytes += std::string(5, 'x') + Packed(static_cast<std::int16_t>(-i));
        bytes += Packed(static_cast<std::uint32_t>(i * 10));
    }
    EXPECT_EQ(ReadPcd(bytes).points, (std::vector<Pos>{{-1, 10, 1.25}, {-2, 20, 2.25}}));
}

/// Takes bytes as they are, 32 at a time.
std::string PackLiteral(const std::string& bytes) {
    std::string packed;
    for (std::size_t i = 0; i < bytes.size(); i += 32) {
        const std::string run = bytes.substr(i, 32);
        packed += static_cast<char>(run.size() - 1);
        packed += run;
    }
    return packed;
}

TEST(ReadPcd, CompressedPointsLieFieldByField) {
    std::string fields;
    for (const float value : {1.0f, 4.0f, 2.0f, 5.0f, 3.0f, 6.0f}) fields += Packed(value);
    const std::string packed = PackLiteral(fields);
    const std::string body =
        Packed(static_cast<std::uint32_t>(packed.size())) + Packed<std::uint32_t>(24) + packed;
    EXPECT_EQ(ReadPcd(PcdHeader("2", "binary_compressed") + body).points,
              (std::vector<Pos>{{1, 2, 3}, {4, 5, 6}}));
}

TEST(ReadPcd, CutFilesEndTooEarly) {
    const auto error = [](const std::string& bytes) {
        return ErrorOf([&] { (void)ReadPcd(bytes); });
    };
    EXPECT_EQ(error(PcdHeader("2", "ascii") + "1 2 3\n4 5"), "the file ends too early");
    EXPECT_EQ(error(PcdHeader("2", "binary") + std::string(23, '\0')), "the file ends too early");
    EXPECT_EQ(error(PcdHeader("2", "binary_compressed") + "1234567"), "the file ends too early");
    EXPECT_EQ(error(PcdHeader("2", "binary_compressed") + Packed<std::uint32_t>(100) +
                    Packed<std::uint32_t>(24) + std::string(20, '\0')),
              "the file ends too early");
    EXPECT_EQ(error("FIELDS x y z\nSIZE 4 4 4\n"), "the header has no end");
}

TEST(ReadPcd, HugeCountsAreComparedWithTheFile) {
    const std::string huge = "18446744073709551615";
    for (const char* data : {"ascii", "binary"})
        EXPECT_EQ(ErrorOf([&] { (void)ReadPcd(PcdHeader(huge, data) + "1 2 3"); }),
                  "the file ends too early");
    EXPECT_EQ(ErrorOf([&] {
                  (void)ReadPcd(PcdHeader(huge, "binary_compressed") + Packed<std::uint32_t>(4) +
                                Packed<std::uint32_t>(24) + std::string(4, '\1'));
              }),
              "the size of the compressed points is not what the header says");
    // 4 GB promised by 8 bytes of packed data.
    EXPECT_EQ(ErrorOf([&] {
                  (void)ReadPcd(PcdHeader("357913941", "binary_compressed") +
                                Packed<std::uint32_t>(8) + Packed<std::uint32_t>(4294967292u) +
                                "12345678");
              }),
              "the compressed points are broken");
}

TEST(ReadPcd, WhatIsWrongIsNamed) {
    const std::string sizes = "SIZE 4 4 4\n", types = "TYPE F F F\n", fields = "FIELDS x y z\n";
    const std::vector<std::pair<std::string, std::string>> wrong{
        {"", "not a PCD file"},
        {"nothing of the kind\n", "not a PCD file"},
        {fields + "SIZE 4 4\n" + types + "WIDTH 1\nDATA ascii\n",
         "the header's FIELDS, SIZE, TYPE and COUNT do not agree"},
        {fields + "SIZE 4 4 3\n" + types + "WIDTH 1\nDATA ascii\n",
         "the header has a field of unknown type 'F' of size '3'"},
        {fields + "SIZE 4 4 2\n" + types + "WIDTH 1\nDATA ascii\n",
         "the header has a field of unknown type 'F' of size '2'"},
        {fields + sizes + types + "COUNT 1 1 0\nWIDTH 1\nDATA ascii\n",
         "the header has a field of a broken COUNT"},
        {fields + sizes + types + "COUNT 1 1 99999999999\nWIDTH 1\nDATA ascii\n",
         "the header has a field of a broken COUNT"},
        {fields + sizes + types + "WIDTH x\nDATA ascii\n", "the header has no proper WIDTH"},
        {fields + sizes + types + "DATA ascii\n", "the header has no number of points"},
        {fields + sizes + types + "WIDTH 2\nHEIGHT 2\nPOINTS 5\nDATA ascii\n",
         "the header's WIDTH, HEIGHT and POINTS do not agree"},
        {fields + sizes + types + "WIDTH 4294967296\nHEIGHT 4294967296\nPOINTS 0\nDATA ascii\n",
         "the header's WIDTH, HEIGHT and POINTS do not agree"},
        {"FIELDS x y w\n" + sizes + types + "WIDTH 1\nDATA ascii\n1 2 3",
         "the points have no x, y and z"},
        {PcdHeader("1", "zip") + "1 2 3", "the header has the unknown DATA 'zip'"},
        {PcdHeader("1", "ascii") + "1 2 three", "the file has a word where a number belongs"},
        {PcdHeader("0", "ascii"), "the file holds no points"},
        {PcdHeader("1", "ascii") + "nan nan nan", "the file holds no points"},
    };
    for (const auto& [bytes, message] : wrong)
        EXPECT_EQ(ErrorOf([&] { (void)ReadPcd(bytes); }), message) << bytes;
}

std::string Unpacked(const std::string& packed, std::uint64_t size) {
    const std::vector<char> bytes = UnpackLzf(packed, size);
    return {bytes.begin(), bytes.end()};
}

TEST(UnpackLzf, CopiesRunsAndReferences) {
    EXPECT_EQ(Unpacked(std::string("\2abc", 4), 3), "abc");
    // Three back, length 1 + 2.
    EXPECT_EQ(Unpacked(std::string("\2abc\x20\2", 6), 6), "abcabc");
    // One back and longer than what is there: the run repeats itself.
    EXPECT_EQ(Unpacked(std::string("\0a\xE0\x01\0", 5), 11), "a" + std::string(10, 'a'));
}

TEST(UnpackLzf, BrokenDataIsRefused) {
    const std::string message = "the compressed points are broken";
    for (const auto& [packed, size] : std::vector<std::pair<std::string, std::uint64_t>>{
             {std::string("\5ab", 3), 6},         // a run that is cut
             {std::string("\2abc\x20", 5), 6},    // a reference that is cut
             {std::string("\2abc\xE0", 5), 60},   // its longer length is cut
             {std::string("\2abc\x20\3", 6), 6},  // further back than there is
             {std::string("\2abc", 4), 2},        // more than promised
             {std::string("\2abc\x20\2", 6), 5},  // the same by a reference
             {std::string("\2abc", 4), 4},        // less than promised
             {std::string(), 1},
             {std::string("\2abc", 4), 0xFFFFFFFFFFFFFFFFu}})
        EXPECT_EQ(ErrorOf([&] { (void)UnpackLzf(packed, size); }), message) << size;
}

TEST(ReadPointText, TakesTheFirstThreeColumns) {
    const CloudPoints cloud = ReadPointText(
        "# made by a test\n1 2 3 255 0 0\n\n4,5,6\n7;8;9\r\n// end\n\t-1 \t+2\t3e1 word");
    EXPECT_EQ(cloud.points, (std::vector<Pos>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {-1, 2, 30}}));
}

TEST(ReadPointText, FirstLineMayBeTheCount) {
    EXPECT_EQ(ReadPointText("2\n1 2 3\nnan 5 6\n").holes, 1u);
    EXPECT_EQ(ErrorOf([] { (void)ReadPointText("3\n1 2 3\n4 5 6\n"); }),
              "the file names 3 points and holds 2");
    EXPECT_EQ(ErrorOf([] { (void)ReadPointText("18446744073709551615\n1 2 3\n"); }),
              "the file names 18446744073709551615 points and holds 1");
}

TEST(ReadPointText, FirstLineMayBeAHeading) {
    EXPECT_EQ(ReadPointText("X Y Z R G B\n1 2 3\n").points.size(), 1u);
    EXPECT_EQ(ErrorOf([] { (void)ReadPointText("1 2 3\nx y z\n"); }),
              "line 2 is not three numbers");
}

TEST(ReadPointText, BadLinesAreNumbered) {
    EXPECT_EQ(ErrorOf([] { (void)ReadPointText("1 2 3\n\n4 5\n"); }),
              "line 3 is not three numbers");
    EXPECT_EQ(ErrorOf([] { (void)ReadPointText("#\n1 2 three\n"); }),
              "line 2 is not three numbers");
    EXPECT_EQ(ErrorOf([] { (void)ReadPointText(std::string("\0\1\2\3", 4)); }),
              "line 1 is not three numbers");
}

TEST(ReadPointText, TextWithoutPointsIsRefused) {
    for (const char* text : {"", "\n\n", "# nothing\n", "x y z\n", "0\n", "nan nan nan\n"})
        EXPECT_EQ(ErrorOf([&] { (void)ReadPointText(text); }), "the file holds no points") << text;
}

/// What an independent count of the sample says.
struct SampleCloud {
    const char* file;
    std::size_t points;
    std::uint64_t holes;
    Pos min, extent;
    double tolerance;  ///< what the figures were rounded to
};
void PrintTo(const SampleCloud& sample, std::ostream* out) { *out << sample.file; }

class SampleClouds : public testing::TestWithParam<SampleCloud> {};

TEST_P(SampleClouds, HaveTheirCountsAndBounds) {
    const SampleCloud& sample = GetParam();
    VRN_NEEDS_SAMPLE(sample.file);
    const CloudPoints cloud = ReadCloudFile(test::Sample(sample.file));
    EXPECT_EQ(cloud.points.size(), sample.points);
    EXPECT_EQ(cloud.holes, sample.holes);
    for (double Pos::* axis : {&Pos::x, &Pos::y, &Pos::z}) {
        const auto [low, high] =
            std::ranges::minmax_element(cloud.points, {}, [axis](const Pos& p) { return p.*axis; });
        EXPECT_NEAR((*low).*axis, sample.min.*axis, sample.tolerance);
        EXPECT_NEAR((*high).*axis - (*low).*axis, sample.extent.*axis, sample.tolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(All, SampleClouds,
                         testing::Values(SampleCloud{"pointcloud/region_growing_rgb_tutorial.pcd",
                                                     307'200 - 47'353,
                                                     47'353,
                                                     {-1.072, -1.581, 0.843},
                                                     {2.882, 1.989, 2.978},
                                                     1e-3},
                                         SampleCloud{"pointcloud/room_scan1.pcd",
                                                     112'586,
                                                     0,
                                                     {-13.8, -6.493, -1.352},
                                                     {29.25, 14.47, 3.061},
                                                     1e-2},
                                         SampleCloud{"pointcloud/CSite1_red1-utm.pcd",
                                                     522'674,
                                                     0,
                                                     {512'050, 5.40306e6, 247.19},
                                                     {1101, 1040, 179.6},
                                                     5},
                                         SampleCloud{"pointcloud/rops_points.pcd",
                                                     32'087,
                                                     0,
                                                     {-0.42, -0.24, -1.402},
                                                     {0.826, 0.489, 0.3924},
                                                     1e-3},
                                         SampleCloud{"pointcloud/fragment_002.ply",
                                                     112'698,
                                                     0,
                                                     {-1.449, -1.105, 0.785},
                                                     {2.32, 1.458, 2.069},
                                                     1e-3},
                                         SampleCloud{"pointcloud/frag_115.ply",
                                                     64'365,
                                                     0,
                                                     {0.84, 0.918, 0.566},
                                                     {1.733, 1.896, 1.042},
                                                     1e-3},
                                         SampleCloud{"pointcloud/dragon1.xyz",
                                                     100'000,
                                                     0,
                                                     {-10.832, -4.121, 5.274},
                                                     {20.49, 9.157, 14.44},
                                                     1e-2},
                                         SampleCloud{"pointcloud/bunnyData.pts",
                                                     30'571,
                                                     0,
                                                     {-0.095, 0.04, -0.062},
                                                     {0.1557, 0.1473, 0.1207},
                                                     1e-3}));

class CloudFile : public test::FileTest {};

TEST_F(CloudFile, ExtensionsAreTakenInAnyCase) {
    for (const char* name : {"a.xyz", "a.XYZ", "a.Pts"})
        EXPECT_EQ(ReadCloudFile(write(name, "1 2 3\n")).points.size(), 1u) << name;
    EXPECT_EQ(ErrorOf([&] { (void)ReadCloudFile(write("a.txt", "1 2 3\n")); }),
              "not a point cloud (supported: .ply, .pcd, .xyz, .pts)");
    EXPECT_EQ(ErrorOf([&] { (void)ReadCloudFile(folder.getPath() / "no.ply"); }),
              "No such file or directory");
    EXPECT_EQ(ErrorOf([&] { (void)ReadCloudFile(write("empty.pcd", "")); }), "the file is empty");
}

}  // namespace
}  // namespace vrn::host
