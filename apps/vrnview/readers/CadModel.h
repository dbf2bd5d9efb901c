#pragma once

#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/vrnview/readers/Poses.h"

namespace vrn::host {

/// One body of a part: a solid, a shell, or what of a part is neither.
struct CadBody {
    std::string name;
    std::string uri;     ///< the file, a hash sign, and what tells the body from the file's others
    TopoDS_Shape shape;  ///< triangulated, in the part's frame
    std::optional<std::string> colour;                 ///< "#RRGGBB"
    std::map<std::uint32_t, std::string> faceColours;  ///< by index in the shape's face map, from 1
};

/// What the same part placed several times has in common.
struct CadPart {
    std::vector<CadBody> bodies;  ///< at least one
};

/// A part or an assembly at its place.
struct CadNode {
    std::string name;
    Pose pose;                            ///< in the frame of the node that holds it
    std::shared_ptr<const CadPart> part;  ///< null for an assembly
    std::optional<std::string> colour;    ///< of this placement, in place of the bodies' own
    bool hidden = false;
    std::vector<CadNode> children;  ///< of an assembly
};

/// What a file of bodies holds, in millimetres.
struct CadModel {
    std::vector<CadNode> roots;         ///< at least one
    std::vector<std::string> problems;  ///< a line each, for what was left out
};

/// No file of any use holds more parts; one that does places a few ones exponentially often.
inline constexpr std::size_t maxCadNodes = 200'000;

/// Whether ReadCadFile reads files of this extension (lower case, with its dot). Thread: pure.
[[nodiscard]] bool IsCadExtension(const std::string& extension);

/// Reads STEP (.step, .stp), IGES (.iges, .igs) and B-rep (.brep) files, in any case, with names,
/// structure, placements and colours as far as the format has them, and triangulates the shapes.
///
/// STEP and IGES tell their unit, and it is honoured; a B-rep file does not, and its numbers are
/// taken for `unitMm` millimetres each. Throws std::runtime_error with the reason alone (no file
/// name). Thread: one at a time.
[[nodiscard]] CadModel ReadCadFile(const std::filesystem::path& file, double unitMm = 1);

/// Takes a triangulated shape apart into bodies: each solid, each shell, all loose faces together,
/// all loose wires and edges together, each loose vertex. `uri` names the whole; the names of
/// several bodies are numbered. Empty for a shape without any of these. Thread: pure.
[[nodiscard]] std::vector<CadBody> BodiesOf(const TopoDS_Shape& shape, const std::string& name,
                                            const std::string& uri);

}  // namespace vrn::host
