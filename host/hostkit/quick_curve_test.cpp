// SPDX-License-Identifier: MIT
#include "hostkit/quick_curve.h"

#include <cmath>

#include <gtest/gtest.h>

#include "hostkit/light_curve.h"

namespace hostkit {
namespace {

float one(const auto &table, float value) {
    float results[4];
    table.lookup()(FloatLanes::all(value)).store(results);
    return results[3];
}

TEST(QuickCurve, IsTheCurveToAQuarterOfACode) {
    for (const int transfer : {1, 2, 4, 5, 6})
        for (float value = -0.95F; value < 1.95F; value += 0.000731F) {
            const LightCurve &curve = lightCurveOf(transfer);
            const QuickCurve &quick = *quickCurveOf(transfer);
            EXPECT_NEAR(curve.encode(one(quick.decode, value)), value, 0.04 / 255) << transfer << ' ' << value;
            EXPECT_NEAR(one(quick.encode, curve.decode(value)), value, 0.27 / 255) << transfer << ' ' << value;
        }
}

TEST(QuickCurve, EveryLaneIsLookedUp) {
    const QuickCurve &quick = *quickCurveOf(1);
    const float values[4] = {-0.5F, 0.001F, 0.9F, 1.5F};
    float results[4];
    quick.encode.lookup()(quick.decode.lookup()(FloatLanes::load(values))).store(results);
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(results[i], values[i], 0.3 / 255);
}

TEST(QuickCurve, BeyondItsReachTheLastEntryGoesOn) {
    const QuickTable same([](double x) { return x; }, 10, 2);
    const struct {
        float from, to;
    } cases[] = {{-1e30F, -2}, {-2.04F, -2}, {-0.04F, 0}, {0.06F, 0.1F}, {2, 2}, {1e30F, 2}};
    for (const auto &each : cases)
        EXPECT_FLOAT_EQ(one(same, each.from), each.to) << each.from;
}

TEST(QuickCurve, SteepCurvesHaveNone) {
    EXPECT_EQ(quickCurveOf(16), nullptr);
    EXPECT_EQ(quickCurveOf(18), nullptr);
}

TEST(FloatLanes, RootsKeepTheSign) {
    for (const float value : {-4.0F, -0.0F, 0.0F, 2.25F}) {
        float portable[4], other[4];
        signedRoot(PortableFloatLanes::all(value)).store(portable);
        signedRoot(FloatLanes::all(value)).store(other);
        EXPECT_EQ(portable[0], std::copysign(std::sqrt(std::abs(value)), value));
        EXPECT_EQ(other[0], portable[0]);
    }
}

} // namespace
} // namespace hostkit
