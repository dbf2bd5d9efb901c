#pragma once

#include <filesystem>

#include "suite/SuiteApi.h"

namespace vrn::common {

/// The path of the resource package, one zip file; it need not exist.
///
/// Until SetResourcePath is called: "../share/vrnvisual/resources.zip" seen from the folder that
/// this library was loaded from, which holds in the build tree and where it is installed.
/// Thread: any.
[[nodiscard]] VRN_SUITE_API std::filesystem::path GetResourcePath();

/// Names another package; an empty path goes back to the default one. Reads that start afterwards
/// use it. Thread: any.
VRN_SUITE_API void SetResourcePath(const std::filesystem::path& package);

}  // namespace vrn::common
