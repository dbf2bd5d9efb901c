#pragma once

#include "apps/vrnview/Options.h"

namespace vrn::host {

/// Carries out one command: results on standard output, one line for each input that could not be
/// read on standard error. Returns the exit status: 0, or 1 if an input could not be read. Throws
/// what ends the whole command, such as a picture that cannot be written.
[[nodiscard]] int RunCommand(const Options& options);

}  // namespace vrn::host
