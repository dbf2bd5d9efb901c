#include "apps/vrnview/readers/CloudPoints.h"

#include <cmath>
#include <stdexcept>

#include "apps/vrnview/readers/FileBytes.h"

namespace vrn::host {

void CloudPoints::add(const rob::PosTemplate<double>& point) {
    if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z))
        points.push_back(point);
    else
        ++holes;
}

CloudPoints ReadCloudFile(const std::filesystem::path& file) {
    const std::string extension = LowerExtension(file);
    if (extension == ".ply") return ReadPly(ReadBytes(file));
    if (extension == ".pcd") return ReadPcd(ReadBytes(file));
    if (extension == ".xyz" || extension == ".pts") return ReadPointText(ReadBytes(file));
    throw std::runtime_error("not a point cloud (supported: .ply, .pcd, .xyz, .pts)");
}

}  // namespace vrn::host
