#include "apps/vrnview/Drive.h"

#include <format>
#include <stdexcept>
#include <variant>

#include "apps/vrnview/drive/BandDrive.h"
#include "apps/vrnview/drive/DriveDesk.h"
#include "apps/vrnview/drive/HandleDrive.h"
#include "apps/vrnview/drive/MeasureDrive.h"
#include "apps/vrnview/drive/PaintDrive.h"
#include "apps/vrnview/drive/PreviewDrive.h"
#include "apps/vrnview/Failure.h"
#include "apps/vrnview/Picking.h"
#include "apps/vrnview/PickJson.h"
#include "apps/vrnview/RenderLoop.h"
#include "apps/vrnview/ViewTarget.h"
#include "engine/Scene.h"
#include "view/Camera.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;

/// The one thread that posts.
class Player {
public:
    Player(RenderLoop& renderLoop, DriveStage& driveStage)
        : desk(renderLoop, driveStage),
          handles(desk),
          previews(desk),
          measures(desk),
          paint(desk),
          bands(desk) {}

    void play(const DriveLine& line) {
        Json answer;
        answer["line"] = line.number;
        answer["do"] = line.verb;
        answer.update(
            std::visit([this](const auto& action) { return perform(action); }, line.action));
        desk.stage.answer(LineOf(answer));
    }
    /// Before the first line.
    void start() {
        desk.ask([this] {
            desk.measureScene();
            desk.fitClipDistances();
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
        const Picked picked = desk.pick({a.x, a.y});
        Highlight(picked.result);
        return PickJson(picked.report);
    }
    [[nodiscard]] Json perform(const drive::Click& a) {
        const Picked picked = desk.pick({a.x, a.y});
        Select(picked.result);
        return PickJson(picked.report);
    }
    [[nodiscard]] Json perform(const drive::Box& a) {
        PickedArea area;
        desk.ask([&] { area = PickBox(a.x0, a.y0, a.x1, a.y1); });
        return selectArea(area);
    }
    [[nodiscard]] Json perform(const drive::Lasso& a) {
        PickedArea area;
        desk.ask([&] { area = PickLasso(a.polygon); });
        return selectArea(area);
    }
    [[nodiscard]] Json perform(const drive::Select& a) {
        const std::vector<std::uint32_t> ids = desk.idsOf(a.objects, &Viewer::idOf);
        Select(ids, {});
        return objectsJson(ids);
    }
    [[nodiscard]] Json perform(const drive::Show& a) {
        const std::vector<std::uint32_t> ids = desk.idsOf(a.objects, &Viewer::switchOf);
        for (const std::uint32_t id : ids) desk.scene.setVisualVisible(id, a.show);
        return objectsJson(ids);
    }
    [[nodiscard]] Json perform(const drive::Mode& a) {
        desk.scene.setDisplayMode(a.mode);
        desk.wait();
        return {{"mode", DisplayModeNames().at(static_cast<std::size_t>(a.mode))}};
    }
    [[nodiscard]] Json perform(const drive::TakePicture& a) {
        const std::filesystem::path file = desk.stage.folder / (a.name + ".png");
        headless::Picture picture;
        desk.ask([&] { picture = desk.stage.view.takePicture(); });
        picture.savePng(file);
        return {{"file", file.string()}};
    }

    [[nodiscard]] Json perform(const drive::HandleAction& a) { return handles.perform(a); }
    [[nodiscard]] Json perform(const drive::PreviewAction& a) { return previews.perform(a); }
    [[nodiscard]] Json perform(const drive::MeasureAction& a) { return measures.perform(a); }
    [[nodiscard]] Json perform(const drive::PaintAction& a) { return paint.perform(a); }
    [[nodiscard]] Json perform(const drive::BandAction& a) { return bands.perform(a); }

    [[nodiscard]] static Json selectArea(const PickedArea& area) {
        Select(area.ids, area.points);
        return AreaJson(area.report);
    }
    /// What was posted before has been done when the answer is given.
    [[nodiscard]] Json objectsJson(const std::vector<std::uint32_t>& ids) {
        desk.wait();
        Json json;
        json["objects"] = ids;
        return json;
    }
    [[nodiscard]] Json cameraPlace() {
        rob::PosTemplate<float> position;
        rob::RotationTemplate<float> rotation;
        desk.ask([&] {
            position = camera.getWorldPosition();
            rotation = camera.getWorldRotation();
            desk.fitClipDistances();
        });
        Json json;
        json["camera"]["position"] = PositionJson(position);
        json["camera"]["rotation"] = Json::array({NumberJson(rotation.w), NumberJson(rotation.x),
                                                  NumberJson(rotation.y), NumberJson(rotation.z)});
        return json;
    }

    DriveDesk desk;
    HandleDrive handles;
    PreviewDrive previews;
    MeasureDrive measures;
    PaintDrive paint;
    BandDrive bands;
    visual::Camera& camera = *visual::Camera::Get();
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
