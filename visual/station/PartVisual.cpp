#include "visual/station/PartVisual.h"

#include <stdexcept>

#include <BRep_Tool.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Shape.hxx>
#include <TopoDS_Vertex.hxx>

#include "engine/Scene.h"
#include "suite/layout/Body.h"
#include "suite/layout/Part.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/MeshVisual.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/ModelNode.h"
#include "visual/station/Appearance.h"
#include "visual/station/FrameVisual.h"
#include "visual/station/LocalFrame.h"

namespace vrn::visual {

namespace {

void BuildShape(PartVisual* part, layout::Body* body) {
    body->ensureShapeLoaded();
    const TopoDS_Shape shape = body->getShape();
    if (shape.IsNull()) return;
    switch (shape.ShapeType()) {
        case TopAbs_COMPOUND:
        case TopAbs_COMPSOLID:
        case TopAbs_SOLID:
        case TopAbs_SHELL:
        case TopAbs_FACE:
            SolidVisual::Build(part, body, shape);
            break;
        case TopAbs_WIRE:
        case TopAbs_EDGE:
            CurveVisual::Build(part, body, shape);
            break;
        case TopAbs_VERTEX: {
            const gp_Pnt p = BRep_Tool::Pnt(TopoDS::Vertex(shape));
            PointVisual::Build(
                part, body, rob::PosTemplate<float>(rob::PosTemplate<double>(p.X(), p.Y(), p.Z())));
            break;
        }
        case TopAbs_SHAPE:
            break;
    }
}

void BuildBody(PartVisual* part, layout::Body* body) {
    const auto fileType = body->element->touch("geometry")->touch("file_type")->as<std::string>();
    if (fileType == "stl") {
        MeshVisual::Build(part, body);
    } else if (fileType == "brep") {
        BuildShape(part, body);
    } else {
        throw std::runtime_error("File format is not brep or stl");
    }
}

}  // namespace

PartVisual::PartVisual(Visual* parent, sdf::SdfNode* modelNode)
    : Visual(modelNode, parent), localFrame(MakeLocalFrame(this)) {
    type = VisualType::Part;
}

void PartVisual::Build(Visual* parent, sdf::SdfNode* modelNode) {
    auto& model = dynamic_cast<layout::Part&>(RequireModelNode(modelNode));
    auto* part = new PartVisual(parent, modelNode);
    Scene::Get()->visuals[part->id] = part;
    for (layout::Body* body : model.bodies()) BuildBody(part, body);
}

bool PartVisual::canApplyMaterial(const Visual* child) {
    return child->type == VisualType::Solid || child->type == VisualType::Curve ||
           child->type == VisualType::Mesh || child->type == VisualType::Point;
}

void PartVisual::resetAppearance() {
    ForEachAdmittedChild(this, canApplyMaterial, [](Visual* child) { child->resetAppearance(); });
    HideOwnFrame(this, localFrame);
}

void PartVisual::setSelected() {
    ForEachAdmittedChild(this, canApplyMaterial, [](Visual* child) { child->setSelected(); });
    ShowLocalFrame(this, localFrame);
}

void PartVisual::setHighlighted() { HighlightChildren(this, canApplyMaterial); }

void PartVisual::clearHighlightOrSelect() {
    ForEachAdmittedChild(this, canApplyMaterial,
                         [](Visual* child) { child->clearHighlightOrSelect(); });
    HideOwnFrame(this, localFrame);
}

}  // namespace vrn::visual
