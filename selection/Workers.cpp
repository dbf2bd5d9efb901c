#include "selection/Workers.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace vrn::selection {

unsigned ThreadCount() {
    const unsigned count = std::thread::hardware_concurrency();
    return count == 0 ? 4 : count;
}

void ShareOut(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    const auto takePieces = [&] {
        for (std::size_t i = next++; i < count; i = next++) work(i);
    };
    // Each joins when it goes, also when a later one cannot start.
    std::vector<std::future<void>> others;
    for (std::size_t i = 1; i < std::min<std::size_t>(ThreadCount(), count); ++i)
        others.push_back(std::async(std::launch::async, takePieces));
    takePieces();
    for (auto& other : others) other.get();
}

}  // namespace vrn::selection
