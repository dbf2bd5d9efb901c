#include "apps/vrnview/InputFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "apps/vrnview/readers/GeometryUri.h"
#include "apps/vrnview/readers/StlFile.h"
#include "apps/vrnview/TempFolder.h"
#include "tests/apps/TestFiles.h"

namespace vrn::host {
namespace {

class InputFileTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path path = folder.getPath() / name;
        test::WriteBytes(path, bytes);
        return path;
    }
    static std::string reasonAgainst(const std::filesystem::path& path) {
        try {
            CheckInput(path);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }
    TempFolder folder;
};

TEST_F(InputFileTest, LowerAndUpperCaseStlAreTaken) {
    EXPECT_EQ(reasonAgainst(file("a.stl", "solid")), "none");
    EXPECT_EQ(reasonAgainst(file("b.STL", "solid")), "none");
    EXPECT_EQ(reasonAgainst(file("with space.stl", "solid")), "none");
}

TEST_F(InputFileTest, MissingFileIsNamedSo) {
    EXPECT_EQ(reasonAgainst(folder.getPath() / "no.stl"), "No such file or directory");
    EXPECT_EQ(reasonAgainst(folder.getPath() / "no" / "no.stl"), "No such file or directory");
}

TEST_F(InputFileTest, EmptyNameIsRefused) {
    EXPECT_EQ(reasonAgainst(""), "No such file or directory");
}

TEST_F(InputFileTest, DirectoryIsRefusedWhateverItsName) {
    std::filesystem::create_directory(folder.getPath() / "folder.stl");
    EXPECT_EQ(reasonAgainst(folder.getPath() / "folder.stl"), "is a directory, not a file");
}

TEST_F(InputFileTest, PipeIsRefusedInsteadOfWaitedFor) {
    const std::filesystem::path pipe = folder.getPath() / "pipe.stl";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(reasonAgainst(pipe), "is not a regular file");
}

TEST_F(InputFileTest, OtherExtensionsAreUnsupported) {
    for (const char* name : {"a.obj", "a.dae", "a", "stl", "a.stl.txt", ".stl"})
        EXPECT_THAT(reasonAgainst(file(name, "solid")), testing::HasSubstr("unsupported file type"))
            << name;
}

TEST_F(InputFileTest, EmptyFileIsRefused) {
    EXPECT_EQ(reasonAgainst(file("a.stl", "")), "the file is empty");
}

TEST_F(InputFileTest, UnreadableFileIsRefused) {
    const std::filesystem::path path = file("a.stl", "solid");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    // Root reads everything, so a process without its rights asks.
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && setuid(nobody) != 0) _exit(2);
        _exit(reasonAgainst(path) == "Permission denied" ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(InputFileTest, TruncatedBinaryIsExplainedBySizes) {
    test::WriteBinaryStl(folder.getPath() / "a.stl", test::BoxTriangles({0, 0, 0}, {1, 1, 1}));
    const std::string bytes = test::ReadBytes(folder.getPath() / "a.stl");
    const std::filesystem::path cut = file("cut.stl", bytes.substr(0, 300));
    EXPECT_EQ(ExplainStlFailure(cut, "Bad STL File"),
              "Bad STL File: a binary STL of 12 triangles has 684 bytes, this file has 300");
}

TEST_F(InputFileTest, HugeTriangleCountIsExplainedWithoutOverflow) {
    std::string bytes(80, '\0');
    bytes.append(4, '\xff');
    EXPECT_EQ(ExplainStlFailure(file("a.stl", bytes), "Bad STL File"),
              "Bad STL File: a binary STL of 4294967295 triangles has 214748364834 bytes, this "
              "file has 84");
}

TEST_F(InputFileTest, WholeBinaryKeepsTheReadersMessage) {
    test::WriteBinaryStl(folder.getPath() / "a.stl", test::BoxTriangles({0, 0, 0}, {1, 1, 1}));
    EXPECT_EQ(ExplainStlFailure(folder.getPath() / "a.stl", "too large"), "too large");
}

TEST_F(InputFileTest, TextAndShortFilesKeepTheReadersMessage) {
    EXPECT_EQ(ExplainStlFailure(file("a.stl", std::string(200, 'x')), "Bad STL File"),
              "Bad STL File");
    EXPECT_EQ(ExplainStlFailure(file("b.stl", std::string(20, '\0')), "Bad STL File"),
              "Bad STL File");
    EXPECT_EQ(ExplainStlFailure(folder.getPath() / "no.stl", "Bad STL File"), "Bad STL File");
}

TEST_F(InputFileTest, GeometryUriIsTheAbsolutePath) {
    EXPECT_EQ(GeometryUri("/data/a b%20.stl"), "/data/a b%20.stl");
    EXPECT_EQ(GeometryUri("a.stl"), (std::filesystem::current_path() / "a.stl").string());
}

TEST_F(InputFileTest, GeometryUriHasNoScheme) {
    EXPECT_EQ(GeometryUri("http://a.stl"),
              (std::filesystem::current_path() / "http:/a.stl").string());
    EXPECT_EQ(GeometryUri("/data//link/../a.stl"), "/data/link/../a.stl");
}

}  // namespace
}  // namespace vrn::host
