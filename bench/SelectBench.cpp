// How fast a click is answered in a scene of 500 meshed solids, picked by face, beside
// OpenCASCADE's own selector on the same shapes at the same places under the same view.
//
// Every pixel of a grid is asked in both, in turn, row by row, so that whatever else the machine
// does meets both alike. Embree's ray at the same triangles tells how little a pick could cost.
// What one of them hits and the other does not is counted, so that neither is fast because it finds
// nothing.

#include <algorithm>
#include <array>
#include <cfloat>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <format>
#include <random>
#include <string>
#include <vector>

#include <embree4/rtcore.h>
#include <OgreCamera.h>
#include <OgreSceneNode.h>
#include <AIS_Shape.hxx>
#include <BRep_Tool.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <gp_Quaternion.hxx>
#include <Graphic3d_Camera.hxx>
#include <Poly_Triangulation.hxx>
#include <SelectMgr_SelectionManager.hxx>
#include <SelectMgr_ViewerSelector.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "selection/Ray.h"
#include "suite/geom/ShapeTools.h"
#include "visual/geometry/SolidVisual.h"

namespace {

using namespace vrn;
using bench::Median;
using Pos = rob::PosTemplate<float>;
using Rotation = rob::RotationTemplate<float>;

constexpr int solidCount = 500;
constexpr int windowWidth = 640, windowHeight = 480;
constexpr int gridStep = 4;  // pixels
// Some hundred triangles a solid, as stations are shown with.
constexpr double deflection = 3.0, angularDeflection = 0.35;
constexpr int passes = 5;
constexpr int moves = 20;

using Clock = std::chrono::steady_clock;

double MicrosecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

TopoDS_Shape MakeShape(int i) {
    const double size = 160 + i % 7 * 40;
    TopoDS_Shape shape;
    switch (i % 4) {
        case 0:
            shape = BRepPrimAPI_MakeSphere(size).Shape();
            break;
        case 1:
            shape = BRepPrimAPI_MakeTorus(size, size / 3).Shape();
            break;
        case 2:
            shape = BRepPrimAPI_MakeCone(size, size / 4, size * 2).Shape();
            break;
        default:
            shape = BRepPrimAPI_MakeCylinder(size / 2, size * 2).Shape();
    }
    geometry::GenerateMesh(shape, deflection, angularDeflection);
    return shape;
}

rob::PoseTemplate<float> AnyPose(std::mt19937& random) {
    std::uniform_real_distribution<float> along(-3600, 3600), angle(-3, 3);
    return {{along(random), along(random), along(random)},
            Rotation(angle(random), angle(random), angle(random))};
}

/// Its bounds otherwise come from presentations, which nothing makes without a window.
class PeerShape : public AIS_Shape {
public:
    using AIS_Shape::AIS_Shape;
    using AIS_Shape::BoundingBox;
    void BoundingBox(Bnd_Box& box) override { box = BoundingBox().Transformed(Transformation()); }
};

/// OpenCASCADE's selector, driven without a window of its own.
class Peer : public SelectMgr_ViewerSelector {
public:
    Peer() { myZLayerOrderMap.Bind(Graphic3d_ZLayerId_Default, 0); }

    void lookLike(const Ogre::Camera& ogre) {
        const Ogre::Vector3 eye = ogre.getDerivedPosition(), to = ogre.getDerivedDirection(),
                            up = ogre.getDerivedUp();
        camera = new Graphic3d_Camera;
        camera->SetProjectionType(Graphic3d_Camera::Projection_Perspective);
        camera->SetUp(gp_Dir(up.x, up.y, up.z));
        camera->SetEyeAndCenter(gp_Pnt(eye.x, eye.y, eye.z),
                                gp_Pnt(eye.x + to.x, eye.y + to.y, eye.z + to.z));
        camera->SetFOVy(static_cast<double>(ogre.getFOVy().valueDegrees()));
        camera->SetAspect(static_cast<double>(windowWidth) / windowHeight);
        camera->SetZRange(static_cast<double>(ogre.getNearClipDistance()),
                          static_cast<double>(ogre.getFarClipDistance()));
    }
    bool pick(double x, double y) {
        mySelectingVolumeMgr.InitPointSelectingVolume(gp_Pnt2d(x, y));
        mySelectingVolumeMgr.SetPixelTolerance(myTolerances.Tolerance());
        mySelectingVolumeMgr.SetCamera(camera);
        mySelectingVolumeMgr.SetWindowSize(windowWidth, windowHeight);
        mySelectingVolumeMgr.BuildSelectingVolume();
        TraverseSensitives();
        return NbPicked() > 0;
    }

private:
    Handle(Graphic3d_Camera) camera;
};

/// Embree's two levels over the triangles of the same solids, one ray a pick: no faces, no edges,
/// no registry, as little as a pick can cost.
class Limit {
public:
    Limit() : device(rtcNewDevice("threads=1")), top(rtcNewScene(device)) {}
    ~Limit() {
        for (RTCScene scene : parts) rtcReleaseScene(scene);
        rtcReleaseScene(top);
        rtcReleaseDevice(device);
    }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

    void add(const TopoDS_Shape& shape, const Ogre::Affine3& place) {
        RTCScene part = rtcNewScene(device);
        for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
            addFace(part, TopoDS::Face(faces.Current()));
        rtcCommitScene(part);
        parts.push_back(part);
        RTCGeometry instance = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_INSTANCE);
        rtcSetGeometryInstancedScene(instance, part);
        std::array<float, 12> rows{};
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 4; ++column)
                rows[row * 4 + column] = static_cast<float>(place[row][column]);
        rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT3X4_ROW_MAJOR, rows.data());
        rtcCommitGeometry(instance);
        rtcAttachGeometry(top, instance);
        rtcReleaseGeometry(instance);
    }
    void build() { rtcCommitScene(top); }
    [[nodiscard]] bool pick(float x, float y) const {
        const visual::Ray ray = visual::Camera::Get()->getViewportRay(x, y);
        RTCRayHit asked{};
        asked.ray.org_x = ray.origin.x;
        asked.ray.org_y = ray.origin.y;
        asked.ray.org_z = ray.origin.z;
        asked.ray.dir_x = ray.direction.x;
        asked.ray.dir_y = ray.direction.y;
        asked.ray.dir_z = ray.direction.z;
        asked.ray.tfar = FLT_MAX;
        asked.ray.mask = ~0u;
        asked.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(top, &asked);
        return asked.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    }

private:
    void addFace(RTCScene part, const TopoDS_Face& face) {
        TopLoc_Location location;
        const auto& mesh = BRep_Tool::Triangulation(face, location);
        RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto* points = static_cast<float*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), static_cast<std::size_t>(mesh->NbNodes())));
        for (int i = 1; i <= mesh->NbNodes(); ++i) {
            const gp_Pnt p = mesh->Node(i).Transformed(location.Transformation());
            for (const double value : {p.X(), p.Y(), p.Z()}) *points++ = static_cast<float>(value);
        }
        auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
            geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned),
            static_cast<std::size_t>(mesh->NbTriangles())));
        for (int i = 1; i <= mesh->NbTriangles(); ++i)
            for (int corner = 1; corner <= 3; ++corner)
                *indices++ = static_cast<unsigned>(mesh->Triangle(i).Value(corner) - 1);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(part, geometry);
        rtcReleaseGeometry(geometry);
    }

    RTCDevice device;
    RTCScene top;
    std::vector<RTCScene> parts;
};

/// The same solids in both worlds.
class Solids {
public:
    Solids() : selector(new Peer), manager(new SelectMgr_SelectionManager(selector)) {
        for (int i = 0; i < solidCount; ++i) {
            const TopoDS_Shape shape = MakeShape(i);
            visuals.push_back(visual::SolidVisual::Build(visual::Scene::Get()->root, shape, "Body",
                                                         "BodyHighlighted", "BodySelected"));
            peers.push_back(new PeerShape(shape));
        }
        place();
        visual::Camera::Get()->setWorldPosition({10000, -10000, 8000});
        selector->lookLike(*visual::Camera::Get()->camera);
    }
    ~Solids() {
        for (visual::Visual* visual : visuals) visual::Scene::Get()->deleteVisual(visual);
    }
    Solids(const Solids&) = delete;
    Solids& operator=(const Solids&) = delete;

    void place() {
        for (std::size_t i = 0; i < visuals.size(); ++i) {
            const rob::PoseTemplate<float> pose = AnyPose(random);
            visuals[i]->setPose(pose);
            gp_Trsf at;
            at.SetRotation(
                gp_Quaternion(pose.rotation.x, pose.rotation.y, pose.rotation.z, pose.rotation.w));
            at.SetTranslationPart(gp_Vec(pose.position.x, pose.position.y, pose.position.z));
            peers[i]->SetLocalTransformation(at);
        }
    }
    /// Microseconds.
    double update() {
        const auto begin = Clock::now();
        selection::VisualSelection::Get()->update();
        return MicrosecondsSince(begin);
    }
    double activatePeer() {
        const auto begin = Clock::now();
        for (const auto& peer : peers) {
            manager->Load(peer);
            manager->Activate(peer, AIS_Shape::SelectionMode(TopAbs_FACE));
        }
        selector->RebuildObjectsTree(/*theIsForce=*/true);
        return MicrosecondsSince(begin);
    }
    /// What the context does for a moved object, and the trees over the objects built anew.
    double updatePeer() {
        const auto begin = Clock::now();
        for (const auto& peer : peers) manager->Update(peer, /*theIsForce=*/false);
        selector->RebuildObjectsTree(/*theIsForce=*/true);
        return MicrosecondsSince(begin);
    }

    /// Where they stand now.
    void fill(Limit& limit) const {
        for (visual::SolidVisual* visual : visuals)
            limit.add(visual->getShape(), visual->node->_getFullTransform());
        limit.build();
    }

    [[nodiscard]] std::size_t triangleCount() const {
        std::size_t count = 0;
        for (visual::SolidVisual* visual : visuals) count += visual->getTrianglesNum();
        return count;
    }

    Handle(Peer) selector;

private:
    Handle(SelectMgr_SelectionManager) manager;
    std::vector<visual::SolidVisual*> visuals;
    std::vector<Handle(AIS_Shape)> peers;
    std::mt19937 random{500};
};

struct Times {
    std::vector<double> all, hits;

    void add(double microseconds, bool hit) {
        all.push_back(microseconds);
        if (hit) hits.push_back(microseconds);
    }
    static double mean(const std::vector<double>& times) {
        double sum = 0;
        for (const double t : times) sum += t;
        return times.empty() ? 0 : sum / static_cast<double>(times.size());
    }
    static double percentile99(std::vector<double> times) {
        if (times.empty()) return 0;
        const auto at = static_cast<std::ptrdiff_t>(times.size() * 99 / 100);
        std::nth_element(times.begin(), times.begin() + at, times.end());
        return times[static_cast<std::size_t>(at)];
    }
};

/// A pass over the grid in both; rows in turn. Answers how many pixels they tell apart.
int Pass(Solids& solids, Times& ours, Times& peer) {
    int different = 0;
    std::vector<bool> hitRow;
    for (int y = gridStep / 2; y < windowHeight; y += gridStep) {
        hitRow.clear();
        for (int x = gridStep / 2; x < windowWidth; x += gridStep) {
            const auto begin = Clock::now();
            const selection::Result result = selection::VisualSelection::Get()->select(
                static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
            ours.add(MicrosecondsSince(begin), result.hit);
            hitRow.push_back(result.hit);
        }
        std::size_t column = 0;
        for (int x = gridStep / 2; x < windowWidth; x += gridStep) {
            const auto begin = Clock::now();
            const bool hit = solids.selector->pick(x + 0.5, y + 0.5);
            peer.add(MicrosecondsSince(begin), hit);
            different += hit != hitRow[column++];
        }
    }
    return different;
}

/// Microseconds of each pixel of the grid.
Times PassOf(const Limit& limit) {
    Times times;
    for (int y = gridStep / 2; y < windowHeight; y += gridStep)
        for (int x = gridStep / 2; x < windowWidth; x += gridStep) {
            const auto begin = Clock::now();
            const bool hit = limit.pick(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
            times.add(MicrosecondsSince(begin), hit);
        }
    return times;
}

double Sum(const std::vector<double>& times) {
    double sum = 0;
    for (const double t : times) sum += t;
    return sum;
}

void Print(const char* what, double ours, double peer, double aim) {
    std::printf("%-34s %10.2f %12.2f %8.3f  (aim: %.2f)\n", what, ours, peer, ours / peer, aim);
}

void Run() {
    Solids solids;
    const double ourFirst = solids.update();
    const double peerActivation = solids.activatePeer();
    Times firstOurs, firstPeer, ours, peer;
    Pass(solids, firstOurs, firstPeer);
    int different = 0;
    for (int i = 0; i < passes; ++i) different = Pass(solids, ours, peer);

    Limit limit;
    solids.fill(limit);
    (void)PassOf(limit);
    const Times least = PassOf(limit);

    std::vector<double> ourMoves, peerMoves;
    for (int i = 0; i < moves; ++i) {
        solids.place();
        ourMoves.push_back(solids.update());
        peerMoves.push_back(solids.updatePeer());
    }

    // What the first pass takes beyond a later one: what is built when it is first needed.
    const double steadyOurs = Sum(ours.all) / passes, steadyPeer = Sum(peer.all) / passes;
    const double ourWhole = ourFirst + std::max(0.0, Sum(firstOurs.all) - steadyOurs);
    const double peerWhole = peerActivation + std::max(0.0, Sum(firstPeer.all) - steadyPeer);

    std::printf("%d solids, %zu triangles, %zu picks a pass, %zu of them hit; %d are told apart\n",
                solidCount, solids.triangleCount(), firstOurs.all.size(), firstOurs.hits.size(),
                different);
    std::printf("%-34s %10s %12s %8s\n", "microseconds", "ours", "OpenCASCADE", "ratio");
    Print("pick that hits, mean", Times::mean(ours.hits), Times::mean(peer.hits), 0.2);
    Print("pick that hits, 99th percentile", Times::percentile99(ours.hits),
          Times::percentile99(peer.hits), 0.1);
    Print("any pixel, mean", Times::mean(ours.all), Times::mean(peer.all), 0.2);
    Print("any pixel, 99th percentile", Times::percentile99(ours.all),
          Times::percentile99(peer.all), 0.1);
    std::printf("Embree's two levels: %zu hits, mean %.2f, any pixel %.2f\n", least.hits.size(),
                Times::mean(least.hits), Times::mean(least.all));
    Print("first update after loading", ourWhole, peerWhole, 0.5);
    Print("update after moving all", Median(ourMoves), Median(peerMoves), 0.5);
}

}  // namespace

int main() {
    const vrn::bench::BenchEngine engine;
    Run();
    return 0;
}
