#include "visual/handle/VectorHandle.h"

#include "suite/sdf/SdfManager.h"
#include "visual/handle/TiltHandle.h"
#include "visual/handle/TwistHandle.h"

namespace vrn::visual {

namespace {

rob::PoseTemplate<float> Turn(double radians, const rob::DirTemplate<float>& axis) {
    return {{}, rob::RotationTemplate<float>(static_cast<float>(radians), axis)};
}

}  // namespace

VectorHandle* gVectorHandle = nullptr;

VectorHandle* VectorHandle::Get() { return gVectorHandle; }

VectorHandle::VectorHandle() : FixedSizeHandle("VectorHandle", nullptr) {
    twistHandle = new TwistHandle(this);
    tiltHandle = new TiltHandle(twistHandle);
    const char* const name = "VectorDirHandle";
    dirHandle = new HandleMeshVisual(sdf::SdfManager::GenerateTransientId(), name, tiltHandle);
    dirHandle->showHandleMesh(name);
    dirHandle->setMaterial("Axis", "", "HandleHighlight");
    dirHandle->resetAppearance();
    dirHandle->setColor("#418AB4");
}

void VectorHandle::setTilt(double radians) {
    tiltHandle->setTilt(radians);
    tiltHandle->setPose(Turn(radians, {0, 1, 0}));
}

void VectorHandle::setTwist(double radians) {
    twistHandle->setTwist(radians);
    twistHandle->setPose(Turn(radians, {1, 0, 0}));
}

void VectorHandle::selectTilt() { tiltHandle->setSelected(); }

void VectorHandle::selectTwist() { twistHandle->setSelected(); }

}  // namespace vrn::visual
