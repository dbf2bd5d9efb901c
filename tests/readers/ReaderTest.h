#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "apps/vrnview/TempFolder.h"

/// Skips the test, and says so, where the sample files are not on this machine.
#define VRN_NEEDS_SAMPLE(name)                             \
    if (!std::filesystem::exists(vrn::test::Sample(name))) \
    GTEST_SKIP() << "the sample " << (name) << " is not on this machine"

namespace vrn::test {

/// A sample file by its path below the folder of the samples.
inline std::filesystem::path Sample(const std::filesystem::path& name) {
    return std::filesystem::path(VRN_SHARED_DATA) / name;
}

/// The message of the std::runtime_error that `work` throws; "nothing" if it throws none.
inline std::string ErrorOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing";
}

/// Tests that write files of their own.
class FileTest : public testing::Test {
protected:
    std::filesystem::path write(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path path = folder.getPath() / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    host::TempFolder folder;
};

}  // namespace vrn::test
