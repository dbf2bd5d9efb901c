#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vrnview/Bounds.h"
#include "apps/vrnview/Drive.h"
#include "apps/vrnview/drive/LineFields.h"
#include "apps/vrnview/Picking.h"
#include "apps/vrnview/RenderLoop.h"
#include "apps/vrnview/Viewer.h"
#include "engine/Scene.h"

class TopoDS_Edge;
class TopoDS_Face;

namespace vrn::visual {
class SolidVisual;
}

namespace vrn::host {

/// What lines of all kinds need while a script is replayed. The look-ups throw std::runtime_error
/// for what is not there. Thread: the posting one, unless said otherwise.
class DriveDesk {
public:
    DriveDesk(RenderLoop& renderLoop, DriveStage& driveStage)
        : stage(driveStage), scene(*visual::Scene::Get()), loop(renderLoop) {}

    /// On the render thread, behind what was posted before.
    void ask(const std::function<void()>& question) { loop.ask(question); }
    /// What was posted before has been done.
    void wait() {
        ask([] {});
    }
    /// The same, where the library takes a direction from places of the script: without a length
    /// between them it throws `reason`, for the library's own text names no key.
    void waitForDirection(std::string_view reason);
    [[nodiscard]] Picked pick(const Pixel& at);
    /// Throws where nothing lies under the pixel.
    [[nodiscard]] Picked pickSomething(const Pixel& at);
    using LookUp = std::optional<std::uint32_t> (Viewer::*)(const std::string& name) const;
    [[nodiscard]] std::vector<std::uint32_t> idsOf(const std::vector<std::string>& names,
                                                   LookUp lookUp = &Viewer::idOf);
    [[nodiscard]] std::uint32_t idOf(const std::string& name);
    /// The solid of the object, or the first one below it. Thread: render.
    [[nodiscard]] visual::SolidVisual& solidOf(const std::string& name) const;

    /// Where the scene reaches to. Thread: render.
    void measureScene();
    /// Wherever the camera went, nothing of the scene is cut off, nor missed by picks, which start
    /// at the near plane. Thread: render.
    void fitClipDistances() const;

    DriveStage& stage;
    visual::Scene& scene;

private:
    RenderLoop& loop;
    Bounds bounds;  ///< of the scene
};

// By their numbers from 1; throw std::runtime_error for one that is not there. Thread: render.
[[nodiscard]] TopoDS_Edge EdgeOf(const visual::SolidVisual& solid, std::uint32_t number);
[[nodiscard]] TopoDS_Face FaceOf(const visual::SolidVisual& solid, std::uint32_t number);

/// {"position": [x, y, z], "quaternion": [w, x, y, z]}, as poses are given. Thread: pure.
[[nodiscard]] nlohmann::ordered_json PoseJson(const rob::PoseTemplate<float>& pose);
/// [x, y, z]. Thread: pure.
[[nodiscard]] nlohmann::ordered_json VectorJson(const rob::Vec3Template<double>& vector);

}  // namespace vrn::host
