// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "hostkit/frame_format.h"
#include "hostkit/frame_pool.h"
#include "hostkit/orientation.h"
#include "hostkit/scale.h"

namespace hostkit {

/// Makes frames of a clip's decoder ones that stand upright, have the wanted size and a working format. What is all of
/// that already passes through without a copy.
class FrameShaper {
  public:
    /// `format` is that of the result.
    FrameShaper(const FrameFormat &format, const Orientation &orientation)
        : format_(format), orientation_(orientation) {}

    /// `frame` is blank afterwards. Throws MediaError when FFmpeg cannot convert its format.
    SharedFrame shape(AVFrame &frame);

  private:
    SharedFrame converted(const AVFrame &frame, int width, int height);

    FrameFormat format_;
    Orientation orientation_;
    FrameConverter converter_;
    std::shared_ptr<FramePool> pool_ = FramePool::make();
    std::shared_ptr<FramePool> unturned_ = FramePool::make();
};

} // namespace hostkit
