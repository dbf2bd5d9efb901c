#include "apps/vrnview/drive/PaintDrive.h"

#include <format>
#include <stdexcept>

#include "apps/vrnview/drive/PaintReport.h"
#include "suite/smart/SmartComponent.h"

namespace vrn::host {

namespace {

using Json = nlohmann::ordered_json;
using PoseF = rob::PoseTemplate<float>;

/// The numbers under which a spray keeps them.
constexpr unsigned colourProperty = 3, nearProperty = 6, heightProperty = 7, farProperty = 8;

/// Bodies that hang below two of the objects count once.
std::map<std::uint32_t, PaintCover> CoversBelow(const visual::Scene& scene,
                                                const std::set<std::uint32_t>& objects) {
    std::map<std::uint32_t, PaintCover> covers;
    for (const std::uint32_t id : objects)
        for (const PaintedBody& body : PaintedBodies(*scene.visuals.at(id)))
            covers[body.id] = body.cover;
    return covers;
}

}  // namespace

Json PaintDrive::perform(const drive::PaintAction& action) {
    return std::visit([this](const auto& a) { return on(a); }, action);
}

PaintDrive::Gun& PaintDrive::gunOf(const std::string& name) {
    const auto found = guns.find(name);
    if (found == guns.end())
        throw std::runtime_error(std::format("no gun has the name \"{}\"", name));
    return found->second;
}

Json PaintDrive::coverJson(const std::set<std::uint32_t>& objects) {
    std::map<std::uint32_t, PaintCover> covers;
    desk.ask([&] { covers = CoversBelow(desk.scene, objects); });
    PaintCover sum;
    for (const auto& [body, cover] : covers) sum += cover;
    Json json;
    json["bodies"] = covers.size();
    json["vertices"] = sum.vertices;
    json["painted"] = sum.painted;
    json["area"] = sum.area;
    json["covered"] = sum.covered;
    return json;
}

Json PaintDrive::on(const drive::MakeGun& a) {
    if (guns.contains(a.name))
        throw std::runtime_error(std::format("a gun has the name \"{}\" already", a.name));
    auto* component = desk.stage.made.make<smartcomp::SprayComponent>(a.name);
    component->setProperty(nearProperty, a.nearMm);
    component->setProperty(farProperty, a.farMm);
    component->setProperty(heightProperty, a.heightMm);
    if (a.colour)
        component->setProperty(colourProperty,
                               rob::Vec3Template<double>(a.colour->r, a.colour->g, a.colour->b));
    component->setPose(a.pose);
    desk.scene.addSmartComponent(component);
    desk.wait();
    guns[a.name] = Gun{component->id, a, {}};
    Json json;
    json["object"] = component->id;
    return json;
}

Json PaintDrive::on(const drive::Paint& a) {
    Gun& gun = gunOf(a.gun);
    const std::vector<std::uint32_t> objects = desk.idsOf(a.objects);
    for (const std::uint32_t id : objects)
        if (gun.targets.insert(id).second) desk.scene.createPaintVisual(id, gun.id);
    return coverJson({objects.begin(), objects.end()});
}

Json PaintDrive::on(const drive::PaintEnd& a) {
    Gun& gun = gunOf(a.gun);
    const std::vector<std::uint32_t> objects = desk.idsOf(a.objects);
    for (const std::uint32_t id : objects)
        if (gun.targets.erase(id) > 0) desk.scene.removePaintVisual(id, gun.id);
    return coverJson({objects.begin(), objects.end()});
}

Json PaintDrive::on(const drive::Spray& a) {
    const Gun& gun = gunOf(a.gun);
    if (gun.targets.empty())
        throw std::runtime_error(std::format("the gun \"{}\" paints on nothing", a.gun));
    const auto spray = [&](const Pose& pose) {
        for (const std::uint32_t target : gun.targets)
            desk.scene.spray(gun.id, target, pose, gun.made.nearMm, gun.made.farMm,
                             gun.made.heightMm);
    };
    for (const Pose& pose : a.poses) {
        desk.scene.setVisualWorldPose(gun.id, PoseF(pose));
        spray(pose);
    }
    // The library sprays from where the gun stands.
    if (a.poses.empty()) spray({});
    return coverJson(gun.targets);
}

Json PaintDrive::on(const drive::PaintColour& a) {
    const std::vector<std::uint32_t> objects = desk.idsOf(a.objects);
    for (const std::uint32_t id : objects)
        desk.scene.setPaintColor(id, a.colour.r, a.colour.g, a.colour.b);
    desk.wait();
    Json json;
    json["objects"] = objects;
    return json;
}

Json PaintDrive::on(const drive::PaintReset& a) {
    const std::vector<std::uint32_t> objects = desk.idsOf(a.objects);
    for (const std::uint32_t id : objects) desk.scene.resetSpray(id);
    return coverJson({objects.begin(), objects.end()});
}

}  // namespace vrn::host
