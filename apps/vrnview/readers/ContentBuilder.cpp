#include "apps/vrnview/readers/ContentBuilder.h"

#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <gp_Ax2.hxx>

#include <algorithm>
#include <cmath>
#include <format>
#include <limits>
#include <stdexcept>

#include "apps/vrnview/readers/FileBytes.h"
#include "apps/vrnview/readers/GeometryUri.h"
#include "apps/vrnview/readers/OcctGuard.h"
#include "apps/vrnview/readers/StlFile.h"
#include "suite/geom/BodyColorTool.h"
#include "suite/geom/ShapeTools.h"
#include "suite/layout/Body.h"
#include "suite/layout/Mechanism.h"
#include "suite/layout/Part.h"
#include "suite/layout/PointCloud.h"

namespace vrn::host {

namespace {

using geometry::BodyColorTool;

double UniformUnit(const GeometryUse& use) {
    const auto& unit = use.unitMm;
    if (unit.x == unit.y && unit.x == unit.z && unit.x > 0) return unit.x;
    throw std::runtime_error("bodies cannot be stretched or mirrored");
}

/// The shape of a link that has no file, its middle at the origin.
TopoDS_Shape SolidOf(const LinkShape& shape) {
    const auto& size = shape.size;
    const bool hasHeight = shape.kind != LinkShape::Kind::Sphere;
    const bool hasDepth = shape.kind == LinkShape::Kind::Box;
    if (!(size.x > 0) || (hasHeight && !(size.y > 0)) || (hasDepth && !(size.z > 0)))
        throw std::runtime_error("its sizes must be above 0");
    switch (shape.kind) {
        case LinkShape::Kind::Box:
            return BRepPrimAPI_MakeBox(gp_Pnt(-size.x / 2, -size.y / 2, -size.z / 2), size.x,
                                       size.y, size.z)
                .Shape();
        case LinkShape::Kind::Cylinder:
            return BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(0, 0, -size.y / 2), gp_Dir(0, 0, 1)),
                                            size.x, size.y)
                .Shape();
        case LinkShape::Kind::Sphere:
            return BRepPrimAPI_MakeSphere(size.x).Shape();
        case LinkShape::Kind::Mesh:
            break;
    }
    return {};
}

/// Bodies of one name share one mesh, so the name tells kind and sizes.
std::string SolidUri(const LinkShape& shape) {
    return std::format("link-shape:{}*{}*{}*{}", static_cast<int>(shape.kind), shape.size.x,
                       shape.size.y, shape.size.z);
}

/// A mechanism's links in the order of the description.
std::size_t LinkNamed(const RobotDescription& description, const std::string& name) {
    const auto found = std::ranges::find(description.links, name, &RobotLink::name);
    return static_cast<std::size_t>(found - description.links.begin());
}

std::size_t WristLink(const RobotDescription& description, const std::string& wanted) {
    const std::size_t count = description.links.size();
    if (!wanted.empty()) {
        const std::size_t link = LinkNamed(description, wanted);
        if (link == count) throw std::runtime_error(std::format("there is no link '{}'", wanted));
        return link;
    }
    for (const char* name : {"tool0", "flange"})
        if (const std::size_t link = LinkNamed(description, name); link < count) return link;
    return description.kinematics.getTip();
}

using Points = std::vector<rob::PosTemplate<double>>;

/// The middle of the points where they lie so far from the origin that single precision would be
/// coarser than a hundred thousandth of their extent; otherwise the origin.
rob::PosTemplate<double> OwnOrigin(const Points& points) {
    constexpr double farOut = 100;  // times the extent
    constexpr double infinite = std::numeric_limits<double>::infinity();
    rob::PosTemplate<double> low{infinite, infinite, infinite};
    rob::PosTemplate<double> high{-infinite, -infinite, -infinite};
    for (const auto& p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    const double extent = std::max({high.x - low.x, high.y - low.y, high.z - low.z});
    const rob::PosTemplate<double> middle{low.x / 2 + high.x / 2, low.y / 2 + high.y / 2,
                                          low.z / 2 + high.z / 2};
    const double distance = std::max({std::abs(middle.x), std::abs(middle.y), std::abs(middle.z)});
    if (!std::isfinite(extent) || distance <= farOut * extent) return {};
    // Whole numbers, which single precision holds exactly up to 16 million.
    return {std::round(middle.x), std::round(middle.y), std::round(middle.z)};
}

}  // namespace

void JointedObject::poseLinks() {
    const std::vector<Pose> poses = kinematics.linkPoses();
    for (std::size_t i = 0; i < links.size(); ++i) links[i]->setPose(poses[i]);
}

void ContentBuilder::addProblem(const std::string& what, const std::string& reason) {
    content.problems.push_back(std::format("{}: {}", what, reason));
}

layout::Body& ContentBuilder::stlBody(const std::string& name, const std::filesystem::path& file,
                                      const GeometryUse& use) {
    const std::string meshName = StlName(file, use.unitMm);
    if (!stlNames.contains(meshName)) {
        content.meshes.push_back(ReadStlFile(file, use.unitMm));
        stlNames.insert(meshName);
    }
    auto* body = content.objects.make<layout::Body>(name, meshName, std::string("stl"));
    if (use.colour) BodyColorTool::SetBodyColor(body->element, *use.colour);
    if (!use.material.empty()) body->setMaterialName(use.material);
    return *body;
}

layout::Body& ContentBuilder::cadBody(const CadBody& source,
                                      const std::optional<std::string>& placedColour,
                                      const GeometryUse& use) {
    auto* body = content.objects.make<layout::Body>(source.name, source.uri, source.shape);
    const auto& colour = use.colour ? use.colour : placedColour ? placedColour : source.colour;
    if (colour) BodyColorTool::SetBodyColor(body->element, *colour);
    if (!use.colour)
        for (const auto& [face, faceColour] : source.faceColours)
            BodyColorTool::SetFaceColor(body->element, face, faceColour);
    if (!use.material.empty()) body->setMaterialName(use.material);
    return *body;
}

const CadModel& ContentBuilder::cad(const std::filesystem::path& file, double unitMm) {
    const std::string key = GeometryUri(file) + UnitSuffix(unitMm);
    const auto known = cads.find(key);
    if (known != cads.end()) return known->second;
    const CadModel& read = cads.emplace(key, ReadCadFile(file, unitMm)).first->second;
    for (const std::string& problem : read.problems) content.problems.push_back(problem);
    return read;
}

sdf::SdfObject& ContentBuilder::objectOf(const CadNode& node, const GeometryUse& use) {
    sdf::SdfObject* object = nullptr;
    if (node.part) {
        auto* part = content.objects.make<layout::Part>(node.name);
        for (const CadBody& body : node.part->bodies)
            part->addBody(cadBody(body, node.colour, use));
        object = part;
    } else {
        auto* assembly = content.objects.make<layout::Assembly>(node.name);
        for (const CadNode& child : node.children) assembly->addChild(objectOf(child, use));
        object = assembly;
    }
    object->setPose(node.pose);
    if (node.hidden) content.hidden.insert(object->id);
    return *object;
}

sdf::SdfObject& ContentBuilder::model(const std::filesystem::path& file, const std::string& name,
                                      const GeometryUse& use) {
    const std::string extension = LowerExtension(file);
    if (extension == ".stl") {
        layout::Body& body = stlBody(name, file, use);
        auto* part = content.objects.make<layout::Part>(name);
        part->addBody(body);
        return *part;
    }
    if (!IsCadExtension(extension))
        throw std::runtime_error(
            "not a file of bodies (supported: .step .stp .iges .igs .brep .stl)");
    const CadModel& read = cad(file, UniformUnit(use));
    if (read.roots.size() == 1) return objectOf(read.roots.front(), use);
    auto* assembly = content.objects.make<layout::Assembly>(name);
    for (const CadNode& root : read.roots) assembly->addChild(objectOf(root, use));
    return *assembly;
}

void ContentBuilder::list(sdf::SdfObject& partOrAssembly) {
    if (auto* part = dynamic_cast<layout::Part*>(&partOrAssembly)) content.parts.push_back(part);
    if (auto* assembly = dynamic_cast<layout::Assembly*>(&partOrAssembly))
        content.assemblies.push_back(assembly);
}

void ContentBuilder::addNode(layout::Part& part, const CadNode& node, const Pose& outer,
                             const GeometryUse& use, std::vector<layout::Body*>& bodies) {
    const Pose pose = Compose(outer, node.pose);
    for (const CadNode& child : node.children) addNode(part, child, pose, use, bodies);
    if (!node.part) return;
    for (const CadBody& source : node.part->bodies) {
        layout::Body& body = cadBody(source, node.colour, use);
        body.setPose(pose);
        part.addBody(body);
        bodies.push_back(&body);
    }
}

std::vector<layout::Body*> ContentBuilder::addBodies(layout::Part& part,
                                                     const std::filesystem::path& file,
                                                     const GeometryUse& use, const Pose& origin) {
    std::vector<layout::Body*> bodies;
    if (LowerExtension(file) == ".stl") {
        layout::Body& body = stlBody(part.name, file, use);
        body.setPose(origin);
        part.addBody(body);
        return {&body};
    }
    if (!IsCadExtension(LowerExtension(file)))
        throw std::runtime_error(
            "not a file of bodies (supported: .step .stp .iges .igs .brep .stl)");
    for (const CadNode& root : cad(file, UniformUnit(use)).roots)
        addNode(part, root, origin, use, bodies);
    return bodies;
}

layout::PointCloud& ContentBuilder::cloud(const std::filesystem::path& file,
                                          const std::string& name, double unitMm,
                                          const Pose& pose) {
    Points points = ReadCloudFile(file).points;
    for (auto& p : points) p = {p.x * unitMm, p.y * unitMm, p.z * unitMm};
    const rob::PosTemplate<double> origin = OwnOrigin(points);
    constexpr double largest = 1e15;  // what the picture's boxes can be computed with
    for (const auto& p : points)
        if (std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}) > largest)
            throw std::runtime_error("has coordinates beyond 1e15, too large to be shown");
    std::vector<rob::PosTemplate<float>> single;
    single.reserve(points.size());
    for (const auto& p : points)
        single.emplace_back(static_cast<float>(p.x - origin.x), static_cast<float>(p.y - origin.y),
                            static_cast<float>(p.z - origin.z));
    auto* cloud = content.objects.make<layout::PointCloud>(name, std::move(single));
    cloud->setPose(Compose(pose, {origin, {}}));
    content.clouds.push_back(cloud);
    return *cloud;
}

void ContentBuilder::addShape(layout::Part& part, const LinkShape& shape,
                              const std::filesystem::path& file, const std::string& material) {
    const GeometryUse use{shape.size, shape.colour, material};
    if (shape.kind == LinkShape::Kind::Mesh) {
        const std::filesystem::path mesh = FindMesh(shape.file, file);
        try {
            // A file of bodies that tells its own unit is not to be scaled.
            GeometryUse own = use;
            const std::string extension = LowerExtension(mesh);
            if (IsCadExtension(extension) && extension != ".brep") own.unitMm = {1, 1, 1};
            addBodies(part, mesh, own, shape.origin);
        } catch (const std::exception& error) {
            addProblem(shape.file.empty() ? part.name : shape.file, error.what());
        }
        return;
    }
    try {
        WithOcctErrors("its shape cannot be made", [&] {
            const TopoDS_Shape solid = SolidOf(shape);
            geometry::GenerateMesh(solid, 0, 0);
            layout::Body& body =
                cadBody({part.name, SolidUri(shape), solid, {}, {}}, std::nullopt, use);
            body.setPose(shape.origin);
            part.addBody(body);
        });
    } catch (const std::runtime_error& error) {
        addProblem(part.name, error.what());
    }
}

JointedObject& ContentBuilder::addLinks(layout::Mechanism& mechanism, RobotDescription description,
                                        const std::filesystem::path& file,
                                        const std::string& material) {
    JointedObject jointed;
    jointed.object = &mechanism;
    jointed.kinematics = std::move(description.kinematics);
    for (const std::string& problem : description.problems) content.problems.push_back(problem);
    for (const RobotLink& source : description.links) {
        auto* link = content.objects.make<layout::Link>(source.name);
        mechanism.addLink(*link);
        jointed.links.push_back(link);
        if (source.shapes.empty()) continue;
        auto* part = content.objects.make<layout::Part>(source.name);
        link->addChild(*part);
        for (const LinkShape& shape : source.shapes) addShape(*part, shape, file, material);
    }
    jointed.poseLinks();
    content.jointed.push_back(std::move(jointed));
    return content.jointed.back();
}

layout::Manipulator& ContentBuilder::robot(RobotDescription description,
                                           const std::filesystem::path& file,
                                           const std::string& vendor, const Pose& pose,
                                           const std::string& wristLink) {
    const std::size_t wristIndex = WristLink(description, wristLink);
    auto* robot = content.objects.make<layout::Manipulator>(description.name, vendor);
    robot->setPose(pose);
    const std::string name = description.name;
    JointedObject& jointed =
        addLinks(*robot, std::move(description), file, MaterialFamilyOf(vendor));
    robot->setWrist(*content.objects.make<layout::Wrist>("Wrist"), *jointed.links[wristIndex]);
    auto* base = content.objects.make<layout::BaseFrame>(name + " base");
    base->setPose(pose);
    robot->setBaseObject(*base);
    content.robots.push_back(robot);
    return *robot;
}

}  // namespace vrn::host
