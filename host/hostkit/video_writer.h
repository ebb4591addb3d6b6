// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hostkit/av_handles.h"
#include "hostkit/frame_clock.h"
#include "hostkit/frame_format.h"
#include "hostkit/image.h"
#include "hostkit/scale.h"

namespace hostkit {

class SoundCopier;
class VideoReader;

/// Encodes frames as a video with the times of a frame clock: H.264 in MP4, or VP9 in WebM.
///
/// Subsampled colours need even sizes: an odd picture gets its last column or row once more.
class VideoWriter {
  public:
    /// "h264" or "vp9": the wanted one if this machine can encode it, else the other. Throws MediaError when it can
    /// encode neither, std::invalid_argument for another name.
    static std::string usableCodec(const std::string &wanted);
    /// File name ending that goes with a codec, without the dot: "mp4" or "webm".
    static std::string fileExtension(const std::string &codec);

    /// For pictures: 8-bit 4:2:0. `pixelAspect` is width over height of a pixel; `colorMatrix` the AVColorSpace to
    /// encode with. Throws MediaError when the file cannot be written or the encoder refuses.
    VideoWriter(const std::string &path, const std::string &codec, int width, int height, const FrameClock &clock,
                int pixelAspectNumerator, int pixelAspectDenominator, int colorMatrix);
    /// For frames of a clip: in their own format as far as the encoder has it, with the clip's sound and what it says
    /// about itself. `clip` is not used any more afterwards.
    VideoWriter(const std::string &path, const std::string &codec, const VideoReader &clip, const FrameClock &clock);
    ~VideoWriter();

    /// Encodes the next frame. Throws std::invalid_argument for a picture of another size or more frames than the clock
    /// has.
    void write(const Image &image);
    /// The same for a frame of the clip's format.
    void write(const AVFrame &frame);
    /// Writes what the encoder still holds and completes the file. Without it the file stays incomplete.
    void finish();
    long long frameCount() const { return frames_; }
    /// Size of the encoded frames.
    int codedWidth() const;
    int codedHeight() const;
    /// What encoder and container cannot keep of the clip.
    std::vector<std::string> notKept() const { return notKept_; }

  private:
    VideoWriter(const std::string &path, const FrameFormat &format, const FrameClock &clock);

    void open(const std::string &codec, const VideoReader *clip);
    void describe(AVCodecContext &encoder) const;
    void openFile(const VideoReader *clip);
    void requireSize(int width, int height) const;
    /// A frame in the encoder's format, which `fill(frame, colors)` fills up to the clip's size. Beyond, the last
    /// column and row stand again.
    template <typename Fill>
    AVFrame &codedFrame(Fill fill);
    void send(AVFrame &frame);
    void encode(const AVFrame *frame);
    [[noreturn]] void fail(int code) const;

    std::string path_;
    FrameFormat format_;
    FrameClock clock_;
    AvOutput output_;
    std::unique_ptr<SoundCopier> sound_;
    AvFrame frame_; ///< in the encoder's format and size, for what has another one
    AvFrame sent_;
    AvPacket packet_;
    FrameConverter converter_;
    std::vector<std::string> notKept_;
    long long frames_ = 0;
    bool finished_ = false;
    AvCodec encoder_; ///< last: it ends its threads before the rest goes
};

} // namespace hostkit
