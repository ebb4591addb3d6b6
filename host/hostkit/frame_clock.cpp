// SPDX-License-Identifier: MIT
#include "hostkit/frame_clock.h"

#include <algorithm>
#include <stdexcept>
#include <string>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace hostkit {

FrameClock::FrameClock(int rateNumerator, int rateDenominator, const std::vector<long long> &positions)
    : rateNumerator_(rateNumerator), rateDenominator_(rateDenominator), constant_(true) {
    if (positions.empty() || rateNumerator <= 0 || rateDenominator <= 0)
        throw std::invalid_argument("a frame clock needs at least one frame and a positive frame rate");

    const auto atRate = [&](std::size_t frame) {
        return av_rescale_rnd(static_cast<std::int64_t>(frame), kUnitsPerSecond * rateDenominator, rateNumerator,
                              AV_ROUND_UP);
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
