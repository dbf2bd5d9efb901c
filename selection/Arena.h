#pragma once

#include "visual/VrnVisualApi.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>

namespace vrn::selection {

/// Memory for the nodes of one hierarchy: blocks that are filled one after the other and freed
/// together when the arena dies. Alignments up to 16 are honoured; for larger ones only the offset
/// in the block is, not the address. Thread: one at a time.
///
/// Most hierarchies are those of an edge, a small face or a triad, and take far less than a block.
/// So the first block has its memory from the first allocation on only, and who knows how much will
/// be taken can make it smaller.
class VRN_VISUAL_API Arena : public std::pmr::memory_resource {
public:
    /// Holds one empty block of 4096 bytes.
    Arena();
    ~Arena() override;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    struct Block {
        std::byte* data = nullptr;  ///< from malloc; null in a block that nothing was taken from
        std::uint64_t used = 0;     ///< bytes taken
        Block* next = nullptr;
        std::size_t size = 0;  ///< bytes of data
    };
    /// The block that was opened first.
    [[nodiscard]] const Block* firstBlock() const { return &head; }

    /// Makes the first block as large as `bytes`, but never larger than 4096. Does nothing once
    /// something was taken.
    void limitFirstBlock(std::size_t bytes);

    static constexpr std::size_t blockSize = 4096;

private:
    /// Each allocation is preceded by its size, a 64-bit word. A request that does not end within
    /// the first 4096 bytes of the block in hand, or within the block if that is smaller, opens a
    /// new block of 4096 bytes or more.
    void* do_allocate(std::size_t bytes, std::size_t alignment) override;
    /// Does nothing.
    void do_deallocate(void* address, std::size_t bytes, std::size_t alignment) override;
    /// Always false: nothing taken here may be given back elsewhere, or at all.
    [[nodiscard]] bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override;

    Block head;
    Block* current;
};

}  // namespace vrn::selection
