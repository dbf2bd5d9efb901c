#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>

namespace vrn::examples {

/// A part of an example station, posed where it stands. Millimetres, Z up.
struct ExamplePart {
    std::string name;
    std::string colour;  ///< "#RRGGBB"
    TopoDS_Shape shape;
};

/// A file that was written for a part.
struct ExampleFile {
    std::filesystem::path file;
    std::string colour;
};

/// A machine table with T-slots on its bed, and on it a clamped angle plate, a turned shaft in
/// V-blocks, a gear and a bored housing.
[[nodiscard]] std::vector<ExamplePart> MakeWorkshop();

/// Writes each part of MakeWorkshop as "<name>.stl" (binary) into `folder`, which is made if it is
/// missing. Throws std::runtime_error or std::filesystem::filesystem_error if that fails.
std::vector<ExampleFile> WriteWorkshop(const std::filesystem::path& folder);

}  // namespace vrn::examples
