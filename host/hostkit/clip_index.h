// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hostkit/av_handles.h"
#include "hostkit/clip_input.h"

namespace hostkit {

/// The frames of a clip as its container lists them: as quick as reading the file, because nothing is decoded. What the
/// decoder makes of it can differ; whoever goes by the list compares.
class ClipIndex {
  public:
    /// Throws as VideoReader does.
    explicit ClipIndex(const std::string &path);

    /// Reads on for a while; false at the end.
    bool step();
    /// Whether each frame has one packet with a time of its own, as far as packets tell.
    bool isTrusted() const { return isTrusted_ && !positions_.empty(); }
    /// Presentation times in units of FrameClock, ascending. Complete at the end only, as everything below.
    const std::vector<long long> &positions() const { return positions_; }
    /// Packets of the video without those that an edit list cuts away, but with those that show nothing.
    long long packets() const { return packets_ - cutAway_; }
    /// Frames that the container promises and the file does not hold any more: it was truncated.
    long long missing() const { return missing_; }

  private:
    void finish();

    ClipInput clip_;
    AvPacket packet_;
    bool isTrusted_ = true;
    long long packets_ = 0;
    long long cutAway_ = 0;
    long long end_ = 0; ///< of all streams, in units
    long long missing_ = 0;
    std::vector<long long> positions_;
};

} // namespace hostkit
