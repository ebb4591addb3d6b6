// SPDX-License-Identifier: MIT
#include "platform/block_copy.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t kMargin = 64;
constexpr std::uint8_t kUntouched = 0xA5;

/// Copies `bytes` between the given offsets from a cache line and looks at every byte, the margins included.
void expectExactCopy(std::size_t bytes, std::size_t sourceOffset, std::size_t destinationOffset,
                     std::size_t others = 0) {
    SCOPED_TRACE(testing::Message() << bytes << " bytes, from +" << sourceOffset << " to +" << destinationOffset);
    std::vector<std::uint8_t> source(bytes + 2 * kMargin);
    for (std::size_t i = 0; i < source.size(); ++i)
        source[i] = static_cast<std::uint8_t>(i * 131 + (i >> 8) * 7 + (i >> 16));
    std::vector<std::uint8_t> destination(bytes + 2 * kMargin, kUntouched);
    std::vector<std::uint8_t> expected = destination;
    std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(sourceOffset), bytes,
                expected.begin() + static_cast<std::ptrdiff_t>(destinationOffset));
    platform::copyBlock(destination.data() + destinationOffset, source.data() + sourceOffset, bytes, bytes + others);
    EXPECT_TRUE(destination == expected);
}

TEST(BlockCopy, CopiesNothing) {
    expectExactCopy(0, 0, 0);
}

TEST(BlockCopy, CopiesSmallBlocks) {
    for (const std::size_t bytes : {1, 15, 16, 63, 64, 65, 4096, 100003})
        expectExactCopy(bytes, 3, 5);
}

TEST(BlockCopy, CopiesBlocksOnBothSidesOfTheThreshold) {
    for (const std::size_t bytes :
         {platform::kStreamedBlock - 1, platform::kStreamedBlock, platform::kStreamedBlock + 1,
          platform::kStreamedBlock + 63, platform::kStreamedBlock + 64})
        expectExactCopy(bytes, 0, 0);
}

TEST(BlockCopy, CopiesLargeBlocksWhateverTheAlignment) {
    for (const std::size_t sourceOffset : {0, 33})
        for (const std::size_t destinationOffset : {0, 4, 63})
            expectExactCopy(platform::kStreamedBlock + 40, sourceOffset, destinationOffset);
}

TEST(BlockCopy, CopiesOneOfManyBlocksWhateverItsSize) {
    for (const std::size_t bytes : {0, 1, 15, 63, 64, 65, 127, 4096, 100003})
        for (const std::size_t destinationOffset : {0, 5, 63})
            expectExactCopy(bytes, 3, destinationOffset, platform::kStreamedBlock);
}

} // namespace
