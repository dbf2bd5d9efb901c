#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>

#include "apps/vrnview/drive/BandScript.h"
#include "apps/vrnview/drive/DriveDesk.h"
#include "suite/task/EdgeMfgShape.h"

namespace vrn::visual {
class VectorBandVisual;
}

namespace vrn::host {

/// Shows and edits a process along edges, one at a time. Thread: the posting one.
class BandDrive {
public:
    explicit BandDrive(DriveDesk& driveDesk) : desk(driveDesk) {}

    /// The answer, without number and verb. Throws std::runtime_error for what is not there, and
    /// what the band throws for directions that make none.
    [[nodiscard]] nlohmann::ordered_json perform(const drive::BandAction& action);

private:
    using Json = nlohmann::ordered_json;
    using PathPoint = task::EdgeMfgShape::PathPoint;

    [[nodiscard]] Json on(const drive::Band& a);
    [[nodiscard]] Json on(const drive::BandPreview& a);
    [[nodiscard]] Json on(const drive::BandSelect& a);
    [[nodiscard]] Json on(const drive::BandRange& a);
    [[nodiscard]] Json on(const drive::BandClear& a);

    // Thread: render.
    void show(const drive::Band& a);
    void remove();
    [[nodiscard]] PathPoint pointOf(const drive::BandPlace& place) const;
    [[nodiscard]] Json vectorJson(const PathPoint& point) const;

    DriveDesk& desk;
    visual::VectorBandVisual* band = nullptr;  ///< null without one; the tree owns it
    std::uint32_t solid = 0;                   ///< that the band hangs on
    task::EdgeMfgShape shape;
};

}  // namespace vrn::host
