#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "apps/vrnview/PickReport.h"
#include "selection/Result.h"
#include "selection/VisualSelection.h"
#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// The library's answer and what is told of it. The answer is good until the next change of the
/// scene.
struct Picked {
    selection::Result result;
    PickReport report;
};

struct PickedArea {
    std::vector<std::uint32_t> ids;  ///< of the visuals
    selection::CloudPoints points;
    AreaReport report;
};

// Questions to the selection, in window pixels. It has to be up to date. Thread: render.

/// What VisualSelection::select answers, and where that hits nothing, selectPointInCloud; without
/// either the ground. Throws std::runtime_error for geometry that OpenCASCADE cannot compute with.
[[nodiscard]] Picked PickAt(float x, float y);
/// The visuals that boxSelect answers, then the clouds that have points under the rectangle.
[[nodiscard]] PickedArea PickBox(float x0, float y0, float x1, float y1);
/// The visuals whose world box is at least partly inside the polygon, then the clouds that have
/// points inside. Fewer than three corners hold nothing.
[[nodiscard]] PickedArea PickLasso(const std::vector<rob::PosTemplate<float>>& polygon);

// What was found, shown by the operations of Scene, which post. Thread: one at a time.

/// Highlights the face, the edge or the visual that was hit in place of what is highlighted now;
/// nothing for a miss.
void Highlight(const selection::Result& result);
/// Selects the visual, or the point of a cloud, in place of the selection so far.
void Select(const selection::Result& result);
/// Selects the visuals and the points of clouds in place of the selection so far.
void Select(const std::vector<std::uint32_t>& ids, const selection::CloudPoints& points);
/// Marks everything that was found at once: faces of solids in the colour of a base, the other
/// visuals and the points as selected.
void Mark(std::span<const Picked> picks, std::span<const PickedArea> areas);

}  // namespace vrn::host
