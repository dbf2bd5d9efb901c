#pragma once

#include <string>

#include "suite/rob/VectorTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class Camera;

/// Turns mouse gestures into camera moves about a pivot that the user sees: what the selection
/// finds under the cursor, else the nearest point of a cloud there, else a point that each gesture
/// takes from the ground plane through the origin or from the ray. While the selection is dirty it
/// finds nothing, so a host updates it before it runs the gestures.
///
/// Screen positions and moves are window pixels. Formulas are those of a pinhole camera; rotations
/// turn in the camera's own frame. The gestures that take a pixel throw std::logic_error without a
/// render target, and std::overflow_error for a pixel that is NaN or so far out that no line of
/// sight leads there. Thread: render (Camera posts the gestures).
class VRN_VISUAL_API OrbitViewController {
public:
    OrbitViewController(Camera* cameraIn, const std::string& nameIn);

    /// Sets the pivot for the turns that follow. Over empty space: where the ray comes down to the
    /// ground, or 100 units along it when it does not soon enough.
    void startRotating(float x, float y);
    /// 0.004 radians a pixel.
    void rotateScene(float dx, float dy);
    /// Moves the camera so that a point at the pivot's distance, 10 at least, stays under the
    /// cursor. Over empty space: the ground, also behind the camera, or the world origin along a
    /// nearly level ray.
    void translateScene(float x, float y, float dx, float dy);
    /// Moves by 16 percent of the distance, towards the pivot for a positive `delta` and else away,
    /// at most zoomMaxStep. A step that would come nearer than zoomMinDistance is not taken where
    /// something was picked; over empty space it ends at that distance. Over empty space the pivot
    /// is the ground ahead, or 5000 units along a nearly level ray. Throws std::overflow_error when
    /// the camera stands on its pivot and has to move. `a` is not used.
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
    /// Moves the pivot to what the selection finds under the pixel; false, with the pivot as it
    /// was, over empty space.
    bool pickPivot(float x, float y);

    Camera* camera;
    float zoomMaxStep;
    float zoomMinDistance;
    float zoomReserve;
    rob::PosTemplate<float> pivot;
    std::string name;
};

}  // namespace vrn::visual
