// SPDX-License-Identifier: MIT
#include "hostkit/orientation.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace hostkit {
namespace {

constexpr std::int32_t kOne = 1 << 16;

struct Matrix {
    std::int32_t a, b, c, d;
    Orientation expected;
    std::vector<std::uint8_t> turned; ///< of 0 1 2 / 3 4 5
};

const Matrix kMatrices[] = {
    {kOne, 0, 0, kOne, {false, false, false}, {0, 1, 2, 3, 4, 5}},
    {0, kOne, -kOne, 0, {true, true, false}, {3, 0, 4, 1, 5, 2}},
    {-kOne, 0, 0, -kOne, {false, true, true}, {5, 4, 3, 2, 1, 0}},
    {0, -kOne, kOne, 0, {true, false, true}, {2, 5, 1, 4, 0, 3}},
    {-kOne, 0, 0, kOne, {false, true, false}, {2, 1, 0, 5, 4, 3}},
    {0, kOne, kOne, 0, {true, false, false}, {0, 3, 1, 4, 2, 5}},
};

TEST(Orientation, QuarterTurnsAndMirrorsOfAPicture) {
    for (const Matrix &each : kMatrices) {
        const std::int32_t matrix[9] = {each.a, each.b, 0, each.c, each.d, 0, 0, 0, 1 << 30};
        Orientation orientation;
        ASSERT_TRUE(readDisplayMatrix(matrix, orientation));
        EXPECT_EQ(orientation, each.expected);
        std::vector<std::uint8_t> pixels(6), turned(6);
        std::iota(pixels.begin(), pixels.end(), std::uint8_t{0});
        Planes source, target;
        source.width = 3, source.height = 2;
        target.width = orientation.transposed ? 2 : 3;
        target.height = orientation.transposed ? 3 : 2;
        for (int i = 0; i < 3; ++i) {
            source.data[i] = pixels.data();
            source.stride[i] = 3;
            target.data[i] = turned.data();
            target.stride[i] = target.width;
        }
        turn(source, orientation, target);
        EXPECT_EQ(turned, each.turned);
    }
}

TEST(Orientation, NothingElseIsRead) {
    const std::int32_t slanted[9] = {46341, 46341, 0, -46341, 46341, 0, 0, 0, 1 << 30};
    const std::int32_t nothing[9] = {};
    Orientation orientation;
    EXPECT_FALSE(readDisplayMatrix(slanted, orientation));
    EXPECT_FALSE(readDisplayMatrix(nothing, orientation));
    EXPECT_TRUE(orientation.isUpright());
}

} // namespace
} // namespace hostkit
