#include "apps/vrnview/readers/CadDocument.h"

#include <IFSelect_ReturnStatus.hxx>
#include <IGESCAFControl_Reader.hxx>
#include <Interface_Check.hxx>
#include <Interface_CheckIterator.hxx>
#include <Message_ProgressRange.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TDocStd_Document.hxx>
#include <UnitsMethods_LengthUnit.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_WorkSession.hxx>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "apps/vrnview/readers/CadLabels.h"
#include "apps/vrnview/readers/FileBytes.h"
#include "apps/vrnview/readers/GeometryUri.h"
#include "apps/vrnview/readers/Probe.h"

namespace vrn::host {

namespace {

/// An empty document in millimetres, closed at the end.
class Document {
public:
    Document() {
        // What has no name would be called by its kind of shape, or by where it stands.
        XCAFDoc_ShapeTool::SetAutoNaming(false);
        XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
        XCAFDoc_DocumentTool::SetLengthUnit(document, 1.0, UnitsMethods_LengthUnit_Millimeter);
    }
    ~Document() {
        // Layers and tolerances point at each other and would outlive the document.
        document->Main().Root().ForgetAllAttributes(/*clearChildren=*/true);
        XCAFApp_Application::GetApplication()->Close(document);
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    opencascade::handle<TDocStd_Document> document;
};

/// The reader mends what it can of a cut file and shows half of it, without a word.
void RequireWholeStep(const std::filesystem::path& file) {
    const std::string bytes = ReadBytes(file);
    if (bytes.find("ISO-10303-21;") == std::string::npos)
        throw std::runtime_error("not a STEP file");
    if (bytes.rfind("END-ISO-10303-21") == std::string::npos)
        throw std::runtime_error("the file ends too early");
}

/// Lines of 80 columns, of which the 73rd tells the section: S, G, D, P and T, in this order.
void RequireWholeIges(const std::filesystem::path& file) {
    constexpr std::size_t sectionColumn = 72;
    std::ifstream in(file);
    std::string line, sections;
    while (std::getline(in, line)) {
        if (line.size() <= sectionColumn) continue;
        const char section = line[sectionColumn];
        if (sections.empty() || sections.back() != section) sections += section;
        if (sections != std::string_view("SGDPT").substr(0, sections.size()))
            throw std::runtime_error("not an IGES file");
    }
    if (sections.empty()) throw std::runtime_error("not an IGES file");
    if (sections != "SGDPT") throw std::runtime_error("the file ends too early");
}

/// What is wrong with a file as the reader's own checks tell it.
struct Faults {
    std::string syntax;        ///< the first of those that make the whole file unreliable
    bool areThereAny = false;  ///< some are common in files that read well all the same
};

Faults FaultsOf(XSControl_WorkSession& work) {
    Faults faults;
    Interface_CheckIterator checks = work.ModelCheckList(/*complete=*/true);
    for (checks.Start(); checks.More(); checks.Next())
        for (int i = 1; i <= checks.Value()->NbFails(); ++i) {
            faults.areThereAny = true;
            const std::string_view text = checks.Value()->CFail(i);
            constexpr std::string_view parsing = "Undefined Parsing: ";
            const bool isReference = text.starts_with("Unresolved Reference");
            if (faults.syntax.empty() && (isReference || text.starts_with(parsing)))
                faults.syntax = text.substr(isReference ? 0 : parsing.size());
        }
    return faults;
}

template <class Reader>
void Transfer(Reader& reader, const opencascade::handle<XSControl_WorkSession>& work,
              const std::filesystem::path& file, Document& target) {
    reader.SetNameMode(true);
    reader.SetColorMode(true);
    reader.SetLayerMode(true);
    if (reader.ReadFile(file.c_str()) != IFSelect_RetDone)
        throw std::runtime_error("the file is broken");
    const Faults faults = FaultsOf(*work);
    if (!faults.syntax.empty()) throw std::runtime_error("the file is broken: " + faults.syntax);
    if (faults.areThereAny &&
        !Survives([&] { (void)reader.Transfer(target.document); }, ProbeSeconds(file)))
        throw std::runtime_error("the file is broken: its entities do not fit together");
    if (!reader.Transfer(target.document))
        throw std::runtime_error("the file holds no shape that can be taken over");
}

CadModel Checked(CadModel model) {
    if (!model.roots.empty()) return model;
    throw std::runtime_error(model.problems.empty() ? "the file holds no shape"
                                                    : model.problems.front());
}

}  // namespace

CadModel ReadStepDocument(const std::filesystem::path& file) {
    RequireWholeStep(file);
    Document document;
    STEPCAFControl_Reader reader;
    Transfer(reader, reader.Reader().WS(), file, document);
    CadLabels labels(*document.document, GeometryUri(file), file.stem().string());
    return Checked(labels.readTree());
}

CadModel ReadIgesDocument(const std::filesystem::path& file) {
    RequireWholeIges(file);
    Document document;
    IGESCAFControl_Reader reader;
    Transfer(reader, reader.WS(), file, document);
    CadLabels labels(*document.document, GeometryUri(file), file.stem().string());
    return Checked(labels.readAsOnePart());
}

}  // namespace vrn::host
