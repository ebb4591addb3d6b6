// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "hostkit/av_handles.h"
#include "hostkit/image.h"
#include "hostkit/scale.h"

namespace hostkit {

/// Decodes the video of a file, one frame after the other.
class VideoReader {
  public:
    /// Opens a clip. With a width and a height frames are resampled to that size; 0 and 0 keep the clip's own.
    /// Throws MediaError when the file does not exist, cannot be read or is not a video.
    explicit VideoReader(const std::string &path, int width = 0, int height = 0);

    /// The next frame as a picture, or false at the end. Damaged frames that the decoder gives up are left out.
    bool read(Image &image);
    /// Decodes the next frame without making a picture of it; false at the end.
    bool skip();
    /// Back to the first frame.
    void rewind();
    /// Presentation time of the last frame, in units of FrameClock, from the file's own zero.
    long long position() const { return position_; }

    /// Size of the pictures that read() makes.
    int width() const { return width_; }
    int height() const { return height_; }
    int clipWidth() const;
    int clipHeight() const;
    /// Frames a second as the file declares or suggests it.
    int rateNumerator() const { return rateNumerator_; }
    int rateDenominator() const { return rateDenominator_; }
    /// Width over height of one of read()'s pixels; resampling keeps the clip's shape on the screen.
    int pixelAspectNumerator() const { return aspectNumerator_; }
    int pixelAspectDenominator() const { return aspectDenominator_; }
    std::string codecName() const;
    /// AVColorSpace of the frames: the clip's own or the assumed one.
    int colorMatrix() const;

  private:
    void open();
    bool decode();
    void feed();

    std::string path_;
    int width_ = 0;
    int height_ = 0;
    int rateNumerator_ = 0;
    int rateDenominator_ = 1;
    int aspectNumerator_ = 1;
    int aspectDenominator_ = 1;
    AvInput input_;
    AvCodec decoder_;
    AvFrame frame_;
    AvPacket packet_;
    FrameConverter converter_;
    int stream_ = -1;
    long long position_ = -1;
};

} // namespace hostkit
