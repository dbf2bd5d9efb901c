#include <gtest/gtest.h>

#include "apps/headless/VirtualDisplay.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // One display for all the programs that the tests start; a test that wants them to start their
    // own removes DISPLAY.
    const vrn::headless::VirtualDisplay display;
    return RUN_ALL_TESTS();
}
