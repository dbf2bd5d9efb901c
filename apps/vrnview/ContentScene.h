#pragma once

#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/SceneReport.h"

namespace vrn::host {

/// Shows what a file holds: its meshes go to the library, its objects to layout::Layout and to the
/// scene, then its attachments and what it hides. The content must live as long as it is shown.
///
/// An object that the library refuses costs a line in the content's problems and is taken out
/// again; the others are shown. Throws std::runtime_error with the first of these lines if nothing
/// else is left to show. Returns what is shown. Thread: render.
Counts ShowContent(Content& content);

}  // namespace vrn::host
