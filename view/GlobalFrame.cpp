#include "view/GlobalFrame.h"

#include <cmath>
#include <stdexcept>
#include <string>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>

#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "view/Camera.h"

namespace vrn::visual {

namespace {

constexpr std::array<const char*, 3> axisNames{"X", "Y", "Z"};
constexpr const char* frameMaterial = "GlobalFrame";
constexpr std::size_t colourParameter = 0;
constexpr std::size_t centerParameter = 1;
constexpr unsigned char overlayQueueGroup = 80;  // its depth is cleared first

// In view space, where the shader takes it from; the camera's own planes do not cut it.
const Ogre::Vector3 placeInView(0, 0, -800);

// Of the shared meshes the shaft is 10 long and the head 3; in the corner a shorter shaft reads
// better.
constexpr float shaftScale = 0.65f;
constexpr float shaftLength = 10.0f * shaftScale;
constexpr float letterDistance = 12.0f;
constexpr float letterHeight = 3.4f;
// So far from the edges that an axis that points to one keeps its letter in the picture.
constexpr std::uint16_t startCenter = 72;

const std::array<Ogre::Vector4, 3> axisColours{Ogre::Vector4(0.86f, 0.24f, 0.22f, 1.0f),
                                               Ogre::Vector4(0.30f, 0.72f, 0.30f, 1.0f),
                                               Ogre::Vector4(0.26f, 0.48f, 0.90f, 1.0f)};

// Turns the meshes, which lie along z, to the axis.
Ogre::Quaternion TurnTo(GlobalFrame::Axis axis) {
    if (axis == GlobalFrame::Axis::X)
        return {Ogre::Radian(Ogre::Math::HALF_PI), Ogre::Vector3::UNIT_Y};
    if (axis == GlobalFrame::Axis::Y)
        return {Ogre::Radian(-Ogre::Math::HALF_PI), Ogre::Vector3::UNIT_X};
    return Ogre::Quaternion::IDENTITY;
}

// A mesh of the same triangles that is never culled: the scene's place of the frame is not where it
// shows.
std::string UnculledMesh(const std::string& mesh) {
    const std::string name = "GlobalFrame_" + mesh;
    auto& meshes = Ogre::MeshManager::getSingleton();
    if (!meshes.getByName(name, Ogre::RGN_DEFAULT)) {
        const Ogre::MeshPtr copy = meshes.getByName(mesh, Ogre::RGN_DEFAULT)->clone(name);
        copy->_setBounds(Ogre::AxisAlignedBox::BOX_INFINITE, /*pad=*/false);
    }
    return name;
}

std::string LetterMeshName(GlobalFrame::Axis axis) {
    return std::string("GlobalFrameLetter") + axisNames[static_cast<std::size_t>(axis)];
}

void SetCustomUniformForNode(Ogre::SceneNode* node, std::size_t parameter,
                             const Ogre::Vector4& value) {
    for (Ogre::MovableObject* object : node->getAttachedObjects()) {
        auto* entity = static_cast<Ogre::Entity*>(object);
        for (std::size_t i = 0; i < entity->getNumSubEntities(); ++i)
            entity->getSubEntity(i)->setCustomParameter(parameter, value);
    }
    for (Ogre::Node* child : node->getChildren())
        SetCustomUniformForNode(static_cast<Ogre::SceneNode*>(child), parameter, value);
}

// Several cameras have axes each, and node names are unique in a scene: a taken one is left to the
// engine.
Ogre::SceneNode* CreateNode(Ogre::SceneNode* parent, const std::string& name,
                            const Ogre::Vector3& position) {
    if (parent->getCreator()->hasSceneNode(name)) return parent->createChildSceneNode(position);
    return parent->createChildSceneNode(name, position);
}

void DestroyWithEntities(Ogre::SceneNode* node) {
    const auto children = node->getChildren();  // a copy: the list shrinks meanwhile
    for (Ogre::Node* child : children) DestroyWithEntities(static_cast<Ogre::SceneNode*>(child));
    const auto objects = node->getAttachedObjects();
    for (Ogre::MovableObject* object : objects) node->getCreator()->destroyMovableObject(object);
    node->getCreator()->destroySceneNode(node);
}

}  // namespace

/// Keeps the frame in step with the camera before each of its pictures.
class GlobalFrame::FrameListener : public Ogre::Camera::Listener {
public:
    explicit FrameListener(GlobalFrame* frameIn) : frame(frameIn) {}

    void cameraPreRenderScene(Ogre::Camera* camera) override {
        frame->node->setVisible(true);
        frame->node->setPosition(placeInView);
        frame->node->setOrientation(camera->getRealOrientation().Inverse());
        // The letters' parents would else still stand as in the picture before, and the letters
        // askew.
        frame->node->_update(/*updateChildren=*/true, /*parentHasChanged=*/true);
        for (Ogre::SceneNode* letter : frame->letterNodes)
            letter->_setDerivedOrientation(Ogre::Quaternion::IDENTITY);
    }

    // Another camera's picture would show the axes turned for this one.
    void cameraPostRenderScene(Ogre::Camera*) override { frame->node->setVisible(false); }

private:
    GlobalFrame* frame;
};

GlobalFrame::GlobalFrame(Camera* camera)
    : node(camera->node->getCreator()->getRootSceneNode()->createChildSceneNode()),
      owner(camera),
      listener(std::make_unique<FrameListener>(this)) {
    for (const Axis axis : {Axis::X, Axis::Y, Axis::Z}) createFrameNode(axis);
    setCenter(startCenter, startCenter);
    node->setVisible(false);
    camera->camera->addListener(listener.get());
}

GlobalFrame::~GlobalFrame() {
    owner->camera->removeListener(listener.get());
    DestroyWithEntities(node);
}

void GlobalFrame::createFrameNode(Axis axis) {
    const std::string name = std::string("Axis") + axisNames[static_cast<std::size_t>(axis)];
    Ogre::SceneNode* axisNode = CreateNode(node, name, Ogre::Vector3::ZERO);
    axisNode->setOrientation(TurnTo(axis));
    Ogre::SceneNode* shaft = CreateNode(axisNode, name + "Shaft", Ogre::Vector3::ZERO);
    shaft->setScale(1, 1, shaftScale);
    attachMesh(shaft, UnculledMesh("frame_axis_x_shaft"), axis);
    attachMesh(CreateNode(axisNode, name + "Head", {0, 0, shaftLength}),
               UnculledMesh("frame_axis_head"), axis);
    createLetterMesh(axis);
    Ogre::SceneNode* letter = CreateNode(axisNode, name + "Letter", {0, 0, letterDistance});
    attachMesh(letter, UnculledMesh(LetterMeshName(axis)), axis);
    letterNodes[static_cast<std::size_t>(axis)] = letter;
}

// The letter round its own middle, so that it stays at the tip whichever way the axis points.
void GlobalFrame::createLetterMesh(Axis axis) {
    if (MeshManager::Get()->getGlobalMesh(LetterMeshName(axis))) return;  // made for another camera
    std::unique_ptr<Mesh> letter(
        MeshManager::CreateTextMesh(axisNames[static_cast<std::size_t>(axis)], 3.0));
    Box box;
    box.addPoints(letter->vertices);
    const auto middle = box.getCenter();
    for (auto& v : letter->vertices)
        v = {(v.x - middle.x) * letterHeight, (v.y - middle.y) * letterHeight, 0.0f};
    letter->name = LetterMeshName(axis);
    MeshManager::Get()->addGlobalMesh(letter.release());
}

void GlobalFrame::attachMesh(Ogre::SceneNode* to, const std::string& mesh, Axis axis) {
    Ogre::Entity* entity = to->getCreator()->createEntity(mesh);
    entity->setMaterialName(frameMaterial);
    entity->setRenderQueueGroup(overlayQueueGroup);
    to->attachObject(entity);
    SetCustomUniformForNode(to, colourParameter, axisColours[static_cast<std::size_t>(axis)]);
}

void GlobalFrame::setCenter(unsigned short x, unsigned short y) {
    center = {x, y};
    showCenter(x, y);
}

void GlobalFrame::showCenter(float xPx, float yPx) {
    SetCustomUniformForNode(node, centerParameter, Ogre::Vector4(xPx, yPx, 0, 0));
}

void GlobalFrame::setScale(float newScale) {
    if (!(scale > 0)) return;
    if (!std::isfinite(newScale))
        throw std::invalid_argument("the scale of the axes must be finite");
    scale = newScale;
    // From the stored centre each time, so that a repeated call changes nothing.
    showCenter(center.x * scale, center.y * scale);
    node->setScale(scale, scale, scale);
}

}  // namespace vrn::visual
