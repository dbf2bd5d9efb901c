#include "suite/layout/PointCloud.h"

#include "suite/layout/Layout.h"

#include <utility>

namespace vrn::layout {

PointCloud::PointCloud(std::string_view cloudName, std::vector<rob::PosTemplate<float>> cloudPoints)
    : SdfObject(sdf::ObjectType::PointCloud, cloudName, "point_cloud"),
      points(std::move(cloudPoints)) {}

PointCloud::~PointCloud() { Layout::inst()->remove(*this); }

}  // namespace vrn::layout
