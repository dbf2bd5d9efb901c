#pragma once

#include <memory>
#include <string>

#include <OgreCamera.h>

#include "visual/handle/GuiVisual.h"

namespace vrn::visual {

/// A handle that keeps its size on the screen wherever the camera goes: of 4000 units away its
/// meshes are drawn as they are, of half of that at half their size. The settings' `handleScale`
/// multiplies this.
///
/// One that is made before the camera never scales. Thread: render.
class VRN_VISUAL_API FixedSizeHandle : public GuiVisual {
public:
    /// Scales the handle before each picture of the camera.
    class CameraListener : public Ogre::Camera::Listener {
    public:
        explicit CameraListener(FixedSizeHandle* owner) : handle(owner) {}
        void cameraPreRenderScene(Ogre::Camera* camera) override;

    private:
        FixedSizeHandle* handle;
    };

    /// Under `parent`; null for a free node.
    FixedSizeHandle(const std::string& name, Visual* parent);
    ~FixedSizeHandle() override;

    /// Sets the scale for the camera's present place. A `handleScale` below 0.5 or above 10 counts
    /// as 1. The scale of a parent is not made up for: the handle grows with it. A new size of a
    /// handle that can be picked marks the selection dirty.
    void updateScale();

    /// Lets the handle's meshes be picked; with `priority` they beat everything in front of them.
    /// Contact tests pass them over. Does nothing while it is registered.
    void registerToSelection(bool priority);
    void unregisterFromSelection();
    [[nodiscard]] bool isRegisteredInSelection() const { return registeredInSelection; }

private:
    std::unique_ptr<CameraListener> cameraListener;
    bool registeredInSelection = false;
};

}  // namespace vrn::visual
