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

std::byte* Memory(std::size_t size) {
    auto* memory = static_cast<std::byte*>(std::malloc(size));
    if (!memory) throw std::bad_alloc();
    return memory;
}

Arena::Block* OpenBlock(std::size_t size) {
    auto block = std::make_unique<Arena::Block>();
    block->data = Memory(size);
    block->size = size;
    return block.release();
}

}  // namespace

Arena::Arena() : head{.size = blockSize}, current(&head) {}

Arena::~Arena() {
    std::free(head.data);
    while (head.next) {
        const std::unique_ptr<Block> block(head.next);
        head.next = block->next;
        std::free(block->data);
    }
}

void Arena::limitFirstBlock(std::size_t bytes) {
    if (!head.data && !head.next) head.size = std::min(bytes, blockSize);
}

void* Arena::do_allocate(std::size_t bytes, std::size_t alignment) {
    std::size_t position = NextPosition(current->used, alignment);
    const std::size_t end = std::min(blockSize, current->size);
    if (bytes > end || bytes + position > end) {
        position = NextPosition(0, alignment);
        if (bytes > SIZE_MAX - blockOverhead - position) throw std::bad_alloc();
        // A large alignment moves the start further than the overhead allows for.
        current->next = OpenBlock(std::max({blockSize, bytes + blockOverhead, position + bytes}));
        current = current->next;
    }
    if (!current->data) current->data = Memory(current->size);
    const std::uint64_t size = bytes;
    // The word may stand at an odd address.
    std::memcpy(current->data + position - sizeWord, &size, sizeWord);
    current->used = position + bytes;
    return current->data + position;
}

void Arena::do_deallocate(void* /*address*/, std::size_t /*bytes*/, std::size_t /*alignment*/) {}

bool Arena::do_is_equal(const std::pmr::memory_resource& /*other*/) const noexcept { return false; }

}  // namespace vrn::selection
