#include "apps/vrnview/drive/HandleDrive.h"

#include <numbers>
#include <stdexcept>

#include "apps/vrnview/PickJson.h"
#include "selection/VisualSelection.h"
#include "view/Camera.h"
#include "visual/geometry/MeshVisual.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using selection::VisualSelection;
using visual::DragHandle;
using HandleType = DragHandle::HandleType;
using PoseF = rob::PoseTemplate<float>;
using Vec = rob::Vec3Template<float>;

constexpr double degree = std::numbers::pi / 180;
constexpr std::string_view partNames[] = {"x", "y", "z", "roll", "pitch", "yaw"};

bool IsRing(HandleType part) { return part >= HandleType::Roll; }

/// Of an arrow or a ring, in the frame of the handle.
Vec AxisOf(HandleType part) {
    switch (static_cast<int>(part) % 3) {
        case 0:
            return {1, 0, 0};
        case 1:
            return {0, 1, 0};
        default:
            return {0, 0, 1};
    }
}

/// What is not shown cannot be grabbed, nor does it lie in the way of other picks.
void EnableShownParts(bool any) {
    for (visual::Visual* part : DragHandle::Get()->getChildren())
        VisualSelection::Get()->setObjectEnabled(part, any && part->visible);
}

SightLine SightLineAt(const Pixel& at) {
    rob::PosTemplate<float> origin;
    Vec direction;
    visual::Camera::Get()->cameraToViewportRay(at.x, at.y, origin, direction);
    return {rob::PosTemplate<double>(origin), rob::Vec3Template<double>(direction)};
}

}  // namespace

Json HandleDrive::perform(const drive::HandleAction& action) {
    return std::visit([this](const auto& a) { return on(a); }, action);
}

std::uint32_t HandleDrive::requireAttached() const {
    if (!object) throw std::runtime_error("the handle hangs on nothing: attach it first");
    return *object;
}

HandleDrive::Hold& HandleDrive::requireHold() {
    if (!hold) throw std::runtime_error("no part of the handle is grabbed");
    return *hold;
}

Json HandleDrive::poseOfObject() {
    PoseF pose;
    desk.ask([&] { pose = desk.scene.visuals.at(*object)->getWorldPose(); });
    return PoseJson(pose);
}

Json HandleDrive::on(const drive::Attach& a) {
    if (hold) throw std::runtime_error("a part of the handle is grabbed: release it first");
    object = desk.idOf(a.object);
    if (a.size) desk.scene.setHandleScale(*a.size);
    desk.scene.attachGuiTo(DragHandle::Get(), *object, {});
    desk.scene.showDragHandle();
    desk.ask([this] {
        DragHandle::Get()->updateScale();
        EnableShownParts(/*any=*/true);
        desk.measureScene();
        desk.fitClipDistances();
    });
    Json json;
    json["object"] = *object;
    json["pose"] = poseOfObject();
    return json;
}

Json HandleDrive::on(const drive::Detach& /*a*/) {
    const std::uint32_t id = requireAttached();
    if (hold) throw std::runtime_error("a part of the handle is grabbed: release it first");
    desk.scene.detachGui(DragHandle::Get());
    desk.ask([] { EnableShownParts(/*any=*/false); });
    object.reset();
    Json json;
    json["object"] = id;
    return json;
}

Json HandleDrive::on(const drive::HandleState& a) {
    using State = drive::HandleState::State;
    (void)requireAttached();
    if (a.state == State::Show) desk.scene.showDragHandle();
    if (a.state == State::Hide) desk.scene.hideDragHandle();
    if (a.state == State::Reset) {
        desk.scene.resetDragHandle();
        hold.reset();
    }
    bool shown = false;
    desk.ask([&] {
        if (a.state == State::Reset) DragHandle::Get()->setAssistHandleVisible(false);
        EnableShownParts(/*any=*/true);
        shown = DragHandle::Get()->isShown();
    });
    return {{"shown", shown}};
}

HandleDrive::Hold HandleDrive::takeHold(HandleType part, const Pixel& at,
                                        const rob::PosTemplate<float>& grabbed) const {
    using PosD = rob::PosTemplate<double>;
    const PoseF handlePose = DragHandle::Get()->getWorldPose();
    Hold taken{part, at, handlePose, desk.scene.visuals.at(*object)->getWorldPose(), {}};
    if (IsRing(part))
        taken.turn.emplace(PosD(handlePose.position),
                           rob::Vec3Template<double>(handlePose.rotation * AxisOf(part)),
                           PosD(grabbed), SightLineAt(at));
    return taken;
}

Json HandleDrive::on(const drive::Grab& a) {
    (void)requireAttached();
    if (hold) throw std::runtime_error("a part of the handle is grabbed: release it first");
    Json json;
    json["part"] = nullptr;
    desk.ask([&] {
        DragHandle& handle = *DragHandle::Get();
        // Its size on the screen is that of the last picture until then.
        handle.updateScale();
        VisualSelection::Get()->update();
        const selection::Result hit = VisualSelection::Get()->select(a.at.x, a.at.y);
        const HandleType part = handle.getHandleType(hit.visual);
        if (part > HandleType::Yaw) return;
        hold = takeHold(part, a.at, hit.position);
        handle.setMode(part);
        json["part"] = partNames[static_cast<std::size_t>(part)];
        json["position"] = PositionJson(hit.position);
    });
    return json;
}

Json HandleDrive::on(const drive::DragTo& a) {
    Hold& held = requireHold();
    Json json;
    PoseF pose = held.objectPose;
    desk.ask([&] {
        if (held.turn) {
            const double angle = held.turn->follow(SightLineAt(a.to));
            const Vec axis = held.handlePose.rotation * AxisOf(held.part);
            pose.rotation =
                rob::RotationTemplate<float>(static_cast<float>(angle), axis) * pose.rotation;
            json["turned"] = angle / degree;
            return;
        }
        const Vec way = visual::GuiVisual::MouseDisplacement(held.from, a.to, held.handlePose,
                                                             AxisOf(held.part));
        pose.position = pose.position + way;
        json["moved"] = PositionJson({way.x, way.y, way.z});
    });
    desk.scene.setVisualWorldPose(*object, pose);
    desk.ask([this] {
        desk.measureScene();
        desk.fitClipDistances();
    });
    return json;
}

Json HandleDrive::on(const drive::Release& /*a*/) {
    (void)requireHold();
    hold.reset();
    desk.scene.resetDragHandle();
    desk.ask([] {
        DragHandle::Get()->setAssistHandleVisible(false);
        EnableShownParts(/*any=*/true);
    });
    Json json;
    json["object"] = *object;
    json["pose"] = poseOfObject();
    return json;
}

}  // namespace vrn::host
