// SPDX-License-Identifier: MIT
#include "hostkit/light_curve.h"

#include <cmath>

#include <gtest/gtest.h>

namespace hostkit {
namespace {

TEST(LightCurve, IsTheFormulaAtTwelveBits) {
    for (int code = 0; code <= 4095; ++code) {
        const float value = static_cast<float>(code) / 4095;
        const float light = lightCurveOf(kUnknownTransfer).decode(value);
        EXPECT_NEAR(light, std::pow(value, 2.4), 1e-9 + 5e-5 * light) << code;
    }
}

TEST(LightCurve, WhatIsDecodedIsEncodedAgain) {
    for (const int transfer : {1, 2, 4, 5, 8, 16, 18})
        for (int code = -400; code <= 4095 + (transfer == 16 ? 0 : 400); ++code) {
            const LightCurve &curve = lightCurveOf(transfer);
            const float value = static_cast<float>(code) / 4095;
            EXPECT_NEAR(curve.encode(curve.decode(value)), value, 0.3 / 4095) << transfer << ' ' << code;
        }
}

TEST(LightCurve, KnownPointsOfHdr) {
    // 100 candela a square metre are code 0.508 of PQ; 0.5 of HLG is a twelfth of the scene's peak.
    EXPECT_NEAR(lightCurveOf(16).encode(0.01F), 0.508, 0.001);
    EXPECT_NEAR(lightCurveOf(18).decode(0.5F), 1.0 / 12, 1e-5);
    EXPECT_NEAR(lightCurveOf(18).decode(1.0F), 1, 1e-4);
}

TEST(LightCurve, FourAtOnceAreTheSame) {
    const CurveTable &decode = lightCurveOf(1).decode;
    for (float value = -1.5F; value < 5; value += 0.0137F) {
        const float values[4] = {value, -value, value * 1e-5F, 0};
        float results[4];
        decode(FloatLanes::load(values)).store(results);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(results[i], decode(values[i]));
    }
}

} // namespace
} // namespace hostkit
