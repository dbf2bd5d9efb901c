#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "apps/vrnview/drive/DriveDesk.h"
#include "apps/vrnview/drive/PaintScript.h"

namespace vrn::host {

/// Paints objects with guns that the script brings. Thread: the posting one.
class PaintDrive {
public:
    explicit PaintDrive(DriveDesk& driveDesk) : desk(driveDesk) {}

    /// The answer, without number and verb. Throws std::runtime_error for what is not there.
    [[nodiscard]] nlohmann::ordered_json perform(const drive::PaintAction& action);

private:
    using Json = nlohmann::ordered_json;

    struct Gun {
        std::uint32_t id = 0;
        drive::MakeGun made;
        std::set<std::uint32_t> targets;  ///< that it paints on
    };

    [[nodiscard]] Json on(const drive::MakeGun& a);
    [[nodiscard]] Json on(const drive::Paint& a);
    [[nodiscard]] Json on(const drive::PaintEnd& a);
    [[nodiscard]] Json on(const drive::Spray& a);
    [[nodiscard]] Json on(const drive::PaintColour& a);
    [[nodiscard]] Json on(const drive::PaintReset& a);

    [[nodiscard]] Gun& gunOf(const std::string& name);
    /// How much of these objects can be and is painted.
    [[nodiscard]] Json coverJson(const std::set<std::uint32_t>& objects);

    DriveDesk& desk;
    std::map<std::string, Gun> guns;  ///< by name
};

}  // namespace vrn::host
