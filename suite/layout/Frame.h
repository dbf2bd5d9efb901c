#pragma once

#include <string_view>

#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::layout {

/// A coordinate frame: of the station, or one of a tool's or device's.
class VRN_SUITE_API Frame : public sdf::SdfObject {
public:
    explicit Frame(std::string_view name);
    ~Frame() override;
};

}  // namespace vrn::layout
