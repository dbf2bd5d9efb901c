#pragma once

#include "visual/VrnVisualApi.h"

#include <OgreSimpleRenderable.h>

#include <cstdint>

namespace vrn::visual {

/// How the points of a line object are joined.
enum class RenderOpType : std::int32_t {
    PointList = 0,
    LineList = 1,   ///< points 0-1, 2-3 and so on
    LineStrip = 2,  ///< each point with the next
};

/// A movable object with a vertex buffer of its own that grows and shrinks with its content.
///
/// A derived class calls init in its constructor and fills the buffer that prepareHardwareBuffers
/// binds. The bounding box is null until the derived class merges points into it, and Ogre draws
/// nothing with a null box. The material is Ogre's plain white at first, which RenderEngine makes
/// drawable; Ogre's setMaterial must not be given null. Thread: render.
class VRN_VISUAL_API DynamicRenderable : public Ogre::SimpleRenderable {
public:
    DynamicRenderable() = default;
    DynamicRenderable(const DynamicRenderable&) = delete;
    DynamicRenderable& operator=(const DynamicRenderable&) = delete;
    /// Frees the vertex and index data; the hardware buffer goes with its last reference.
    ~DynamicRenderable() override;

    /// The larger distance of the two extreme corners of the bounding box from the origin, in model
    /// units; 0 while the box is null.
    Ogre::Real getBoundingRadius() const override;

protected:
    /// Tells the layout of a vertex to the vertex declaration; all of it in source 0.
    virtual void createVertexDeclaration() = 0;

public:
    /// The squared distance from the camera, which must not be null, to the middle of the bounding
    /// box.
    Ogre::Real getSquaredViewDepth(const Ogre::Camera* camera) const override;

    /// Starts over with empty vertex data (and index data, if wanted), both capacities 0 and render
    /// queue group 60. Calls createVertexDeclaration.
    void init(RenderOpType op, bool useIndices);
    /// Any other number than those of the enumeration leaves the operation as it was.
    void setOperationType(RenderOpType op);
    /// Makes room for `vertexCount` vertices in source 0 and has that many drawn. The content of
    /// the buffer is kept only while the capacity is. Throws std::logic_error before init and
    /// std::length_error above maxVertexCount.
    void prepareHardwareBuffers(unsigned long vertexCount);

    /// A draw call counts vertices in 31 bits.
    static constexpr std::uint64_t maxVertexCount = 2147483647;

    /// As given to init.
    [[nodiscard]] RenderOpType getOpType() const { return opType; }
    /// How many vertices the present buffer can hold; 0 until it is first filled.
    [[nodiscard]] std::uint64_t getVertexBufferCapacity() const { return vertexBufferCapacity; }

    /// The capacity for `vertexCount` vertices in place of `present`: kept while the count fills at
    /// least half of it, halved as often as the count stays below half, doubled (from 1 when there
    /// was none) until it suffices. Throws std::length_error above maxVertexCount. Thread: pure.
    [[nodiscard]] static std::uint64_t nextCapacity(std::uint64_t present,
                                                    std::uint64_t vertexCount);

private:
    RenderOpType opType = RenderOpType::LineList;
    std::uint64_t vertexBufferCapacity = 0;
    std::uint64_t indexBufferCapacity = 0;  // kept for indexed use; no line object has any yet
};

}  // namespace vrn::visual
