// How fast STL files are read: ours, a minimal loop, Assimp and OpenCASCADE, on the same two files.
//
// The files are made in the temporary folder: a million triangles in binary form, 200,000 in text
// form. At the end the ratios are printed that the reader is held to: at most 1.2 times the minimal
// loop, and at least 1.5 times faster than the faster of the two libraries.

#include "mesh/Mesh.h"
#include "mesh/STLLoader.h"

#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <assimp/Importer.hpp>
#include <Poly_Triangulation.hxx>
#include <RWStl.hxx>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <format>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

using vrn::visual::Mesh;
using Pos = vrn::rob::PosTemplate<float>;
using Vec = vrn::rob::Vec3Template<float>;

// ---- the files

struct Triangle {
    Vec normal;
    Pos corners[3];
};

/// Calls `use` for each triangle of a wavy sheet, `count` in all.
void ForEachTriangle(std::size_t count, const std::function<void(const Triangle&)>& use) {
    const auto side =
        static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count) / 2)));
    const auto point = [](std::size_t column, std::size_t row) {
        const auto x = static_cast<float>(column) * 0.731f, y = static_cast<float>(row) * 0.517f;
        return Pos{x, y, 25 * std::sin(x * 0.031f) * std::cos(y * 0.027f)};
    };
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t column = i / 2 % side, row = i / 2 / side;
        const Pos a = point(column, row), b = point(column + 1, row + 1);
        const Pos c = i % 2 == 0 ? point(column + 1, row) : b;
        const Pos d = i % 2 == 0 ? b : point(column, row + 1);
        use({(c - a).cross(d - a).normalized(), {a, c, d}});
    }
}

void WriteBinary(const std::filesystem::path& path, std::uint32_t count) {
    std::string bytes(80, ' ');
    bytes.append(reinterpret_cast<const char*>(&count), sizeof count);
    ForEachTriangle(count, [&](const Triangle& triangle) {
        bytes.append(reinterpret_cast<const char*>(&triangle), sizeof triangle);
        bytes.append(2, '\0');
    });
    std::ofstream(path, std::ios::binary) << bytes;
}

void WriteText(const std::filesystem::path& path, std::size_t count) {
    std::string text = "solid sheet\n";
    ForEachTriangle(count, [&](const Triangle& t) {
        text += std::format("  facet normal {:.6e} {:.6e} {:.6e}\n    outer loop\n", t.normal.x,
                            t.normal.y, t.normal.z);
        for (const Pos& p : t.corners)
            text += std::format("      vertex {:.6e} {:.6e} {:.6e}\n", p.x, p.y, p.z);
        text += "    endloop\n  endfacet\n";
    });
    std::ofstream(path, std::ios::binary) << text << "endsolid sheet\n";
}

class Files {
public:
    static constexpr std::uint32_t binaryTriangles = 1'000'000;
    static constexpr std::size_t textTriangles = 200'000;

    Files() {
        std::filesystem::create_directories(folder);
        WriteBinary(binary, binaryTriangles);
        WriteText(text, textTriangles);
    }
    ~Files() { std::filesystem::remove_all(folder); }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / std::format("vrn-bench-stl-{}", getpid());
    const std::filesystem::path binary = folder / "binary.stl";
    const std::filesystem::path text = folder / "text.stl";
};

// ---- the readers: each gives the number of triangles that it read

std::size_t Ours(const std::string& path) {
    const std::unique_ptr<Mesh> mesh(vrn::visual::STLLoader::Load(path));
    return mesh->indices.size() / 3;
}

std::vector<char> Bytes(const std::string& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                         &std::fclose);
    std::fseek(file.get(), 0, SEEK_END);
    std::vector<char> bytes(static_cast<std::size_t>(std::ftell(file.get())) + 1);
    std::rewind(file.get());
    if (std::fread(bytes.data(), 1, bytes.size() - 1, file.get()) != bytes.size() - 1)
        throw std::runtime_error("cannot read " + path);
    return bytes;
}

/// The least that fills the same arrays: nothing is checked.
std::size_t MinimalBinary(const std::string& path) {
    const std::vector<char> bytes = Bytes(path);
    std::uint32_t count = 0;
    std::memcpy(&count, &bytes[80], 4);
    auto mesh = std::make_unique<Mesh>(path);
    mesh->vertices.reserve(std::size_t{3} * count);
    mesh->normals.reserve(std::size_t{3} * count);
    mesh->indices.reserve(std::size_t{3} * count);
    for (std::uint32_t i = 0; i < count; ++i) {
        Triangle triangle;
        std::memcpy(&triangle, &bytes[84 + std::size_t{50} * i], sizeof triangle);
        for (std::uint32_t corner = 0; corner < 3; ++corner) {
            mesh->vertices.push_back(triangle.corners[corner]);
            mesh->normals.push_back(triangle.normal);
            mesh->indices.push_back(3 * i + corner);
        }
    }
    return mesh->indices.size() / 3;
}

/// Trusts that twelve numbers follow each other, with words that hold neither digit nor sign
/// between them.
std::size_t MinimalText(const std::string& path) {
    const std::vector<char> bytes = Bytes(path);
    const char *p = bytes.data(), *end = p + bytes.size() - 1;
    const auto number = [&] {
        float value = 0;
        while (p < end && *p != '-' && (*p < '0' || *p > '9')) ++p;
        p = std::from_chars(p, end, value).ptr;
        return value;
    };
    auto mesh = std::make_unique<Mesh>(path);
    for (;;) {
        const float x = number(), y = number(), z = number();
        if (p == end) break;
        const Vec normal(x, y, z);
        for (int corner = 0; corner < 3; ++corner) {
            const float vx = number(), vy = number(), vz = number();
            mesh->indices.push_back(static_cast<std::uint32_t>(mesh->vertices.size()));
            mesh->vertices.emplace_back(vx, vy, vz);
            mesh->normals.push_back(normal);
        }
    }
    return mesh->indices.size() / 3;
}

std::size_t WithAssimp(const std::string& path) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path, 0);
    return scene == nullptr ? 0 : scene->mMeshes[0]->mNumFaces;
}

std::size_t WithOpenCascade(const std::string& path) {
    const Handle(Poly_Triangulation) mesh = RWStl::ReadFile(path.c_str());
    return mesh.IsNull() ? 0 : static_cast<std::size_t>(mesh->NbTriangles());
}

// ---- the run

void Register(const std::string& name, std::size_t (*read)(const std::string&),
              const std::filesystem::path& path, std::size_t triangles) {
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
        for (auto _ : state) {
            if (read(path.string()) != triangles) {
                state.SkipWithError("a wrong number of triangles");
                break;
            }
        }
        const auto count = static_cast<double>(triangles) * static_cast<double>(state.iterations());
        state.counters["triangles/s"] = benchmark::Counter(count, benchmark::Counter::kIsRate);
    })->Unit(benchmark::kMillisecond);
}

/// Keeps the best time of each reader besides printing as usual.
class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.skipped != benchmark::internal::NotSkipped)
                continue;
            const double time = run.GetAdjustedRealTime();
            const auto [entry, isNew] = best.try_emplace(run.run_name.function_name, time);
            if (!isNew) entry->second = std::min(entry->second, time);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatios(const std::string& form) const {
        const auto time = [&](const std::string& reader) { return best.find(form + "/" + reader); };
        for (const char* reader : {"ours", "minimal", "assimp", "opencascade"})
            if (time(reader) == best.end()) return;  // filtered out
        const double ours = time("ours")->second;
        const double peer = std::min(time("assimp")->second, time("opencascade")->second);
        std::printf(
            "%s: %.2f times the minimal loop (aim: at most 1.2), %.2f times faster than the faster "
            "library (aim: at least 1.5)\n",
            form.c_str(), ours / time("minimal")->second, peer / ours);
    }

private:
    std::map<std::string, double> best;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const Files files;
    Register("binary/ours", Ours, files.binary, Files::binaryTriangles);
    Register("binary/minimal", MinimalBinary, files.binary, Files::binaryTriangles);
    Register("binary/assimp", WithAssimp, files.binary, Files::binaryTriangles);
    Register("binary/opencascade", WithOpenCascade, files.binary, Files::binaryTriangles);
    Register("text/ours", Ours, files.text, Files::textTriangles);
    Register("text/minimal", MinimalText, files.text, Files::textTriangles);
    Register("text/assimp", WithAssimp, files.text, Files::textTriangles);
    Register("text/opencascade", WithOpenCascade, files.text, Files::textTriangles);
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios("binary");
    reporter.printRatios("text");
    return 0;
}
