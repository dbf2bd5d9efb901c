#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "apps/headless/Picture.h"
#include "apps/headless/VirtualDisplay.h"
#include "apps/vrnview/InputFile.h"
#include "apps/vrnview/Looks.h"
#include "apps/vrnview/readers/Content.h"
#include "apps/vrnview/SceneReport.h"

namespace vrn::host {

class ViewTarget;

/// The library at work: a display, the engine, and a scene that inputs are added to.
///
///     Viewer viewer;
///     const InputReport report = viewer.open({"bracket.stl", {}});
///     viewer.takePicture(1280, 720, Looks{}).savePng("bracket.png");
///
/// One a process, since the engine is. Thread: the one that made it.
class Viewer {
public:
    /// Throws std::runtime_error if there is no display and none can be started.
    Viewer();
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// What the joints of robots and devices that are opened from now on stand at.
    void setJoints(std::vector<JointValue> values) { joints = std::move(values); }
    /// The names of the joints that nothing opened so far has.
    [[nodiscard]] std::vector<std::string> unknownJoints() const;

    /// Shows what the file holds. What goes wrong is told in the report; of a file that could not
    /// be read nothing stays in the scene.
    InputReport open(const InputFile& input);

    /// The visual's id that one of the names in Looks stands for; nothing for one that is not
    /// there.
    [[nodiscard]] std::optional<std::uint32_t> idOf(const std::string& name) const;

    /// The same for what can be hidden and shown: also path groups and operations, which have no
    /// visual of their own.
    [[nodiscard]] std::optional<std::uint32_t> switchOf(const std::string& name) const;

    /// The scene with these looks, which stay; names of no object are passed over. See ViewTarget
    /// for how it is rendered.
    [[nodiscard]] headless::Picture takePicture(int widthPx, int heightPx, const Looks& looks);
    /// The same into a target that the caller has made: what is selected before it is there gets
    /// no outline.
    [[nodiscard]] headless::Picture takePicture(ViewTarget& target, const Looks& looks);

    /// A view of the scene with these looks, as takePicture would show it, for the camera to move
    /// in and for questions to the selection. The viewer must outlive it.
    [[nodiscard]] std::unique_ptr<ViewTarget> openView(int widthPx, int heightPx,
                                                       const Looks& looks);
    /// What is drawn beside the inputs: the grid. Thread: pure.
    [[nodiscard]] static Bounds furnitureBounds();

    /// What the inputs hold that were read.
    [[nodiscard]] const std::vector<Content>& getContents() const { return contents; }
    /// The scene as it stands; `inputs` is left empty.
    [[nodiscard]] SceneReport report() const;

private:
    void poseJoints(Content& content);
    void apply(const Looks& looks) const;
    [[nodiscard]] CameraPlacement placeCamera(const Looks& looks, double aspect) const;
    [[nodiscard]] CameraPlacement findCamera(
        const FoundView& view, const CameraPlacement& otherwise,
        const std::vector<rob::PosTemplate<double>>& outline) const;
    [[nodiscard]] bool hasFrames() const;
    void scaleFurniture(const Bounds& scene);

    headless::VirtualDisplay display;  ///< before all that draws on it
    std::vector<Content> contents;     ///< of the files that were opened
    std::vector<JointValue> joints;
    std::set<std::string> usedJoints;
};

}  // namespace vrn::host
