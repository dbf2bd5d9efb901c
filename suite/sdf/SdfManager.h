#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <shared_mutex>
#include <unordered_map>

#include "suite/rob/PoseTypes.h"
#include "suite/SuiteApi.h"

namespace vrn::sdf {

class SdfNode;

/// The table of the model's objects by id, under a reader-writer lock.
///
/// Ids from 1 to lastModelId belong to model objects, stationLogicId to the station's logic, those
/// from firstTransientId on to visuals without a model object, so that they never meet. The lock is
/// held for the look-up alone; who uses a found object must know that it lives. Thread: any, every
/// operation.
class VRN_SUITE_API SdfManager {
public:
    static constexpr std::uint32_t lastModelId = 0x7FFF'FFFE;
    static constexpr std::uint32_t stationLogicId = 0x7FFF'FFFF;
    static constexpr std::uint32_t firstTransientId = 0x8000'0000;

    /// Never null; lives until the process ends.
    [[nodiscard]] static SdfManager* inst();

    /// The object of that id; null when absent.
    [[nodiscard]] SdfNode* find(std::uint32_t id) const;
    /// The object of that id, never null. Throws std::out_of_range with "unordered_map::at" when
    /// absent.
    [[nodiscard]] SdfNode* at(std::uint32_t id) const;
    [[nodiscard]] std::size_t size() const;

    /// Enters `node` under its id; entering it twice does nothing. Throws std::invalid_argument if
    /// the id is 0, above lastModelId (but for the station's logic), or another object's.
    void add(SdfNode& node);
    /// Takes `node` out; done by its destructor as well. Does nothing if it is not in.
    void remove(const SdfNode& node) noexcept;

    /// An id for a new model object: not in the table and not given out before. Throws
    /// std::overflow_error when all are used up.
    [[nodiscard]] std::uint32_t generateId();

    /// An id for a visual without a model object: from firstTransientId to the largest 32-bit
    /// number, never 0. None comes twice before all 2^31 have come.
    [[nodiscard]] static std::uint32_t GenerateTransientId();

    SdfManager(const SdfManager&) = delete;
    SdfManager& operator=(const SdfManager&) = delete;

private:
    SdfManager() = default;

    mutable std::shared_mutex mutex;  // guards the two below
    std::unordered_map<std::uint32_t, SdfNode*> nodes;
    std::uint32_t lastGenerated = 0;
    std::atomic<std::uint32_t> transientCount{0};
};

/// The stored pose of the object of that id (SdfNode::getPose). Throws std::out_of_range with
/// "unordered_map::at" for an unknown id. Thread: any.
[[nodiscard]] VRN_SUITE_API rob::PoseTemplate<double> GetPose(std::uint32_t id);

}  // namespace vrn::sdf
