// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hostkit/av_handles.h"
#include "hostkit/frame_clock.h"
#include "hostkit/image.h"
#include "hostkit/scale.h"

namespace hostkit {

/// Encodes pictures as a video with the times of a frame clock: H.264 in MP4, or VP9 in WebM.
///
/// 4:2:0 needs even sizes: an odd picture gets its last column or row once more.
class VideoWriter {
  public:
    /// "h264" or "vp9": the wanted one if this machine can encode it, else the other. Throws MediaError when it can
    /// encode neither, std::invalid_argument for another name.
    static std::string usableCodec(const std::string &wanted);
    /// File name ending that goes with a codec, without the dot: "mp4" or "webm".
    static std::string fileExtension(const std::string &codec);

    /// `pixelAspect` is width over height of a pixel; `colorMatrix` the AVColorSpace to encode with. Throws MediaError
    /// when the file cannot be written or the encoder refuses.
    VideoWriter(const std::string &path, const std::string &codec, int width, int height, const FrameClock &clock,
                int pixelAspectNumerator, int pixelAspectDenominator, int colorMatrix);
    ~VideoWriter();

    /// Encodes the next frame. Throws std::invalid_argument for a picture of another size or more frames than the clock
    /// has.
    void write(const Image &image);
    /// Writes what the encoder still holds and completes the file. Without it the file stays incomplete.
    void finish();
    long long frameCount() const { return frames_; }

  private:
    void openFile();
    void encode(const AVFrame *frame);
    [[noreturn]] void fail(int code) const;

    std::string path_;
    FrameClock clock_;
    AvOutput output_;
    AvCodec encoder_;
    AvFrame frame_;
    AvPacket packet_;
    FrameConverter converter_;
    Image padded_; ///< used when a size is odd
    int width_;
    int height_;
    long long frames_ = 0;
    bool finished_ = false;
};

} // namespace hostkit
