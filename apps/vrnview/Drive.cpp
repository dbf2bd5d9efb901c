#include "apps/vrnview/Drive.h"

#include <algorithm>
#include <cmath>
#include <format>
#include <optional>
#include <stdexcept>
#include <variant>

#include "apps/vrnview/Bounds.h"
#include "apps/vrnview/Failure.h"
#include "apps/vrnview/Framing.h"
#include "apps/vrnview/Picking.h"
#include "apps/vrnview/PickJson.h"
#include "apps/vrnview/RenderLoop.h"
#include "apps/vrnview/SceneReport.h"
#include "apps/vrnview/ViewTarget.h"
#include "engine/Scene.h"
#include "view/Camera.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using Pos = rob::PosTemplate<double>;

/// 0 inside.
double DistanceTo(const Bounds& box, const Pos& point) {
    const auto outside = [](double low, double value, double high) {
        return std::max({low - value, 0.0, value - high});
    };
    const Pos &low = box.getMin(), &high = box.getMax();
    return std::hypot(outside(low.x, point.x, high.x), outside(low.y, point.y, high.y),
                      outside(low.z, point.z, high.z));
}

double FarthestOf(const Bounds& box, const Pos& point) {
    double farthest = 0;
    for (const Pos& corner : CornersOf(box))
        farthest = std::max(farthest, (corner - point).length());
    return farthest;
}

/// The one thread that posts.
class Player {
public:
    Player(RenderLoop& renderLoop, DriveStage& driveStage)
        : loop(renderLoop), stage(driveStage), scene(*visual::Scene::Get()) {}

    void play(const DriveLine& line) {
        Json answer;
        answer["line"] = line.number;
        answer["do"] = line.verb;
        answer.update(
            std::visit([this](const auto& action) { return perform(action); }, line.action));
        stage.answer(LineOf(answer));
    }
    /// Before the first line.
    void start() {
        loop.ask([this] {
            bounds = stage.viewer.report().bounds;
            fitClipDistances();
        });
    }

private:
    [[nodiscard]] Json perform(const drive::Press& a) {
        camera.startRotating(a.x, a.y);
        return cameraPlace();
    }
    [[nodiscard]] Json perform(const drive::Drag& a) {
        camera.rotateScene(a.dx, a.dy);
        return cameraPlace();
    }
    [[nodiscard]] Json perform(const drive::Pan& a) {
        camera.translateScene(a.x, a.y, a.dx, a.dy);
        return cameraPlace();
    }
    [[nodiscard]] Json perform(const drive::Wheel& a) {
        camera.zoom(a.x, a.y, /*a=*/0, a.delta);
        return cameraPlace();
    }
    [[nodiscard]] Json perform(const drive::Hover& a) {
        const Picked picked = pick(a.x, a.y);
        Highlight(picked.result);
        return PickJson(picked.report);
    }
    [[nodiscard]] Json perform(const drive::Click& a) {
        const Picked picked = pick(a.x, a.y);
        Select(picked.result);
        return PickJson(picked.report);
    }
    [[nodiscard]] Json perform(const drive::Box& a) {
        PickedArea area;
        loop.ask([&] { area = PickBox(a.x0, a.y0, a.x1, a.y1); });
        return selectArea(area);
    }
    [[nodiscard]] Json perform(const drive::Lasso& a) {
        PickedArea area;
        loop.ask([&] { area = PickLasso(a.polygon); });
        return selectArea(area);
    }
    [[nodiscard]] Json perform(const drive::Select& a) {
        const std::vector<std::uint32_t> ids = idsOf(a.objects, &Viewer::idOf);
        Select(ids, {});
        return objectsJson(ids);
    }
    [[nodiscard]] Json perform(const drive::Show& a) {
        const std::vector<std::uint32_t> ids = idsOf(a.objects, &Viewer::switchOf);
        for (const std::uint32_t id : ids) scene.setVisualVisible(id, a.show);
        return objectsJson(ids);
    }
    [[nodiscard]] Json perform(const drive::Mode& a) {
        scene.setDisplayMode(a.mode);
        loop.ask([] {});
        return {{"mode", DisplayModeNames().at(static_cast<std::size_t>(a.mode))}};
    }
    [[nodiscard]] Json perform(const drive::TakePicture& a) {
        const std::filesystem::path file = stage.folder / (a.name + ".png");
        headless::Picture picture;
        loop.ask([&] { picture = stage.view.takePicture(); });
        picture.savePng(file);
        return {{"file", file.string()}};
    }

    [[nodiscard]] Picked pick(float x, float y) {
        Picked picked;
        loop.ask([&] { picked = PickAt(x, y); });
        return picked;
    }
    [[nodiscard]] static Json selectArea(const PickedArea& area) {
        Select(area.ids, area.points);
        return AreaJson(area.report);
    }
    using LookUp = std::optional<std::uint32_t> (Viewer::*)(const std::string& name) const;

    [[nodiscard]] std::vector<std::uint32_t> idsOf(const std::vector<std::string>& names,
                                                   LookUp lookUp) {
        std::vector<std::uint32_t> ids;
        loop.ask([&] {
            for (const std::string& name : names) {
                const std::optional<std::uint32_t> id = (stage.viewer.*lookUp)(name);
                if (!id)
                    throw std::runtime_error(
                        std::format("no input has an object of the name \"{}\"", name));
                ids.push_back(*id);
            }
        });
        return ids;
    }
    /// What was posted before has been done when the answer is given.
    [[nodiscard]] Json objectsJson(const std::vector<std::uint32_t>& ids) {
        loop.ask([] {});
        Json json;
        json["objects"] = ids;
        return json;
    }
    [[nodiscard]] Json cameraPlace() {
        rob::PosTemplate<float> position;
        rob::RotationTemplate<float> rotation;
        loop.ask([&] {
            position = camera.getWorldPosition();
            rotation = camera.getWorldRotation();
            fitClipDistances();
        });
        Json json;
        json["camera"]["position"] = PositionJson(position);
        json["camera"]["rotation"] = Json::array({NumberJson(rotation.w), NumberJson(rotation.x),
                                                  NumberJson(rotation.y), NumberJson(rotation.z)});
        return json;
    }
    /// Wherever the camera went, nothing of the scene is cut off, nor missed by picks, which start
    /// at the near plane. Thread: render.
    void fitClipDistances() const {
        const Pos eye(camera.getWorldPosition());
        // As many orders of magnitude as the depth buffer tells apart.
        constexpr double depthRange = 1e5;
        const double farthest = 1.1 * std::max({FarthestOf(bounds, eye),
                                                FarthestOf(Viewer::furnitureBounds(), eye), 1.0});
        const double nearest = bounds.isEmpty() ? 0 : DistanceTo(bounds, eye) / 2;
        camera.setClipDist(static_cast<float>(std::max(nearest, farthest / depthRange)),
                           static_cast<float>(farthest));
    }

    RenderLoop& loop;
    DriveStage& stage;
    visual::Scene& scene;
    visual::Camera& camera = *visual::Camera::Get();
    Bounds bounds;  ///< of the scene
};

}  // namespace

void Drive(const std::vector<DriveLine>& lines, const std::string& script, DriveStage& stage) {
    RenderLoop loop;
    loop.runBeside([&] {
        Player player(loop, stage);
        player.start();
        for (const DriveLine& line : lines) {
            try {
                player.play(line);
            } catch (const std::exception& error) {
                throw std::runtime_error(
                    std::format("{}:{}: {}", script, line.number, ReasonOf(error)));
            }
        }
    });
}

}  // namespace vrn::host
