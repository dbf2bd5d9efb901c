#include "apps/vrnview/readers/CadLabels.h"

#include <BRep_Builder.hxx>
#include <Quantity_Color.hxx>
#include <Standard_Failure.hxx>
#include <TCollection_AsciiString.hxx>
#include <TDataStd_Name.hxx>
#include <TDF_Tool.hxx>
#include <TopExp.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_ColorType.hxx>
#include <XCAFDoc_DocumentTool.hxx>

#include <algorithm>
#include <format>
#include <stdexcept>

#include "suite/geom/ShapeTools.h"
#include "suite/layout/Body.h"

namespace vrn::host {

namespace {

std::string EntryOf(const TDF_Label& label) {
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

std::vector<TDF_Label> ListOf(const TDF_LabelSequence& sequence) {
    return {sequence.begin(), sequence.end()};
}

/// The colour of a shape of the part that is more than one face, as of a shell: of the body if it
/// is the body, else of all its faces that have none yet.
void ColourShape(CadPart& part, const TopoDS_Shape& shape, const std::string& colour) {
    layout::FaceMap faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (CadBody& body : part.bodies) {
        if (body.shape.IsSame(shape)) {
            body.colour = colour;
            continue;
        }
        layout::FaceMap ofBody;
        TopExp::MapShapes(body.shape, TopAbs_FACE, ofBody);
        for (int i = 1; i <= ofBody.Extent(); ++i)
            if (faces.Contains(ofBody(i)))
                body.faceColours.insert_or_assign(static_cast<std::uint32_t>(i), colour);
    }
}

}  // namespace

CadLabels::CadLabels(const TDocStd_Document& document, std::string fileUri, std::string name)
    : shapes(XCAFDoc_DocumentTool::ShapeTool(document.Main())),
      colours(XCAFDoc_DocumentTool::ColorTool(document.Main())),
      uri(std::move(fileUri)),
      fallbackName(std::move(name)) {}

CadModel CadLabels::readTree() {
    TDF_LabelSequence free;
    shapes->GetFreeShapes(free);
    for (const TDF_Label& label : free)
        if (std::optional<CadNode> node = nodeOf(label)) model.roots.push_back(std::move(*node));
    return std::move(model);
}

CadModel CadLabels::readAsOnePart() {
    TDF_LabelSequence free;
    shapes->GetFreeShapes(free);
    std::vector<TDF_Label> loose;
    TopoDS_Compound all;
    BRep_Builder().MakeCompound(all);
    for (const TDF_Label& label : free) {
        if (XCAFDoc_ShapeTool::IsAssembly(label)) {
            if (auto node = nodeOf(label)) model.roots.push_back(std::move(*node));
            continue;
        }
        loose.push_back(label);
        const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(label);
        if (!shape.IsNull()) BRep_Builder().Add(all, shape);
    }
    if (!loose.empty())
        if (PartPtr part = makePart(loose, all, fallbackName, ""))
            model.roots.push_back({fallbackName, {}, std::move(part), {}, false, {}});
    return std::move(model);
}

/// A label that is placed tells what it stands for by a reference; the free ones are shapes
/// themselves.
std::optional<CadNode> CadLabels::nodeOf(const TDF_Label& label) {
    if (++nodes > maxCadNodes)
        throw std::runtime_error(std::format("the file places more than {} parts", maxCadNodes));
    TDF_Label definition = label;
    const bool isPlaced = XCAFDoc_ShapeTool::GetReferredShape(label, definition);
    const gp_Trsf placement =
        isPlaced ? XCAFDoc_ShapeTool::GetLocation(label).Transformation() : gp_Trsf();
    std::string name = nameOf(definition);
    if (name.empty()) name = nameOf(label);
    if (name.empty()) name = fallbackName;
    if (!IsRigid(placement)) {
        leaveOut(name, "its placement is no mere turn and move");
        return std::nullopt;
    }

    CadNode node;
    if (XCAFDoc_ShapeTool::IsAssembly(definition)) {
        if (std::ranges::find(path, EntryOf(definition)) != path.end()) {
            leaveOut(name, "it holds itself");
            return std::nullopt;
        }
        node = assemblyOf(definition);
    } else {
        node.part = partOf(definition, name);
        if (!node.part) return std::nullopt;
    }
    node.name = std::move(name);
    node.pose = PoseOf(placement);
    node.hidden = !colours->IsVisible(label) || !colours->IsVisible(definition);
    if (isPlaced) node.colour = colourOf(label);
    return node;
}

CadNode CadLabels::assemblyOf(const TDF_Label& label) {
    CadNode node;
    path.push_back(EntryOf(label));
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(label, components);
    for (const TDF_Label& component : components)
        if (std::optional<CadNode> child = nodeOf(component))
            node.children.push_back(std::move(*child));
    path.pop_back();
    return node;
}

CadLabels::PartPtr CadLabels::partOf(const TDF_Label& label, const std::string& name) {
    const std::string entry = EntryOf(label);
    const auto known = parts.find(entry);
    if (known != parts.end()) return known->second;
    return parts[entry] = makePart({label}, XCAFDoc_ShapeTool::GetShape(label), name, entry);
}

CadLabels::PartPtr CadLabels::makePart(const std::vector<TDF_Label>& labels,
                                       const TopoDS_Shape& shape, const std::string& name,
                                       const std::string& entry) {
    try {
        geometry::GenerateMesh(shape, 0, 0);
        auto part = std::make_shared<CadPart>();
        part->bodies = BodiesOf(shape, name, uri + "#" + entry);
        if (part->bodies.empty()) {
            leaveOut(name, "it has no shape");
            return nullptr;
        }
        for (const TDF_Label& label : labels) colour(*part, label);
        return part;
    } catch (const Standard_Failure& failure) {
        leaveOut(name, std::string("it cannot be triangulated: ") + failure.GetMessageString());
        return nullptr;
    }
}

/// From the whole to the single face: what is named later stands on top.
void CadLabels::colour(CadPart& part, const TDF_Label& label) const {
    if (const auto whole = colourOf(label)) {
        const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(label);
        if (part.bodies.size() == 1 || shape.ShapeType() == TopAbs_COMPOUND)
            for (CadBody& body : part.bodies) body.colour = *whole;
        else
            ColourShape(part, shape, *whole);
    }
    TDF_LabelSequence found;
    XCAFDoc_ShapeTool::GetSubShapes(label, found);
    std::vector<TDF_Label> inside = ListOf(found);
    const auto kind = [](const TDF_Label& sub) {
        return XCAFDoc_ShapeTool::GetShape(sub).ShapeType();
    };
    std::erase_if(inside, [](const TDF_Label& sub) {
        return XCAFDoc_ShapeTool::GetShape(sub).IsNull();
    });
    std::ranges::stable_sort(inside, {}, kind);
    for (const TDF_Label& sub : inside)
        if (const auto own = colourOf(sub))
            ColourShape(part, XCAFDoc_ShapeTool::GetShape(sub), *own);
}

std::optional<std::string> CadLabels::colourOf(const TDF_Label& label) const {
    Quantity_Color found;
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen, XCAFDoc_ColorCurv})
        if (XCAFDoc_ColorTool::GetColor(label, type, found))
            return Quantity_Color::ColorToHex(found).ToCString();
    return std::nullopt;
}

std::string CadLabels::nameOf(const TDF_Label& label) const {
    opencascade::handle<TDataStd_Name> name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
    std::string text(static_cast<std::size_t>(name->Get().LengthOfCString()) + 1, '\0');
    Standard_PCharacter bytes = text.data();
    const int length = name->Get().ToUTF8CString(bytes);
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

void CadLabels::leaveOut(const std::string& name, const std::string& reason) {
    model.problems.push_back(std::format("{}: {}", name, reason));
}

}  // namespace vrn::host
