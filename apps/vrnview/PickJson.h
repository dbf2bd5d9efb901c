#pragma once

#include <nlohmann/json.hpp>

#include "apps/vrnview/PickReport.h"
#include "suite/rob/VectorTypes.h"

namespace vrn::host {

// Reports as JSON values, for what puts them into lines of its own. Thread: pure.

[[nodiscard]] nlohmann::ordered_json PickJson(const PickReport& report);
[[nodiscard]] nlohmann::ordered_json AreaJson(const AreaReport& report);
/// With no more digits than tell a float from its neighbours; null for one that is not finite.
[[nodiscard]] nlohmann::ordered_json NumberJson(float number);
/// [x, y, z]
[[nodiscard]] nlohmann::ordered_json PositionJson(const rob::PosTemplate<float>& position);
/// One line with its end; bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string LineOf(const nlohmann::ordered_json& json);

}  // namespace vrn::host
