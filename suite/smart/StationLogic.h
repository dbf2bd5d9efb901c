#pragma once

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::smartcomp {

/// The station's logic object. An object whose `parentId` is its id stands in the station itself.
class VRN_SUITE_API StationLogic : public sdf::SdfObject {
public:
    /// Never null, its id always sdf::SdfManager::stationLogicId; lives until the process ends, and
    /// stands in sdf::SdfManager from the first call on. Thread: any.
    [[nodiscard]] static StationLogic* inst();

private:
    StationLogic();
};

}  // namespace vrn::smartcomp
