#pragma once

#include <exception>
#include <string>

namespace vrn::host {

/// What an exception says to a user: the engine's own adds the place in its source to what().
/// Thread: any.
[[nodiscard]] std::string ReasonOf(const std::exception& error);

}  // namespace vrn::host
