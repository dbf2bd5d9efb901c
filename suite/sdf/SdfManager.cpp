#include "suite/sdf/SdfManager.h"

#include "suite/sdf/SdfNode.h"

#include <mutex>
#include <stdexcept>
#include <string>

namespace vrn::sdf {

namespace {

bool IsModelId(const SdfNode& node) {
    if (node.objectType == ObjectType::StationLogic) return node.id == SdfManager::stationLogicId;
    return node.id != 0 && node.id <= SdfManager::lastModelId;
}

}  // namespace

SdfManager* SdfManager::inst() {
    // Never destroyed: objects held by statics elsewhere still leave it when they end.
    static auto* manager = new SdfManager;
    return manager;
}

SdfNode* SdfManager::find(std::uint32_t id) const {
    const std::shared_lock lock(mutex);
    const auto it = nodes.find(id);
    return it == nodes.end() ? nullptr : it->second;
}

SdfNode* SdfManager::at(std::uint32_t id) const {
    if (SdfNode* node = find(id)) return node;
    // Written out: hosts compare the text, whichever standard library this is built with.
    throw std::out_of_range("unordered_map::at");
}

std::size_t SdfManager::size() const {
    const std::shared_lock lock(mutex);
    return nodes.size();
}

void SdfManager::add(SdfNode& node) {
    if (!IsModelId(node))
        throw std::invalid_argument("a model object's id must be from 1 to " +
                                    std::to_string(lastModelId) + ", got " +
                                    std::to_string(node.id));
    const std::unique_lock lock(mutex);
    const auto [it, isNew] = nodes.try_emplace(node.id, &node);
    if (!isNew && it->second != &node)
        throw std::invalid_argument("id " + std::to_string(node.id) + " is another object's");
}

void SdfManager::remove(const SdfNode& node) noexcept {
    const std::unique_lock lock(mutex);
    const auto it = nodes.find(node.id);
    if (it != nodes.end() && it->second == &node) nodes.erase(it);
}

std::uint32_t SdfManager::generateId() {
    const std::unique_lock lock(mutex);
    do {
        if (lastGenerated == lastModelId) throw std::overflow_error("all model ids are used up");
        ++lastGenerated;
    } while (nodes.contains(lastGenerated));
    return lastGenerated;
}

std::uint32_t SdfManager::GenerateTransientId() {
    return firstTransientId + inst()->transientCount.fetch_add(1) % firstTransientId;
}

rob::PoseTemplate<double> GetPose(std::uint32_t id) {
    return SdfManager::inst()->at(id)->getPose();
}

}  // namespace vrn::sdf
