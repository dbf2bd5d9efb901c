#include "selection/Arena.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace vrn::selection {

namespace {

constexpr std::size_t sizeWord = sizeof(std::uint64_t);
// What a block is larger than a request that it is opened for.
constexpr std::size_t blockOverhead = 24;

/// Leaves room for the size word. `alignment`: a power of two.
std::size_t NextPosition(std::size_t used, std::size_t alignment) {
    return (used + alignment + sizeWord - 1) & ~(alignment - 1);
}

Arena::Block* OpenBlock(std::size_t size) {
    auto block = std::make_unique<Arena::Block>();
    block->data = static_cast<std::byte*>(std::malloc(size));
    if (!block->data) throw std::bad_alloc();
    block->size = size;
    return block.release();
}

}  // namespace

Arena::Arena() : head(OpenBlock(blockSize)), current(head) {}

Arena::~Arena() {
    while (head) {
        const std::unique_ptr<Block> block(head);
        head = block->next;
        std::free(block->data);
    }
}

void* Arena::do_allocate(std::size_t bytes, std::size_t alignment) {
    std::size_t position = NextPosition(current->used, alignment);
    if (bytes > blockSize || bytes + position > blockSize) {
        position = NextPosition(0, alignment);
        if (bytes > SIZE_MAX - blockOverhead - position) throw std::bad_alloc();
        // A large alignment moves the start further than the overhead allows for.
        current->next = OpenBlock(std::max({blockSize, bytes + blockOverhead, position + bytes}));
        current = current->next;
    }
    const std::uint64_t size = bytes;
    // The word may stand at an odd address.
    std::memcpy(current->data + position - sizeWord, &size, sizeWord);
    current->used = position + bytes;
    return current->data + position;
}

void Arena::do_deallocate(void* /*address*/, std::size_t /*bytes*/, std::size_t /*alignment*/) {}

bool Arena::do_is_equal(const std::pmr::memory_resource& /*other*/) const noexcept { return false; }

}  // namespace vrn::selection
