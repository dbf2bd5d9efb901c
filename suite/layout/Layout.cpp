#include "suite/layout/Layout.h"

#include "suite/layout/Frame.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"

#include <algorithm>

namespace vrn::layout {

namespace {

template <class T>
void AppendOnce(std::vector<T*>& list, T& object) {
    if (std::ranges::find(list, &object) == list.end()) list.push_back(&object);
}

}  // namespace

Layout* Layout::inst() {
    // Never destroyed: objects held by statics elsewhere still leave it when they end.
    static auto* layout = new Layout;
    return layout;
}

void Layout::add(Manipulator& object) { AppendOnce(manipulatorList, object); }
void Layout::add(Assembly& object) { AppendOnce(assemblyList, object); }
void Layout::add(Part& object) { AppendOnce(partList, object); }
void Layout::add(PointCloud& object) { AppendOnce(pointCloudList, object); }
void Layout::add(Tool& object) { AppendOnce(toolList, object); }
void Layout::add(Device& object) { AppendOnce(deviceList, object); }
void Layout::add(Frame& object) { AppendOnce(frameList, object); }

// Also called by destructors of objects that were never added but may be named by an id.
void Layout::remove(const Manipulator& object) {
    std::erase(manipulatorList, &object);
    forget(object.id);
}
void Layout::remove(const Assembly& object) {
    std::erase(assemblyList, &object);
    forget(object.id);
}
void Layout::remove(const Part& object) {
    std::erase(partList, &object);
    forget(object.id);
}
void Layout::remove(const PointCloud& object) {
    std::erase(pointCloudList, &object);
    forget(object.id);
}
void Layout::remove(const Tool& object) {
    std::erase(toolList, &object);
    forget(object.id);
}
void Layout::remove(const Device& object) {
    std::erase(deviceList, &object);
    forget(object.id);
}
void Layout::remove(const Frame& object) {
    std::erase(frameList, &object);
    forget(object.id);
}

void Layout::addAttachment(const Attachment& attachment) { attachmentList.push_back(attachment); }

void Layout::setHidden(std::uint32_t id, bool hide) {
    if (hide)
        hidden.insert(id);
    else
        hidden.erase(id);
}

void Layout::setLastViewPointPose(const rob::PoseTemplate<double>& pose) { viewPoint = pose; }

void Layout::forget(std::uint32_t id) {
    hidden.erase(id);
    std::erase_if(attachmentList,
                  [&](const Attachment& a) { return a.childId == id || a.parentId == id; });
}

void Layout::clear() {
    manipulatorList.clear();
    assemblyList.clear();
    partList.clear();
    pointCloudList.clear();
    toolList.clear();
    deviceList.clear();
    frameList.clear();
    attachmentList.clear();
    hidden.clear();
    viewPoint = {};
}

}  // namespace vrn::layout
