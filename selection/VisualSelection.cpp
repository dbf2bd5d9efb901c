#include "selection/VisualSelection.h"

#include "engine/LiveSetting.h"
#include "engine/Scene.h"
#include "selection/BVHBuilder.h"
#include "selection/BVHWalk.h"
#include "selection/CurveObject.h"
#include "selection/LassoSelector.h"
#include "selection/LineObject.h"
#include "selection/MeshObject.h"
#include "selection/PlaneBoundedVolume.h"
#include "selection/PointCloudObject.h"
#include "selection/PointObject.h"
#include "selection/Ray.h"
#include "selection/ShapeObject.h"
#include "selection/Workers.h"
#include "suite/broker/SignalBroker.h"
#include "view/Camera.h"
#include "visual/geometry/CurveVisual.h"
#include "visual/geometry/LineVisual.h"
#include "visual/geometry/PointCloudVisual.h"
#include "visual/geometry/PointVisual.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/station/InstanceFrameVisual.h"
#include "visual/Visual.h"
#include "visual/VisualIterator.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>

namespace vrn::selection {

namespace {

using Pos = rob::PosTemplate<float>;
using SubtreeIterator = visual::ForestIterator<visual::Visual>;

SelectableObject* AsObject(BVHPrimitive* primitive) {
    return static_cast<SelectableObject*>(primitive);
}

PointCloudObject* AsCloud(BVHPrimitive* primitive) {
    return static_cast<PointCloudObject*>(primitive);
}

/// The volume's tree query yields candidates untested. An empty box lies nowhere, but its numbers
/// would count as partly inside.
bool IsUnder(const PlaneBoundedVolume& volume, const BVHPrimitive& candidate) {
    return candidate.box.isValid() && volume.intersect(candidate.box) < PlaneBoundedVolume::Outside;
}

void Append(std::vector<unsigned long>& list, std::vector<unsigned long>&& more) {
    if (list.empty())
        list = std::move(more);
    else
        list.insert(list.end(), more.begin(), more.end());
}

/// Whether there is a view to look through.
bool HasView() {
    const visual::Camera* camera = visual::Camera::Get();
    return camera && camera->viewportWidth() > 0 && camera->viewportHeight() > 0;
}

template <class... Numbers>
bool AreFinite(Numbers... numbers) {
    return (std::isfinite(numbers) && ...);
}

bool IsFinite(const std::vector<Pos>& polygon) {
    return std::ranges::all_of(polygon, [](const Pos& p) { return AreFinite(p.x, p.y); });
}

/// Whether there is a line of sight under the pixel. One that is so far outside the window that its
/// direction is lost has none.
bool HasSight(float x, float y) {
    if (!HasView() || !AreFinite(x, y)) return false;
    Pos origin;
    rob::Vec3Template<float> direction;
    visual::Camera::Get()->cameraToViewportRay(x, y, origin, direction);
    return std::isfinite(direction.length()) && !(direction.length() <= rob::zeroLength);
}

/// How far along a ray it enters a box that it meets.
float EntryInto(const visual::Box& box, const visual::Ray& ray) {
    constexpr float parallel = 0.001f;
    float entry = 0.0f;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const float towards = visual::component(ray.direction, axis);
        if (std::abs(towards) < parallel) continue;
        const float side = visual::component(towards > 0 ? box.min : box.max, axis);
        entry = std::max(entry, (side - visual::component(ray.origin, axis)) / towards);
    }
    return entry;
}

/// Whether the ray enters the object's box only behind `distance`, so that no hit on it can be
/// nearer: asking it would cost time and change nothing.
///
/// Only where the distance of a hit is the way along the ray, in the units of the world: not for
/// lines and points, which tell that of the nearest approach, and not for scaled meshes. What may
/// win whatever its distance is never behind. The slack is far above what rounding does.
bool LiesBehind(const SelectableObject& object, const visual::Ray& ray, float distance) {
    constexpr float slack = 1e-5f;
    if (object.priority) return false;
    const bool isSurface =
        object.kind == ObjectKind::Shape ||
        (object.kind == ObjectKind::Mesh &&
         static_cast<const MeshObject&>(object).scale == rob::Vec3Template<float>{1, 1, 1});
    if (!isSurface) return false;
    const float size = std::abs(ray.origin.x) + std::abs(ray.origin.y) + std::abs(ray.origin.z);
    const float entry = EntryInto(object.box, ray);
    return entry - slack * (size + entry) > distance;
}

template <class Object>
std::function<void()> BuildOf(SelectableObject* object) {
    auto* own = static_cast<Object*>(object);
    own->prepareBuild();
    return [own] {
        own->buildBVH();
        own->bvhBuilt = true;
    };
}

/// Builds what solids and meshes need in their own frames, most of the work of a first update, on
/// all processors. The others look at the camera and at the engine, which belong to this thread.
void BuildAhead(const PrimitiveContainer& container) {
    std::vector<std::function<void()>> builds;
    for (BVHPrimitive* primitive : container.primitives) {
        SelectableObject* object = AsObject(primitive);
        if (object->bvhBuilt || !object->worldBoxDirty) continue;
        if (object->kind == ObjectKind::Shape) builds.push_back(BuildOf<ShapeObject>(object));
        if (object->kind == ObjectKind::Mesh) builds.push_back(BuildOf<MeshObject>(object));
    }
    ShareOut(builds.size(), [&builds](std::size_t i) { builds[i](); });
}

/// Where the line of a ray meets the plane through the origin that the vertical stands on.
Pos GroundPoint(const visual::Ray& ray) {
    constexpr float parallel = 1.1920929e-07f;
    const int vertical = visual::LoadLive(visual::Scene::Get()->settings.verticalDir);
    const unsigned axis = vertical == 0 ? 0 : vertical == 1 ? 1 : 2;
    const float towards = visual::component(ray.direction, axis);
    if (std::abs(towards) < parallel) return {0, 0, 0};
    const float t = -visual::component(ray.origin, axis) / towards;
    return ray.origin + ray.direction.asVec3() * t;
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

void VisualSelection::rebuild(visual::Visual* visual) {
    const auto entry = objects.find(visual);
    if (entry == objects.end()) return;
    entry->second->bvhBuilt = false;
    entry->second->worldBoxDirty = true;
    setDirty();
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
    BuildAhead(containers[0]);
    for (PrimitiveContainer& container : containers)
        for (BVHPrimitive* primitive : container.primitives) AsObject(primitive)->updateWorldBox();
}

void VisualSelection::update() {
    if (!dirty.load()) return;
    updateWorldBoxes();
    for (PrimitiveContainer& container : containers)
        container.tree = BVHBuilder(&container).build();
    dirty.exchange(false);
    broker::SignalBroker::snapResultInvalidated();
}

// --- queries

Result VisualSelection::select(float x, float y) { return pick(x, y, containers[0]); }

Result VisualSelection::selectPointInCloud(float x, float y) { return pick(x, y, containers[1]); }

Result VisualSelection::pick(float x, float y, const PrimitiveContainer& container) const {
    Result best;
    if (dirty.load() || !HasSight(x, y)) return best;
    const visual::Ray ray = visual::Camera::Get()->getViewportRay(x, y);
    VisitCandidates(container.tree, ray, [&](BVHPrimitive* candidate) {
        const SelectableObject& object = *AsObject(candidate);
        if (best.hit && LiesBehind(object, ray, best.distance)) return true;
        Result result = candidate->intersect(ray);
        const bool ends = result.hit && object.priority;
        if (ends || (result.hit && result.distance < best.distance)) best = std::move(result);
        return !ends;
    });
    if (!best.hit) best.position = GroundPoint(ray);
    return best;
}

template <class Shape>
Result VisualSelection::senseFirst(const Shape& shape) const {
    Result result;
    result.valid = !dirty.load();
    if (!result.valid) return result;
    VisitCandidates(containers[0].tree, shape, [&](BVHPrimitive* candidate) {
        if (AsObject(candidate)->detectable) result = candidate->intersect(shape);
        return !result.hit;
    });
    return result.hit ? result : Result();
}

Result VisualSelection::sense(const rob::TriangleTemplate<float>& triangle) {
    return senseFirst(triangle);
}

Result VisualSelection::sense(const rob::LineTemplate<float>& line) { return senseFirst(line); }

std::vector<visual::Visual*> VisualSelection::boxSelect(float x0, float y0, float x1, float y1) {
    if (dirty.load() || !HasView() || !AreFinite(x0, y0, x1, y1)) return {};
    const PlaneBoundedVolume volume(x0, y0, x1, y1);
    std::vector<BVHPrimitive*> candidates;
    containers[0].tree.intersect(volume, candidates);
    std::vector<visual::Visual*> found;
    for (BVHPrimitive* candidate : candidates)
        if (IsUnder(volume, *candidate)) found.push_back(AsObject(candidate)->visual);
    return found;
}

CloudPoints VisualSelection::boxSelectPointCloud(float x0, float y0, float x1, float y1) {
    if (dirty.load() || !HasView() || !AreFinite(x0, y0, x1, y1)) return {};
    const PlaneBoundedVolume volume(x0, y0, x1, y1);
    std::vector<BVHPrimitive*> candidates;
    containers[1].tree.intersect(volume, candidates);
    CloudPoints found;
    for (BVHPrimitive* candidate : candidates) {
        if (!IsUnder(volume, *candidate)) continue;
        std::vector<unsigned long> indices;
        if (!volume.intersect(AsCloud(candidate), indices)) continue;
        Append(found[AsObject(candidate)->visual->id], std::move(indices));
    }
    return found;
}

CloudPoints VisualSelection::lassoSelectPointCloud(const std::vector<Pos>& polygon) {
    if (dirty.load() || !HasView() || !IsFinite(polygon)) return {};
    const LassoSelector lasso(visual::Camera::Get(), polygon);
    CloudPoints found;
    for (BVHPrimitive* candidate : lasso.selectBVH(containers[1].tree, rob::PoseTemplate<float>()))
        lasso.selectPointCloud(AsCloud(candidate), found);
    return found;
}

CloudPoints VisualSelection::convexSelectPointCloud(const std::vector<Pos>& polygon) {
    return lassoSelectPointCloud(polygon);
}

void VisualSelection::add(std::unique_ptr<SelectableObject> object, PrimitiveContainer& container) {
    container.primitives.push_back(object.get());
    SelectableObject* owned = object.release();
    if (!objects.emplace(owned->visual, owned).second) repeated.insert(owned->visual);
}

void VisualSelection::setDirty() { dirty.exchange(true); }

}  // namespace vrn::selection
