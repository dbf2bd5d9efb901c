#pragma once

/// Marks what the sibling libraries export; everything else stays hidden.
#define VRN_SUITE_API __attribute__((visibility("default")))
