// SPDX-License-Identifier: MIT
#pragma once

// Small vector types for the inner loops that profit: a pair of integers (the x and y of a point, which the flattener
// treats alike), and eight rows of an edge or of a set of edges.
//
// Written out with SSE2, which every 64-bit x86 has, and as plain integers, for other processors and as a second
// opinion in the tests (ORVANEL_PLAIN_LANES). Left to the compiler the same loops come out scalar or, from GCC 12's
// straight-line vectoriser, wrong.

#if !defined(ORVANEL_PLAIN_LANES) && (defined(__SSE2__) || defined(_M_X64))
#define ORVANEL_MASK_SSE2 1
#include "mask/lanes_sse2.h"
#else
#define ORVANEL_MASK_SSE2 0
#include "mask/lanes_plain.h"
#endif
