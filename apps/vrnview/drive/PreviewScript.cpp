#include "apps/vrnview/drive/PreviewScript.h"

namespace vrn::host {

namespace {

using drive::PreviewAction;
using drive::Remove;

struct Kind {
    std::string_view name;
    PreviewAction (*read)(LineFields&);
};

constexpr rob::ColorTemplate<float> pointColour{1, 0.5f, 0};

// The braces read the keys from left to right.
constexpr Kind kinds[] = {
    {"edges",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewEdges{f.text("object"), f.ordinals("edges")};
     }},
    {"wire",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewWire{f.text("object"), f.ordinal("face")};
     }},
    {"faces",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewFaces{f.text("object"), f.ordinals("faces")};
     }},
    {"points",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewPoints{f.text("object"), f.positions("points", 1),
                                     f.colourIfAny("colour").value_or(pointColour)};
     }},
    {"targets",
     [](LineFields& f) -> PreviewAction { return drive::PreviewTargets{f.poses("poses")}; }},
    {"joint",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewJoint{f.position("from"), f.position("to")};
     }},
    {"frame",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewFrame{f.ordinal("key"), f.pose("pose"),
                                    f.flagOr("dashed", /*absent=*/false)};
     }},
    {"copy",
     [](LineFields& f) -> PreviewAction {
         return drive::PreviewCopy{f.text("object"), f.pose("pose")};
     }},
};

PreviewAction ReadPreview(LineFields& f) {
    std::vector<std::string_view> names;
    for (const Kind& kind : kinds) names.push_back(kind.name);
    return kinds[f.choice("what", names)].read(f);
}

PreviewAction ReadRemove(LineFields& f) {
    Remove remove{
        static_cast<Remove::What>(f.choice("what", {"curves", "points", "faces", "joint", "frame",
                                                    "copy", "measures", "uv", "polylines"}))};
    if (remove.what == Remove::What::Frame) remove.key = f.ordinal("key");
    return remove;
}

constexpr Verb<PreviewAction> verbs[] = {{"preview", ReadPreview}, {"remove", ReadRemove}};

}  // namespace

std::span<const Verb<PreviewAction>> PreviewVerbs() { return verbs; }

}  // namespace vrn::host
