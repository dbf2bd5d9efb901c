#include "visual/process/SprayVisual.h"

#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <gp_Ax2.hxx>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>

#include <any>
#include <cmath>
#include <format>
#include <memory>
#include <optional>
#include <stdexcept>

#include <OgreException.h>

#include "engine/Scene.h"
#include "selection/VisualSelection.h"
#include "suite/geom/ColorInfo.h"
#include "suite/geom/ShapeTools.h"
#include "suite/sdf/SdfNode.h"
#include "visual/geometry/WireFrameVisual.h"
#include "visual/station/ModelPose.h"

namespace vrn::visual {

namespace {

constexpr const char* bodyColor = "#ED1C24";

struct SprayProperties {
    std::optional<rob::Vec3Template<double>> color;
    double diameter = 0, height = 0, farDiameter = 0;
};

/// The value of a property; without one it is of no type, so that every reading of it throws.
std::any ValueOf(const sdf::Element& property) {
    const auto value = property.get("value");
    return value ? value->getValue() : std::any();
}

SprayProperties ReadProperties(const sdf::Element& element) {
    SprayProperties read;
    for (const auto& property : element.getChildren()) {
        if (property->getTypeName() != "property") continue;
        const auto number = [&] { return std::any_cast<double>(ValueOf(*property)); };
        switch (property->getId(/*ownOnly=*/true)) {
            case 1:
                (void)std::any_cast<std::uint32_t>(ValueOf(*property));
                break;
            case 2:
                (void)std::any_cast<bool>(ValueOf(*property));
                break;
            case 3:
                read.color = property->asVec3("value");
                break;
            case 6:
                read.diameter = number();
                break;
            case 7:
                read.height = number();
                break;
            case 8:
                read.farDiameter = number();
                break;
            default:
                break;
        }
    }
    return read;
}

TopoDS_Shape MakeShape(const SprayProperties& properties) {
    // OpenCASCADE takes radii that differ by less for equal, and equal ones for no cone.
    constexpr double sameRadius = 1e-7;
    const gp_Ax2 axis(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1));
    const double near = 0.5 * properties.diameter, far = 0.5 * properties.farDiameter;
    const bool isCylinder = std::abs(near - far) < sameRadius && near > 0 && properties.height > 0;
    const TopoDS_Shape shape =
        isCylinder ? BRepPrimAPI_MakeCylinder(axis, near, properties.height).Shape()
                   : BRepPrimAPI_MakeCone(axis, near, far, properties.height).Shape();
    geometry::GenerateMesh(shape, 0.0, 0.0);
    return shape;
}

}  // namespace

SprayVisual::SprayVisual(std::uint32_t sprayId, Visual* parent, const TopoDS_Shape& shownShape)
    : SolidVisual(std::format("spray_{}", sprayId), shownShape, parent) {
    id = sprayId;
}

SprayVisual* SprayVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    if (!modelNode) throw std::invalid_argument("the spray to show must not be null");
    // The other visuals' nodes bear their names alone, so that the engine refuses a second one.
    if (Scene::Get()->visuals.contains(modelNode->id))
        OGRE_EXCEPT(Ogre::Exception::ERR_DUPLICATE_ITEM,
                    std::format("the spray {} is shown already", modelNode->id),
                    "SprayVisual::Build");
    const SprayProperties properties = ReadProperties(*modelNode->element);
    const TopoDS_Shape shape = MakeShape(properties);
    auto visual = std::make_unique<SprayVisual>(modelNode->id, parent, shape);
    if (modelNode->element->get("pose"))
        visual->setPose(rob::PoseTemplate<float>(modelNode->getPose()));
    visual->loadEntity({bodyColor, {}});
    if (const auto& color = properties.color)
        visual->setBodyColor({static_cast<float>(color->x), static_cast<float>(color->y),
                              static_cast<float>(color->z)},
                             1.0f);
    visual->setMaterial("Body", "BodySelected", "BodyHighlighted");
    visual->resetAppearance();
    Scene::Get()->visuals[visual->id] = visual.get();
    selection::VisualSelection::Get()->addShape(shape, visual.get(), /*detectable=*/false);
    // Behind setMaterial, which would give its names to the edges as well.
    WireFrameVisual::Build(visual.get(), shape);
    return visual.release();
}

}  // namespace vrn::visual
