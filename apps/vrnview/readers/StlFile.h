#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "mesh/Mesh.h"
#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// The name under which the triangles of `file` are shown, its numbers along x, y and z taken for
/// so many millimetres each: the file's URI, and the scale behind it where that is not 1.
[[nodiscard]] std::string StlName(const std::filesystem::path& file,
                                  const rob::Vec3Template<double>& unitMm);

/// Reads the triangles, in millimetres, under that name. Mirroring turns them round, so that they
/// still show their outside. Throws std::runtime_error with the reason alone (no file name),
/// std::length_error for a text of too many triangles. Thread: any.
[[nodiscard]] std::unique_ptr<visual::Mesh> ReadStlFile(const std::filesystem::path& file,
                                                        const rob::Vec3Template<double>& unitMm);

/// A longer reason than the reader's, where the file itself tells one: a binary STL whose size is
/// not what its triangle count asks for. Otherwise `readerMessage`. Throws nothing but
/// std::bad_alloc.
[[nodiscard]] std::string ExplainStlFailure(const std::filesystem::path& file,
                                            const std::string& readerMessage);

}  // namespace vrn::host
