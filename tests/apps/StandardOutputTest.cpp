#include "apps/vrnview/StandardOutput.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

namespace vrn::host {
namespace {

TEST(StandardOutputAside, SendsOutputToStandardErrorAndBack) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::cout << "before ";
    {
        const StandardOutputAside aside;
        std::cout << "aside ";
        std::printf("too");
    }
    std::cout << "after";
    std::cout.flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "before after");
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("aside"), std::string::npos);
    EXPECT_NE(err.find("too"), std::string::npos);
}

}  // namespace
}  // namespace vrn::host
