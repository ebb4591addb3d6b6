// SPDX-License-Identifier: MIT
#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace platform {

/// Tells the processor that the cache line at `address` will soon be read and written. Only the time depends on it.
inline void prefetch(const void *address) {
#if defined(__SSE2__) || defined(_M_X64)
    _mm_prefetch(static_cast<const char *>(address), _MM_HINT_T0);
#elif defined(__GNUC__)
    __builtin_prefetch(address, 1);
#else
    (void)address;
#endif
}

} // namespace platform
