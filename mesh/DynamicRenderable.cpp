#include "mesh/DynamicRenderable.h"

#include <OgreCamera.h>
#include <OgreHardwareBufferManager.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace vrn::visual {

namespace {

constexpr Ogre::uint8 lineQueueGroup = 60;

}  // namespace

DynamicRenderable::~DynamicRenderable() {
    delete mRenderOp.vertexData;
    delete mRenderOp.indexData;
}

Ogre::Real DynamicRenderable::getBoundingRadius() const {
    // The corners of a null box are not those of anything.
    if (mBox.isNull()) return 0;
    return std::sqrt(
        std::max(mBox.getMinimum().squaredLength(), mBox.getMaximum().squaredLength()));
}

Ogre::Real DynamicRenderable::getSquaredViewDepth(const Ogre::Camera* camera) const {
    const Ogre::Vector3 low = mBox.getMinimum(), high = mBox.getMaximum();
    const Ogre::Vector3 middle = low + (high - low) * Ogre::Real(0.5);
    return (camera->getDerivedPosition() - middle).squaredLength();
}

void DynamicRenderable::init(RenderOpType op, bool useIndices) {
    opType = op;
    setOperationType(op);
    delete mRenderOp.vertexData;
    delete mRenderOp.indexData;
    mRenderOp.indexData = nullptr;
    mRenderOp.vertexData = new Ogre::VertexData;
    mRenderOp.useIndexes = useIndices;
    if (useIndices) mRenderOp.indexData = new Ogre::IndexData;
    vertexBufferCapacity = 0;
    indexBufferCapacity = 0;
    createVertexDeclaration();
    setRenderQueueGroup(lineQueueGroup);
}

void DynamicRenderable::setOperationType(RenderOpType op) {
    switch (op) {
        case RenderOpType::PointList:
            mRenderOp.operationType = Ogre::RenderOperation::OT_POINT_LIST;
            break;
        case RenderOpType::LineList:
            mRenderOp.operationType = Ogre::RenderOperation::OT_LINE_LIST;
            break;
        case RenderOpType::LineStrip:
            mRenderOp.operationType = Ogre::RenderOperation::OT_LINE_STRIP;
            break;
    }
}

std::uint64_t DynamicRenderable::nextCapacity(std::uint64_t present, std::uint64_t vertexCount) {
    if (vertexCount > maxVertexCount)
        throw std::length_error("a line object holds at most 2147483647 vertices");
    std::uint64_t capacity = present;
    if (capacity != 0 && capacity >= vertexCount) {
        // Not below half is kept: a count that wavers round a power of two must not reallocate.
        while (vertexCount < (capacity >> 1)) capacity >>= 1;
        return capacity;
    }
    if (capacity == 0) capacity = 1;
    while (capacity < vertexCount) capacity <<= 1;
    return capacity;
}

void DynamicRenderable::prepareHardwareBuffers(unsigned long vertexCount) {
    if (!mRenderOp.vertexData) throw std::logic_error("init must run before the buffer is filled");
    const std::uint64_t capacity = nextCapacity(vertexBufferCapacity, vertexCount);
    Ogre::VertexData& data = *mRenderOp.vertexData;
    if (capacity != vertexBufferCapacity) {
        constexpr Ogre::uint8 usage = Ogre::HBU_CPU_TO_GPU | Ogre::HBU_DETAIL_WRITE_ONLY;
        data.vertexBufferBinding->setBinding(
            0, Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
                   data.vertexDeclaration->getVertexSize(0), capacity, usage,
                   /*useShadowBuffer=*/false));
        vertexBufferCapacity = capacity;
    }
    data.vertexCount = static_cast<Ogre::uint32>(vertexCount);
}

}  // namespace vrn::visual
