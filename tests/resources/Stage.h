#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <OgreColourValue.h>
#include <OgreQuaternion.h>
#include <OgreRenderOperation.h>
#include <OgreVector.h>

#include "apps/headless/Picture.h"

namespace Ogre {
class Camera;
class Entity;
class InstancedEntity;
class InstanceManager;
class Light;
class ManualObject;
class RenderTarget;
class SceneManager;
class SceneNode;
class Viewport;
}  // namespace Ogre

namespace vrn::test {

/// Red, green and blue from 0 to 1.
using Colour = Ogre::Vector3;

[[nodiscard]] Colour Mix(const Colour& a, const Colour& b, float share);
[[nodiscard]] Colour ColourAt(const headless::Picture& picture, int x, int y);
/// The largest difference of a channel.
[[nodiscard]] float Distance(const Colour& a, const Colour& b);
/// How far `seen` is from `colour` under the best light between 0.75 and 1.1.
[[nodiscard]] float LitDistance(const Colour& seen, const Colour& colour);

constexpr std::array<float, 3> stageBackground{0.45f, 0.45f, 0.45f};

/// One vertex of a mesh; what the mesh does not declare is left out of its buffer.
struct StageVertex {
    Ogre::Vector3 position;
    Ogre::Vector3 normal{0, 0, 1};
    Ogre::Vector4 colour{1, 1, 1, 1};
};

/// What the vertices of a mesh declare beside the position; colours have as many floats as it says.
struct StageLayout {
    bool normals = true;
    int colourFloats = 0;
};

/// A small scene of its own in a texture of `width` by `height` pixels: grey background, the four
/// lights of the viewport, and a camera on the Z axis that looks down on the origin with X to the
/// right and Y up, one unit a pixel in the plane Z = 0. Everything is gone with it.
///
/// Thread: render.
class Stage {
public:
    explicit Stage(int widthPx = 160, int heightPx = 120);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// A mesh of triangles (three indices each), on a node of its own; custom parameter 0 is set to
    /// `objectColour` on it.
    Ogre::Entity* addMesh(const std::string& material, const std::vector<StageVertex>& vertices,
                          const std::vector<std::uint32_t>& indices, StageLayout layout,
                          const Ogre::Vector4& objectColour = vertexColours);
    /// A square of `size` units about `centre`, facing the camera.
    Ogre::Entity* addSquare(const std::string& material, float size,
                            const Ogre::Vector4& objectColour = vertexColours,
                            const Ogre::Vector3& centre = Ogre::Vector3::ZERO);
    /// Points, line ends or strip corners; `colour` is each vertex's own.
    Ogre::ManualObject* addManual(const std::string& material,
                                  Ogre::RenderOperation::OperationType type,
                                  const std::vector<Ogre::Vector3>& points,
                                  const Ogre::Vector4& objectColour = vertexColours,
                                  const Ogre::ColourValue& colour = Ogre::ColourValue::White);
    /// An instance of a mesh that the engine has.
    Ogre::InstancedEntity* addInstance(const std::string& mesh, const std::string& material,
                                       const Ogre::Vector3& scale);

    /// The scene as it stands, or turned first.
    headless::Picture render();
    void turnAll(const Ogre::Quaternion& turn);

    /// Custom parameter 0 that asks for the vertices' colours.
    static const Ogre::Vector4 vertexColours;

    Ogre::SceneManager* sceneManager = nullptr;
    Ogre::Camera* camera = nullptr;
    Ogre::Viewport* viewport = nullptr;
    Ogre::RenderTarget* target = nullptr;
    std::vector<Ogre::Light*> lights;

private:
    void addLights();
    void addCamera(int widthPx, int heightPx);
    Ogre::SceneNode* addNode();

    std::string name;
    std::vector<std::string> meshes;
    std::vector<Ogre::SceneNode*> nodes;
};

/// How many pixels are not the background's.
[[nodiscard]] int CountDrawn(const headless::Picture& picture);
/// How many pixels are within `tolerance` of `colour`.
[[nodiscard]] int CountOf(const headless::Picture& picture, const Colour& colour,
                          float tolerance = 0.02f);
/// The lines of a log that tell of a script or a shader at fault.
[[nodiscard]] std::vector<std::string> Complaints(const std::vector<std::string>& logLines);

}  // namespace vrn::test
