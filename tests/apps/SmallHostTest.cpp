#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/apps/TestFiles.h"
#include "tests/apps/Vrnview.h"

namespace vrn::test {
namespace {

const std::string sourceFolder = VRN_SOURCE_FOLDER;

class SmallHost : public VrnviewTest {};

TEST_F(SmallHost, ShowsAFile) {
    WriteBinaryStl(path("box.stl"), BoxTriangles({0, 0, 0}, {100, 100, 100}));
    const ProcessResult host = RunProgram(SMALL_HOST_PROGRAM, {path("box.stl"), "3"});
    EXPECT_EQ(host.status, 0) << host.err;
    EXPECT_EQ(host.out, "12 triangles\n");
}

TEST_F(SmallHost, TellsWhatTheLibraryThrew) {
    WriteBytes(path("prose.stl"), "This is no mesh.\n");
    const ProcessResult host = RunProgram(SMALL_HOST_PROGRAM, {path("prose.stl"), "3"});
    EXPECT_EQ(host.status, 1);
    EXPECT_EQ(host.err, path("prose.stl") + ": Bad STL File\n");
}

TEST(Readme, ShowsTheSmallHostAsItIsCompiled) {
    const std::string readme = ReadBytes(sourceFolder + "/README.md");
    EXPECT_THAT(readme, testing::HasSubstr(
                            "```cpp\n" + ReadBytes(sourceFolder + "/docs/snippets/small_host.cpp") +
                            "```"));
}

TEST(Readme, ShowsAPictureOfTheDefaultSize) {
    EXPECT_THAT(ReadBytes(sourceFolder + "/README.md"),
                testing::HasSubstr("(docs/images/demo.png)"));
    const headless::Picture picture =
        headless::Picture::loadPng(sourceFolder + "/docs/images/demo.png");
    EXPECT_EQ(picture.getWidth(), 1280);
    EXPECT_EQ(picture.getHeight(), 720);
}

}  // namespace
}  // namespace vrn::test
