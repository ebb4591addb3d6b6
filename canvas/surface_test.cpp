// SPDX-License-Identifier: MIT
#include "canvas/surface.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

namespace {

using canvas::Pixel;
using canvas::Surface;

bool isTransparent(Surface &surface) {
    return std::all_of(surface.pixels(), surface.pixels() + surface.pixelCount(),
                       [](Pixel pixel) { return pixel == 0; });
}

TEST(Surface, StartsEmptyAndBecomesTransparent) {
    Surface surface;
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(surface.byteCount(), 0U);
    surface.clear();
    ASSERT_EQ(surface.resize(33, 17), S_OK);
    EXPECT_EQ(surface.byteCount(), 33U * 17 * 4);
    EXPECT_TRUE(isTransparent(surface));
}

TEST(Surface, AddressStaysUntilTheSizeChanges) {
    Surface surface;
    ASSERT_EQ(surface.resize(64, 64), S_OK);
    const Pixel *const address = surface.pixels();
    std::fill_n(surface.touch(3, 4, 20), 20, 0xFFFFFFFF);
    surface.clear();
    EXPECT_EQ(surface.pixels(), address);
    std::fill_n(surface.touch(3, 4, 20), 20, 0xFFFFFFFF);
    ASSERT_EQ(surface.resize(64, 64), S_OK);
    EXPECT_EQ(surface.pixels(), address);
    EXPECT_TRUE(isTransparent(surface));
}

TEST(Surface, ImpossibleSizesLeaveItEmpty) {
    Surface surface;
    ASSERT_EQ(surface.resize(8, 8), S_OK);
    EXPECT_EQ(surface.resize(0, 8), S_OK);
    EXPECT_TRUE(surface.empty());
    ASSERT_EQ(surface.resize(8, 8), S_OK);
    EXPECT_EQ(surface.resize(canvas::kLongestSide + 1, 1), E_INVALIDARG);
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(surface.resize(0xFFFFFFFF, 0xFFFFFFFF), E_INVALIDARG);
    EXPECT_EQ(surface.resize(32768, 32768), E_OUTOFMEMORY) << "four gigabytes";
    EXPECT_TRUE(surface.empty());
    EXPECT_EQ(surface.width(), 0);
}

TEST(Surface, ClearForgetsEverySpan) {
    std::mt19937 random(2);
    Surface surface;
    ASSERT_EQ(surface.resize(61, 37), S_OK);
    for (int round = 0; round < 300; ++round) {
        EXPECT_TRUE(surface.isBlank());
        for (int i = 0; i < 30; ++i) {
            const int first = static_cast<int>(random() % 61);
            const int count = 1 + static_cast<int>(random() % static_cast<unsigned>(61 - first));
            std::fill_n(surface.touch(static_cast<int>(random() % 37), first, count), count, 0xFF00FF00);
        }
        surface.clear();
        ASSERT_TRUE(isTransparent(surface));
    }
}

TEST(Surface, ClearsEverythingWhenThereWasMoreThanItRemembers) {
    Surface surface;
    ASSERT_EQ(surface.resize(400, 400), S_OK);
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 400; ++x)
            *surface.touch(y, x, 1) = 0xFFFFFFFF;
    EXPECT_TRUE(surface.allTouched());
    surface.clear();
    EXPECT_FALSE(surface.allTouched());
    EXPECT_TRUE(isTransparent(surface));
    *surface.touch(399, 399, 1) = 1;
    surface.clear();
    EXPECT_TRUE(isTransparent(surface));
}

TEST(Surface, SpansAreRememberedInOrder) {
    Surface surface;
    ASSERT_EQ(surface.resize(50, 40), S_OK);
    surface.touch(2, 7, 3);
    const std::size_t before = surface.spanCount();
    Surface::Span *const room = surface.roomForSpans();
    room[0] = {60, 1};
    room[1] = {70, 2};
    surface.setSpansEnd(room + 2);
    surface.touch(39, 49, 1);
    const auto spans = surface.spansFrom(before);
    ASSERT_EQ(spans.size(), 3U);
    EXPECT_EQ(spans[0].first, 60U);
    EXPECT_EQ(spans[1].count, 2U);
    EXPECT_EQ(spans[2].first, 1999U);
    EXPECT_EQ(surface.spansFrom(0)[0].first, 107U);
}

// Spans that come many at a time lose nothing on the way to more than is remembered.
TEST(Surface, RoomForSpansNeverEnds) {
    Surface surface;
    ASSERT_EQ(surface.resize(Surface::kMostSpansAtOnce, 60), S_OK);
    for (int y = 0; y < 60; ++y) {
        Surface::Span *span = surface.roomForSpans();
        for (int x = 0; x < Surface::kMostSpansAtOnce; ++x) {
            *span++ = {static_cast<std::uint32_t>(y * Surface::kMostSpansAtOnce + x), 1};
            surface.row(y)[x] = 0xFF00FF00;
        }
        surface.setSpansEnd(span);
    }
    EXPECT_TRUE(surface.allTouched());
    surface.clear();
    EXPECT_TRUE(isTransparent(surface));
}

// Blocks of pixels may be read and written past the last one.
TEST(Surface, PixelsToSpillIntoLieBehindTheLastRow) {
    for (const UINT width : {1U, 3U, 15U, 16U, 17U, 640U}) {
        Surface surface;
        ASSERT_EQ(surface.resize(width, 5), S_OK);
        Pixel *const end = surface.pixels() + surface.pixelCount();
        for (UINT i = 0; i < Surface::kSpill; ++i) {
            EXPECT_EQ(end[i], 0U);
            end[i] = 0;
        }
    }
}

} // namespace
