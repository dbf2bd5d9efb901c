#pragma once

#include <string>

namespace vrn::visual {

/// Throws Ogre::ItemIdentityException if there is no material of that name: the engine would take
/// an unknown one for an instance without a word and read through a null pointer at the next frame.
void RequireInstanceMaterial(const std::string& name);

}  // namespace vrn::visual
