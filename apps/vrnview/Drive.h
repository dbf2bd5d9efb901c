#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "apps/vrnview/DriveScript.h"
#include "apps/vrnview/Viewer.h"
#include "suite/sdf/ObjectStore.h"

namespace vrn::host {

/// Where a script is replayed and where its answers go.
struct DriveStage {
    Viewer& viewer;
    ViewTarget& view;              ///< of the viewer
    std::filesystem::path folder;  ///< for the pictures; there
    sdf::ObjectStore& made;        ///< for what the script adds; has to outlive the viewer
    /// Takes each answer, a JSON object in a line with its end, as it comes.
    std::function<void(const std::string&)> answer;
};

/// Replays a script through the operations that any host has: what moves and changes is posted from
/// a thread of its own, while the calling thread runs the tasks and answers. `script` stands in
/// messages. The first line that fails ends the replay: throws std::runtime_error, "SCRIPT:LINE:
/// reason". Thread: render.
void Drive(const std::vector<DriveLine>& lines, const std::string& script, DriveStage& stage);

}  // namespace vrn::host
