// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hostkit/av_handles.h"

namespace hostkit {

/// Copies the sound of a clip into another container as it is, packet by packet, in step with the pictures there. It
/// reads the file by itself, so nobody has to keep packets for it.
class SoundCopier {
  public:
    /// Adds a stream to `output` for each of the clip's sound streams that its container takes. The clip's time
    /// `origin` (units of FrameClock) is the output's zero. Throws MediaError when the clip cannot be read.
    SoundCopier(const std::string &path, long long origin, AVFormatContext &output);

    /// The sounds that the container does not take, by codec.
    const std::vector<std::string> &refused() const { return refused_; }
    /// Writes what begins before `time` (units, from the output's zero). The output's header has to be written. Returns
    /// a negative code of FFmpeg's when that fails.
    int copyUntil(long long time);
    /// Writes the rest.
    int copyAll();

  private:
    bool readNext();

    AVFormatContext &output_;
    long long origin_;
    AvInput input_;
    AvPacket packet_;
    std::vector<int> targets_; ///< by the clip's streams; -1 for what is left out
    std::vector<std::string> refused_;
    bool isHeld_ = false; ///< packet_ waits for its time
    bool isOver_ = false;
};

} // namespace hostkit
