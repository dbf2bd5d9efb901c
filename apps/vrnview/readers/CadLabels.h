#pragma once

#include <Standard_Handle.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/vrnview/readers/CadModel.h"

namespace vrn::host {

/// Turns the labels of a document, as OpenCASCADE's readers leave them, into parts and assemblies.
///
/// A part that several labels refer to is made once. What cannot be made costs a line in the
/// model's problems. Thread: one at a time.
class CadLabels {
public:
    /// `uri` names the file, `fallbackName` what has no name of its own.
    CadLabels(const TDocStd_Document& document, std::string uri, std::string fallbackName);

    /// The structure as it stands. Throws std::runtime_error for more than maxCadNodes nodes.
    [[nodiscard]] CadModel readTree();
    /// The same, but all shapes that stand on their own are the bodies of one part.
    [[nodiscard]] CadModel readAsOnePart();

private:
    using PartPtr = std::shared_ptr<const CadPart>;

    [[nodiscard]] std::optional<CadNode> nodeOf(const TDF_Label& label,
                                                const std::string& nameAround);
    [[nodiscard]] CadNode assemblyOf(const TDF_Label& label, const std::string& name);
    [[nodiscard]] PartPtr partOf(const TDF_Label& label, const std::string& name);
    [[nodiscard]] PartPtr makePart(const std::vector<TDF_Label>& labels, const TopoDS_Shape& shape,
                                   const std::string& name, const std::string& entry);
    void colourAll(CadPart& part, const std::vector<TDF_Label>& labels) const;
    [[nodiscard]] std::optional<std::string> colourOf(const TDF_Label& label) const;
    [[nodiscard]] std::string nameOf(const TDF_Label& label) const;
    void leaveOut(const std::string& name, const std::string& reason);

    opencascade::handle<XCAFDoc_ShapeTool> shapes;
    opencascade::handle<XCAFDoc_ColorTool> colours;
    std::string uri, fallbackName;
    std::map<std::string, PartPtr> parts;  ///< by entry; null for one that cannot be made
    std::vector<std::string> path;         ///< entries of the assemblies that are being made
    std::size_t nodes = 0;
    CadModel model;
};

}  // namespace vrn::host
