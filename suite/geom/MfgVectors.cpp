#include "suite/geom/MfgVectors.h"

#include "suite/geom/ShapeTools.h"

#include <stdexcept>

namespace vrn::geometry {

rob::PosTemplate<double> MfgVector::getPos(const TopoDS_Edge& edge) const {
    return GetPointAtParameter(edge, parameter);
}

rob::DirTemplate<double> MfgVector::getDir(const TopoDS_Edge&) const { return direction; }

rob::Vec3Template<double> MfgVector::getEdgeTangent(const TopoDS_Edge& edge) const {
    return GetTangentAtParameter(edge, parameter).normalized();
}

rob::PoseTemplate<double> MfgVector::getPose(const TopoDS_Edge& edge) const {
    const auto z = direction.asVec3().normalized();
    const auto y = z.cross(getEdgeTangent(edge)).normalized();
    return {getPos(edge), rob::RotationTemplate<double>::FromAxes(y.cross(z), y, z)};
}

MfgVector MfgVectors::getVectorAtParam(double param) const {
    if (vectors.empty()) throw std::out_of_range("the edge has no stored vectors");
    const MfgVector* below = nullptr;  // the nearest at or below `param`
    const MfgVector* above = nullptr;  // the nearest above it
    for (const MfgVector& v : vectors) {
        if (v.parameter <= param && (!below || v.parameter > below->parameter)) below = &v;
        if (v.parameter > param && (!above || v.parameter < above->parameter)) above = &v;
    }
    if (!below && !above) below = &vectors.front();  // NaN lies on no side
    if (!below || !above) return {param, (below ? below : above)->direction};
    const double t = (param - below->parameter) / (above->parameter - below->parameter);
    const auto mixed = below->direction.asVec3() * (1 - t) + above->direction.asVec3() * t;
    return {param, rob::DirTemplate<double>(mixed.normalized())};
}

}  // namespace vrn::geometry
