#pragma once

#include <OgreQuaternion.h>
#include <OgreVector.h>

namespace vrn::visual {

/// The world axis that SceneSettings::verticalDir names: 0 X, 1 Y, anything else Z. Thread: pure.
inline Ogre::Vector3 UpAxis(int verticalDir) {
    if (verticalDir == 0) return Ogre::Vector3::UNIT_X;
    return verticalDir == 1 ? Ogre::Vector3::UNIT_Y : Ogre::Vector3::UNIT_Z;
}

/// Turns what is given for a Z-up world into one with that vertical. Thread: pure.
inline Ogre::Quaternion UpAxisTurn(int verticalDir) {
    if (verticalDir == 0) return {0.5f, 0.5f, 0.5f, 0.5f};
    if (verticalDir == 1) return {-0.5f, 0.5f, 0.5f, 0.5f};
    return Ogre::Quaternion::IDENTITY;
}

}  // namespace vrn::visual
