#include "apps/vrnview/Failure.h"

#include <OgreException.h>

namespace vrn::host {

std::string ReasonOf(const std::exception& error) {
    if (const auto* engineError = dynamic_cast<const Ogre::Exception*>(&error))
        return engineError->getDescription();
    return error.what();
}

}  // namespace vrn::host
