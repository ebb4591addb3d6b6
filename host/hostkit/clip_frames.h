// SPDX-License-Identifier: MIT
#pragma once

#include "hostkit/image.h"
#include "hostkit/video_reader.h"

namespace hostkit {

/// The frames of a clip by number, over a decoder that only goes forward: going back decodes from the start.
class ClipFrames {
  public:
    /// `reader` has to be at its first frame and belongs to this object from now on, without being owned.
    explicit ClipFrames(VideoReader &reader) : reader_(reader) {}

    /// Makes a picture of frame `number` (from 0); false when the clip has no such frame. Throws MediaError.
    bool read(long long number, Image &image);

  private:
    VideoReader &reader_;
    long long next_ = 0; ///< the frame that the decoder gives next; -1 when that is unknown
};

} // namespace hostkit
