#pragma once

#include <filesystem>
#include <functional>

namespace vrn::host {

/// Runs `work` in a copy of the process and tells whether it came through: true also when it
/// throws, false when it crashes or computes for more than `seconds`.
///
/// For OpenCASCADE's readers, which follow references that lead nowhere in a spoilt file and so
/// end the process, or read on without end. `work` must not use threads: the copy has none but this
/// one. Throws std::system_error if there can be no copy.
[[nodiscard]] bool Survives(const std::function<void()>& work, unsigned seconds);

/// Enough for the slowest reader and a sound file of that size. Thread: any.
[[nodiscard]] unsigned ProbeSeconds(const std::filesystem::path& file);

}  // namespace vrn::host
