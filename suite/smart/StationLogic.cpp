#include "suite/smart/StationLogic.h"

#include "suite/sdf/SdfManager.h"

namespace vrn::smartcomp {

StationLogic::StationLogic() : SdfObject(sdf::ObjectType::StationLogic, "Station", "station") {
    id = sdf::SdfManager::stationLogicId;
}

StationLogic* StationLogic::inst() {
    static StationLogic* logic = [] {
        // Never destroyed: objects held by statics elsewhere may still be its children.
        auto* made = new StationLogic;
        sdf::SdfManager::inst()->add(*made);
        return made;
    }();
    return logic;
}

}  // namespace vrn::smartcomp
