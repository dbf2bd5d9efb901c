#include "tests/resources/Stage.h"

#include <algorithm>
#include <cmath>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreHardwareBufferManager.h>
#include <OgreHardwarePixelBuffer.h>
#include <OgreInstancedEntity.h>
#include <OgreInstanceManager.h>
#include <OgreLight.h>
#include <OgreManualObject.h>
#include <OgreMesh.h>
#include <OgreMeshManager.h>
#include <OgreRenderTexture.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubEntity.h>
#include <OgreSubMesh.h>
#include <OgreTextureManager.h>
#include <OgreViewport.h>

namespace vrn::test {

namespace {

struct LightRow {
    float diffuse;
    float specular;
    Ogre::Vector3 direction;
};

const std::array<LightRow, 4> lightRows{{{0.3f, 0.3f, {-1.5f, 0.0f, 0.3f}},
                                         {0.4f, 0.3f, {0.5f, -1.0f, 1.0f}},
                                         {0.3f, 0.25f, {2.0f, 1.0f, 1.75f}},
                                         {0.1f, 0.0f, {0.0f, 0.0f, -1.0f}}}};

constexpr float cameraHeight = 500.0f;

std::string NextName() {
    static int count = 0;
    return "stage" + std::to_string(++count);
}

void Append(std::vector<float>& floats, const Ogre::Vector3& v) {
    floats.insert(floats.end(), {v.x, v.y, v.z});
}

void FillVertices(Ogre::VertexData& data, const std::vector<StageVertex>& vertices,
                  StageLayout layout) {
    Ogre::VertexDeclaration* declaration = data.vertexDeclaration;
    std::size_t size =
        declaration->addElement(0, 0, Ogre::VET_FLOAT3, Ogre::VES_POSITION).getSize();
    if (layout.normals)
        size += declaration->addElement(0, size, Ogre::VET_FLOAT3, Ogre::VES_NORMAL).getSize();
    if (layout.colourFloats > 0) {
        const auto type = layout.colourFloats == 3 ? Ogre::VET_FLOAT3 : Ogre::VET_FLOAT4;
        size += declaration->addElement(0, size, type, Ogre::VES_DIFFUSE).getSize();
    }
    std::vector<float> floats;
    for (const StageVertex& v : vertices) {
        Append(floats, v.position);
        if (layout.normals) Append(floats, v.normal);
        for (int i = 0; i < layout.colourFloats; ++i) floats.push_back(v.colour[i]);
    }
    const auto buffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
        size, vertices.size(), Ogre::HBU_GPU_ONLY);
    buffer->writeData(0, floats.size() * sizeof(float), floats.data());
    data.vertexBufferBinding->setBinding(0, buffer);
    data.vertexCount = static_cast<Ogre::uint32>(vertices.size());
}

}  // namespace

const Ogre::Vector4 Stage::vertexColours(0, 0, 0, -1);

Colour Mix(const Colour& a, const Colour& b, float share) { return a + (b - a) * share; }

Colour ColourAt(const headless::Picture& picture, int x, int y) {
    const headless::Rgba pixel = picture.at(x, y);
    return Colour(pixel.r, pixel.g, pixel.b) / 255.0f;
}

float Distance(const Colour& a, const Colour& b) {
    const Colour d = a - b;
    return std::max({std::abs(d.x), std::abs(d.y), std::abs(d.z)});
}

float LitDistance(const Colour& seen, const Colour& colour) {
    float best = 1.0f;
    for (float light = 0.75f; light < 1.1f; light += 0.01f)
        best = std::min(best, Distance(seen, colour * light));
    return best;
}

Stage::Stage(int widthPx, int heightPx) : name(NextName()) {
    sceneManager = Ogre::Root::getSingleton().createSceneManager(Ogre::SMT_DEFAULT, name);
    sceneManager->setAmbientLight(Ogre::ColourValue(0.3f, 0.3f, 0.3f));
    addLights();
    addCamera(widthPx, heightPx);
}

Stage::~Stage() {
    target->removeAllViewports();
    Ogre::Root::getSingleton().destroySceneManager(sceneManager);
    Ogre::TextureManager::getSingleton().remove(name, "General");
    for (const std::string& mesh : meshes)
        Ogre::MeshManager::getSingleton().remove(mesh, "General");
}

void Stage::addLights() {
    for (const LightRow& row : lightRows) {
        Ogre::Light* light = sceneManager->createLight();
        light->setType(Ogre::Light::LT_DIRECTIONAL);
        light->setDiffuseColour(row.diffuse, row.diffuse, row.diffuse);
        light->setSpecularColour(row.specular, row.specular, row.specular);
        Ogre::SceneNode* node = sceneManager->getRootSceneNode()->createChildSceneNode();
        node->setDirection(row.direction, Ogre::Node::TS_PARENT, Ogre::Vector3::NEGATIVE_UNIT_Z);
        node->attachObject(light);
        lights.push_back(light);
    }
}

void Stage::addCamera(int widthPx, int heightPx) {
    camera = sceneManager->createCamera(name);
    sceneManager->getRootSceneNode()
        ->createChildSceneNode(Ogre::Vector3(0, 0, cameraHeight))
        ->attachObject(camera);
    camera->setNearClipDistance(1.0f);
    camera->setFarClipDistance(100000.0f);
    camera->setAspectRatio(static_cast<float>(widthPx) / static_cast<float>(heightPx));
    camera->setFOVy(
        Ogre::Radian(2.0f * std::atan(0.5f * static_cast<float>(heightPx) / cameraHeight)));
    const auto texture = Ogre::TextureManager::getSingleton().createManual(
        name, "General", Ogre::TEX_TYPE_2D, static_cast<unsigned>(widthPx),
        static_cast<unsigned>(heightPx), 0, Ogre::PF_BYTE_RGBA, Ogre::TU_RENDERTARGET);
    target = texture->getBuffer()->getRenderTarget();
    target->setAutoUpdated(false);
    viewport = target->addViewport(camera);
    viewport->setBackgroundColour(
        Ogre::ColourValue(stageBackground[0], stageBackground[1], stageBackground[2]));
    viewport->setOverlaysEnabled(false);
}

Ogre::SceneNode* Stage::addNode() {
    return nodes.emplace_back(sceneManager->getRootSceneNode()->createChildSceneNode());
}

Ogre::Entity* Stage::addMesh(const std::string& material, const std::vector<StageVertex>& vertices,
                             const std::vector<std::uint32_t>& indices, StageLayout layout,
                             const Ogre::Vector4& objectColour) {
    const std::string& meshName = meshes.emplace_back(NextName());
    const auto mesh = Ogre::MeshManager::getSingleton().createManual(meshName, "General");
    Ogre::SubMesh* part = mesh->createSubMesh();
    part->useSharedVertices = false;
    part->createVertexData();
    FillVertices(*part->vertexData, vertices, layout);
    part->indexData->indexCount = static_cast<Ogre::uint32>(indices.size());
    part->indexData->indexBuffer = Ogre::HardwareBufferManager::getSingleton().createIndexBuffer(
        Ogre::HardwareIndexBuffer::IT_32BIT, indices.size(), Ogre::HBU_GPU_ONLY);
    part->indexData->indexBuffer->writeData(0, indices.size() * sizeof indices[0], indices.data());
    Ogre::AxisAlignedBox box;
    for (const StageVertex& v : vertices) box.merge(v.position);
    mesh->_setBounds(box);
    mesh->_setBoundingSphereRadius(box.getHalfSize().length() + box.getCenter().length());
    mesh->load();
    Ogre::Entity* entity = sceneManager->createEntity(meshName);
    entity->setMaterialName(material);
    entity->getSubEntity(0)->setCustomParameter(0, objectColour);
    addNode()->attachObject(entity);
    return entity;
}

Ogre::Entity* Stage::addSquare(const std::string& material, float size,
                               const Ogre::Vector4& objectColour, const Ogre::Vector3& centre) {
    const float h = 0.5f * size;
    std::vector<StageVertex> corners(4);
    corners[0].position = centre + Ogre::Vector3(-h, -h, 0);
    corners[1].position = centre + Ogre::Vector3(h, -h, 0);
    corners[2].position = centre + Ogre::Vector3(h, h, 0);
    corners[3].position = centre + Ogre::Vector3(-h, h, 0);
    return addMesh(material, corners, {0, 1, 2, 0, 2, 3}, {}, objectColour);
}

Ogre::ManualObject* Stage::addManual(const std::string& material,
                                     Ogre::RenderOperation::OperationType type,
                                     const std::vector<Ogre::Vector3>& points,
                                     const Ogre::Vector4& objectColour,
                                     const Ogre::ColourValue& colour) {
    Ogre::ManualObject* manual = sceneManager->createManualObject();
    manual->begin(material, type, "General");
    for (const Ogre::Vector3& p : points) {
        manual->position(p);
        manual->normal(0, 0, 1);
        manual->colour(colour);
    }
    manual->end()->setCustomParameter(0, objectColour);
    addNode()->attachObject(manual);
    return manual;
}

Ogre::InstancedEntity* Stage::addInstance(const std::string& mesh, const std::string& material,
                                          const Ogre::Vector3& scale) {
    Ogre::InstanceManager* manager = sceneManager->createInstanceManager(
        NextName(), mesh, "General", Ogre::InstanceManager::HWInstancingBasic, 16, Ogre::IM_USEALL);
    Ogre::InstancedEntity* instance = manager->createInstancedEntity(material);
    addNode()->attachObject(instance);
    instance->setScale(scale, /*doUpdate=*/true);
    // A batch knows where its instances are one update later.
    sceneManager->getRootSceneNode()->_update(/*updateChildren=*/true, /*parentHasChanged=*/false);
    return instance;
}

headless::Picture Stage::render() {
    target->update();
    return headless::Picture::readBack(*target);
}

void Stage::turnAll(const Ogre::Quaternion& turn) {
    for (Ogre::SceneNode* node : nodes) node->setOrientation(turn);
}

int CountDrawn(const headless::Picture& picture) {
    const Colour background(stageBackground.data());
    return static_cast<int>(std::ranges::count_if(picture.getPixels(), [&](headless::Rgba p) {
        return Distance(Colour(p.r, p.g, p.b) / 255.0f, background) > 0.02f;
    }));
}

int CountOf(const headless::Picture& picture, const Colour& colour, float tolerance) {
    return static_cast<int>(std::ranges::count_if(picture.getPixels(), [&](headless::Rgba p) {
        return Distance(Colour(p.r, p.g, p.b) / 255.0f, colour) <= tolerance;
    }));
}

std::vector<std::string> Complaints(const std::vector<std::string>& logLines) {
    std::vector<std::string> complaints;
    for (const std::string& line : logLines) {
        if (line.find("_EXTENSIONS = ") != std::string::npos) continue;  // names, not news
        for (const char* word : {"Error", "ScriptCompiler", "error:", "Exception"}) {
            if (line.find(word) == std::string::npos) continue;
            complaints.push_back(line);
            break;
        }
    }
    return complaints;
}

}  // namespace vrn::test
