#include "suite/common/Resources.h"

#include <dlfcn.h>

#include <mutex>

namespace vrn::common {

namespace {

std::mutex packageMutex;

std::filesystem::path& ChosenPackage() {
    static std::filesystem::path package;
    return package;
}

std::filesystem::path DefaultPackage() {
    Dl_info info{};
    // Any address inside this library tells where the loader found it.
    if (!dladdr(reinterpret_cast<void*>(&DefaultPackage), &info) || !info.dli_fname) return {};
    std::error_code error;
    const auto library = std::filesystem::absolute(info.dli_fname, error);
    return (library.parent_path() / "../share/vrnvisual/resources.zip").lexically_normal();
}

}  // namespace

std::filesystem::path GetResourcePath() {
    const std::lock_guard lock(packageMutex);
    if (!ChosenPackage().empty()) return ChosenPackage();
    static const std::filesystem::path package = DefaultPackage();
    return package;
}

void SetResourcePath(const std::filesystem::path& package) {
    const std::lock_guard lock(packageMutex);
    ChosenPackage() = package;
}

}  // namespace vrn::common
