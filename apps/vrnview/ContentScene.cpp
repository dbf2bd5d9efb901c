#include "apps/vrnview/ContentScene.h"

#include <exception>
#include <format>
#include <functional>
#include <stdexcept>

#include "apps/vrnview/Failure.h"
#include "apps/vrnview/readers/OcctGuard.h"
#include "engine/Scene.h"
#include "mesh/MeshManager.h"
#include "suite/layout/Frame.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"
#include "suite/smart/SmartComponent.h"
#include "suite/task/DataItem.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "visual/station/RobtargetVisual.h"
#include "visual/Visual.h"

namespace vrn::host {

namespace {

class Showing {
public:
    explicit Showing(Content& shown) : content(shown) {}

    Counts run() {
        giveMeshes();
        showBodies();
        showMechanisms();
        showTasks();
        for (const layout::Attachment& a : content.attachments) attach(a);
        for (const std::uint32_t id : content.hidden) {
            layout::Layout::inst()->setHidden(id, true);
            scene.setVisualVisible(id, false);
        }
        scene.processMsgs();
        if (shownObjects == 0 && !firstReason.empty()) throw std::runtime_error(firstReason);
        return counts;
    }

private:
    /// A name that is taken is the same file in the same unit: its triangles are shared.
    void giveMeshes() {
        visual::MeshManager& manager = *visual::MeshManager::Get();
        for (auto& mesh : content.meshes) {
            if (!mesh || manager.hasMesh(mesh->name)) continue;
            try {
                manager.addMesh(mesh.get());
                (void)mesh.release();
            } catch (const std::exception& error) {
                leaveOut(mesh->name, error);
            }
        }
        content.meshes.clear();
    }

    /// One object a batch: what its task throws ends the batch and comes out here.
    void show(sdf::SdfNode& object, const std::function<void()>& post) {
        try {
            WithOcctErrors("it cannot be shown", [&] {
                post();
                scene.processMsgs();
            });
            visual::Visual& visual = *scene.visuals.at(object.id);
            // Such a picture could not be framed.
            if (!HasUsableCoordinates(visual))
                throw std::runtime_error("has coordinates beyond 1e15, too large to be shown");
            counts += CountsOf(visual);
            ++shownObjects;
        } catch (const std::exception& error) {
            leaveOut(object.name, error);
            discard(object.id);
        }
    }

    /// An object that could not be finished is in the scene as far as it came.
    void discard(std::uint32_t id) {
        if (!scene.visuals.contains(id)) return;
        scene.removeVisual(id);
        scene.processMsgs();
    }

    void leaveOut(const std::string& what, const std::exception& error) {
        const std::string reason = ReasonOf(error);
        if (firstReason.empty()) firstReason = reason;
        content.problems.push_back(std::format("{}: {}", what, reason));
    }

    void showBodies() {
        layout::Layout& layout = *layout::Layout::inst();
        for (layout::Assembly* assembly : content.assemblies) {
            layout.add(*assembly);
            show(*assembly, [&] { scene.addAssembly(assembly); });
        }
        for (layout::Part* part : content.parts) {
            layout.add(*part);
            show(*part, [&] { scene.addPart(part); });
        }
        for (layout::PointCloud* cloud : content.clouds) {
            layout.add(*cloud);
            show(*cloud, [&] { scene.addPointCloud(cloud); });
        }
    }

    void showMechanisms() {
        layout::Layout& layout = *layout::Layout::inst();
        const auto add = [this](sdf::SdfNode* mechanism) {
            show(*mechanism, [&] { scene.addMechanism(mechanism, /*buildChildren=*/true); });
        };
        for (layout::Manipulator* robot : content.robots) {
            layout.add(*robot);
            add(robot);
            const layout::BaseFrame* base = robot->baseObject();
            if (base != nullptr && scene.visuals.contains(robot->id))
                scene.addTaskFrame(base->id, base->getPose());
        }
        for (const WorkEnvelope& envelope : content.envelopes) showEnvelope(envelope);
        for (layout::Tool* tool : content.tools) {
            layout.add(*tool);
            add(tool);
        }
        for (layout::Device* device : content.devices) {
            layout.add(*device);
            add(device);
        }
        for (layout::Frame* frame : content.frames) {
            layout.add(*frame);
            show(*frame, [&] { scene.addFrame(frame); });
        }
        for (smartcomp::Sensor* sensor : content.sensors) {
            smartcomp::AddSmartComponent(*sensor);
            show(*sensor, [&] {
                scene.addSmartComponent(sensor);
                // A new sensor shows its frame, as after an edit; here it is a part of the station.
                scene.addRenderTask(
                    [this, sensor] { scene.visuals.at(sensor->id)->resetAppearance(); },
                    /*key=*/0);
            });
        }
    }

    void showEnvelope(const WorkEnvelope& envelope) {
        const std::uint32_t robot = envelope.robot->id;
        if (!scene.visuals.contains(robot)) return;
        scene.addWorkEnvelopeVisual(robot, envelope.outlineParent, envelope.points,
                                    envelope.normals, static_cast<float>(envelope.fromRad),
                                    static_cast<float>(envelope.toRad));
        scene.updateWorkEnvelopeVisual(robot, envelope.showsOutline, envelope.showsSurface);
        scene.processMsgs();
    }

    void showTasks() {
        for (task::WObjDataItem* item : content.workObjects)
            show(*item, [&] { scene.addWObj(item); });
        for (task::Task* task : content.tasks) {
            task::AddTask(*task);
            try {
                scene.addTask(task->id);
                scene.processMsgs();
                ++shownObjects;
            } catch (const std::exception& error) {
                leaveOut(task->name, error);
            }
        }
        try {
            scene.addRenderTask([this] { showTargets(); }, /*key=*/0);
            scene.processMsgs();
        } catch (const std::exception& error) {
            leaveOut("targets", error);
        }
    }

    /// Those that no path has shown yet.
    void showTargets() {
        for (const task::RobTargetDataItem* target : content.targets) {
            const auto parent = scene.visuals.find(target->parentId);
            if (parent == scene.visuals.end() || scene.visuals.contains(target->id)) continue;
            visual::RobtargetVisual::Build(parent->second, target->id);
        }
    }

    void attach(const layout::Attachment& attachment) {
        layout::Layout::inst()->addAttachment(attachment);
        // What is missing has a line of its own already.
        if (!scene.visuals.contains(attachment.childId) ||
            !scene.visuals.contains(attachment.parentId))
            return;
        scene.addAttachment(attachment.childId, attachment.parentId, attachment.pose);
        scene.processMsgs();
    }

    Content& content;
    visual::Scene& scene = *visual::Scene::Get();
    Counts counts;
    std::size_t shownObjects = 0;
    std::string firstReason;
};

}  // namespace

Counts ShowContent(Content& content) { return Showing(content).run(); }

}  // namespace vrn::host
