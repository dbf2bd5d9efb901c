#pragma once

#include <exception>
#include <string>

namespace vrn::host {

/// What an exception says to a user: the engine's own adds the place in its source to what(), and
/// of one of the file system it is "FILE: reason", as everywhere.
/// Thread: any.
[[nodiscard]] std::string ReasonOf(const std::exception& error);

}  // namespace vrn::host
