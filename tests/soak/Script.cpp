#include "tests/soak/Script.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <string_view>
#include <tuple>
#include <utility>

#include <OgreSceneManager.h>
#include <BRepPrimAPI_MakeBox.hxx>
#include <gp_Pnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <TopoDS_Wire.hxx>

#include "suite/geom/ShapeTools.h"
#include "suite/geom/TMesh.h"
#include "suite/layout/Body.h"
#include "suite/layout/Part.h"
#include "suite/rob/ShapeTypes.h"
#include "suite/sdf/SdfManager.h"
#include "suite/smart/SmartComponent.h"
#include "suite/task/Instruction.h"
#include "suite/task/Task.h"
#include "visual/geometry/SolidVisual.h"
#include "visual/handle/DragHandle.h"
#include "visual/handle/PathEndsHandle.h"
#include "visual/handle/VectorHandle.h"
#include "visual/task/TcpTraceVisual.h"

namespace vrn::test {

using namespace visual;
using DisplayMode = Scene::DisplayMode;
using VisualCollisionState = Scene::VisualCollisionState;

// ---- what there is to choose from

struct Supplies::Shapes {
    Shapes() : box(BRepPrimAPI_MakeBox(80, 60, 40).Shape()) {
        geometry::GenerateMesh(box, 0.0, 0.0);
        for (TopExp_Explorer it(box, TopAbs_EDGE); it.More(); it.Next())
            edges.push_back(TopoDS::Edge(it.Current()));
        for (TopExp_Explorer it(box, TopAbs_WIRE); it.More(); it.Next())
            wires.push_back(TopoDS::Wire(it.Current()));
        for (TopExp_Explorer it(box, TopAbs_FACE); it.More(); it.Next())
            faces.push_back(TopoDS::Face(it.Current()));
    }

    TopoDS_Shape box;
    std::vector<TopoDS_Edge> edges, noEdges;
    std::vector<TopoDS_Wire> wires, noWires;
    std::vector<TopoDS_Face> faces;
    std::vector<gp_Pnt> points{{1, 2, 3}, {40, 50, 60}}, noPoints;
    geometry::PointList list{{{{0, 0, 0}, {90, 0, 0}, {90, 90, 0}}, {}, {{5, 5, 5}}}}, noList;
    cadcam::TMesh<double> mesh{{{{0, 0, 0}}, {{90, 0, 0}}, {{0, 90, 0}}}, {{{0, 1, 2}}}};
    cadcam::TMesh<double> badMesh{{{{0, 0, 0}}}, {{{0, 1, 2}}}};
};

Supplies::Supplies() : shapes(std::make_unique<Shapes>()) {
    for (const auto& [id, visual] : Scene::Get()->visuals) sceneIds.insert(id);
}
Supplies::~Supplies() = default;

void Supplies::takeStation(const host::Content& content) {
    ids.clear();
    nodes.clear();
    paths.clear();
    moves.clear();
    for (const auto& [id, visual] : Scene::Get()->visuals)
        if (!sceneIds.contains(id) && std::ranges::find(lastingIds, id) == lastingIds.end())
            ids.push_back(id);
    std::ranges::sort(ids);
    for (const std::uint32_t id : ids)
        if (sdf::SdfNode* node = sdf::SdfManager::inst()->find(id)) nodes.push_back(node);
    for (task::Task* job : content.tasks)
        for (task::Path* path : job->getPaths()) {
            paths.push_back(path);
            for (task::MoveInst* move : path->getMoveInstructions()) moves.push_back(move);
        }
}

void Supplies::showLasting() {
    lastingIds.clear();
    lastingModel.clear();
    for (int i = 0; i < 3; ++i) {
        auto* part = lastingModel.make<layout::Part>("lasting" + std::to_string(i));
        const std::string name = "lasting body" + std::to_string(i);
        auto* body = lastingModel.make<layout::Body>(name, name, shapes->box);
        part->addChild(*body);
        Scene::Get()->addPart(part);
        lastingIds.push_back(part->id);
        lastingIds.push_back(body->id);
    }
    Scene::Get()->processMsgs();
    lastingVisuals.clear();
    for (const std::uint32_t id : lastingIds)
        lastingVisuals.push_back(Scene::Get()->visuals.at(id));
}

// ---- values

namespace {

std::atomic<std::uint64_t> taskCount = 0;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

}  // namespace

std::uint64_t Script::ranTasks() { return taskCount; }

Script::Script(unsigned seed, const Supplies& suppliesIn) : random(seed), supplies(suppliesIn) {}

std::size_t Script::choose(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

bool Script::chance(double probability) { return std::bernoulli_distribution(probability)(random); }

template <class T>
std::vector<T> Script::few(const char* name) {
    std::vector<T> values;
    for (std::size_t n = choose(4); n > 0; --n) values.push_back(make<T>(name));
    return values;
}

template <>
std::uint32_t Script::make(const char* name) {
    const std::string_view full(name), text = full.substr(full.find('.') + 1);
    // What is never removed must not come to hang on what is.
    if (full == "attachVisual.parentId") return oneOf(supplies.lastingIds);
    if (text == "index" || text == "arrowAt") return static_cast<std::uint32_t>(choose(9));
    if (text == "size" || text == "level") return static_cast<std::uint32_t>(choose(300));
    if (chance(0.05)) return 0;
    if (chance(0.05)) return 4'000'000'000u + static_cast<std::uint32_t>(choose(1000));
    return oneOf(supplies.ids);
}

template <>
int Script::make(const char*) {
    return static_cast<int>(choose(7)) - 1;
}

template <>
unsigned long Script::make(const char*) {
    return choose(4);
}

template <>
bool Script::make(const char*) {
    return chance(0.5);
}

template <>
double Script::make(const char*) {
    if (chance(0.02)) return nan;
    if (chance(0.1)) return 0;
    return std::uniform_real_distribution<double>(-400, 400)(random);
}

template <>
float Script::make(const char* name) {
    return static_cast<float>(make<double>(name));
}

template <>
std::string Script::make(const char*) {
    return oneOf(std::vector<std::string>{"Body", "Collision", "TransBody", "nope", ""});
}

template <>
std::function<void()> Script::make(const char*) {
    if (chance(0.1)) return {};
    return [] { ++taskCount; };
}

template <>
Ogre::ColourValue Script::make(const char*) {
    return Ogre::ColourValue(0.2f, 0.3f, 0.4f);
}

template <>
DisplayMode Script::make(const char*) {
    return static_cast<DisplayMode>(choose(4));
}

template <>
VisualCollisionState Script::make(const char*) {
    return static_cast<VisualCollisionState>(choose(3));
}

template <>
VisualType Script::make(const char*) {
    return static_cast<VisualType>(choose(35));
}

template <>
rob::ColorTemplate<float> Script::make(const char*) {
    return {0.5f, 0.25f, static_cast<float>(choose(3)) / 2};
}

template <>
rob::Vec3Template<float> Script::make(const char* name) {
    if (chance(0.1)) return {};
    return {make<float>(name), make<float>(name), make<float>(name)};
}

template <>
rob::DirTemplate<float> Script::make(const char* name) {
    return rob::DirTemplate<float>(make<rob::Vec3Template<float>>(name));
}

template <>
rob::DirTemplate<double> Script::make(const char* name) {
    return rob::DirTemplate<double>(make<rob::DirTemplate<float>>(name));
}

template <>
rob::PosTemplate<double> Script::make(const char* name) {
    return {make<double>(name), make<double>(name), make<double>(name)};
}

template <>
rob::PosTemplate<float> Script::make(const char* name) {
    return rob::PosTemplate<float>(make<rob::PosTemplate<double>>(name));
}

template <>
rob::OrientTemplate<double> Script::make(const char* name) {
    return {make<double>(name), make<double>(name), 1, 0};
}

template <>
rob::PoseTemplate<double> Script::make(const char* name) {
    const double angle = std::uniform_real_distribution<double>(-3, 3)(random);
    return {make<rob::PosTemplate<double>>(name),
            rob::RotationTemplate<double>(angle, rob::DirTemplate<double>{0, 0.6, 0.8})};
}

template <>
rob::PoseTemplate<float> Script::make(const char* name) {
    return rob::PoseTemplate<float>(make<rob::PoseTemplate<double>>(name));
}

template <>
rob::TPCircle Script::make(const char*) {
    return {{40, 0, 0}, {0, 40, 0}, {0, -40, static_cast<float>(choose(9))}};
}

template <>
TopoDS_Edge Script::make(const char*) {
    return chance(0.1) ? TopoDS_Edge() : oneOf(supplies.shapes->edges);
}

template <>
TopoDS_Wire Script::make(const char*) {
    return chance(0.1) ? TopoDS_Wire() : oneOf(supplies.shapes->wires);
}

template <>
TopoDS_Face Script::make(const char*) {
    return chance(0.1) ? TopoDS_Face() : oneOf(supplies.shapes->faces);
}

template <>
TopoDS_Shape Script::make(const char*) {
    return supplies.shapes->box;
}

// ---- pointers

template <>
Visual* Script::make(const char*) {
    return chance(0.1) ? nullptr : oneOf(supplies.lastingVisuals);
}

template <>
SolidVisual* Script::make(const char* name) {
    return dynamic_cast<SolidVisual*>(make<Visual*>(name));
}

template <>
GuiVisual* Script::make(const char*) {
    return oneOf(
        std::vector<GuiVisual*>{DragHandle::Get(), gVectorHandle, gPathEndsHandle, nullptr});
}

template <>
TcpTraceVisual* Script::make(const char*) {
    Scene& scene = *Scene::Get();
    // One at a time: its picture has a name of its own.
    return scene.sceneManager->hasManualObject("TcpTraceVisual") ? nullptr
                                                                 : new TcpTraceVisual(scene.root);
}

template <>
sdf::SdfNode* Script::make(const char*) {
    return chance(0.05) ? nullptr : oneOf(supplies.nodes);
}

template <>
task::Path* Script::make(const char*) {
    return chance(0.1) ? nullptr : oneOf(supplies.paths);
}

template <>
task::MoveInst* Script::make(const char*) {
    return chance(0.1) ? nullptr : oneOf(supplies.moves);
}

template <>
geometry::PointList* Script::make(const char*) {
    return oneOf(std::vector{&supplies.shapes->list, &supplies.shapes->noList,
                             static_cast<geometry::PointList*>(nullptr)});
}

template <>
cadcam::TMesh<double>* Script::make(const char*) {
    return oneOf(std::vector{&supplies.shapes->mesh, &supplies.shapes->badMesh,
                             static_cast<cadcam::TMesh<double>*>(nullptr)});
}

template <>
std::vector<TopoDS_Edge>* Script::make(const char*) {
    return oneOf(std::vector{&supplies.shapes->edges, &supplies.shapes->noEdges,
                             static_cast<std::vector<TopoDS_Edge>*>(nullptr)});
}

template <>
std::vector<TopoDS_Wire>* Script::make(const char*) {
    return oneOf(std::vector{&supplies.shapes->wires, &supplies.shapes->noWires,
                             static_cast<std::vector<TopoDS_Wire>*>(nullptr)});
}

template <>
std::vector<gp_Pnt>* Script::make(const char*) {
    return oneOf(std::vector{&supplies.shapes->points, &supplies.shapes->noPoints,
                             static_cast<std::vector<gp_Pnt>*>(nullptr)});
}

// ---- lists

template <>
std::vector<TopoDS_Face> Script::make(const char* name) {
    return few<TopoDS_Face>(name);
}

template <>
std::vector<std::uint32_t> Script::make(const char* name) {
    return few<std::uint32_t>(name);
}

template <>
std::vector<rob::DirTemplate<double>> Script::make(const char* name) {
    return few<rob::DirTemplate<double>>(name);
}

template <>
std::vector<rob::OrientTemplate<double>> Script::make(const char* name) {
    return few<rob::OrientTemplate<double>>(name);
}

template <>
std::vector<rob::PosTemplate<double>> Script::make(const char* name) {
    return few<rob::PosTemplate<double>>(name);
}

template <>
std::vector<rob::PosTemplate<float>> Script::make(const char* name) {
    return few<rob::PosTemplate<float>>(name);
}

template <>
std::vector<rob::PoseTemplate<float>> Script::make(const char* name) {
    return few<rob::PoseTemplate<float>>(name);
}

template <>
std::vector<std::vector<rob::PosTemplate<float>>> Script::make(const char* name) {
    std::vector<std::vector<rob::PosTemplate<float>>> lists(choose(3));
    for (auto& list : lists) list = few<rob::PosTemplate<float>>(name);
    return lists;
}

template <>
std::vector<std::pair<rob::PosTemplate<float>, rob::PosTemplate<float>>> Script::make(
    const char* name) {
    std::vector<std::pair<rob::PosTemplate<float>, rob::PosTemplate<float>>> pairs(choose(3));
    for (auto& [a, b] : pairs) {
        a = make<rob::PosTemplate<float>>(name);
        b = make<rob::PosTemplate<float>>(name);
    }
    return pairs;
}

template <>
std::vector<std::tuple<task::MoveInst*, task::MoveInst*, std::uint32_t>> Script::make(
    const char* name) {
    std::vector<std::tuple<task::MoveInst*, task::MoveInst*, std::uint32_t>> list(choose(3));
    for (auto& [prev, cur, parent] : list) {
        prev = make<task::MoveInst*>(name);
        cur = make<task::MoveInst*>(name);
        parent = make<std::uint32_t>("move.parentId");
    }
    return list;
}

template <>
std::unordered_map<unsigned int, std::vector<unsigned long>> Script::make(const char* name) {
    std::unordered_map<unsigned int, std::vector<unsigned long>> points;
    for (std::size_t n = choose(3); n > 0; --n)
        points[make<std::uint32_t>(name)] = few<unsigned long>(name);
    return points;
}

// ---- the table

const std::vector<Script::Operation>& Script::operations() {
    constexpr auto any = Operation::Thread::Any, caller = Operation::Thread::Caller,
                   render = Operation::Thread::Render;
#define OPERATION(label, word, call) \
    {label, word, []([[maybe_unused]] Script& script, Scene& scene) { static_cast<void>(call); }},
    static const std::vector<Operation> all{
#include "SceneOperations.inc"
    };
#undef OPERATION
    return all;
}

}  // namespace vrn::test
