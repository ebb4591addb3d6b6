// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "hostkit/av_handles.h"

namespace hostkit {

/// A video frame that several threads look at. Its last owner lets it go, whichever thread that is on.
using SharedFrame = std::shared_ptr<AVFrame>;

/// Frames whose memory is used again. FFmpeg counts references to memory in a way of its own; frames go from thread to
/// thread as shared pointers, and come back here, so that whoever writes next sees the last reader done.
class FramePool : public std::enable_shared_from_this<FramePool> {
  public:
    static std::shared_ptr<FramePool> make() { return std::make_shared<FramePool>(); }

    /// A frame with memory of that format (an AVPixelFormat) and size; its contents are undefined.
    SharedFrame acquire(int pixelFormat, int width, int height);
    /// Another owner of what `frame` holds, without copying it; `frame` is blank afterwards.
    static SharedFrame share(AVFrame &frame);

  private:
    void giveBack(AvFrame frame);

    std::mutex mutex_;
    std::vector<AvFrame> free_; ///< the few that were used last
};

} // namespace hostkit
