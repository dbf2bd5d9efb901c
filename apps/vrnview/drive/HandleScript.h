#pragma once

#include <optional>
#include <span>
#include <string>
#include <variant>

#include "apps/vrnview/drive/LineFields.h"

namespace vrn::host {

namespace drive {

/// Hangs the drag handle on an object, in the object's own frame, and shows it.
struct Attach {
    std::string object;
    std::optional<float> size;  ///< of the handle, 1 for the usual one; else as it was
};
struct Detach {};
struct HandleState {
    enum class State { Show, Hide, Reset };
    State state;
};
/// Presses on a part of the handle.
struct Grab {
    Pixel at;
};
/// Moves or turns the object by the part that was grabbed.
struct DragTo {
    Pixel to;
};
struct Release {};

using HandleAction = std::variant<Attach, Detach, HandleState, Grab, DragTo, Release>;

}  // namespace drive

/// Those of the handle, but for "drag", which the camera has too. Thread: pure.
[[nodiscard]] std::span<const Verb<drive::HandleAction>> HandleVerbs();

}  // namespace vrn::host
