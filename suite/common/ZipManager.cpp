#include "suite/common/ZipManager.h"

#include "suite/common/Resources.h"
#include "suite/common/ZipPackage.h"

#include <stdexcept>

namespace vrn::common {

bool ZipManager::Exists(const std::string& uri) {
    const auto entry = ResourceEntry(uri);
    if (!entry) return false;
    try {
        return ZipPackage(GetResourcePath()).locate(*entry);
    } catch (const std::runtime_error&) {
        return false;  // no package holds nothing
    }
}

}  // namespace vrn::common
