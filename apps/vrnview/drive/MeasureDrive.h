#pragma once

#include <nlohmann/json.hpp>

#include <vector>

#include "apps/vrnview/drive/Circle.h"
#include "apps/vrnview/drive/DriveDesk.h"
#include "apps/vrnview/drive/MeasureScript.h"

namespace vrn::host {

/// Measures between what is picked, and draws what was measured. Thread: the posting one.
class MeasureDrive {
public:
    explicit MeasureDrive(DriveDesk& driveDesk) : desk(driveDesk) {}

    /// The answer, without number and verb. Throws std::runtime_error for what is not there or
    /// cannot be measured.
    [[nodiscard]] nlohmann::ordered_json perform(const drive::MeasureAction& action);

private:
    using Json = nlohmann::ordered_json;

    [[nodiscard]] Json on(const drive::MeasureDistance& a);
    [[nodiscard]] Json on(const drive::MeasureAngle& a);
    [[nodiscard]] Json on(const drive::MeasureDiameter& a);
    [[nodiscard]] Json on(const drive::MeasureEdge& a);
    [[nodiscard]] Json on(const drive::ShowUv& a);
    [[nodiscard]] Json on(const drive::Polyline& a);

    /// In the world.
    [[nodiscard]] std::vector<rob::PosTemplate<double>> find(const drive::PickedPlaces& places);
    [[nodiscard]] Json draw(const Circle& circle);

    DriveDesk& desk;
};

}  // namespace vrn::host
