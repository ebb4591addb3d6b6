// SPDX-License-Identifier: MIT
#pragma once

#include "platform/unique_handle.h"
#include "platform/win_types.h"

// Device contexts and device-independent bitmaps: GDI on Windows, memory bitmaps with the same contract elsewhere.

namespace platform {

/// BITMAPINFOHEADER, field for field. No colour table follows.
struct DibHeader {
    std::uint32_t size = 40;
    std::int32_t width = 0;
    std::int32_t height = 0; ///< negative: the first row lies at the lowest address
    std::uint16_t planes = 1;
    std::uint16_t bitCount = 32;
    std::uint32_t compression = 0;
    std::uint32_t imageSize = 0; ///< bytes; informative, the system computes its own
    std::int32_t xPixelsPerMetre = 0;
    std::int32_t yPixelsPerMetre = 0;
    std::uint32_t colorsUsed = 0;
    std::uint32_t colorsImportant = 0;

    friend bool operator==(const DibHeader &, const DibHeader &) = default;
};

static_assert(sizeof(DibHeader) == 40);

/// A memory device context.
using DeviceContext = struct DeviceContextHandle *;

/// The calls of one drawing system. A table, so that a test can watch their order and make each of them fail.
struct DibCalls {
    /// A memory context compatible with the screen; null on failure.
    DeviceContext (*createCompatibleContext)();
    void (*deleteContext)(DeviceContext context);
    /// Finishes the drawing calls that this thread has queued.
    void (*flush)();
    /// The bitmap, or null. `bits` (may be null) receives the zeroed pixel memory, or null on failure.
    HBITMAP (*createSection)(DeviceContext context, const DibHeader &header, void **bits);
    /// The calling thread's last error number.
    std::uint32_t (*lastError)();
};

/// This platform's drawing system.
const DibCalls &systemDibCalls();

/// Frees a bitmap and its pixel memory.
void deleteBitmap(HBITMAP bitmap);

/// A bitmap that is freed with its owner.
using Bitmap = UniqueHandle<HBITMAP, &deleteBitmap>;

} // namespace platform
