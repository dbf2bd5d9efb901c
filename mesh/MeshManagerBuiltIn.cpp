#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "mesh/Shapes.h"
#include "mesh/UnfinishedOgreMesh.h"

#include <OgreHardwareIndexBuffer.h>
#include <OgreHardwareVertexBuffer.h>

#include <array>
#include <initializer_list>
#include <memory>
#include <numbers>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;
using Rotation = rob::RotationTemplate<float>;
using Pose = rob::PoseTemplate<float>;

constexpr float pi = std::numbers::pi_v<float>;
constexpr Vec axisX{1, 0, 0}, axisY{0, 1, 0}, axisZ{0, 0, 1};

Pose At(const Pos& position) { return {position, Rotation()}; }

/// One mesh of a composite and where it stands in it.
struct Piece {
    const Mesh* mesh;
    Pose pose;
};

std::unique_ptr<Mesh> Assembled(const std::string& name, std::initializer_list<Piece> pieces) {
    auto composite = std::make_unique<Mesh>(name);
    for (const Piece& piece : pieces) composite->addSubMesh(piece.mesh, piece.pose);
    return composite;
}

}  // namespace

Mesh* MeshManager::keepGlobal(std::unique_ptr<Mesh> mesh) {
    addGlobalMesh(mesh.get());
    Mesh* const kept = getGlobalMesh(mesh->name);
    if (kept == mesh.get()) mesh.release();
    return kept;
}

void MeshManager::createGlobleMeshes() {
    createCylinderComponent("frame_axis_x_shaft", 0.5f, 10, 1, 16);
    createConeComponent("frame_axis_head", 1, 3);
    createDragHandleMesh();
    createArrowMeshes();
    createHandleMeshes();
    createUvIndicator();
    createFrameOgreMesh("VRN_FrameMesh");
}

void MeshManager::createDragHandleMesh() { createDragHandle(); }

void MeshManager::createDragHandle() {
    const Mesh* shaft = createCylinderComponent("HandleShaft", 3, 200, 1, 16);
    const Mesh* head = createConeComponent("HandleHead", 10, 45);
    const Mesh* sector = createTorusSectorComponent("torus_sector", pi / 2, 150, 3, 32, 16);
    const Mesh* full = createTorusSectorComponent("torus_full", 2 * pi, 150, 3, 32, 16);
    const Mesh* half = createTorusSectorComponent("torus_half", pi, 150, 3, 32, 16);

    const auto keepArrow = [&](const char* name, const Rotation& turn, const Pos& tip) {
        keepGlobal(Assembled(name, {{shaft, {Pos(), turn}}, {head, {tip, turn}}}));
    };
    const auto keepRing = [&](const char* name, const Mesh* ring, const Rotation& turn) {
        keepGlobal(Assembled(name, {{ring, {Pos(), turn}}}));
    };
    // Each arrow and ring turns what is made about Z to its own axis.
    const Rotation rollTurn(-pi / 2, axisY), pitchTurn(pi / 2, axisX);
    keepArrow("DragHandleX", Rotation(pi / 2, axisY), {200, 0, 0});
    keepArrow("DragHandleY", Rotation(pi / 2, -axisX), {0, 200, 0});
    keepArrow("DragHandleZ", Rotation(), {0, 0, 200});
    keepRing("DragHandleRoll", sector, rollTurn);
    keepRing("DragHandlePitch", sector, pitchTurn);
    keepRing("DragHandleYaw", sector, Rotation());
    keepRing("RollHandleFull", full, rollTurn);
    keepRing("PitchHandleFull", full, pitchTurn);
    keepRing("YawHandleFull", full, Rotation());
    // The main half lies about the middle of the sector, the assisting half opposite. The second
    // turn is about the fixed axis, so it stands on the left.
    keepRing("RollHandleMain", half, Rotation(pi / 4, axisX) * rollTurn);
    keepRing("PitchHandleMain", half, Rotation(pi / 4, axisY) * pitchTurn);
    keepRing("YawHandleMain", half, Rotation(-pi / 4, axisZ));
    keepRing("RollHandleAssist", half, Rotation(-3 * pi / 4, axisX) * rollTurn);
    keepRing("PitchHandleAssist", half, Rotation(-3 * pi / 4, axisY) * pitchTurn);
    keepRing("YawHandleAssist", half, Rotation(3 * pi / 4, axisZ));
}

void MeshManager::createArrowMeshes() {
    createConeComponent("joint_arrow_head", 20, 200);
    createConeComponent("path_arrow_head", 5, 20);
    const Mesh* shaft = createConeComponent("mfg_arrow_shaft", 1, 25);
    const Mesh* head = createConeComponent("mfg_arrow_head", 2, 8);
    // The shaft tapers towards the tail.
    keepGlobal(Assembled("mfg_arrow",
                         {{shaft, {{0, 0, 25}, Rotation(pi, axisX)}}, {head, At({0, 0, 25})}}));
}

void MeshManager::createHandleMeshes() {
    const Mesh* ring = getGlobalMesh("torus_full");
    keepGlobal(Assembled("TiltHandle", {{ring, {Pos(), Rotation(pi / 2, axisX)}}}));
    keepGlobal(Assembled("TwistHandle", {{ring, {Pos(), Rotation(pi / 2, axisY)}}}));
    const Mesh* sphere = createSphereComponent("VectorSphere", 6, 16, 16);
    const Mesh* axis = createCylinderComponent("VectorAxis", 3, 180, 1, 16);
    const Mesh* head = createConeComponent("VectorHead", 6, 30);
    keepGlobal(
        Assembled("VectorDirHandle", {{sphere, Pose()}, {axis, Pose()}, {head, At({0, 0, 180})}}));
    createSphereComponent("PathStartHandle", 2.5f, 32, 32);
    createSphereComponent("PathEndHandle", 2.5f, 32, 32);
}

void MeshManager::createUvIndicator() {
    const Mesh* shaft = createCylinderComponent("shaft", 0.2f, 15, 1, 16);
    const Mesh* head = createConeComponent("head", 0.6f, 3.75f);
    constexpr double textHeight = 3.0;  // without effect
    const std::unique_ptr<Mesh> u(CreateTextMesh("U", textHeight)),
        v(CreateTextMesh("V", textHeight));
    const Rotation alongX(pi / 2, axisY), alongY(-pi / 2, axisX);
    keepGlobal(Assembled("uv_indicator", {{shaft, {Pos(), alongX}},
                                          {head, {{15, 0, 0}, alongX}},
                                          {shaft, {Pos(), alongY}},
                                          {head, {{0, 15, 0}, alongY}},
                                          {u.get(), At({20, 0, 0})},
                                          {v.get(), At({-2, 20, 0})}}));
}

/// Three axes of length 1 that keep their width at any scale.
///
/// An axis is a triangle without width, drawn as a line by a wireframe material: a solid bar would
/// vanish where the instances are scaled along one axis only, and hardware instancing takes indexed
/// triangles alone.
void MeshManager::createFrameOgreMesh(const std::string& name) {
    if (OgreMeshExists(name)) return;
    struct Vertex {
        Pos position;
        rob::ColorTemplate<float> color;
    };
    // An axis is pale at the origin, where all three meet, and pure at its end.
    constexpr float strong = 0.94f, pale = 0.76f, faint = 0.16f;
    std::array<Vertex, 6> vertices;
    std::array<std::uint32_t, 9> indices{};
    for (std::uint32_t axis = 0; axis < 3; ++axis) {
        const Vec direction = axis == 0 ? axisX : axis == 1 ? axisY : axisZ;
        const auto tint = [&](float others) {
            return rob::ColorTemplate<float>{direction.x > 0 ? strong : others,
                                             direction.y > 0 ? strong : others,
                                             direction.z > 0 ? strong : others};
        };
        const std::uint32_t origin = 2 * axis, end = origin + 1;
        vertices[origin] = {Pos(), tint(pale)};
        vertices[end] = {Pos() + direction, tint(faint)};
        indices[3 * axis] = origin;
        indices[3 * axis + 1] = indices[3 * axis + 2] = end;
    }
    UnfinishedOgreMesh target(
        name, {{Ogre::VES_POSITION, Ogre::VET_FLOAT3}, {Ogre::VES_DIFFUSE, Ogre::VET_FLOAT3}});
    target.makeVertexBuffer(vertices.size())->writeData(0, sizeof vertices, vertices.data());
    target.makeIndexBuffer(indices.size())->writeData(0, sizeof indices, indices.data());
    target.finish({0, 0, 0, 1, 1, 1});
}

}  // namespace vrn::visual
