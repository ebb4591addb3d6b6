// SPDX-License-Identifier: MIT
#include "mask/scratch.h"

#include <array>
#include <atomic>

namespace Quill {
namespace {

/// Threads that can encode at one moment without one of them allocating.
constexpr std::size_t kPooled = 8;

class Pool {
  public:
    Pool() = default;
    Pool(const Pool &) = delete;
    Pool &operator=(const Pool &) = delete;
    ~Pool() {
        for (auto &slot : m_slots)
            delete slot.exchange(nullptr);
    }

    RasterScratch *borrow() {
        for (auto &slot : m_slots)
            if (RasterScratch *scratch = slot.exchange(nullptr, std::memory_order_acquire))
                return scratch;
        return new RasterScratch;
    }

    void giveBack(RasterScratch *scratch) {
        for (auto &slot : m_slots) {
            RasterScratch *empty = nullptr;
            if (slot.compare_exchange_strong(empty, scratch, std::memory_order_release, std::memory_order_relaxed))
                return;
        }
        delete scratch;
    }

  private:
    std::array<std::atomic<RasterScratch *>, kPooled> m_slots{};
};

Pool pool;

} // namespace

BorrowedScratch::BorrowedScratch() : m_scratch(pool.borrow()) {}
BorrowedScratch::~BorrowedScratch() {
    pool.giveBack(m_scratch);
}

} // namespace Quill
