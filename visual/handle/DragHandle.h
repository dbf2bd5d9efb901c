#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "visual/handle/FixedSizeHandle.h"

namespace vrn::visual {

class MeshVisual;

/// What the user moves and turns an object with: three arrows, three rings, and for each ring a
/// faint band that shows its plane while it is turned. There is one; the host attaches it to what
/// is to be moved (Scene::attachGuiTo), reads its parts from picks, and tells it what is engaged.
/// Thread: render.
class VRN_VISUAL_API DragHandle : public FixedSizeHandle {
public:
    /// The parts; None stands for any other visual.
    enum class HandleType : std::int32_t {
        X = 0,
        Y = 1,
        Z = 2,
        Roll = 3,
        Pitch = 4,
        Yaw = 5,
        AssistRoll = 6,
        AssistPitch = 7,
        AssistYaw = 8,
        None = 9
    };

    static const std::string MATERIAL_AXIS;
    static const std::string MESH_DRAG_HANDLE_X;
    static const std::string MESH_DRAG_HANDLE_Y;
    static const std::string MESH_DRAG_HANDLE_Z;
    static const std::string MESH_DRAG_HANDLE_ROLL;
    static const std::string MESH_DRAG_HANDLE_PITCH;
    static const std::string MESH_DRAG_HANDLE_YAW;
    static const std::string MESH_ROLL_MAIN;
    static const std::string MESH_PITCH_MAIN;
    static const std::string MESH_YAW_MAIN;
    static const std::string MESH_ROLL_ASSIST;
    static const std::string MESH_PITCH_ASSIST;
    static const std::string MESH_YAW_ASSIST;
    static const std::string COLOR_X;
    static const std::string COLOR_Y;
    static const std::string COLOR_Z;
    static const std::string COLOR_ROLL_RESET;  ///< of the engaged roll ring
    static constexpr float ASSIST_HANDLE_ALPHA = 0.1f;

    /// The handle, made at the first call; it lives until the process ends.
    static DragHandle* Get();
    /// Registers it with priority, and not to be picked until the host enables it. A host enables
    /// the parts that are shown: what is enabled is picked whether it is drawn or not, and the
    /// bands reach far.
    static void Build();

    /// Which part a visual is; null is none of them.
    [[nodiscard]] HandleType getHandleType(const Visual* visual) const;

    /// Notes what is engaged. A ring takes its longer form, with its band; everything else vanishes
    /// until resetMode. An arrow changes nothing that is shown. What is neither engages nothing.
    void setMode(HandleType handleType);
    void setMode(const Visual* visual);
    /// Nothing engaged, and all arrows and rings shown as at rest. A band that is shown stays: hide
    /// it with setAssistHandleVisible.
    void resetMode();
    /// Arrows and rings; the bands are left as they are.
    void show();
    void hide();
    [[nodiscard]] bool isShown() const { return shown; }
    /// 0 with nothing engaged, else the part's number and 1.
    [[nodiscard]] std::int32_t getMode() const { return mode; }

    void setMainHandleVisible(bool on);
    void setAssistHandleVisible(bool on);
    /// That one of the arrows and rings, with its band, and no other; null or another visual hides
    /// all.
    void showSingleHandle(MeshVisual* handle);

    // One part; each throws what MeshVisual::attachMesh and Hex2RGB throw, and all but setHandle
    // std::invalid_argument for null.

    /// A new part that shows `mesh`.
    void setHandle(MeshVisual*& handle, const std::string& mesh, const std::string& color);
    void setHandle(MeshVisual*& handle, const std::string& mesh,
                   const rob::ColorTemplate<float>& color, float alpha);
    /// The part goes on with another mesh and colour.
    void resetHandle(MeshVisual*& handle, const std::string& mesh, const std::string& color);
    /// The part shows no mesh any more; harmless when repeated.
    void clearHandleMesh(MeshVisual*& handle);
    /// resetHandle, with everything hidden but the part and its band.
    void setRotationStyle(MeshVisual*& handle, const std::string& mesh, const std::string& color);

    MeshVisual *handleX = nullptr, *handleY = nullptr, *handleZ = nullptr;
    MeshVisual *handleRoll = nullptr, *handlePitch = nullptr, *handleYaw = nullptr;
    MeshVisual *assistRoll = nullptr, *assistPitch = nullptr, *assistYaw = nullptr;

private:
    DragHandle();
    /// By their numbers.
    [[nodiscard]] std::array<MeshVisual*, 9> parts() const;
    void setVisibleFrom(std::size_t first, std::size_t end, bool on);

    std::int32_t mode = 0;
    bool shown = false;
};

}  // namespace vrn::visual
