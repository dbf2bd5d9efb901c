// A lasso and a screen rectangle over a cloud of 10 million points, beside the loops that do the
// same without a hierarchy: each on two threads, each with a list of the points found at its end.
// All of a comparison's answers are held against each other; the program fails where they differ.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <OgreCamera.h>
#include <OgreMatrix4.h>

#include "bench/BenchEngine.h"
#include "engine/Scene.h"
#include "selection/LassoSelector.h"
#include "selection/PlaneBoundedVolume.h"
#include "selection/PointCloudObject.h"
#include "suite/layout/PointCloud.h"
#include "visual/geometry/PointCloudVisual.h"

namespace {

using vrn::selection::LassoSelector;
using vrn::selection::Plane;
using vrn::selection::PlaneBoundedVolume;
using vrn::selection::PointCloudObject;
using vrn::visual::Camera;
using vrn::visual::PointCloudVisual;
using Pos = vrn::rob::PosTemplate<float>;
using Pose = vrn::rob::PoseTemplate<float>;
using Indices = std::vector<unsigned long>;
using Polygon = std::vector<LassoSelector::Point>;

constexpr std::size_t pointCount = 10'000'000;
constexpr int scanWidth = 4000;

enum Order { Scanned, Scattered };

/// A scan of a hilly floor, line by line; or points all over a block, in no order.
std::vector<Pos> MakePoints(Order order) {
    std::mt19937 engine(1);
    std::uniform_real_distribution<float> number(-1000, 1000);
    std::vector<Pos> points(pointCount);
    for (std::size_t i = 0; i < pointCount; ++i) {
        if (order == Scattered) {
            points[i] = {number(engine), number(engine), number(engine)};
            continue;
        }
        const float x = static_cast<float>(i % scanWidth) * 0.5f - 1000;
        const float y = static_cast<float>(i / scanWidth) * 0.8f - 1000;
        points[i] = {x, y, 100 * std::sin(x * 0.01f) * std::cos(y * 0.013f)};
    }
    return points;
}

/// A cloud that is in the selection and not on the screen.
struct Cloud {
    explicit Cloud(Order order)
        : model("scan", MakePoints(order)),
          visual(new PointCloudVisual(vrn::visual::Scene::Get()->root, &model)),
          object(visual) {
        object.updateWorldBox();
    }
    ~Cloud() {
        vrn::visual::Scene::Get()->deleteVisual(visual);
        vrn::visual::Scene::Get()->processMsgs();
    }
    Cloud(const Cloud&) = delete;
    Cloud& operator=(const Cloud&) = delete;

    vrn::layout::PointCloud model;
    PointCloudVisual* visual;  // the scene owns it
    PointCloudObject object;
};

/// One at a time, for what it takes; the last one goes before the engine does.
std::unique_ptr<Cloud> shown;

Cloud& CloudOf(Order order) {
    static Order held = Scanned;
    if (shown && held == order) return *shown;
    shown.reset();
    shown = std::make_unique<Cloud>(order);
    held = order;
    return *shown;
}

/// A hundred corners, on a circle or on a star.
Polygon MakePolygon(bool convex) {
    Polygon polygon;
    for (int i = 0; i < 100; ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / 100;
        const float radius = convex || i % 2 == 0 ? 0.6f : 0.35f;
        polygon.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return polygon;
}

/// Asks `isInside(point)` for all points, a half on each of two threads, and joins what they found.
/// No branch on the answer: each number is written, and only one that stays is stepped over.
template <class IsInside>
Indices OnTwoThreads(std::span<const Pos> points, const IsInside& isInside) {
    struct Half {
        std::unique_ptr<unsigned int[]> found;
        std::size_t count = 0;
    };
    Half halves[2];
    const auto find = [&](std::size_t first, std::size_t last, Half& half) {
        half.found = std::make_unique_for_overwrite<unsigned int[]>(last - first + 1);
        unsigned int* const found = half.found.get();
        std::size_t count = 0;
        for (std::size_t i = first; i < last; ++i) {
            found[count] = static_cast<unsigned int>(i);
            count += isInside(points[i]);
        }
        half.count = count;
    };
    const std::size_t middle = points.size() / 2;
    std::thread other([&] { find(0, middle, halves[0]); });
    find(middle, points.size(), halves[1]);
    other.join();
    Indices indices;
    indices.reserve(halves[0].count + halves[1].count);
    for (const Half& half : halves)
        indices.insert(indices.end(), half.found.get(), half.found.get() + half.count);
    return indices;
}

Ogre::Matrix4 ToClip(const Pose& pose) {
    const Ogre::Affine3 toWorld(
        Ogre::Vector3(pose.position.x, pose.position.y, pose.position.z),
        Ogre::Quaternion(pose.rotation.w, pose.rotation.x, pose.rotation.y, pose.rotation.z));
    const Ogre::Camera& eye = *Camera::Get()->camera;
    return eye.getProjectionMatrix() * eye.getViewMatrix(true) * toWorld;
}

struct Projected {
    float x, y, w;
};

inline Projected Project(const Ogre::Matrix4& m, const Pos& p) {
    const auto row = [&](int r) { return m[r][0] * p.x + m[r][1] * p.y + m[r][2] * p.z + m[r][3]; };
    const float w = row(3);
    return {row(0) / w, row(1) / w, w};
}

inline bool Contains(const Polygon& polygon, float x, float y) {
    bool inside = false;
    const LassoSelector::Point* a = &polygon.back();
    for (const LassoSelector::Point& b : polygon) {
        if ((y < b.y) != (y < a->y) && x < (a->x - b.x) * (y - b.y) / (a->y - b.y) + b.x)
            inside = !inside;
        a = &b;
    }
    return inside;
}

/// Every point against every edge.
Indices PlainLasso(std::span<const Pos> points, const Ogre::Matrix4& toClip,
                   const Polygon& polygon) {
    return OnTwoThreads(points, [&](const Pos& point) {
        const Projected p = Project(toClip, point);
        return p.w > 0 && Contains(polygon, p.x, p.y);
    });
}

/// One look at a picture of the polygon for each point: right to a pixel only.
struct CoverageMask {
    static constexpr int width = 640, height = 480;

    explicit CoverageMask(const Polygon& polygon) : covered(width * height) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                covered[y * width + x] =
                    Contains(polygon, (static_cast<float>(x) + 0.5f) / width * 2 - 1,
                             1 - (static_cast<float>(y) + 0.5f) / height * 2);
    }
    [[nodiscard]] Indices select(std::span<const Pos> points, const Ogre::Matrix4& toClip) const {
        return OnTwoThreads(points, [&](const Pos& point) {
            const Projected p = Project(toClip, point);
            const float x = (p.x + 1) * (width / 2), y = (1 - p.y) * (height / 2);
            return p.w > 0 && x >= 0 && x < width && y >= 0 && y < height &&
                   covered[static_cast<int>(y) * width + static_cast<int>(x)];
        });
    }

    std::vector<unsigned char> covered;
};

Indices PlainVolume(std::span<const Pos> points, const Pose& pose, std::span<const Plane> planes) {
    return OnTwoThreads(points, [&](const Pos& point) {
        const Pos p = vrn::rob::TransformPoint(pose, point);
        bool inside = true;
        for (const Plane& plane : planes) {
            const Ogre::Vector<3, float>& n = plane.normal;
            inside &= !(n[0] * p.x + n[1] * p.y + n[2] * p.z + plane.d > 0);
        }
        return inside;
    });
}

void ExpectSame(Indices ours, const Indices& peer, const char* what) {
    std::ranges::sort(ours);
    if (ours == peer) return;
    std::fprintf(stderr, "%s: the answers differ: %zu points and %zu\n", what, ours.size(),
                 peer.size());
    std::exit(1);
}

class Stopwatch {
public:
    /// Milliseconds that `work` takes.
    template <class Work>
    void time(const Work& work) {
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(work());
        const std::chrono::duration<double, std::milli> elapsed =
            std::chrono::steady_clock::now() - start;
        times.push_back(elapsed.count());
    }
    [[nodiscard]] double last() const { return times.back(); }
    [[nodiscard]] double quantile(double q) const {
        auto sorted = times;
        std::ranges::sort(sorted);
        return sorted[static_cast<std::size_t>(q * static_cast<double>(sorted.size() - 1))];
    }
    [[nodiscard]] double median() const { return quantile(0.5); }

private:
    std::vector<double> times;
};

void Report(benchmark::State& state, const std::string& name, const Stopwatch& watch) {
    state.counters[name + "_ms"] = watch.median();
    state.counters[name + "_ms_q1"] = watch.quantile(0.25);
    state.counters[name + "_ms_q3"] = watch.quantile(0.75);
}

void LassoOverPoints(benchmark::State& state) {
    Cloud& cloud = CloudOf(static_cast<Order>(state.range(0)));
    LassoSelector lasso(Camera::Get(), {});
    lasso.polygon = MakePolygon(state.range(1) == 1);
    const Ogre::Matrix4 toClip = ToClip(cloud.visual->getWorldPose());
    const auto& points = cloud.visual->getPoints();
    const auto ours = [&] {
        std::unordered_map<unsigned int, Indices> found;
        lasso.selectPointCloud(&cloud.object, found);
        return std::move(found[cloud.visual->id]);
    };
    const auto plain = [&] { return PlainLasso(points, toClip, lasso.polygon); };
    const CoverageMask coverage(lasso.polygon);
    const auto mask = [&] { return coverage.select(points, toClip); };

    const Indices answer = plain();
    ExpectSame(ours(), answer, "lasso");
    Stopwatch oursTime, plainTime, maskTime;
    for (auto _ : state) {
        maskTime.time(mask);
        oursTime.time(ours);
        plainTime.time(plain);
        state.SetIterationTime(oursTime.last() / 1000);
    }
    Report(state, "ours", oursTime);
    Report(state, "plain", plainTime);
    Report(state, "mask", maskTime);
    state.counters["plain_to_ours"] = plainTime.median() / oursTime.median();
    state.counters["ours_to_mask"] = oursTime.median() / maskTime.median();
    state.counters["found"] = static_cast<double>(answer.size());
}

void RectangleOverPoints(benchmark::State& state) {
    Cloud& cloud = CloudOf(static_cast<Order>(state.range(0)));
    const PlaneBoundedVolume volume(160, 120, 480, 360);
    const Pose pose = cloud.visual->getWorldPose();
    const auto& points = cloud.visual->getPoints();
    const auto ours = [&] {
        Indices indices;
        volume.intersect(&cloud.object, indices);
        return indices;
    };
    const auto plain = [&] { return PlainVolume(points, pose, volume.planes); };

    const Indices answer = plain();
    ExpectSame(ours(), answer, "rectangle");
    Stopwatch oursTime, plainTime;
    for (auto _ : state) {
        plainTime.time(plain);
        oursTime.time(ours);
        state.SetIterationTime(oursTime.last() / 1000);
    }
    Report(state, "ours", oursTime);
    Report(state, "plain", plainTime);
    state.counters["ours_to_plain"] = oursTime.median() / plainTime.median();
    state.counters["found"] = static_cast<double>(answer.size());
}

}  // namespace

BENCHMARK(LassoOverPoints)
    ->ArgNames({"scattered", "convex"})
    ->ArgsProduct({{Scanned}, {1, 0}})
    ->ArgsProduct({{Scattered}, {1, 0}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK(RectangleOverPoints)
    ->ArgName("scattered")
    ->Arg(Scattered)
    ->Arg(Scanned)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15);

int main(int argc, char** argv) {
    const vrn::bench::BenchEngine engine;
    // From above, so that the points fill the window and go beyond it.
    Camera::Get()->setWorldPosition({0, 0, 1500});
    Camera::Get()->setWorldRotation({});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shown.reset();
    return 0;
}
