#include "apps/vrnview/TempFolder.h"

#include <gtest/gtest.h>

#include "tests/apps/TestFiles.h"

namespace vrn::host {
namespace {

TEST(TempFolder, GoesWithAllItHolds) {
    std::filesystem::path path;
    {
        const TempFolder folder;
        path = folder.getPath();
        ASSERT_TRUE(std::filesystem::is_directory(path));
        std::filesystem::create_directory(path / "inner");
        test::WriteBytes(path / "inner" / "file", "x");
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TempFolder, TwoAreDifferent) {
    const TempFolder a, b;
    EXPECT_NE(a.getPath(), b.getPath());
}

}  // namespace
}  // namespace vrn::host
