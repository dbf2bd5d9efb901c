#pragma once

#include <array>
#include <cstddef>

#include "suite/rob/PoseTypes.h"
#include "visual/VrnVisualApi.h"

namespace vrn::visual {

class FromToLineVisual;
class PreviewFrameVisual;
class SelectPointVisual;
class Visual;

/// Shows the steps of picking a frame or a direction point by point: six crosses, three lines and
/// two frames, all under the scene's root and hidden until they are used. Init makes one and
/// ReleaseResources deletes it. What a host deletes of them is made anew by the next operation.
///
/// The operations whose names begin with `do` belong to the render thread; positions and poses are
/// those of the world. Each of them signals broker::SignalBroker::updateScene once, unless it only
/// changes a line's look.
class VRN_VISUAL_API PreviewVisualsHelper {
public:
    using Pos = rob::PosTemplate<float>;

    PreviewVisualsHelper();
    PreviewVisualsHelper(const PreviewVisualsHelper&) = delete;
    PreviewVisualsHelper& operator=(const PreviewVisualsHelper&) = delete;
    ~PreviewVisualsHelper();

    /// Null before Init and after ReleaseResources.
    [[nodiscard]] static PreviewVisualsHelper* Get();

    /// The points that a line goes between: the first of a pair shows the line if the second is
    /// shown, the second always does, from where the first waits.
    void doAddPrimaryFrom(const Pos& point);
    void doAddPrimaryTo(const Pos& point);
    void doAddAxisXFrom(const Pos& point);
    void doAddAxisXTo(const Pos& point);
    void doAddAxisYFrom(const Pos& point);
    void doAddAxisYTo(const Pos& point);
    void doSetPrimaryLineSelected(bool selected);
    void doSetAxisXLineSelected(bool selected);
    void doSetAxisYLineSelected(bool selected);

    /// The corners of a triangle, and the three points that fix a frame: each one's cross is shown,
    /// with the lines to those of the other two that are.
    void doAddSelectPoint1(const Pos& point);
    void doAddSelectPoint2(const Pos& point);
    void doAddSelectPoint3(const Pos& point);
    void doAddSelectFramePoint1(const Pos& point);
    void doAddSelectFramePoint2(const Pos& point);
    void doAddSelectFramePoint3(const Pos& point);

    void doAddPreviewUserFrame(const rob::PoseTemplate<float>& pose);
    void doAddPreviewObjectFrame(const rob::PoseTemplate<float>& pose);

    /// Hides everything, the crosses back at the origin.
    void doRemoveAllVisuals();
    /// Posts doRemoveAllVisuals. Thread: any.
    void removeAllVisuals();

    /// Drops a visual that is about to die; Scene::deleteVisual calls it.
    void forget(const Visual* visual);

    // Null once a host has deleted it, until the next operation.
    std::array<SelectPointVisual*, 6> points{};
    FromToLineVisual* primaryLine = nullptr;  ///< red
    FromToLineVisual* axisXLine = nullptr;    ///< green
    FromToLineVisual* axisYLine = nullptr;    ///< blue
    PreviewFrameVisual* userFrame = nullptr;
    PreviewFrameVisual* objectFrame = nullptr;

private:
    void makeMissing();
    void addFrom(std::size_t first, FromToLineVisual* line, const Pos& point);
    void addTo(std::size_t second, FromToLineVisual* line, const Pos& point);
    void addCorner(std::size_t corner, const Pos& point);
    void joinCorners(FromToLineVisual* line, std::size_t from, std::size_t to);
    void showAt(std::size_t index, const Pos& point);
};

/// Set by Init, null before it. ReleaseResources deletes the helper and leaves the pointer: ask
/// PreviewVisualsHelper::Get.
VRN_VISUAL_API extern PreviewVisualsHelper* gPreviewVisualsHelper;

}  // namespace vrn::visual
