// SPDX-License-Identifier: MIT
#include "hostkit/quick_curve.h"

#include <cmath>

#include "hostkit/light_curve.h"

namespace hostkit {
namespace {

// Sixteen entries a code of full range; what codes can say reaches from -1.2 to 2.2.
constexpr int kCodeEntries = 16 * 256;
constexpr int kCodeReach = 3;
// That to the power of 2.8, and its root. The indices are 16 bits.
constexpr int kRootEntries = 8192;
constexpr int kRootReach = 3;

QuickCurve quickOf(const LightCurve &curve) {
    const auto decode = [&](double code) { return static_cast<double>(curve.decode(static_cast<float>(code))); };
    const auto encode = [&](double root) {
        return static_cast<double>(curve.encode(static_cast<float>(root * std::abs(root))));
    };
    return {QuickTable(decode, kCodeEntries, kCodeReach), QuickRootTable({encode, kRootEntries, kRootReach})};
}

} // namespace

QuickTable::QuickTable(const std::function<double(double)> &function, int entries, int reach)
    : entries_(static_cast<float>(entries)), middle_(static_cast<float>(entries * reach) + 0.5F),
      last_(static_cast<float>(2 * entries * reach)) {
    for (int i = -entries * reach; i <= entries * reach; ++i)
        values_.push_back(static_cast<float>(function(static_cast<double>(i) / entries)));
}

const QuickCurve *quickCurveOf(int transfer) {
    static const QuickCurve display = quickOf(lightCurveOf(kUnknownTransfer));
    static const QuickCurve power22 = quickOf(lightCurveOf(4));
    static const QuickCurve power28 = quickOf(lightCurveOf(5));
    const LightCurve &curve = lightCurveOf(transfer);
    if (&curve == &lightCurveOf(kUnknownTransfer))
        return &display;
    if (&curve == &lightCurveOf(4))
        return &power22;
    return &curve == &lightCurveOf(5) ? &power28 : nullptr;
}

} // namespace hostkit
