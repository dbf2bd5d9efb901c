#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "suite/rob/VectorTypes.h"
#include "visual/VrnVisualApi.h"

namespace Ogre {
class Entity;
class Node;
class SceneNode;
}  // namespace Ogre

namespace vrn::visual {

class Camera;

/// The small axes in a corner of the viewport that tell how the world lies: x red, y green, z blue,
/// each with its letter. They keep their size in pixels and stand in front of everything.
///
/// The place on the screen is a shader parameter and not the place in the scene. Pictures of other
/// cameras do not show them. Lives as long as its camera. Thread: render.
class VRN_VISUAL_API GlobalFrame {
public:
    enum class Axis : std::int32_t { X = 0, Y = 1, Z = 2 };

    /// `camera` must have its Ogre camera already.
    explicit GlobalFrame(Camera* camera);
    ~GlobalFrame();
    GlobalFrame(const GlobalFrame&) = delete;
    GlobalFrame& operator=(const GlobalFrame&) = delete;

    /// Puts the origin of the axes there, in pixels from the left and lower edge of the viewport,
    /// whatever the scale.
    void setCenter(unsigned short x, unsigned short y);
    /// Scales the axes, and puts their origin at the stored centre times the scale. Does nothing
    /// while the present scale is not above 0, so that a scale of 0 or below is the last one.
    /// Throws std::invalid_argument for a scale that is not finite.
    void setScale(float newScale);

    /// As setCenter was given it.
    [[nodiscard]] rob::Vec2Template<std::uint16_t> getCenter() const { return center; }
    [[nodiscard]] float getScale() const { return scale; }

private:
    class FrameListener;

    void createFrameNode(Axis axis);
    void createLetterMesh(Axis axis);
    void showCenter(float xPx, float yPx);
    void attachMesh(Ogre::SceneNode* to, const std::string& mesh, Axis axis);

    Ogre::SceneNode* node = nullptr;
    std::array<Ogre::SceneNode*, 3> letterNodes{};
    rob::Vec2Template<std::uint16_t> center;
    float scale = 1.0f;
    Camera* owner;
    std::unique_ptr<FrameListener> listener;
};

}  // namespace vrn::visual
