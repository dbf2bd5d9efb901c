#pragma once

/// Marks what the shared library exports; everything else stays hidden.
#define VRN_VISUAL_API __attribute__((visibility("default")))
