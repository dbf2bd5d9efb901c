#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "apps/vrnview/readers/Content.h"
#include "engine/Scene.h"

namespace vrn::test {

/// What random operations choose from. Everything that is handed over by pointer lives as long as
/// this, so that an operation may run whenever its turn comes.
struct Supplies {
    Supplies();
    ~Supplies();
    Supplies(const Supplies&) = delete;
    Supplies& operator=(const Supplies&) = delete;

    /// Of the visuals of a station that was shown just now; the lasting ones are left out.
    void takeStation(const host::Content& content);
    /// Shows the parts whose visuals are handed over by pointer: their ids are never given to an
    /// operation, so that none of them is removed.
    void showLasting();

    /// Of the station. What the scene has of its own, the world frame, is left out: nothing would
    /// clear away what hangs under it.
    std::vector<std::uint32_t> ids;
    std::vector<sdf::SdfNode*> nodes;
    std::vector<task::Path*> paths;
    std::vector<task::MoveInst*> moves;
    std::vector<std::uint32_t> lastingIds;
    std::vector<visual::Visual*> lastingVisuals;

    struct Shapes;
    std::unique_ptr<Shapes> shapes;  ///< never null
    sdf::ObjectStore lastingModel;

private:
    std::unordered_set<std::uint32_t> sceneIds;
};

/// A source of random arguments for one thread, the same ones for the same seed.
class Script {
public:
    Script(unsigned seed, const Supplies& supplies);

    struct Operation {
        enum class Thread { Any, Caller, Render };
        const char* name;
        Thread thread;
        void (*run)(Script& script, visual::Scene& scene);
    };
    /// Every public operation of the facade.
    [[nodiscard]] static const std::vector<Operation>& operations();

    /// From 0 to `count` - 1.
    std::size_t choose(std::size_t count);
    bool chance(double probability);

    /// A value for the parameter `name`, "operation.parameter": mostly a sensible one, now and then
    /// a bad one. Public for the table.
    template <class T>
    T make(const char* name);

    /// How many tasks of its own have run.
    static std::uint64_t ranTasks();

private:
    template <class T>
    std::vector<T> few(const char* name);
    template <class T>
    T oneOf(const std::vector<T>& values) {
        return values.empty() ? T{} : values[choose(values.size())];
    }

    std::mt19937 random;
    const Supplies& supplies;
};

}  // namespace vrn::test
