// SPDX-License-Identifier: MIT
#pragma once

#include "hostkit/av_handles.h"
#include "hostkit/image.h"
#include "overlay/types/outline_points.h"

namespace hostkit {

/// The part `source` of a picture, resampled. Throws std::invalid_argument when the part leaves the picture.
Image scaled(const Image &image, const PixelRect &source, int width, int height);

/// Which numbers a video's codes stand for; both values are FFmpeg's.
struct VideoColors {
    int matrix = 0;         ///< AVColorSpace
    bool fullRange = false; ///< codes 0 to 255 instead of 16 to 235

    friend bool operator==(const VideoColors &, const VideoColors &) = default;
};

/// The matrix of a clip that does not name one: BT.601 up to standard definition, BT.709 above, as players assume.
int assumedMatrix(int height);

/// The old formats that mean "full range" by their name: what they are otherwise. Any other stays as it is.
int withoutRange(int pixelFormat, bool &fullRange);

/// The part `source` of a frame of planes, as a picture of that size. The part begins at a colour sample.
Image scaled(const AVFrame &frame, const VideoColors &colors, const PixelRect &source, int width, int height);

/// Video frame to picture and back with stated colours. Keeps its tables between calls of the same geometry.
class FrameConverter {
  public:
    /// Resamples when the sizes differ.
    void toImage(const AVFrame &frame, const VideoColors &colors, Image &image);
    /// `frame` has its format, size and buffers already; sizes agree with the image's.
    void toFrame(const Image &image, const VideoColors &colors, AVFrame &frame);
    /// Between two formats and sizes of video; `colors` are those of both, unless `source` holds red, green and blue.
    void toFrame(const AVFrame &source, const VideoColors &colors, AVFrame &frame);

  private:
    struct Geometry {
        int sourceWidth = 0, sourceHeight = 0, sourceFormat = -1;
        int targetWidth = 0, targetHeight = 0, targetFormat = -1;
        VideoColors colors;
        bool fromPicture = false, toPicture = false;
        friend bool operator==(const Geometry &, const Geometry &) = default;
    };
    void prepare(const Geometry &geometry);

    Geometry geometry_;
    Scaler scaler_;
};

} // namespace hostkit
