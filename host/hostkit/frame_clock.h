// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace hostkit {

/// When each frame of a clip is shown. Times are in the host's unit, 100 nanoseconds, and begin at 0 with the first
/// frame.
///
/// A frame's time is the first whole unit that is not earlier than the exact rational time, so the frame number of a
/// frame's time is that frame for every rate, 30000/1001 included.
class FrameClock {
  public:
    static constexpr std::int64_t kUnitsPerSecond = 10 * 1000 * 1000;

    /// Constant when every one of `positions` (presentation times in units, ascending) lies within half a frame of the
    /// rate; the rate is exact then and the positions' rounding is forgotten. Otherwise the positions count.
    /// Throws std::invalid_argument without positions or for a rate that is not positive.
    FrameClock(int rateNumerator, int rateDenominator, const std::vector<long long> &positions);

    int rateNumerator() const { return rateNumerator_; }
    int rateDenominator() const { return rateDenominator_; }
    bool isConstant() const { return constant_; }
    long long frameCount() const { return static_cast<long long>(starts_.size()) - 1; }
    /// Time of a frame; throws std::invalid_argument unless 0 <= frame < frameCount().
    long long startOf(long long frame) const;
    /// Where the last frame ends.
    long long end() const { return starts_.back(); }
    /// The frame that is shown at `time`: -1 before the first, frameCount() from the end on.
    long long frameAt(long long time) const;

  private:
    int rateNumerator_;
    int rateDenominator_;
    bool constant_;
    std::vector<std::int64_t> starts_; ///< one a frame, and the end
};

} // namespace hostkit
