// SPDX-License-Identifier: MIT
#include "fitting/run_span.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace {

using fitting::LeftOverhang;

using Span = std::pair<std::int64_t, std::int64_t>;

/// Offset and length in a picture of 8 x 3 pixels.
Span span(Quill::MaskRunF run, LeftOverhang overhang = LeftOverhang::RunsOn) {
    const fitting::RunSpan found = fitting::spanOfRun(run, 8, 3, overhang);
    return {found.offset, found.length};
}

constexpr Span kNotDrawn{0, 0};

TEST(RunSpan, RoundsByAddingAHalfAndTruncating) {
    EXPECT_EQ(span({0.25F, 0.34F, 0.25F}), Span(10, 2)); // row 1.02
    EXPECT_EQ(span({0.1875F, 0, 0.3125F}), Span(2, 3));  // 1.5 and 2.5
    EXPECT_EQ(span({0.18F, 0, 0.31F}), Span(1, 2));
    EXPECT_EQ(span({-0.125F, -0.4F, 0.25F}), Span(0, 2)); // -1 + 0.5 and -1.2 + 0.5 become 0
}

TEST(RunSpan, NegativeColumnShortensTheRun) {
    EXPECT_EQ(span({-0.5F, 0, 0.75F}), Span(0, 3)); // column -4 + 0.5 = -3, six long
    EXPECT_EQ(span({-1, 0, 0.25F}), kNotDrawn);
}

TEST(RunSpan, RunFromTheLeftGoesOnInTheNextRowUnlessCut) {
    const Quill::MaskRunF run = {-0.25F, 0, 1.5F}; // column -2 + 0.5 = -1, twelve long
    EXPECT_EQ(span(run), Span(0, 11));
    EXPECT_EQ(span(run, LeftOverhang::Cut), Span(0, 8));
    EXPECT_EQ(span({-0.25F, 0, 4}), kNotDrawn); // past the end
}

TEST(RunSpan, RunIsCutAtTheRightEdge) {
    EXPECT_EQ(span({0.75F, 0, 0.75F}), Span(6, 2));
    EXPECT_EQ(span({1, 0, 0.5F}), kNotDrawn);
    EXPECT_EQ(span({1.5F, 0, 0.5F}), kNotDrawn);
}

TEST(RunSpan, RowsOutsideAreNotDrawn) {
    EXPECT_EQ(span({0, -1, 1}), kNotDrawn);
    EXPECT_EQ(span({0, 1, 0.5F}), kNotDrawn);
    EXPECT_EQ(span({0, 50, 0.5F}), kNotDrawn);
}

TEST(RunSpan, RunThatEndsWithTheLastPixelIsNotDrawn) {
    EXPECT_EQ(span({0.5F, 0.67F, 0.5F}), kNotDrawn);
    EXPECT_EQ(span({0.5F, 0.67F, 0.375F}), Span(20, 3));
    EXPECT_EQ(span({0.5F, 0.34F, 0.5F}), Span(12, 4)); // the row above may reach the edge
}

TEST(RunSpan, ValuesThatAreNoPositionsAreNotDrawn) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float value : {1e30F, -1e30F, nan, infinity, -infinity}) {
        EXPECT_EQ(span({value, 0, 0.5F}), kNotDrawn) << value;
        EXPECT_EQ(span({0, value, 0.5F}), kNotDrawn) << value;
        EXPECT_EQ(span({0, 0, value}), kNotDrawn) << value;
    }
    EXPECT_EQ(span({0.25F, 0, 0}), kNotDrawn);
    EXPECT_EQ(span({0.25F, 0, -1}), kNotDrawn);
}

} // namespace
