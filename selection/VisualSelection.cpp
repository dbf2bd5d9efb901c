#include "selection/VisualSelection.h"

#include "selection/CurveObject.h"
#include "selection/LineObject.h"
#include "selection/MeshObject.h"
#include "selection/PointCloudObject.h"
#include "selection/PointObject.h"
#include "selection/ShapeObject.h"
#include "suite/broker/SignalBroker.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/station/InstanceFrameVisual.h"
#include "visual/Visual.h"
#include "visual/VisualIterator.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace vrn::selection {

namespace {

using SubtreeIterator = visual::ForestIterator<visual::Visual>;

SelectableObject* AsObject(BVHPrimitive* primitive) {
    return static_cast<SelectableObject*>(primitive);
}

}  // namespace

VisualSelection* gVisSelection = nullptr;

void Init() {
    delete gVisSelection;
    gVisSelection = new VisualSelection;
}

void Finish() {}

VisualSelection::~VisualSelection() = default;

VisualSelection* VisualSelection::Get() { return gVisSelection; }

void VisualSelection::addShape(const TopoDS_Shape& shape, visual::SolidVisual* visual,
                               bool detectable) {
    if (!visual) throw std::invalid_argument("a solid visual to register must not be null");
    setDirty();
    auto object = std::make_unique<ShapeObject>(shape, visual);
    object->detectable = detectable;
    add(std::move(object), containers[0]);
}

void VisualSelection::addCurveVisual(const TopoDS_Shape& shape, visual::CurveVisual* visual,
                                     bool detectable) {
    if (!visual) throw std::invalid_argument("a curve visual to register must not be null");
    setDirty();
    auto object = std::make_unique<CurveObject>(shape, visual);
    object->detectable = detectable;
    add(std::move(object), containers[0]);
}

void VisualSelection::addMeshVisual(visual::Visual* visual, bool detectable, bool priority) {
    if (!visual) throw std::invalid_argument("a mesh visual to register must not be null");
    setDirty();
    for (SubtreeIterator it(visual); it.next();) {
        if (it.value()->type != VisualType::Mesh && it.value()->type != VisualType::Paint) continue;
        auto object = std::make_unique<MeshObject>(it.value());
        object->detectable = detectable;
        object->priority = priority;
        add(std::move(object), containers[0]);
    }
}

void VisualSelection::addLineVisual(visual::LineVisual* visual) {
    if (!visual) throw std::invalid_argument("a line visual to register must not be null");
    setDirty();
    add(std::make_unique<LineObject>(visual), containers[0]);
}

void VisualSelection::addFrameVisual(visual::InstanceFrameVisual* visual) {
    if (!visual) throw std::invalid_argument("a frame visual to register must not be null");
    setDirty();
    add(std::make_unique<LineObject>(visual), containers[0]);
}

void VisualSelection::addPointVisual(visual::PointVisual* visual, bool detectable) {
    if (!visual) throw std::invalid_argument("a point visual to register must not be null");
    setDirty();
    auto object = std::make_unique<PointObject>(visual);
    object->detectable = detectable;
    add(std::move(object), containers[0]);
}

void VisualSelection::addPointCloudVisual(visual::PointCloudVisual* visual, bool detectable) {
    if (!visual) throw std::invalid_argument("a point cloud visual to register must not be null");
    setDirty();
    auto object = std::make_unique<PointCloudObject>(visual);
    object->detectable = detectable;
    add(std::move(object), containers[1]);
}

bool VisualSelection::hasVisual(visual::Visual* visual) const { return objects.contains(visual); }

SelectableObject* VisualSelection::getObject(visual::Visual* visual) const {
    return objects.at(visual);
}

void VisualSelection::setObjectEnabled(visual::Visual* visual, bool enabled) {
    const auto entry = objects.find(visual);
    if (entry == objects.end()) return;
    setDirty();
    entry->second->enabled = enabled;
}

void VisualSelection::setDetectable(visual::Visual* visual, bool detectable) {
    const auto entry = objects.find(visual);
    if (entry != objects.end()) entry->second->detectable = detectable;
}

void VisualSelection::setLineEnabled(bool enabled) {
    for (PrimitiveContainer& container : containers) {
        for (BVHPrimitive* primitive : container.primitives) {
            SelectableObject* object = AsObject(primitive);
            if (object->kind != ObjectKind::Line) continue;
            if (object->enabled != enabled) setDirty();
            object->enabled = enabled;
            if (enabled) object->updateWorldBox();
        }
    }
}

void VisualSelection::setCompoundObjectEnabled(visual::Visual* visual, bool enabled) {
    setDirty();
    for (SubtreeIterator it(visual); it.next();) {
        const auto entry = objects.find(it.value());
        if (entry != objects.end()) entry->second->enabled = enabled;
    }
}

void VisualSelection::updateShapeFaces(visual::SolidVisual* visual) {
    const SelectableObject* former = getObject(visual);
    const bool detectable = former->detectable;
    const bool enabled = former->enabled;
    removeObject(visual);
    addShape(visual->getShape(), visual, detectable);
    getObject(visual)->enabled = enabled;
}

void VisualSelection::removeObject(visual::Visual* visual) {
    setDirty();
    SelectableObject* registered = objects.at(visual);
    objects.erase(visual);
    PrimitiveContainer& container = containers[registered->kind == ObjectKind::PointCloud ? 1 : 0];
    container.removePrimitive(registered);
    delete registered;
    if (repeated.erase(visual) != 0) removeRepeated(visual, container);
}

void VisualSelection::removeRepeated(visual::Visual* visual, PrimitiveContainer& container) {
    const auto others = std::ranges::stable_partition(
        container.primitives,
        [visual](BVHPrimitive* primitive) { return AsObject(primitive)->visual != visual; });
    for (BVHPrimitive* primitive : others) delete primitive;
    container.primitives.erase(others.begin(), others.end());
}

void VisualSelection::removeCompoundObject(visual::Visual* visual) {
    setDirty();
    for (SubtreeIterator it(visual); it.next();)
        if (hasVisual(it.value())) removeObject(it.value());
}

void VisualSelection::markDirty(visual::Visual* visual) {
    for (SubtreeIterator it(visual); it.next();) {
        const auto entry = objects.find(it.value());
        if (entry == objects.end()) continue;
        entry->second->worldBoxDirty = true;
        setDirty();
    }
}

void VisualSelection::updateWorldBoxes() {
    for (PrimitiveContainer& container : containers)
        for (BVHPrimitive* primitive : container.primitives) AsObject(primitive)->updateWorldBox();
}

void VisualSelection::update() {
    if (!dirty.load()) return;
    updateWorldBoxes();
    dirty.exchange(false);
    broker::SignalBroker::snapResultInvalidated();
}

void VisualSelection::add(std::unique_ptr<SelectableObject> object, PrimitiveContainer& container) {
    container.primitives.push_back(object.get());
    SelectableObject* owned = object.release();
    if (!objects.emplace(owned->visual, owned).second) repeated.insert(owned->visual);
}

void VisualSelection::setDirty() { dirty.exchange(true); }

}  // namespace vrn::selection
