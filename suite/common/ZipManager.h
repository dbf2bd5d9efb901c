#pragma once

#include <string>

#include "suite/SuiteApi.h"

namespace vrn::common {

/// Looks into the resource package (GetResourcePath). Each call opens the package anew, so that a
/// package exchanged with SetResourcePath is seen at once.
class VRN_SUITE_API ZipManager {
public:
    /// Whether the package holds the entry that `uri` ("resource://material/Solid.material") names;
    /// names are case-sensitive. False, too, for another scheme and without a readable package.
    /// Thread: any.
    [[nodiscard]] static bool Exists(const std::string& uri);
};

}  // namespace vrn::common
