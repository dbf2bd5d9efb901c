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
    void* take(std::size_t bytes) {
        if (used + bytes > size) return nullptr;
        void* memory = reinterpret_cast<std::byte*>(this) + used;
        used += bytes;
        users.fetch_add(1, std::memory_order_relaxed);
        return memory;
    }
    void release() {
        if (users.fetch_sub(1, std::memory_order_acq_rel) == 1) std::free(this);
    }

private:
    std::size_t used = 64;
    std::atomic<std::uint32_t> users = 1;  ///< triangles, and the thread that fills the chunk
};

struct Release {
    void operator()(Chunk* chunk) const { chunk->release(); }
};

thread_local std::unique_ptr<Chunk, Release> filling;

}  // namespace

void* SensitiveIndexedTriangle::operator new(std::size_t bytes) {
    if (filling)
        if (void* memory = filling->take(bytes)) return memory;
    filling.reset(Chunk::open());
    return filling->take(bytes);
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
