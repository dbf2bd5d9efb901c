#pragma once

#include <string>

#include "suite/rob/VectorTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class Camera;

/// Turns mouse gestures into camera moves about a pivot that the user sees. Screen positions and
/// moves are window pixels. Formulas are those of a pinhole camera; rotations turn in the camera's
/// own frame. Thread: render (Camera posts the gestures).
class VRN_VISUAL_API OrbitViewController {
public:
    OrbitViewController(Camera* cameraIn, const std::string& nameIn);

    /// Sets the pivot for the turns that follow: where the ray comes down to the ground, or 100
    /// units along it when it does not soon enough.
    void startRotating(float x, float y);
    /// 0.004 radians a pixel.
    void rotateScene(float dx, float dy);
    /// Moves the camera so that a point at the pivot's distance stays under the cursor.
    void translateScene(float x, float y, float dx, float dy);
    /// Moves along the ray by 16 percent of the distance, towards the pivot for a positive `delta`,
    /// at most zoomMaxStep and no nearer than zoomMinDistance. Throws std::overflow_error when the
    /// camera stands on its pivot. `a` is not used.
    void zoom(float x, float y, float a, float delta);
    /// Turns about the pivot, in radians; signals updateScene.
    void orbit(float yaw, float pitch);

private:
    struct ViewRay {
        rob::PosTemplate<float> origin;
        rob::Vec3Template<float> direction;
        float up;           ///< the direction's part along the vertical axis
        float groundParam;  ///< where along the direction the ground plane is met; not finite if
                            ///< never
    };
    [[nodiscard]] ViewRay rayAt(float x, float y) const;

    Camera* camera;
    float zoomMaxStep;
    float zoomMinDistance;
    float zoomReserve;
    rob::PosTemplate<float> pivot;
    std::string name;
};

}  // namespace vrn::visual
