#include "apps/vrnview/drive/HandleScript.h"

namespace vrn::host {

namespace {

using drive::HandleAction;

constexpr Verb<HandleAction> verbs[] = {
    {"attach",
     [](LineFields& f) -> HandleAction {
         // What the library takes; it passes over what lies outside.
         return drive::Attach{f.text("object"), f.numberIfAny("size", 0.5f, 10)};
     }},
    {"detach", [](LineFields&) -> HandleAction { return drive::Detach{}; }},
    {"handle",
     [](LineFields& f) -> HandleAction {
         return drive::HandleState{
             static_cast<drive::HandleState::State>(f.choice("state", {"show", "hide", "reset"}))};
     }},
    {"grab", [](LineFields& f) -> HandleAction { return drive::Grab{f.pixel()}; }},
    {"release", [](LineFields&) -> HandleAction { return drive::Release{}; }},
};

}  // namespace

std::span<const Verb<HandleAction>> HandleVerbs() { return verbs; }

}  // namespace vrn::host
