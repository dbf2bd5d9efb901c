// From triangulated bodies to meshes on the graphics card: ours, a tight loop written for the same
// arrays with the same upload, and OpenCASCADE's own conversion for display, which uploads nothing.
// The bodies are those of the robot cell, triangulated finely beforehand; the three take turns.

#include <benchmark/benchmark.h>
#include <OgreMeshManager.h>
#include <OgreResourceGroupManager.h>
#include <BRep_Tool.hxx>
#include <Graphic3d_ArrayOfTriangles.hxx>
#include <Poly_Triangulation.hxx>
#include <StdPrs_ShadedShape.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/BenchEngine.h"
#include "bench/Median.h"
#include "engine/Scene.h"
#include "examples/cell/Cell.h"
#include "mesh/Mesh.h"
#include "mesh/MeshManager.h"
#include "suite/geom/ColorInfo.h"
#include "suite/geom/ShapeTools.h"
#include "visual/geometry/SolidVisual.h"

namespace {

using namespace vrn;
using visual::Mesh;
using visual::MeshManager;

constexpr double deflection = 0.05, angularDeflection = 0.12;

void Append(std::vector<TopoDS_Shape>& shapes, const std::vector<examples::PaintedBody>& bodies) {
    for (const examples::PaintedBody& body : bodies) shapes.push_back(body.shape);
}

std::vector<TopoDS_Shape> CellShapes() {
    const examples::RobotCell cell = examples::MakeCell();
    std::vector<TopoDS_Shape> shapes{cell.workpiece.shape, cell.fixture};
    for (const examples::Linkage* linkage : {&cell.arm, &cell.positioner}) {
        Append(shapes, linkage->base);
        for (const examples::LinkBodies& link : linkage->links) Append(shapes, link.bodies);
    }
    Append(shapes, cell.tool);
    for (const examples::StandingBody& standing : cell.surroundings)
        shapes.push_back(standing.body.shape);
    for (const TopoDS_Shape& shape : shapes)
        geometry::GenerateMesh(shape, deflection, angularDeflection);
    return shapes;
}

/// Takes the Ogre mesh out again, which is not part of the measure.
void Unload(const std::string& name) {
    Ogre::MeshManager::getSingleton().remove(name, Ogre::RGN_DEFAULT);
}

// ---- the least that fills the same arrays: no hidden faces, no broken nodes, colours at hand

struct Totals {
    std::size_t nodes = 0, triangles = 0;
};

Totals TotalsOf(const visual::FaceMap& faces) {
    Totals totals;
    TopLoc_Location unused;
    for (int i = 1; i <= faces.Extent(); ++i) {
        const auto& triangulation = BRep_Tool::Triangulation(TopoDS::Face(faces(i)), unused);
        if (triangulation.IsNull()) continue;
        totals.nodes += static_cast<std::size_t>(triangulation->NbNodes());
        totals.triangles += static_cast<std::size_t>(triangulation->NbTriangles());
    }
    return totals;
}

void AppendFace(Mesh& mesh, const TopoDS_Face& face, const rob::ColorTemplate<float>& color) {
    TopLoc_Location location;
    const auto& triangulation = BRep_Tool::Triangulation(face, location);
    if (triangulation.IsNull()) return;
    const bool moved = !location.IsIdentity();
    const gp_Trsf move = location.Transformation();
    const bool reversed = face.Orientation() == TopAbs_REVERSED;
    const auto base = static_cast<std::uint32_t>(mesh.vertices.size());
    for (int i = 1; i <= triangulation->NbNodes(); ++i) {
        gp_Pnt p = triangulation->Node(i);
        gp_Dir n = triangulation->Normal(i);
        if (moved) {
            p.Transform(move);
            n.Transform(move);
        }
        if (reversed) n.Reverse();
        mesh.vertices.push_back(
            rob::PosTemplate<float>(rob::PosTemplate<double>{p.X(), p.Y(), p.Z()}));
        mesh.normals.push_back(
            rob::Vec3Template<float>(rob::Vec3Template<double>{n.X(), n.Y(), n.Z()}));
        mesh.colors.push_back(color);
    }
    for (int i = 1; i <= triangulation->NbTriangles(); ++i) {
        int a = 0, b = 0, c = 0;
        triangulation->Triangle(i).Get(a, b, c);
        if (reversed) std::swap(a, b);
        for (const int node : {a, b, c})
            mesh.indices.push_back(base + static_cast<std::uint32_t>(node) - 1);
    }
}

std::unique_ptr<Mesh> TightMesh(const visual::FaceMap& faces) {
    auto mesh = std::make_unique<Mesh>("bench_tight");
    const Totals totals = TotalsOf(faces);
    mesh->vertices.reserve(totals.nodes);
    mesh->normals.reserve(totals.nodes);
    mesh->colors.reserve(totals.nodes);
    mesh->indices.reserve(3 * totals.triangles);
    for (int i = 1; i <= faces.Extent(); ++i)
        AppendFace(*mesh, TopoDS::Face(faces(i)), {0.75f, 0.77f, 0.8f});
    return mesh;
}

// ---- the race

struct Times {
    std::vector<double> converted, uploaded;
};

class Race {
public:
    Race() {
        for (const TopoDS_Shape& shape : CellShapes()) {
            auto* solid = new visual::SolidVisual(shape, &group);
            solids.push_back(solid);
            triangles += TotalsOf(solid->getFaceMap()).triangles;
        }
    }
    ~Race() { group.clearChildren(); }

    void runOurs(Times& times) const {
        static const ColorInfo colors{"#BFC5CC", {}};
        run(times, [](visual::SolidVisual* solid) {
            auto mesh =
                MeshManager::getShapeMesh(solid->getShape(), solid->getFaceMap(), solid, &colors);
            mesh->name = "bench_ours";
            return mesh;
        });
    }
    void runTight(Times& times) const {
        run(times, [](visual::SolidVisual* solid) { return TightMesh(solid->getFaceMap()); });
    }
    void runOpenCascade(Times& times) const {
        double ms = 0;
        for (visual::SolidVisual* solid : solids) {
            const TopoDS_Shape shape = solid->getShape();
            ms += bench::MillisecondsOf([&] {
                benchmark::DoNotOptimize(StdPrs_ShadedShape::FillTriangles(shape)->VertexNumber());
            });
        }
        times.converted.push_back(ms);
    }

    std::size_t triangles = 0;

private:
    template <class Convert>
    void run(Times& times, Convert convert) const {
        double converted = 0, uploaded = 0;
        for (visual::SolidVisual* solid : solids) {
            std::unique_ptr<Mesh> mesh;
            converted += bench::MillisecondsOf([&] { mesh = convert(solid); });
            uploaded += bench::MillisecondsOf([&] { MeshManager::Get()->loadToGpu(mesh.get()); });
            Unload(mesh->name);
        }
        times.converted.push_back(converted);
        times.uploaded.push_back(converted + uploaded);
    }

    visual::Visual group{"BenchShapes", visual::Scene::Get()->root};
    std::vector<visual::SolidVisual*> solids;
};

void ConvertShapes(benchmark::State& state) {
    const Race race;
    Times ours, tight, openCascade;
    for (auto _ : state) {
        race.runOurs(ours);
        race.runTight(tight);
        race.runOpenCascade(openCascade);
        state.SetIterationTime(ours.uploaded.back() / 1e3);
    }
    using bench::Median;
    std::printf(
        "%zu triangles\n"
        "converted: ours %.1f ms, tight loop %.1f ms, OpenCASCADE %.1f ms\n"
        "with upload: ours %.1f ms, tight loop %.1f ms: %.2f times the tight loop (aim: at most "
        "1.3)\n"
        "converted: %.2f times OpenCASCADE's time (aim: below 1)\n",
        race.triangles, Median(ours.converted), Median(tight.converted),
        Median(openCascade.converted), Median(ours.uploaded), Median(tight.uploaded),
        Median(ours.uploaded) / Median(tight.uploaded),
        Median(ours.converted) / Median(openCascade.converted));
}

}  // namespace

BENCHMARK(ConvertShapes)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
