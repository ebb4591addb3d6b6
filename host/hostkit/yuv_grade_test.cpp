// SPDX-License-Identifier: MIT
#include <cmath>
#include <random>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "hostkit/float_lanes.h"
#include "hostkit/grade.h"
#include "hostkit/testing/test_frame.h"

namespace hostkit {
namespace {

Mask fullMask(int width, int height) {
    Mask mask(width, height);
    mask.invert();
    return mask;
}

double graded(double code, double stops) {
    return std::pow(std::pow(code, 2.4) * std::exp2(stops), 1 / 2.4);
}

TEST(YuvGrade, NeutralLeavesEveryCodeAsItIs) {
    for (const int depth : {8, 9, 10, 12})
        for (const auto &[shiftX, shiftY] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}})
            for (const bool fullRange : {false, true})
                for (const int transfer : {1, 4, 8, 16, 18}) {
                    TestFrame frame(71, 33, shiftX, shiftY, depth);
                    frame.planes.coding.fullRange = fullRange;
                    frame.planes.coding.transfer = transfer;
                    if (transfer == 16)
                        // Beyond the end of PQ's range there is no light to speak of.
                        frame.fill(90 << (depth - 8), 120 << (depth - 8), 140 << (depth - 8));
                    const auto before = frame.memory[0];
                    const auto cb = frame.memory[1];
                    const auto cr = frame.memory[2];
                    Mask mask = fullMask(71, 33);
                    mask.row(3)[4] = 0;
                    mask.row(4)[5] = 100;
                    Grade(0, 1).applyInside(frame.planes, mask);
                    EXPECT_EQ(frame.memory[0], before) << depth << ' ' << shiftX << shiftY << ' ' << transfer;
                    EXPECT_EQ(frame.memory[1], cb) << depth << ' ' << shiftX << shiftY << ' ' << transfer;
                    EXPECT_EQ(frame.memory[2], cr) << depth << ' ' << shiftX << shiftY << ' ' << transfer;
                }
}

TEST(YuvGrade, AStopIsAStopAtEveryDepth) {
    for (const int depth : {8, 10, 12}) {
        TestFrame frame(40, 8, 1, 1, depth);
        const int unit = 1 << (depth - 8);
        frame.fill(110 * unit, 128 * unit, 128 * unit);
        Grade(1, 1).applyInside(frame.planes, fullMask(40, 8));
        const double code = (110.0 - 16) / 219;
        EXPECT_EQ(frame.get(0, 20, 3), std::lround((graded(code, 1) * 219 + 16) * unit));
        EXPECT_EQ(frame.get(1, 10, 1), 128 * unit);
    }
}

TEST(YuvGrade, FullRangeHasItsOwnBlackAndWhite) {
    TestFrame frame(40, 8, 1, 1, 8);
    frame.planes.coding.fullRange = true;
    frame.fill(100, 128, 128);
    Grade(1, 1).applyInside(frame.planes, fullMask(40, 8));
    EXPECT_EQ(frame.get(0, 0, 0), 0x85);
}

TEST(YuvGrade, WithoutSaturationColourIsGone) {
    TestFrame frame(70, 20, 1, 1, 10);
    // Colours that a display can show: what is outside of its range stays there.
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 70; ++x) {
            frame.set(0, x, y, 300 + 5 * x);
            frame.set(1, x / 2, y / 2, 480 + y);
            frame.set(2, x / 2, y / 2, 470 + x);
        }
    Grade(0, 0).applyInside(frame.planes, fullMask(70, 20));
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 35; ++x) {
            EXPECT_EQ(frame.get(1, x, y), 512);
            EXPECT_EQ(frame.get(2, x, y), 512);
        }
}

TEST(YuvGrade, OnlyWhatIsCoveredChanges) {
    for (const int shift : {0, 1}) {
        TestFrame frame(200, 40, shift, shift, 8);
        TestFrame before = frame;
        Mask mask(200, 40);
        for (int y = 10; y < 13; ++y)
            std::fill_n(mask.row(y) + 70, 30, std::uint8_t{255});
        // The copy's planes still point to the original's memory.
        for (int i = 0; i < 3; ++i)
            before.planes.data[i] = reinterpret_cast<std::uint8_t *>(before.memory[i].data());
        Grade(1, 0.5).applyInside(frame.planes, mask);
        int changed = 0;
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 200; ++x) {
                const bool isInside = y >= 10 && y < 13 && x >= 70 && x < 100;
                const bool isNear = isInside || (shift == 1 && y == 13 && x >= 70 && x < 100);
                changed += frame.get(0, x, y) != before.get(0, x, y);
                EXPECT_TRUE(isInside || frame.get(0, x, y) == before.get(0, x, y)) << x << ' ' << y;
                EXPECT_TRUE(isNear || frame.get(1, x >> shift, y >> shift) == before.get(1, x >> shift, y >> shift))
                    << x << ' ' << y;
            }
        EXPECT_GT(changed, 80);
    }
}

TEST(YuvGrade, FieldsAreGradedApart) {
    TestFrame frame(16, 8, 1, 1, 8);
    frame.planes.interlaced = true;
    frame.fill(110, 100, 160);
    Mask mask(16, 8);
    // Row 2 belongs to the first field, and so does colour row 0; colour row 1 is the second field's.
    std::fill_n(mask.row(2), 16, std::uint8_t{255});
    Grade(1, 0).applyInside(frame.planes, mask);
    EXPECT_EQ(frame.get(0, 5, 0), 110);
    EXPECT_NE(frame.get(0, 5, 2), 110);
    EXPECT_EQ(frame.get(0, 5, 3), 110);
    EXPECT_NE(frame.get(1, 2, 0), 100);
    EXPECT_EQ(frame.get(1, 2, 1), 100);
}

TEST(YuvGrade, SizesHaveToAgree) {
    TestFrame frame(16, 8, 1, 1, 8);
    EXPECT_THROW(Grade(0, 1).applyInside(frame.planes, Mask(15, 8)), std::invalid_argument);
}

TEST(FloatLanes, PortableAndOtherAgree) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> any(-3, 3);
    for (int round = 0; round < 100; ++round) {
        float a[4], b[4];
        std::uint8_t bytes[4];
        for (int i = 0; i < 4; ++i) {
            a[i] = any(random);
            b[i] = any(random);
            bytes[i] = static_cast<std::uint8_t>(random());
        }
        const auto all = [&]<typename Lanes>(float *result) {
            const Lanes x = Lanes::load(a);
            const Lanes y = Lanes::load(b);
            (lesser(x * y + Lanes::load(bytes), greater(x - y, Lanes::all(0.5F)))).store(result);
        };
        float plain[4], other[4];
        all.template operator()<PortableFloatLanes>(plain);
        all.template operator()<FloatLanes>(other);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(plain[i], other[i]);
    }
}

} // namespace
} // namespace hostkit
