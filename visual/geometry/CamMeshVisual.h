#pragma once

#include "visual/Visual.h"

namespace cadcam {
template <class T>
struct TMesh;
}

namespace vrn::visual {

/// Shows a mesh of the machining side for debugging. There is one at a time: its entity has the
/// fixed name "CAM_MESH_ENTITY", and a later visual takes it over. Thread: render.
class VRN_VISUAL_API CamMeshVisual : public Visual {
public:
    /// `mesh` must not be null; it is copied. Throws what MeshManager::loadCamMesh throws.
    static CamMeshVisual* Build(cadcam::TMesh<double>* mesh, Visual* parent);
    ~CamMeshVisual() override;

private:
    using Visual::Visual;
};

}  // namespace vrn::visual
