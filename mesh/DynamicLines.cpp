#include "mesh/DynamicLines.h"

#include <OgreHardwareVertexBuffer.h>
#include <OgreSceneNode.h>

#include <cmath>
#include <cstring>
#include <format>
#include <stdexcept>

namespace vrn::visual {

namespace {

// The engine takes sums and differences of bounds, turns and scales them, and aborts on what
// overflows, and on bounds that are no numbers. Each comparison is false for a coordinate that is
// none.
bool HasBounds(const rob::PosTemplate<float>& p) {
    constexpr float farthest = 1e15f;
    return std::abs(p.x) <= farthest && std::abs(p.y) <= farthest && std::abs(p.z) <= farthest;
}

}  // namespace

// The virtual createVertexDeclaration that init calls is this class's own.
DynamicLines::DynamicLines(RenderOpType op) { init(op, /*useIndices=*/false); }

DynamicLines::~DynamicLines() = default;

void DynamicLines::createVertexDeclaration() {
    mRenderOp.vertexData->vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT3, Ogre::VES_POSITION);
}

void DynamicLines::addPoint(float x, float y, float z) {
    points.emplace_back(x, y, z);
    dirty = true;
}

void DynamicLines::setPoint(unsigned int index, const Pos& point) {
    if (index >= points.size())
        throw std::out_of_range(
            std::format("point {} of a line of {} points", index, points.size()));
    points[index] = point;
    dirty = true;
}

float DynamicLines::getLineLength() const {
    if (points.empty()) return 0.0f;
    return (points.back() - points.front()).length();
}

void DynamicLines::update() {
    if (dirty && points.size() >= 2) fillHardwareBuffers();
}

void DynamicLines::fillHardwareBuffers() {
    static_assert(sizeof(Pos) == 3 * sizeof(float), "a point is sent as three floats");
    Box present;
    prepareHardwareBuffers(points.size());
    {
        const Ogre::HardwareVertexBufferSharedPtr buffer =
            mRenderOp.vertexData->vertexBufferBinding->getBuffer(0);
        const Ogre::HardwareBufferLockGuard lock(buffer, Ogre::HardwareBuffer::HBL_NORMAL);
        auto* out = static_cast<unsigned char*>(lock.pData);
        for (const Pos& point : points) {
            std::memcpy(out, &point, sizeof point);
            out += sizeof point;
            if (!HasBounds(point)) continue;
            mBox.merge(Ogre::Vector3(point.x, point.y, point.z));
            present.addPoint(point);
        }
    }
    // Before the first attachment there is nobody to tell: attaching asks for the bounds anyway.
    if (Ogre::SceneNode* parent = getParentSceneNode()) parent->needUpdate();
    box = present;
    box.expand();
    dirty = false;
}

}  // namespace vrn::visual
