#pragma once

#include <string>

#include "apps/vrnview/SceneReport.h"

namespace vrn::host {

/// For people: the inputs, the tree of visuals with kind, name and id, totals and bounds. Ends with
/// a line end. Thread: pure.
[[nodiscard]] std::string TextOf(const SceneReport& report);

/// For programs, one line with its line end:
///
///     {"inputs":[{"file":"a.stl","ok":true,"error":null,"problems":[],"ms":1.5,"bodies":1,"faces":1,"triangles":12,
///                 "vertices":36,"points":0}],
///      "totals":{"bodies":1,"faces":1,"triangles":12,"vertices":36,"points":0},
///      "bounds":{"min":[0,0,0],"max":[1,1,1]},
///      "visuals":[{"id":3,"type":9,"name":"a_3","children":[]}]}
///
/// "error" is null for an input that was read, "problems" are lines about what of it was left out,
/// "bounds" is null for a scene without geometry, "type" is the number of the visual's kind. Bytes
/// of a file name that are not UTF-8 become U+FFFD. Thread: pure.
[[nodiscard]] std::string JsonOf(const SceneReport& report);

/// "8 parts, ..." in one line, without a line end. Thread: pure.
[[nodiscard]] std::string CountsLine(const Counts& counts);

/// The lines for standard error about an input: why it was not read, or what of it was left out.
/// Control characters are made visible, so that each stays one line; with their line ends. Empty
/// for an input that is whole. Thread: pure.
[[nodiscard]] std::string ErrorLines(const InputReport& input);

/// The name of a VisualType; its number for one that is not known. Thread: pure.
[[nodiscard]] std::string KindOf(std::int32_t type);

}  // namespace vrn::host
