#include "apps/vrnview/Failure.h"

#include <OgreException.h>

#include <filesystem>
#include <format>

namespace vrn::host {

std::string ReasonOf(const std::exception& error) {
    if (const auto* engineError = dynamic_cast<const Ogre::Exception*>(&error))
        return engineError->getDescription();
    if (const auto* fileError = dynamic_cast<const std::filesystem::filesystem_error*>(&error))
        return std::format("{}: {}", fileError->path1().string(), fileError->code().message());
    return error.what();
}

}  // namespace vrn::host
