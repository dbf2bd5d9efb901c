#include "suite/common/AppLogger.h"

#include "tests/suite/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using vrn::AppLogger;

class AppLoggerTest : public testing::Test {
protected:
    ~AppLoggerTest() override { AppLogger::inst()->setFile(before); }

    std::filesystem::path before = AppLogger::inst()->file();
    TemporaryFolder folder;
};

TEST_F(AppLoggerTest, StartsInTheTemporaryDirectory) {
    EXPECT_EQ(before, std::filesystem::temp_directory_path() / "vrnvisual.log");
}

TEST_F(AppLoggerTest, LinesAreInTheFileWhenTheCallReturns) {
    AppLogger::inst()->setFile(folder.path / "a.log");
    EXPECT_EQ(AppLogger::inst()->file(), folder.path / "a.log");
    AppLogger::inst()->error("window {} is lost");
    EXPECT_THAT(ReadWhole(folder.path / "a.log"),
                testing::HasSubstr("[error] window {} is lost\n"));
    AppLogger::inst()->trace("addCompositor: BorderHighlight");
    EXPECT_THAT(ReadWhole(folder.path / "a.log"),
                testing::HasSubstr("[trace] addCompositor: BorderHighlight\n"));
}

TEST_F(AppLoggerTest, NothingReachesStandardOutputOrError) {
    AppLogger::inst()->setFile(folder.path / "a.log");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    AppLogger::inst()->error("quiet");
    AppLogger::inst()->trace("quiet");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(AppLoggerTest, ExistingFileIsContinued) {
    WriteWhole(folder.path / "a.log", "earlier\n");
    AppLogger::inst()->setFile(folder.path / "a.log");
    AppLogger::inst()->error("later");
    EXPECT_THAT(ReadWhole(folder.path / "a.log"), testing::StartsWith("earlier\n"));
}

TEST_F(AppLoggerTest, FileThatCannotBeOpenedThrowsAndKeepsTheEarlierOne) {
    AppLogger::inst()->setFile(folder.path / "a.log");
    EXPECT_THROW(AppLogger::inst()->setFile(folder.path), std::runtime_error);
    AppLogger::inst()->error("still here");
    EXPECT_THAT(ReadWhole(folder.path / "a.log"), testing::HasSubstr("still here"));
}

TEST_F(AppLoggerTest, LinesOfSeveralThreadsStayWhole) {
    AppLogger::inst()->setFile(folder.path / "a.log");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 100; ++i) AppLogger::inst()->trace("a line of some length");
        });
    for (std::thread& t : threads) t.join();
    const std::string text = ReadWhole(folder.path / "a.log");
    EXPECT_EQ(std::ranges::count(text, '\n'), 400);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        ASSERT_THAT(line, testing::EndsWith("[trace] a line of some length"));
}

}  // namespace
