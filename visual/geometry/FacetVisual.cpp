#include "visual/geometry/FacetVisual.h"

#include <OgreMovableObject.h>
#include <OgreSceneNode.h>

namespace vrn::visual {

namespace {

void SetQueueGroup(const Visual* visual, unsigned char group) {
    for (Ogre::MovableObject* object : visual->node->getAttachedObjects())
        object->setRenderQueueGroup(group);
}

}  // namespace

void FacetVisual::useNamedMaterial(const std::string& name) { useMaterial(name); }

void FacetVisual::setSelected() {
    Visual::setSelected();
    SetQueueGroup(this, selectedSolidQueueGroup);
}

void FacetVisual::clearHighlightOrSelect() {
    Visual::clearHighlightOrSelect();
    SetQueueGroup(this, solidQueueGroup);
}

}  // namespace vrn::visual
