#include "visual/station/InstanceMaterial.h"

#include <format>

#include <OgreException.h>
#include <OgreMaterialManager.h>

namespace vrn::visual {

void RequireInstanceMaterial(const std::string& name) {
    const bool exists = Ogre::MaterialManager::getSingleton().resourceExists(
        name, Ogre::ResourceGroupManager::AUTODETECT_RESOURCE_GROUP_NAME);
    if (!exists)
        OGRE_EXCEPT(Ogre::Exception::ERR_ITEM_NOT_FOUND,
                    std::format("instances need the material \"{}\", which does not exist", name),
                    "RequireInstanceMaterial");
}

}  // namespace vrn::visual
