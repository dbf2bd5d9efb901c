#pragma once

#include "mesh/DynamicRenderable.h"
#include "selection/Box.h"
#include "visual/VrnVisualApi.h"

#include <vector>

namespace vrn::visual {

/// Points, lines or a line strip to which points are added over time: curves, traces, path lines.
///
///     auto* lines = new DynamicLines(RenderOpType::LineStrip);
///     visual->attachObject(lines);
///     lines->addPoint(0, 0, 0);
///     lines->addPoint(100, 0, 0);
///     lines->update();
///
/// Adding touches only the list on the processor's side; update sends the whole list to the
/// graphics card, once for however many changes. There is no removing: start over with a new
/// object. Positions are model units in the frame of the node that the object hangs on. Lines carry
/// no colour of their own, it comes from the material, which is plain white at first.
///
/// A point with a coordinate that is not finite, or beyond 1e15, is sent as it is and belongs to no
/// bounds; without any bounds nothing is drawn.
/// Thread: render.
class VRN_VISUAL_API DynamicLines : public DynamicRenderable {
public:
    using Pos = rob::PosTemplate<float>;

    explicit DynamicLines(RenderOpType op);
    ~DynamicLines() override;

    void addPoint(float x, float y, float z);
    /// Throws std::out_of_range unless `index` is below the number of points.
    void setPoint(unsigned int index, const Pos& point);
    /// The straight distance from the first point to the last, not the sum of the segments; the
    /// name keeps that meaning. 0 for a closed line and without points. Thread: pure.
    [[nodiscard]] float getLineLength() const;

    /// Sends the points to the graphics card if they changed and are at least two. A single point
    /// is never drawn and waits for the next one. Works attached or not; a parent node is told.
    void update();
    /// update without asking: sends what there is, and even no points at all.
    void fillHardwareBuffers();

    /// The bounds of the points last sent, moved out by one unit on each side; the empty box before
    /// the first update. Unlike Ogre's bounding box, which only grows, it forgets old positions.
    [[nodiscard]] const Box& getBox() const { return box; }
    /// In drawing order.
    [[nodiscard]] const std::vector<Pos>& getPoints() const { return points; }
    /// True while the points differ from what was sent; true from construction.
    [[nodiscard]] bool isDirty() const { return dirty; }

protected:
    void createVertexDeclaration() override;

private:
    Box box;
    std::vector<Pos> points;
    bool dirty = true;
};

}  // namespace vrn::visual
