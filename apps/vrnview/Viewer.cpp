#include "apps/vrnview/Viewer.h"

#include <OgreRenderWindow.h>
#include <OgreRoot.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <exception>
#include <format>
#include <numbers>
#include <stdexcept>

#include "apps/vrnview/ContentScene.h"
#include "apps/vrnview/Failure.h"
#include "apps/vrnview/readers/Words.h"
#include "apps/vrnview/StandardOutput.h"
#include "apps/vrnview/ViewTarget.h"
#include "engine/RenderEngine.h"
#include "engine/Scene.h"
#include "engine/SceneSettings.h"
#include "engine/visualapi.h"
#include "selection/VisualSelection.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/layout/Body.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/sdf/SdfManager.h"
#include "suite/sdf/SdfNode.h"
#include "suite/task/Operation.h"
#include "view/Camera.h"
#include "visual/Visual.h"

namespace vrn::host {

namespace {

/// The window that the engine starts with; pictures are taken offscreen, so it stays small and
/// unseen.
constexpr int windowWidth = 320, windowHeight = 240;

/// Half the side of the library's grid: 20 cells of 1000 in the plane z = 0.
constexpr double gridHalf = 10'000;

void Paint(const Content& content, const std::string& colour) {
    for (const layout::Part* part : content.parts)
        for (const layout::Body* body : part->bodies())
            geometry::BodyColorTool::SetBodyColor(body->element, colour);
}

}  // namespace

Viewer::Viewer() {
    const StandardOutputAside aside;
    selection::Init();
    visual::SceneSettings settings;
    settings.drawTargetVisual = true;
    settings.drawPathArrow = true;
    visual::Init(windowWidth, windowHeight, settings);
    // A frame is for the picture alone; drawing the empty window as well would only cost time.
    visual::gRenderEngine->root->getRenderTarget("ogrewindow")->setAutoUpdated(false);
}

Viewer::~Viewer() { visual::ReleaseResources(); }

InputReport Viewer::open(const InputFile& input) {
    InputReport report;
    report.file = input.file.string();
    const auto start = std::chrono::steady_clock::now();
    try {
        CheckInput(input.file);
        Content content = ReadContent(input.file);
        if (input.colour) Paint(content, *input.colour);
        poseJoints(content);
        report.counts = ShowContent(content);
        report.problems = content.problems;
        contents.push_back(std::move(content));
    } catch (const std::exception& error) {
        report.error = ReasonOf(error);
    }
    report.ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    return report;
}

void Viewer::poseJoints(Content& content) {
    constexpr double degree = std::numbers::pi / 180;
    for (JointedObject& jointed : content.jointed) {
        for (const JointValue& wanted : joints) {
            const auto& known = jointed.kinematics.getJoints();
            const auto joint = std::ranges::find(known, wanted.joint, &Joint::name);
            if (joint == known.end()) continue;
            usedJoints.insert(wanted.joint);
            const double unit = joint->kind == Joint::Kind::Turning ? degree : 1;
            try {
                jointed.kinematics.setValue(wanted.joint, wanted.value * unit);
            } catch (const std::runtime_error& error) {
                content.problems.push_back(
                    std::format("{} = {}: {}", wanted.joint, wanted.value, error.what()));
            }
        }
        jointed.poseLinks();
    }
}

std::vector<std::string> Viewer::unknownJoints() const {
    std::vector<std::string> unknown;
    for (const JointValue& wanted : joints)
        if (!usedJoints.contains(wanted.joint)) unknown.push_back(wanted.joint);
    return unknown;
}

std::optional<std::uint32_t> Viewer::idOf(const std::string& name) const {
    const auto& visuals = visual::Scene::Get()->visuals;
    for (const Content& content : contents)
        if (const auto found = content.ids.find(name); found != content.ids.end())
            if (visuals.contains(found->second)) return found->second;
    if (const auto number = CountOf(name); number && *number <= UINT32_MAX)
        if (const auto id = static_cast<std::uint32_t>(*number); visuals.contains(id)) return id;
    // The oldest of that name: an object's own, then as reports print it.
    std::optional<std::uint32_t> object, printed;
    for (const auto& [id, visual] : visuals) {
        const sdf::SdfNode* model = sdf::SdfManager::inst()->find(id);
        if (model != nullptr && model->name == name) object = std::min(object.value_or(id), id);
        if (visual->getName() == name) printed = std::min(printed.value_or(id), id);
    }
    return object ? object : printed;
}

std::optional<std::uint32_t> Viewer::switchOf(const std::string& name) const {
    if (const auto id = idOf(name)) return id;
    const auto isOperation = [](const sdf::SdfNode* object) {
        return dynamic_cast<const task::Operation*>(object) != nullptr;
    };
    for (const Content& content : contents) {
        const auto found = content.ids.find(name);
        if (found != content.ids.end() && isOperation(sdf::SdfManager::inst()->find(found->second)))
            return found->second;
        for (const task::Operation* operation : content.operations) {
            if (operation->name == name) return operation->id;
            for (const sdf::SdfObject* child : operation->getChildren())
                if (child->name == name && isOperation(child)) return child->id;
        }
    }
    return std::nullopt;
}

/// The mode first: it makes all bodies visible.
void Viewer::apply(const Looks& looks) const {
    visual::Scene& scene = *visual::Scene::Get();
    scene.setDisplayMode(looks.mode);
    for (const Content& content : contents)
        for (const std::uint32_t id : content.hidden) scene.setVisualVisible(id, false);
    for (const std::string& name : looks.hide)
        if (const auto id = switchOf(name)) scene.setVisualVisible(*id, false);
    std::vector<std::uint32_t> selected;
    for (const std::string& name : looks.select)
        if (const auto id = idOf(name)) selected.push_back(*id);
    if (!selected.empty()) scene.setVisualsSelected(selected);
    for (const std::string& name : looks.highlight)
        if (const auto id = idOf(name)) scene.setVisualHighlighted(*id);
    scene.processMsgs();
    selection::VisualSelection::Get()->update();
}

CameraPlacement Viewer::placeCamera(const Looks& looks, double aspect) const {
    const std::vector<rob::PosTemplate<double>> outline = OutlineOf(*visual::Scene::Get()->root);
    std::optional<CameraSpot> spot = looks.camera;
    if (!spot && !looks.view)
        for (const Content& content : contents)
            if (!spot) spot = content.camera;
    const FieldOfView fov{visual::Camera::Get()->getHFOV(), aspect};
    const CameraPlacement placement =
        spot ? LookFrom(*spot, outline, furnitureBounds())
             : FramePoints(outline, furnitureBounds(), looks.view.value_or(StandardView::Iso), fov);
    return looks.foundView ? findCamera(*looks.foundView, placement, outline) : placement;
}

CameraPlacement Viewer::findCamera(const FoundView& view, const CameraPlacement& otherwise,
                                   const std::vector<rob::PosTemplate<double>>& outline) const {
    visual::Camera& camera = *visual::Camera::Get();
    const visual::Scene& scene = *visual::Scene::Get();
    // The library starts from where the camera looks now.
    camera.setWorldPosition(rob::PosTemplate<float>(otherwise.pose.position));
    camera.setWorldRotation(rob::RotationTemplate<float>(otherwise.pose.rotation));
    rob::PoseTemplate<float> pose;
    if (const auto* along = std::get_if<ViewAlong>(&view)) {
        pose = scene.getViewPoseForDir(rob::DirTemplate<float>(along->dir));
    } else if (const auto* object = std::get_if<ViewOfObject>(&view)) {
        const auto id = idOf(object->name);
        if (!id) return otherwise;
        pose = scene.getVisualFocusPose(*id);
    } else {
        pose = scene.getViewAllPose();
    }
    const double depth = pose.position.asVec3().length();
    return StandAt(rob::PoseTemplate<double>(pose), depth, outline, furnitureBounds());
}

headless::Picture Viewer::takePicture(int widthPx, int heightPx, const Looks& looks) {
    // Before the looks, for the outline of what is selected needs a viewport.
    ViewTarget target(widthPx, heightPx);
    return takePicture(target, looks);
}

headless::Picture Viewer::takePicture(ViewTarget& target, const Looks& looks) {
    scaleFurniture(BoundsOf(*visual::Scene::Get()->root));
    apply(looks);
    return target.takePicture(placeCamera(looks, target.getAspect()));
}

std::unique_ptr<ViewTarget> Viewer::openView(int widthPx, int heightPx, const Looks& looks) {
    scaleFurniture(BoundsOf(*visual::Scene::Get()->root));
    auto target = std::make_unique<ViewTarget>(widthPx, heightPx);
    apply(looks);
    ViewTarget::place(placeCamera(looks, target->getAspect()));
    return target;
}

Bounds Viewer::furnitureBounds() { return {{-gridHalf, -gridHalf, 0}, {gridHalf, gridHalf, 0}}; }

bool Viewer::hasFrames() const {
    const auto anyHolds = [](const auto& objects) {
        return std::ranges::any_of(objects, [](const auto* o) { return !o->frames().empty(); });
    };
    return std::ranges::any_of(contents, [&](const Content& content) {
        return !content.frames.empty() || anyHolds(content.tools) || anyHolds(content.devices);
    });
}

/// The world frame's axes are a tenth of the scene long; where even the shortest would hide the
/// scene, no frame is shown. All frames have one size: a station's own would cover it at that
/// size, and so would its targets, which stand by the hundred.
void Viewer::scaleFurniture(const Bounds& whole) {
    auto* const scene = visual::Scene::Get();
    const auto size = [&whole](double part) {
        return static_cast<unsigned>(std::clamp(2 * whole.getRadius() * part, 1.0, 1e6));
    };
    if (!whole.isEmpty()) {
        scene->setFrameVisualVisible(whole.getRadius() >= 5);
        scene->setFrameSize(size(hasFrames() ? 0.02 : 0.1), VisualType::Frame);
        scene->setFrameSize(size(0.0025), VisualType::RobTarget);
    }
    scene->processMsgs();
}

SceneReport Viewer::report() const {
    visual::Visual& root = *visual::Scene::Get()->root;
    SceneReport report;
    report.totals = CountsOf(root);
    report.bounds = BoundsOf(root);
    report.visuals = TreeOf(root).children;
    return report;
}

}  // namespace vrn::host
