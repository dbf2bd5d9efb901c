#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "apps/headless/Picture.h"
#include "apps/vrnview/TempFolder.h"
#include "tests/apps/Process.h"

namespace vrn::test {

/// Runs the built vrnview with files in a folder of the test's own.
class VrnviewTest : public testing::Test {
protected:
    [[nodiscard]] static ProcessResult vrnview(const std::vector<std::string>& arguments) {
        return RunProgram(VRNVIEW_PROGRAM, arguments);
    }
    [[nodiscard]] std::string path(const std::string& name) const {
        return folder.getPath() / name;
    }

    host::TempFolder folder;
};

/// How different two colours are: the largest difference of a channel.
[[nodiscard]] inline int Difference(const headless::Rgba& a, const headless::Rgba& b) {
    return std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)});
}

}  // namespace vrn::test
