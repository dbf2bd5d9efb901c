#include "apps/headless/WholeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <future>
#include <stdexcept>
#include <string>

#include "apps/vrnview/TempFolder.h"
#include "tests/apps/TestFiles.h"

namespace vrn::headless {
namespace {

using test::ReadBytes;
using test::WriteBytes;
using testing::HasSubstr;
using testing::ThrowsMessage;

class WholeFiles : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path(const std::string& name) const {
        return folder.getPath() / name;
    }
    [[nodiscard]] auto count() const {
        return std::distance(std::filesystem::directory_iterator(folder.getPath()), {});
    }
    static void write(const std::filesystem::path& name, const std::string& bytes) {
        WholeFile file(name);
        file.stream() << bytes;
        file.commit();
    }

    host::TempFolder folder;
};

TEST_F(WholeFiles, StandUnderTheirNameOnlyOnceCommitted) {
    WriteBytes(path("a"), "old");
    {
        WholeFile file(path("a"));
        file.stream() << "new" << std::flush;
        EXPECT_EQ(ReadBytes(path("a")), "old");
    }
    EXPECT_EQ(ReadBytes(path("a")), "old");
    write(path("a"), "new");
    EXPECT_EQ(ReadBytes(path("a")), "new");
    EXPECT_EQ(count(), 1);
}

TEST_F(WholeFiles, FollowSymbolicLinks) {
    std::filesystem::create_directory(path("far"));
    WriteBytes(path("far/target"), "old");
    std::filesystem::create_symlink("far/target", path("middle"));
    std::filesystem::create_symlink(path("middle"), path("link"));
    write(path("link"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_TRUE(std::filesystem::is_symlink(path("middle")));
    EXPECT_EQ(ReadBytes(path("far/target")), "new");
}

TEST_F(WholeFiles, MakeWhatALinkLeadsTo) {
    std::filesystem::create_symlink("missing", path("link"));
    write(path("link"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(ReadBytes(path("missing")), "new");
}

TEST_F(WholeFiles, LinksInARingAreRefused) {
    std::filesystem::create_symlink("b", path("a"));
    std::filesystem::create_symlink("a", path("b"));
    EXPECT_THAT([&] { WholeFile file(path("a")); },
                ThrowsMessage<std::runtime_error>(HasSubstr("a: Too many levels")));
}

TEST_F(WholeFiles, WriteIntoAPipeAndLeaveItOne) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    auto read = std::async(std::launch::async, [&] { return ReadBytes(path("pipe")); });
    write(path("pipe"), "bytes");
    EXPECT_EQ(read.get(), "bytes");
    EXPECT_TRUE(std::filesystem::is_fifo(path("pipe")));
    EXPECT_EQ(count(), 1);
}

TEST_F(WholeFiles, TouchNoFileOfAnotherName) {
    for (const char* mine : {"a.part", ".a.part"}) WriteBytes(path(mine), "mine");
    write(path("a"), "new");
    for (const char* mine : {"a.part", ".a.part"}) EXPECT_EQ(ReadBytes(path(mine)), "mine");
    EXPECT_EQ(count(), 3);
}

TEST_F(WholeFiles, TwoAtOnceDoNotMeet) {
    WholeFile first(path("a")), second(path("b"));
    first.stream() << "1";
    second.stream() << "2";
    second.commit();
    first.commit();
    EXPECT_EQ(ReadBytes(path("a")) + ReadBytes(path("b")), "12");
}

TEST_F(WholeFiles, AFullDeviceIsToldAndStays) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
    EXPECT_THAT([&] { write("/dev/full", "bytes"); },
                ThrowsMessage<std::runtime_error>(HasSubstr("/dev/full: No space left")));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(WholeFiles, FoldersAndMissingFoldersAreRefused) {
    std::filesystem::create_directory(path("folder"));
    EXPECT_THAT([&] { WholeFile file(path("folder")); },
                ThrowsMessage<std::runtime_error>(HasSubstr("folder: Is a directory")));
    EXPECT_THAT([&] { WholeFile file(path("no/a")); },
                ThrowsMessage<std::runtime_error>(HasSubstr("no/a: No such file")));
}

}  // namespace
}  // namespace vrn::headless
