// SPDX-License-Identifier: MIT
#pragma once

// ORVANEL_SSE2 and the intrinsics, where the processor is known to have them: on every 64-bit x86.

#if defined(__SSE2__) || defined(_M_X64)
#define ORVANEL_SSE2 1
#include <emmintrin.h>
#endif
