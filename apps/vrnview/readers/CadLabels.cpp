#include "apps/vrnview/readers/CadLabels.h"

#include <BRep_Builder.hxx>
#include <Quantity_Color.hxx>
#include <Standard_Failure.hxx>
#include <TCollection_AsciiString.hxx>
#include <TDataStd_Name.hxx>
#include <TDF_Tool.hxx>
#include <TopExp.hxx>
#include <TopoDS_Compound.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <XCAFDoc_ColorType.hxx>
#include <XCAFDoc_DocumentTool.hxx>

#include <algorithm>
#include <format>
#include <stdexcept>
#include <unordered_map>

#include "suite/geom/ShapeTools.h"
#include "suite/layout/Body.h"

namespace vrn::host {

namespace {

std::string EntryOf(const TDF_Label& label) {
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

/// The labels of the shapes inside a part, the larger ones first.
std::vector<TDF_Label> SubShapesOf(const TDF_Label& label) {
    TDF_LabelSequence found;
    XCAFDoc_ShapeTool::GetSubShapes(label, found);
    std::vector<TDF_Label> inside;
    for (const TDF_Label& sub : found)
        if (!XCAFDoc_ShapeTool::GetShape(sub).IsNull()) inside.push_back(sub);
    std::ranges::stable_sort(inside, {}, [](const TDF_Label& sub) {
        return XCAFDoc_ShapeTool::GetShape(sub).ShapeType();
    });
    return inside;
}

/// Colours what a shape stands for in a part: the body that it is, or its faces where they lie in
/// the bodies.
class PartPainter {
public:
    explicit PartPainter(CadPart& painted) : part(painted) {
        for (CadBody& body : part.bodies) {
            layout::FaceMap faces;
            TopExp::MapShapes(body.shape, TopAbs_FACE, faces);
            for (int i = 1; i <= faces.Extent(); ++i)
                places.emplace(faces(i), Place{&body, static_cast<std::uint32_t>(i)});
        }
    }

    void paintAll(const std::string& colour) {
        for (CadBody& body : part.bodies) body.colour = colour;
    }

    void paint(const TopoDS_Shape& shape, const std::string& colour) {
        bool isBody = false;
        if (shape.ShapeType() != TopAbs_FACE)
            for (CadBody& body : part.bodies) {
                if (!body.shape.IsSame(shape)) continue;
                body.colour = colour;
                isBody = true;
            }
        if (isBody) return;
        layout::FaceMap faces;
        TopExp::MapShapes(shape, TopAbs_FACE, faces);
        for (int i = 1; i <= faces.Extent(); ++i) {
            const auto [first, last] = places.equal_range(faces(i));
            for (auto place = first; place != last; ++place)
                place->second.body->faceColours.insert_or_assign(place->second.face, colour);
        }
    }

    /// Where every face has a colour, the commonest is the body's.
    void simplify() {
        for (CadBody& body : part.bodies) {
            layout::FaceMap faces;
            TopExp::MapShapes(body.shape, TopAbs_FACE, faces);
            std::map<std::string, std::size_t> uses;
            for (const auto& [face, colour] : body.faceColours) ++uses[colour];
            if (!uses.empty() && static_cast<int>(body.faceColours.size()) == faces.Extent())
                body.colour = std::ranges::max_element(uses, {}, [](const auto& use) {
                                  return use.second;
                              })->first;
            std::erase_if(body.faceColours,
                          [&](const auto& face) { return face.second == body.colour; });
        }
    }

private:
    struct Place {
        CadBody* body;
        std::uint32_t face;
    };
    CadPart& part;
    std::unordered_multimap<TopoDS_Shape, Place, TopTools_ShapeMapHasher, TopTools_ShapeMapHasher>
        places;
};

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
        if (std::optional<CadNode> node = nodeOf(label, fallbackName))
            model.roots.push_back(std::move(*node));
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
            if (auto node = nodeOf(label, fallbackName)) model.roots.push_back(std::move(*node));
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

/// `nameAround` is for what has no name of its own. A label that is placed tells what it stands for
/// by a reference; the free ones are shapes themselves.
std::optional<CadNode> CadLabels::nodeOf(const TDF_Label& label, const std::string& nameAround) {
    if (++nodes > maxCadNodes)
        throw std::runtime_error(std::format("the file places more than {} parts", maxCadNodes));
    TDF_Label definition = label;
    const bool isPlaced = XCAFDoc_ShapeTool::GetReferredShape(label, definition);
    const gp_Trsf placement =
        isPlaced ? XCAFDoc_ShapeTool::GetLocation(label).Transformation() : gp_Trsf();
    std::string name = nameOf(definition);
    if (name.empty()) name = nameOf(label);
    if (name.empty()) name = nameAround;
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
        node = assemblyOf(definition, name);
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

CadNode CadLabels::assemblyOf(const TDF_Label& label, const std::string& name) {
    CadNode node;
    path.push_back(EntryOf(label));
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(label, components);
    for (const TDF_Label& component : components)
        if (std::optional<CadNode> child = nodeOf(component, name))
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
        colourAll(*part, labels);
        return part;
    } catch (const Standard_Failure& failure) {
        leaveOut(name, std::string("it cannot be triangulated: ") + failure.GetMessageString());
        return nullptr;
    }
}

/// From the whole to the single face: what is painted later stands on top.
void CadLabels::colourAll(CadPart& part, const std::vector<TDF_Label>& labels) const {
    PartPainter painter(part);
    for (const TDF_Label& label : labels) {
        const auto whole = colourOf(label);
        if (whole && labels.size() == 1) painter.paintAll(*whole);
        if (whole && labels.size() > 1) painter.paint(XCAFDoc_ShapeTool::GetShape(label), *whole);
        for (const TDF_Label& sub : SubShapesOf(label))
            if (const auto own = colourOf(sub))
                painter.paint(XCAFDoc_ShapeTool::GetShape(sub), *own);
    }
    painter.simplify();
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
