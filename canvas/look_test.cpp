// SPDX-License-Identifier: MIT
#include "canvas/look.h"

#include <cmath>

#include <gtest/gtest.h>

#include "canvas/marks.h"

namespace {

// A line's end that is left out must not show at any scale.
TEST(Look, MarksHideTheEndsOfHandleLinesAtEveryScale) {
    for (int i = 0; i <= 5500; ++i) {
        const float scale = canvas::kSmallestScale + static_cast<float>(i) / 1000;
        const canvas::StrokeLook line = canvas::handleLook({}, scale);
        const auto reach = static_cast<double>(line.reach());
        const double hidden = canvas::hiddenByMarks(line, scale);
        ASSERT_GT(hidden, 0) << scale;
        for (const float radius : {canvas::kAnchorRadius, canvas::kHandleRadius}) {
            const int opaque = canvas::MarkRadii(radius, scale).opaque();
            ASSERT_LE(std::hypot(hidden, reach), opaque) << scale;
            ASSERT_LE(reach, opaque) << scale << ", a round end";
        }
    }
}

TEST(Look, MarksKeepAColourInsideBothRings) {
    for (int i = 0; i <= 550; ++i) {
        const canvas::MarkRadii radii(canvas::kAnchorRadius, canvas::kSmallestScale + static_cast<float>(i) / 100);
        EXPECT_GE(radii.ring, 1);
        EXPECT_GE(radii.opaque() - radii.ring, 1) << i;
    }
}

// The marks of a point are laid down as stamps.
TEST(Look, MarksFitAStampAtEveryScale) {
    for (const float radius : {canvas::kAnchorRadius, canvas::kHandleRadius})
        EXPECT_LE(2 * canvas::MarkRadii(radius, canvas::kLargestScale).outer + 1,
                  static_cast<int>(canvas::MarkPainter::kLargestStamp));
}

} // namespace
