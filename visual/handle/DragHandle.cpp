#include "visual/handle/DragHandle.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include <OgreEntity.h>

#include "selection/VisualSelection.h"
#include "visual/geometry/Hex2RGB.h"
#include "visual/handle/HandleMeshVisual.h"

namespace vrn::visual {

namespace {

constexpr std::size_t mainCount = 6;

MeshVisual& Required(MeshVisual* handle) {
    if (!handle) throw std::invalid_argument("a part of the drag handle must not be null");
    return *handle;
}

void DressAsHandle(MeshVisual& part) {
    part.getEntity()->setRenderQueueGroup(HandleMeshVisual::handleQueueGroup);
    part.setMaterial(DragHandle::MATERIAL_AXIS, "", "");
    part.resetAppearance();
}

}  // namespace

const std::string DragHandle::MATERIAL_AXIS = "Axis";
const std::string DragHandle::MESH_DRAG_HANDLE_X = "DragHandleX";
const std::string DragHandle::MESH_DRAG_HANDLE_Y = "DragHandleY";
const std::string DragHandle::MESH_DRAG_HANDLE_Z = "DragHandleZ";
const std::string DragHandle::MESH_DRAG_HANDLE_ROLL = "DragHandleRoll";
const std::string DragHandle::MESH_DRAG_HANDLE_PITCH = "DragHandlePitch";
const std::string DragHandle::MESH_DRAG_HANDLE_YAW = "DragHandleYaw";
const std::string DragHandle::MESH_ROLL_MAIN = "RollHandleMain";
const std::string DragHandle::MESH_PITCH_MAIN = "PitchHandleMain";
const std::string DragHandle::MESH_YAW_MAIN = "YawHandleMain";
const std::string DragHandle::MESH_ROLL_ASSIST = "RollHandleAssist";
const std::string DragHandle::MESH_PITCH_ASSIST = "PitchHandleAssist";
const std::string DragHandle::MESH_YAW_ASSIST = "YawHandleAssist";
const std::string DragHandle::COLOR_X = "#F20c00";
const std::string DragHandle::COLOR_Y = "#16A951";
const std::string DragHandle::COLOR_Z = "#418AB4";
const std::string DragHandle::COLOR_ROLL_RESET = "#C91F37";

DragHandle* DragHandle::Get() {
    // Never destroyed: its nodes and meshes would outlive the engine.
    static auto* const handle = new DragHandle;
    return handle;
}

void DragHandle::Build() {
    DragHandle* handle = Get();
    handle->registerToSelection(/*priority=*/true);
    selection::VisualSelection::Get()->setCompoundObjectEnabled(handle, false);
}

DragHandle::DragHandle() : FixedSizeHandle("DragHandle", nullptr) {
    setHandle(handleX, MESH_DRAG_HANDLE_X, COLOR_X);
    setHandle(handleY, MESH_DRAG_HANDLE_Y, COLOR_Y);
    setHandle(handleZ, MESH_DRAG_HANDLE_Z, COLOR_Z);
    setHandle(handleRoll, MESH_DRAG_HANDLE_ROLL, COLOR_X);
    setHandle(handlePitch, MESH_DRAG_HANDLE_PITCH, COLOR_Y);
    setHandle(handleYaw, MESH_DRAG_HANDLE_YAW, COLOR_Z);
    setHandle(assistRoll, MESH_ROLL_ASSIST, Hex2RGB(COLOR_X), ASSIST_HANDLE_ALPHA);
    setHandle(assistPitch, MESH_PITCH_ASSIST, Hex2RGB(COLOR_Y), ASSIST_HANDLE_ALPHA);
    setHandle(assistYaw, MESH_YAW_ASSIST, Hex2RGB(COLOR_Z), ASSIST_HANDLE_ALPHA);
    setAssistHandleVisible(false);
}

std::array<MeshVisual*, 9> DragHandle::parts() const {
    return {handleX,   handleY,    handleZ,     handleRoll, handlePitch,
            handleYaw, assistRoll, assistPitch, assistYaw};
}

DragHandle::HandleType DragHandle::getHandleType(const Visual* visual) const {
    const auto all = parts();
    return static_cast<HandleType>(std::find(all.begin(), all.end(), visual) - all.begin());
}

void DragHandle::setMode(HandleType handleType) {
    const auto number = static_cast<std::int32_t>(handleType);
    mode = number >= 0 && number < static_cast<std::int32_t>(mainCount) ? number + 1 : 0;
    if (handleType == HandleType::Roll)
        setRotationStyle(handleRoll, MESH_ROLL_MAIN, COLOR_ROLL_RESET);
    if (handleType == HandleType::Pitch) setRotationStyle(handlePitch, MESH_PITCH_MAIN, COLOR_Y);
    if (handleType == HandleType::Yaw) setRotationStyle(handleYaw, MESH_YAW_MAIN, COLOR_Z);
}

void DragHandle::setMode(const Visual* visual) { setMode(getHandleType(visual)); }

void DragHandle::resetMode() {
    mode = 0;
    resetHandle(handleRoll, MESH_DRAG_HANDLE_ROLL, COLOR_X);
    resetHandle(handlePitch, MESH_DRAG_HANDLE_PITCH, COLOR_Y);
    resetHandle(handleYaw, MESH_DRAG_HANDLE_YAW, COLOR_Z);
    show();
}

void DragHandle::show() {
    setMainHandleVisible(true);
    shown = true;
}

void DragHandle::hide() {
    setMainHandleVisible(false);
    shown = false;
}

void DragHandle::setVisibleFrom(std::size_t first, std::size_t end, bool on) {
    const auto all = parts();
    for (std::size_t i = first; i < end; ++i) all[i]->setVisible(on, /*cascade=*/true);
}

void DragHandle::setMainHandleVisible(bool on) { setVisibleFrom(0, mainCount, on); }

void DragHandle::setAssistHandleVisible(bool on) { setVisibleFrom(mainCount, 9, on); }

void DragHandle::showSingleHandle(MeshVisual* handle) {
    const HandleType wanted = getHandleType(handle);
    const auto all = parts();
    for (std::size_t i = 0; i < mainCount; ++i) all[i]->setVisible(all[i] == handle, true);
    assistRoll->setVisible(wanted == HandleType::Roll, true);
    assistPitch->setVisible(wanted == HandleType::Pitch, true);
    assistYaw->setVisible(wanted == HandleType::Yaw, true);
}

void DragHandle::setHandle(MeshVisual*& handle, const std::string& mesh, const std::string& color) {
    setHandle(handle, mesh, Hex2RGB(color), 1.0f);
}

void DragHandle::setHandle(MeshVisual*& handle, const std::string& mesh,
                           const rob::ColorTemplate<float>& color, float alpha) {
    auto part = std::make_unique<HandleMeshVisual>(mesh, this);  // the tree's once it shows a mesh
    part->attachMesh(mesh);
    DressAsHandle(*part);
    part->setColor(color, alpha);
    handle = part.release();
}

void DragHandle::clearHandleMesh(MeshVisual*& handle) { Required(handle).clearMesh(); }

void DragHandle::resetHandle(MeshVisual*& handle, const std::string& mesh,
                             const std::string& color) {
    clearHandleMesh(handle);
    handle->attachMesh(mesh);
    DressAsHandle(*handle);
    handle->setColor(color);
}

void DragHandle::setRotationStyle(MeshVisual*& handle, const std::string& mesh,
                                  const std::string& color) {
    showSingleHandle(&Required(handle));
    resetHandle(handle, mesh, color);
}

}  // namespace vrn::visual
