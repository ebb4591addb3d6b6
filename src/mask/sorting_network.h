// SPDX-License-Identifier: MIT
#pragma once

// Sorts the columns of eight rows at once: vector j holds one column for each of the rows, and a comparison orders two
// vectors in all rows. A network of comparisons that does not depend on the data has no branch to mispredict and costs
// about one instruction a column and row; insertion into an order kept from row to row costs ten.

#include <cstddef>

#include "mask/lanes.h"

namespace Quill {

inline void orderColumns(lanes::Columns &a, lanes::Columns &b) {
    const lanes::Columns low = lanes::Columns::min(a, b);
    b = lanes::Columns::max(a, b);
    a = low;
}

inline void orderVectors(StoredColumn *vectors, std::size_t i, std::size_t j) {
    lanes::Columns a = lanes::Columns::load(vectors + i * kRowsAtOnce);
    lanes::Columns b = lanes::Columns::load(vectors + j * kRowsAtOnce);
    orderColumns(a, b);
    a.store(vectors + i * kRowsAtOnce);
    b.store(vectors + j * kRowsAtOnce);
}

/// The shortest network for four.
inline void sortFour(StoredColumn *vectors) {
    lanes::Columns c[4];
    for (std::size_t i = 0; i < 4; ++i)
        c[i] = lanes::Columns::load(vectors + i * kRowsAtOnce);
    orderColumns(c[0], c[1]);
    orderColumns(c[2], c[3]);
    orderColumns(c[0], c[2]);
    orderColumns(c[1], c[3]);
    orderColumns(c[1], c[2]);
    for (std::size_t i = 0; i < 4; ++i)
        c[i].store(vectors + i * kRowsAtOnce);
}

/// Any number: Batcher's merge exchange (Knuth, The Art of Computer Programming, volume 3, 5.2.2, algorithm M).
inline void sortVectors(StoredColumn *vectors, std::size_t count) {
    if (count == 4) {
        sortFour(vectors);
        return;
    }
    std::size_t top = 1;
    while (2 * top < count)
        top *= 2;
    for (std::size_t p = top; p > 0; p /= 2) {
        std::size_t r = 0;
        std::size_t d = p;
        for (std::size_t q = top;; q /= 2) {
            // Every i with (i & p) == r, in stretches of p.
            for (std::size_t start = r; start + d < count; start += 2 * p)
                for (std::size_t i = start; i < start + p && i + d < count; ++i)
                    orderVectors(vectors, i, i + d);
            if (q == p)
                break;
            d = q - p;
            r = p;
        }
    }
}

} // namespace Quill
