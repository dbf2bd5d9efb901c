#pragma once

#include <filesystem>
#include <string>

namespace vrn::host {

/// The URI under which the library reads `file`: its absolute path.
[[nodiscard]] std::string GeometryUri(const std::filesystem::path& file);

/// What is put behind the URI of geometry whose numbers stood for `unitMm` millimetres each, so
/// that it shares no mesh with the same file in another unit; empty for 1. Thread: pure.
[[nodiscard]] std::string UnitSuffix(double unitMm);

}  // namespace vrn::host
