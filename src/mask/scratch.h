// SPDX-License-Identifier: MIT
#pragma once

// Working memory of one encoding or fill.
//
// It grows to what the largest outline so far needed (its vertices, and at most kMostCrossings crossings) and never
// with width x height. The routines of Quill::MaskHandler are stateless to their callers and may run on any thread, so
// they borrow their scratch from a small pool that the library owns: one atomic exchange to borrow, one to give back,
// no allocation once warm. Thread-local memory would do as well until the library is unloaded while a host thread that
// has used it lives on; the pool goes with the library, whichever threads are left.

#include <cstdint>

#include "mask/crossings.h"
#include "mask/flatten.h"
#include "mask/mask_handler.h"
#include "mask/sweep.h"

namespace Quill {

struct RasterScratch {
    VertexBuffer polyline;
    CrossingTable table;
    SweepBuffers buffers;
    PodBuffer<MaskRun> runs;
    PodBuffer<MaskRunF> fractions;
    PodBuffer<std::uint16_t> values;
    PodBuffer<std::int32_t> anchors;
};

/// Holds a scratch of the pool, or a new one when all are in use, for its own lifetime.
class BorrowedScratch {
  public:
    BorrowedScratch();
    ~BorrowedScratch();
    BorrowedScratch(const BorrowedScratch &) = delete;
    BorrowedScratch &operator=(const BorrowedScratch &) = delete;

    RasterScratch &operator*() const { return *m_scratch; }
    RasterScratch *operator->() const { return m_scratch; }

  private:
    RasterScratch *m_scratch;
};

} // namespace Quill
