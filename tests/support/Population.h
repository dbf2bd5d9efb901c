#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace vrn::test {

/// How much there is of everything that a station brings. Thread: render.
std::map<std::string, std::size_t> Population();

}  // namespace vrn::test
