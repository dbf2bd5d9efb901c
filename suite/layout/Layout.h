#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "suite/rob/PoseTypes.h"
#include "suite/SuiteApi.h"

namespace vrn::layout {

class Assembly;
class Device;
class Frame;
class Manipulator;
class Part;
class PointCloud;
class Tool;

/// An object that moves with another one.
struct Attachment {
    std::uint32_t childId = 0;
    std::uint32_t parentId = 0;
    rob::PoseTemplate<double> pose;  // of the child in the parent's frame
};

/// What stands in the open station.
///
/// Lists are in station order, which is that of adding, and hold no null. The host adds objects
/// that stand in the station and those inside compounds too, if they are to be found here; an
/// object that ends leaves by itself, and takes its attachments and its hidden mark along. Thread:
/// the host changes it only while no posted load waits for the render thread; nothing guards it.
class VRN_SUITE_API Layout {
public:
    /// Never null; lives until the process ends.
    [[nodiscard]] static Layout* inst();

    [[nodiscard]] const std::vector<Manipulator*>& manipulators() const { return manipulatorList; }
    [[nodiscard]] const std::vector<Assembly*>& assemblies() const { return assemblyList; }
    [[nodiscard]] const std::vector<Part*>& parts() const { return partList; }
    [[nodiscard]] const std::vector<PointCloud*>& pointclouds() const { return pointCloudList; }
    [[nodiscard]] const std::vector<Tool*>& tools() const { return toolList; }
    [[nodiscard]] const std::vector<Device*>& devices() const { return deviceList; }
    [[nodiscard]] const std::vector<Frame*>& frames() const { return frameList; }
    [[nodiscard]] const std::vector<Attachment>& attachments() const { return attachmentList; }
    /// The ids that are hidden when the station opens.
    [[nodiscard]] const std::set<std::uint32_t>& visibilities() const { return hidden; }
    /// Where the camera stood last; zero and identity when never saved.
    [[nodiscard]] const rob::PoseTemplate<double>& lastViewPointPose() const { return viewPoint; }

    /// Appends the object. Adding it twice does nothing.
    void add(Manipulator& object);
    void add(Assembly& object);
    void add(Part& object);
    void add(PointCloud& object);
    void add(Tool& object);
    void add(Device& object);
    void add(Frame& object);
    /// Takes the object out. Does nothing if it is not in.
    void remove(const Manipulator& object);
    void remove(const Assembly& object);
    void remove(const Part& object);
    void remove(const PointCloud& object);
    void remove(const Tool& object);
    void remove(const Device& object);
    void remove(const Frame& object);

    void addAttachment(const Attachment& attachment);
    void setHidden(std::uint32_t id, bool hide);
    void setLastViewPointPose(const rob::PoseTemplate<double>& pose);
    /// Drops the attachments that name the id, and its hidden mark.
    void forget(std::uint32_t id);
    /// Empties everything; the objects themselves are their owner's.
    void clear();

    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

private:
    Layout() = default;

    std::vector<Manipulator*> manipulatorList;
    std::vector<Assembly*> assemblyList;
    std::vector<Part*> partList;
    std::vector<PointCloud*> pointCloudList;
    std::vector<Tool*> toolList;
    std::vector<Device*> deviceList;
    std::vector<Frame*> frameList;
    std::vector<Attachment> attachmentList;
    std::set<std::uint32_t> hidden;
    rob::PoseTemplate<double> viewPoint;
};

}  // namespace vrn::layout
