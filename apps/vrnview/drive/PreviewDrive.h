#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <set>

#include "apps/vrnview/drive/DriveDesk.h"
#include "apps/vrnview/drive/PreviewScript.h"

namespace vrn::host {

/// Shows what would be, and takes away what was shown besides the objects. Thread: the posting one.
class PreviewDrive {
public:
    explicit PreviewDrive(DriveDesk& driveDesk) : desk(driveDesk) {}

    /// The answer, without number and verb. Throws std::runtime_error for what is not there.
    [[nodiscard]] nlohmann::ordered_json perform(const drive::PreviewAction& action);

private:
    using Json = nlohmann::ordered_json;

    [[nodiscard]] Json on(const drive::PreviewEdges& a);
    [[nodiscard]] Json on(const drive::PreviewWire& a);
    [[nodiscard]] Json on(const drive::PreviewFaces& a);
    [[nodiscard]] Json on(const drive::PreviewPoints& a);
    [[nodiscard]] Json on(const drive::PreviewTargets& a);
    [[nodiscard]] Json on(const drive::PreviewJoint& a);
    [[nodiscard]] Json on(const drive::PreviewFrame& a);
    [[nodiscard]] Json on(const drive::PreviewCopy& a);
    [[nodiscard]] Json on(const drive::Remove& a);
    void removeFrame(std::uint32_t key);

    DriveDesk& desk;
    std::set<std::uint32_t> frames;  ///< the keys of those that are shown
};

}  // namespace vrn::host
