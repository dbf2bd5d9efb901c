#pragma once

#include <filesystem>

#include "apps/vrnview/readers/CadModel.h"

namespace vrn::host {

/// Read through OpenCASCADE's document framework, which knows names, structure and colours. Throw
/// std::runtime_error with the reason alone, and what OpenCASCADE throws. Thread: one at a time.
[[nodiscard]] CadModel ReadStepDocument(const std::filesystem::path& file);
/// All bodies that stand on their own become one part: the format knows faces, not parts.
[[nodiscard]] CadModel ReadIgesDocument(const std::filesystem::path& file);

}  // namespace vrn::host
