// SPDX-License-Identifier: MIT
#include "hostkit/frame_clock.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

namespace hostkit {
namespace {

/// ceil(value * factor / divisor) of numbers that are not negative, with divisor below 2^31: every product of
/// remainders fits. A result that does not is the largest number.
std::int64_t rescaledUp(std::int64_t value, std::int64_t factor, std::int64_t divisor) {
    const std::int64_t whole = value / divisor;
    const std::int64_t rest = value % divisor;
    const std::int64_t fraction = rest * (factor % divisor);
    const std::int64_t below = rest * (factor / divisor) + fraction / divisor + (fraction % divisor != 0);
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    return factor != 0 && whole > (kLargest - below) / factor ? kLargest : whole * factor + below;
}

} // namespace

FrameClock::FrameClock(int rateNumerator, int rateDenominator, const std::vector<long long> &positions)
    : rateNumerator_(rateNumerator), rateDenominator_(rateDenominator), constant_(true) {
    if (positions.empty() || rateNumerator <= 0 || rateDenominator <= 0)
        throw std::invalid_argument("a frame clock needs at least one frame and a positive frame rate");

    const auto atRate = [&](std::size_t frame) {
        return rescaledUp(static_cast<std::int64_t>(frame), kUnitsPerSecond * rateDenominator, rateNumerator);
    };
    const std::int64_t frameLength = atRate(1);
    starts_.reserve(positions.size() + 1);
    for (std::size_t frame = 0; frame < positions.size(); ++frame) {
        starts_.push_back(atRate(frame));
        constant_ = constant_ && 2 * std::abs(positions[frame] - positions[0] - starts_[frame]) < frameLength;
    }
    starts_.push_back(atRate(positions.size()));
    if (constant_)
        return;

    for (std::size_t frame = 0; frame < positions.size(); ++frame) {
        // Broken clips repeat a time or go back; two frames never share one here.
        const std::int64_t earliest = frame == 0 ? 0 : starts_[frame - 1] + 1;
        starts_[frame] = std::max<std::int64_t>(positions[frame] - positions[0], earliest);
    }
    starts_.back() = starts_[positions.size() - 1] + frameLength;
}

long long FrameClock::startOf(long long frame) const {
    if (frame < 0 || frame >= frameCount())
        throw std::invalid_argument("frame " + std::to_string(frame) + " is not one of the clip's " +
                                    std::to_string(frameCount()) + " frames");
    return starts_[static_cast<std::size_t>(frame)];
}

long long FrameClock::frameAt(long long time) const {
    return std::upper_bound(starts_.begin(), starts_.end(), time) - starts_.begin() - 1;
}

} // namespace hostkit
