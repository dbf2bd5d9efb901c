#include "visual/handle/HandleMeshVisual.h"

#include <OgreEntity.h>

namespace vrn::visual {

void HandleMeshVisual::showHandleMesh(const std::string& mesh) {
    attachMesh(mesh);
    getEntity()->setRenderQueueGroup(handleQueueGroup);
}

void HandleMeshVisual::setSelected() { Visual::setSelected(); }

void HandleMeshVisual::clearHighlightOrSelect() { Visual::clearHighlightOrSelect(); }

}  // namespace vrn::visual
