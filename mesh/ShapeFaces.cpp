#include "mesh/ShapeFaces.h"

#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopLoc_Location.hxx>

namespace vrn::visual {

namespace {

/// In double up to the last step, which Hex2RGB does in single precision: the last bit may differ.
rob::ColorTemplate<float> ParseColor(const std::string& text) {
    const auto component = [&](std::size_t at) {
        return static_cast<float>(std::stoi(text.substr(at, 2), nullptr, 16) / 255.0);
    };
    return {component(1), component(3), component(5)};
}

}  // namespace

std::size_t NodeCount(const TopoDS_Face& face) {
    if (face.IsNull()) return 0;
    TopLoc_Location unused;
    const Handle(Poly_Triangulation) & triangulation = BRep_Tool::Triangulation(face, unused);
    return triangulation.IsNull() ? 0 : static_cast<std::size_t>(triangulation->NbNodes());
}

BodyColors::BodyColors(const ColorInfo& colorInfo)
    : info(colorInfo), body(ParseColor(colorInfo.bodyColor)) {}

rob::ColorTemplate<float> BodyColors::of(std::uint32_t face) const {
    const auto own = info.faceColors.find(face);
    return own == info.faceColors.end() ? body : ParseColor(own->second);
}

}  // namespace vrn::visual
