#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>

#include "apps/vrnview/drive/DriveDesk.h"
#include "apps/vrnview/drive/HandleScript.h"
#include "apps/vrnview/drive/RingTurn.h"
#include "visual/handle/DragHandle.h"

namespace vrn::host {

/// Moves and turns objects by the drag handle, as a person with a mouse does. Thread: the posting
/// one.
class HandleDrive {
public:
    explicit HandleDrive(DriveDesk& driveDesk) : desk(driveDesk) {}

    /// The answer, without number and verb. Throws std::runtime_error for what cannot be done now,
    /// such as a drag of nothing.
    [[nodiscard]] nlohmann::ordered_json perform(const drive::HandleAction& action);

private:
    using Json = nlohmann::ordered_json;
    using HandleType = visual::DragHandle::HandleType;

    /// A part that is held, and how everything stood when it was grabbed.
    struct Hold {
        HandleType part;
        Pixel from;
        rob::PoseTemplate<float> handlePose, objectPose;  ///< in the world
        std::optional<RingTurn> turn;                     ///< of a ring
    };

    [[nodiscard]] Json on(const drive::Attach& a);
    [[nodiscard]] Json on(const drive::Detach& a);
    [[nodiscard]] Json on(const drive::HandleState& a);
    [[nodiscard]] Json on(const drive::Grab& a);
    [[nodiscard]] Json on(const drive::DragTo& a);
    [[nodiscard]] Json on(const drive::Release& a);

    [[nodiscard]] std::uint32_t requireAttached() const;
    Hold& requireHold();
    /// Thread: render.
    [[nodiscard]] Hold takeHold(HandleType part, const Pixel& at,
                                const rob::PosTemplate<float>& grabbed) const;
    [[nodiscard]] Json poseOfObject();

    DriveDesk& desk;
    std::optional<std::uint32_t> object;  ///< that the handle hangs on
    std::optional<Hold> hold;
};

}  // namespace vrn::host
