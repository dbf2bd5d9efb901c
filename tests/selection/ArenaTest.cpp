#include "selection/Arena.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace vrn::selection {

namespace {

std::vector<const Arena::Block*> BlocksOf(const Arena& arena) {
    std::vector<const Arena::Block*> blocks;
    for (const Arena::Block* block = arena.firstBlock(); block; block = block->next)
        blocks.push_back(block);
    return blocks;
}

}  // namespace

TEST(Arena, AFreshOneHoldsOneEmptyBlockOf4096Bytes) {
    const Arena arena;
    const auto blocks = BlocksOf(arena);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(blocks[0]->size, 4096u);
    EXPECT_EQ(blocks[0]->used, 0u);
}

TEST(Arena, TheFirstBlockHasMemoryFromTheFirstAllocationOn) {
    Arena arena;
    EXPECT_EQ(arena.firstBlock()->data, nullptr);
    const void* memory = arena.allocate(8, 8);
    EXPECT_EQ(arena.firstBlock()->data + 8, memory);
}

TEST(Arena, AFirstBlockMadeSmallerIsFilledToItsEnd) {
    Arena arena;
    arena.limitFirstBlock(48);
    EXPECT_EQ(arena.firstBlock()->size, 48u);
    const void* first = arena.allocate(16, 8);
    const void* second = arena.allocate(16, 8);
    EXPECT_EQ(arena.firstBlock()->data + 8, first);
    EXPECT_EQ(arena.firstBlock()->data + 32, second);
    EXPECT_EQ(BlocksOf(arena).size(), 1u);
    (void)arena.allocate(1, 8);
    ASSERT_EQ(BlocksOf(arena).size(), 2u);
    EXPECT_EQ(BlocksOf(arena)[1]->size, 4096u);
}

TEST(Arena, ABlockTooSmallForTheFirstRequestStaysEmpty) {
    Arena arena;
    arena.limitFirstBlock(0);
    (void)arena.allocate(8, 8);
    ASSERT_EQ(BlocksOf(arena).size(), 2u);
    EXPECT_EQ(arena.firstBlock()->used, 0u);
}

TEST(Arena, TheFirstBlockIsNeverMadeLargerNorChangedOnceInUse) {
    Arena arena;
    arena.limitFirstBlock(5000);
    EXPECT_EQ(arena.firstBlock()->size, 4096u);
    (void)arena.allocate(8, 8);
    arena.limitFirstBlock(16);
    EXPECT_EQ(arena.firstBlock()->size, 4096u);
    Arena behind;
    (void)behind.allocate(5000, 8);  // the first block is empty, but no longer the one in hand
    behind.limitFirstBlock(16);
    EXPECT_EQ(behind.firstBlock()->size, 4096u);
}

TEST(Arena, FiveThousandBytesOpenABlockOf5024AndTheNextEightAnotherOf4096) {
    Arena arena;
    (void)arena.allocate(5000, 8);
    auto blocks = BlocksOf(arena);
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(blocks[1]->size, 5024u);
    (void)arena.allocate(8, 8);
    blocks = BlocksOf(arena);
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[2]->size, 4096u);
    EXPECT_EQ(blocks[2]->used, 16u);
}

TEST(Arena, ARequestThatEndsWithTheBlockStaysInIt) {
    Arena arena;
    (void)arena.allocate(4096 - 8, 8);
    EXPECT_EQ(BlocksOf(arena).size(), 1u);
    EXPECT_EQ(BlocksOf(arena)[0]->used, 4096u);
    Arena other;
    (void)other.allocate(4096 - 7, 8);
    EXPECT_EQ(BlocksOf(other).size(), 2u);
}

TEST(Arena, EachAllocationIsPrecededByItsSize) {
    Arena arena;
    for (const std::size_t bytes : {std::size_t{1}, std::size_t{24}, std::size_t{6000}}) {
        for (const std::size_t alignment : {1u, 2u, 8u, 16u}) {
            const auto* memory = static_cast<const std::byte*>(arena.allocate(bytes, alignment));
            std::uint64_t size = 0;
            std::memcpy(&size, memory - 8, 8);
            EXPECT_EQ(size, bytes);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignment, 0u);
        }
    }
}

TEST(Arena, TheNextAllocationLeavesRoomForItsSizeWord) {
    Arena arena;
    auto* first = static_cast<std::byte*>(arena.allocate(1, 8));
    auto* second = static_cast<std::byte*>(arena.allocate(1, 8));
    EXPECT_EQ(first - BlocksOf(arena)[0]->data, 8);
    // Used 9, and 8 + 7 on top, rounded down to a multiple of 8.
    EXPECT_EQ(second - BlocksOf(arena)[0]->data, 24);
}

TEST(Arena, LargeAlignmentsStayWithinTheirBlock) {
    for (const std::size_t alignment : {32u, 64u, 256u})
        for (std::size_t bytes = 3900; bytes <= 5000; ++bytes) {
            Arena arena;
            auto* memory = static_cast<std::byte*>(arena.allocate(bytes, alignment));
            const Arena::Block* block = BlocksOf(arena).back();
            ASSERT_LE(memory + bytes, block->data + block->size);
            std::memset(memory, 1, bytes);
        }
}

TEST(Arena, NothingIsGivenBack) {
    Arena arena;
    void* memory = arena.allocate(100, 8);
    const auto used = BlocksOf(arena)[0]->used;
    arena.deallocate(memory, 100, 8);
    EXPECT_EQ(BlocksOf(arena)[0]->used, used);
}

TEST(Arena, IsEqualToNoneNotEvenToItself) {
    const Arena arena, other;
    EXPECT_FALSE(arena.is_equal(arena));
    EXPECT_FALSE(arena.is_equal(other));
}

TEST(Arena, ARequestBeyondAllMemoryThrowsBadAlloc) {
    Arena arena;
    EXPECT_THROW((void)arena.allocate(SIZE_MAX - 20, 8), std::bad_alloc);
    EXPECT_EQ(BlocksOf(arena).size(), 1u);
}

}  // namespace vrn::selection
