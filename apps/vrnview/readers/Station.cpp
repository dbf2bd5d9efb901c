#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>

#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/readers/StationReader.h"

namespace vrn::host {

Content ReadStation(std::string_view text, const std::filesystem::path& file) {
    nlohmann::json station;
    try {
        station = nlohmann::json::parse(text.begin(), text.end());
    } catch (const nlohmann::json::exception& error) {
        // Its own messages start with a name and number of theirs in brackets.
        const std::string message = error.what();
        const std::size_t end = message.find("] ");
        throw std::runtime_error("not JSON: " +
                                 (end == std::string::npos ? message : message.substr(end + 2)));
    }
    return StationReader(file).read(station);
}

}  // namespace vrn::host
