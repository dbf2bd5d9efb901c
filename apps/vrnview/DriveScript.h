#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "apps/vrnview/drive/BandScript.h"
#include "apps/vrnview/drive/HandleScript.h"
#include "apps/vrnview/drive/MeasureScript.h"
#include "apps/vrnview/drive/PaintScript.h"
#include "apps/vrnview/drive/PreviewScript.h"
#include "engine/Scene.h"
#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// What a line of a script asks for. Places and ways are window pixels from the upper left corner.
namespace drive {

struct Press {
    float x, y;
};
struct Drag {
    float dx, dy;
};
struct Pan {
    float x, y, dx, dy;
};
struct Wheel {
    float x, y, delta;
};
struct Hover {
    float x, y;
};
struct Click {
    float x, y;
};
struct Box {
    float x0, y0, x1, y1;
};
struct Lasso {
    std::vector<rob::PosTemplate<float>> polygon;  ///< three corners at least
};
struct Select {
    std::vector<std::string> objects;  ///< none: nothing stays selected
};
struct Show {
    std::vector<std::string> objects;
    bool show;
};
struct Mode {
    visual::Scene::DisplayMode mode;
};
struct TakePicture {
    std::string name;  ///< of a file, without folder and extension
};

using Action =
    std::variant<Press, Drag, Pan, Wheel, Hover, Click, Box, Lasso, Select, Show, Mode, TakePicture,
                 HandleAction, PreviewAction, MeasureAction, PaintAction, BandAction>;

}  // namespace drive

struct DriveLine {
    int number = 0;    ///< of the line in the file, from 1
    std::string verb;  ///< what the line says under "do"
    drive::Action action;
};

/// Reads a script: a JSON object a line; empty lines and those that begin with # are passed over.
/// `name` stands in messages. Throws std::runtime_error, "NAME:LINE: reason", for the first line
/// that is not as it should be. Thread: pure.
[[nodiscard]] std::vector<DriveLine> ParseDriveScript(std::string_view text,
                                                      const std::string& name);
/// The same of a file. Throws std::runtime_error, naming it, if it cannot be read. Thread: any.
[[nodiscard]] std::vector<DriveLine> ReadDriveScript(const std::filesystem::path& file);

}  // namespace vrn::host
