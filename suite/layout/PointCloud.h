#pragma once

#include <string_view>
#include <vector>

#include "suite/rob/VectorTypes.h"
#include "suite/sdf/SdfNode.h"
#include "suite/SuiteApi.h"

namespace vrn::layout {

/// A scanned cloud.
class VRN_SUITE_API PointCloud : public sdf::SdfObject {
public:
    PointCloud(std::string_view name, std::vector<rob::PosTemplate<float>> cloudPoints);
    ~PointCloud() override;

    /// In the cloud's own frame. To be changed by the host only while no visual of it is drawn.
    std::vector<rob::PosTemplate<float>> points;
};

}  // namespace vrn::layout
