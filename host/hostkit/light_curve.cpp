// SPDX-License-Identifier: MIT
#include "hostkit/light_curve.h"

#include <algorithm>
#include <cmath>

namespace hostkit {
namespace {

// Codes of 12 bits are 2^-12 apart; light goes down to that to the power of 2.8.
constexpr int kFirstCodeOctave = -13;
constexpr int kLastCodeOctave = 2;
constexpr int kFirstLightOctave = -37;
constexpr int kLastLightOctave = 6;

LightCurve powerCurve(double power) {
    return {CurveTable([=](double code) { return std::pow(code, power); }, kFirstCodeOctave, kLastCodeOctave),
            CurveTable([=](double light) { return std::pow(light, 1 / power); }, kFirstLightOctave, kLastLightOctave)};
}

// SMPTE ST 2084; light 1 is 10,000 candela a square metre.
constexpr double kM1 = 2610.0 / 16384;
constexpr double kM2 = 2523.0 / 32;
constexpr double kC1 = 107.0 / 128;
constexpr double kC2 = 2413.0 / 128;
constexpr double kC3 = 2392.0 / 128;

/// Beyond this code the formula has a pole; nothing that the table is asked for lies there once light is clipped.
constexpr double kPqEnd = 1.2;

double pqToLight(double code) {
    const double root = std::pow(std::min(code, kPqEnd), 1 / kM2);
    return std::pow(std::max(root - kC1, 0.0) / (kC2 - kC3 * root), 1 / kM1);
}

double lightToPq(double light) {
    const double power = std::pow(light, kM1);
    // Black has the code 7e-7, which is nothing at any depth.
    return std::pow((kC1 + kC2 * power) / (1 + kC3 * power), kM2) - std::pow(kC1, kM2);
}

// ARIB STD-B67 (hybrid log-gamma); light is the scene's.
constexpr double kA = 0.17883277;
constexpr double kB = 1 - 4 * kA;
const double kC = 0.5 - kA * std::log(4 * kA);

double hlgToLight(double code) {
    return code <= 0.5 ? code * code / 3 : (std::exp((code - kC) / kA) + kB) / 12;
}

double lightToHlg(double light) {
    return light <= 1.0 / 12 ? std::sqrt(3 * light) : kA * std::log(12 * light - kB) + kC;
}

} // namespace

CurveTable::CurveTable(const std::function<double(double)> &curve, int firstOctave, int lastOctave)
    : first_(std::bit_cast<std::uint32_t>(static_cast<float>(std::exp2(firstOctave)))),
      last_(static_cast<std::size_t>(lastOctave - firstOctave) * (1U << (23 - kShift)) - 1) {
    for (std::size_t i = 0; i <= last_; ++i) {
        const auto edge = [&](std::size_t index) {
            return static_cast<double>(std::bit_cast<float>(first_ + (static_cast<std::uint32_t>(index) << kShift)));
        };
        // The first piece begins at zero.
        const double from = i == 0 ? 0 : edge(i);
        const double to = edge(i + 1);
        const double slope = (curve(to) - (i == 0 ? 0 : curve(from))) / (to - from);
        const double base = i == 0 ? 0 : curve(from) - slope * from;
        pieces_.push_back({static_cast<float>(base), static_cast<float>(slope)});
    }
}

const LightCurve &lightCurveOf(int transfer) {
    // The numbers are those of ISO/IEC 23091-2, which every library uses.
    static const LightCurve display = powerCurve(2.4);
    static const LightCurve power22 = powerCurve(2.2);
    static const LightCurve power28 = powerCurve(2.8);
    static const LightCurve linear = powerCurve(1);
    static const LightCurve pq = {CurveTable(pqToLight, kFirstCodeOctave, 0),
                                  CurveTable(lightToPq, kFirstLightOctave, 0)};
    static const LightCurve hlg = {CurveTable(hlgToLight, kFirstCodeOctave, kLastCodeOctave),
                                   CurveTable(lightToHlg, kFirstLightOctave, 28)};
    switch (transfer) {
    case 4:
        return power22;
    case 5:
        return power28;
    case 8:
        return linear;
    case 16:
        return pq;
    case 18:
        return hlg;
    default:
        return display;
    }
}

} // namespace hostkit
