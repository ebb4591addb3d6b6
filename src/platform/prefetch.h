// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sse2.h"

namespace platform {

/// Tells the processor that the cache line at `address` will soon be read and written. Only the time depends on it.
inline void prefetch(const void *address) {
#ifdef ORVANEL_SSE2
    _mm_prefetch(static_cast<const char *>(address), _MM_HINT_T0);
#elif defined(__GNUC__)
    __builtin_prefetch(address, 1);
#else
    (void)address;
#endif
}

} // namespace platform
