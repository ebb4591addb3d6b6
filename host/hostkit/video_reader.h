// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hostkit/av_handles.h"
#include "hostkit/clip_input.h"
#include "hostkit/frame_format.h"
#include "hostkit/frame_shaper.h"
#include "hostkit/image.h"
#include "hostkit/orientation.h"
#include "hostkit/scale.h"

namespace hostkit {

/// Decodes the video of a file, one frame after the other. Frames stand upright, whichever way the camera was held, and
/// so do all sizes.
class VideoReader {
  public:
    /// Opens a clip. With a width and a height frames are resampled to that size; 0 and 0 keep the clip's own.
    /// Throws MediaError when the file does not exist, cannot be read or is not a video.
    explicit VideoReader(const std::string &path, int width = 0, int height = 0);

    /// The next frame as a picture, or false at the end. Damaged frames that the decoder gives up are left out. Throws
    /// MediaError when the clip changes its size there; so do the two below.
    bool read(Image &image);
    /// The next frame in format(), or null at the end. Nobody may write to it.
    SharedFrame readFrame();
    /// Decodes the next frame without making a picture of it; false at the end.
    bool skip();
    /// Back to the first frame.
    void rewind();
    /// Presentation time of the last frame, in units of FrameClock, from the file's own zero; and that of the first.
    long long position() const { return position_; }
    long long firstPosition() const { return firstPosition_; }

    const std::string &path() const { return path_; }
    /// Size of the frames and pictures that come out.
    int width() const { return format_.width; }
    int height() const { return format_.height; }
    int clipWidth() const { return clipWidth_; }
    int clipHeight() const { return clipHeight_; }
    /// Frames a second as the file declares or suggests it.
    int rateNumerator() const { return rateNumerator_; }
    int rateDenominator() const { return rateDenominator_; }
    /// Width over height of a pixel; resampling keeps the clip's shape on the screen.
    int pixelAspectNumerator() const { return format_.aspectNumerator; }
    int pixelAspectDenominator() const { return format_.aspectDenominator; }
    std::string codecName() const;
    /// AVColorSpace of the frames: the clip's own or the assumed one.
    int colorMatrix() const { return format_.actualMatrix(); }

    const FrameFormat &format() const { return format_; }
    /// What of the clip's pictures is not in the frames: "alpha", say.
    std::vector<std::string> notKept() const { return notKept_; }
    /// Frames since the first one that the decoder has marked as damaged.
    long long damagedFrames() const { return damagedFrames_; }
    /// What the decoder has refused or given up since then.
    long long lostFrames() const { return lostFrames_; }
    /// Copies what the clip says about itself to an output: titles, and the light of the display that it was made for.
    void copyMetadata(AVFormatContext &output, AVStream &video) const;

  private:
    void open();
    void describeRate();
    void describe(int width, int height);
    void describeOrientation();
    void describeColors();
    void describeLosses();
    bool decode();
    void feed();

    std::string path_;
    FrameFormat format_;
    Orientation orientation_;
    int clipWidth_ = 0;
    int clipHeight_ = 0;
    int codedWidth_ = 0; ///< before turning
    int codedHeight_ = 0;
    int rateNumerator_ = 0;
    int rateDenominator_ = 1;
    long long position_ = -1;
    long long firstPosition_ = 0;
    long long decoded_ = 0; ///< frames since the first
    long long damagedFrames_ = 0;
    long long lostFrames_ = 0;
    bool isAhead_ = false; ///< the frame in frame_ has not been given out
    std::vector<std::string> notKept_;
    // In this order: the decoder goes first, which ends its threads; what they worked on goes after it.
    ClipInput clip_;
    AvFrame frame_;
    AvPacket packet_;
    FrameConverter converter_;
    std::unique_ptr<FrameShaper> shaper_;
    AvCodec decoder_;
};

} // namespace hostkit
