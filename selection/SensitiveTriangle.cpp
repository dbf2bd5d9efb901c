#include "selection/SensitiveTriangle.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

namespace vrn::selection {

namespace {

/// A run of memory for many triangles, at an address that is a multiple of its size, so that each
/// of them leads back to it. It goes with the last of them.
class Chunk {
public:
    static constexpr std::size_t size = std::size_t{1} << 16;

    static Chunk* open() {
        void* memory = std::aligned_alloc(size, size);
        if (!memory) throw std::bad_alloc();
        return new (memory) Chunk;
    }
    static Chunk* of(void* triangle) {
        return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(triangle) & ~(size - 1));
    }
    /// Null when full.
    void* take() {
        if (taken == capacity) return nullptr;
        return reinterpret_cast<std::byte*>(this) + head + slot * taken++;
    }
    void release(std::uint32_t places = 1) {
        if (users.fetch_sub(places, std::memory_order_acq_rel) == places) std::free(this);
    }
    /// By the thread that fills the chunk, when it takes no more.
    void close() { release(1 + capacity - taken); }

private:
    static constexpr std::size_t head = 64, slot = sizeof(SensitiveIndexedTriangle);
    static constexpr std::uint32_t capacity = (size - head) / slot;

    std::uint32_t taken = 0;
    /// Triangles, and the thread that fills the chunk. Those to come count from the beginning on:
    /// taking is then the business of that thread alone.
    std::atomic<std::uint32_t> users = 1 + capacity;
};

struct Close {
    void operator()(Chunk* chunk) const { chunk->close(); }
};

thread_local std::unique_ptr<Chunk, Close> filling;

}  // namespace

void* SensitiveIndexedTriangle::operator new(std::size_t /*bytes*/) {
    if (filling)
        if (void* memory = filling->take()) return memory;
    filling.reset(Chunk::open());
    return filling->take();
}

void SensitiveIndexedTriangle::operator delete(void* triangle) {
    if (triangle) Chunk::of(triangle)->release();
}

SensitiveValuedTriangle::SensitiveValuedTriangle(const rob::PosTemplate<float>& a,
                                                 const rob::PosTemplate<float>& b,
                                                 const rob::PosTemplate<float>& c)
    : SensitiveTriangle(Kind::Valued), points{a, b, c} {
    box.addPoints(points);
    box.expand();
    box.updateCenter();
}

}  // namespace vrn::selection
