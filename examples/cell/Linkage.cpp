#include "examples/cell/Linkage.h"

#include <gp_Ax1.hxx>
#include <gp_Pnt.hxx>

#include <cstddef>
#include <numbers>

namespace vrn::examples {

std::vector<gp_Trsf> LinkPlaces(const Linkage& linkage) {
    std::vector<gp_Trsf> places(1);
    for (std::size_t i = 0; i < linkage.links.size(); ++i) {
        const LinkJoint& joint = linkage.links[i].joint;
        gp_Trsf origin, moved;
        origin.SetRotation(joint.turn);
        origin.SetTranslationPart(joint.origin);
        moved.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), joint.axis),
                          linkage.valuesDegrees[i] * std::numbers::pi / 180);
        places.push_back(places.back() * origin * moved);
    }
    return places;
}

}  // namespace vrn::examples
