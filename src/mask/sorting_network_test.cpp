// SPDX-License-Identifier: MIT
#include "mask/sorting_network.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "mask/random_outline_test.h"

namespace Quill {
namespace {

/// Sorts each of the eight lanes on its own.
std::vector<StoredColumn> sortedByLanes(std::vector<StoredColumn> vectors) {
    const std::size_t count = vectors.size() / kRowsAtOnce;
    for (std::size_t lane = 0; lane < kRowsAtOnce; ++lane) {
        std::vector<StoredColumn> column;
        for (std::size_t i = 0; i < count; ++i)
            column.push_back(vectors[i * kRowsAtOnce + lane]);
        std::sort(column.begin(), column.end());
        for (std::size_t i = 0; i < count; ++i)
            vectors[i * kRowsAtOnce + lane] = column[i];
    }
    return vectors;
}

TEST(SortingNetwork, SortsEverySequenceOfTwoValuesUpToSixteen) {
    // A network that sorts all sequences of zeroes and ones sorts everything. Eight sequences go through at a time.
    for (std::size_t count = 1; count <= 16; ++count)
        for (std::uint32_t bits = 0; bits < 1U << count; bits += kRowsAtOnce) {
            std::vector<StoredColumn> vectors(count * kRowsAtOnce);
            for (std::size_t i = 0; i < vectors.size(); ++i)
                vectors[i] = static_cast<StoredColumn>((bits + i % kRowsAtOnce) >> i / kRowsAtOnce & 1);
            const std::vector<StoredColumn> expected = sortedByLanes(vectors);
            sortVectors(vectors.data(), count);
            ASSERT_EQ(vectors, expected) << count << " values, case " << bits;
        }
}

TEST(SortingNetwork, SortsManyOfAnyValue) {
    test::Random random(1);
    for (const std::size_t count : {17, 31, 32, 33, 100, 127, 128, 129, 1000}) {
        std::vector<StoredColumn> vectors(count * kRowsAtOnce);
        for (StoredColumn &value : vectors)
            value = static_cast<StoredColumn>(random.between(INT16_MIN, INT16_MAX));
        const std::vector<StoredColumn> expected = sortedByLanes(vectors);
        sortVectors(vectors.data(), count);
        ASSERT_EQ(vectors, expected) << count;
    }
}

} // namespace
} // namespace Quill
