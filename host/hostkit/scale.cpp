// SPDX-License-Identifier: MIT
#include "hostkit/scale.h"

#include <stdexcept>
#include <string>

#include "hostkit/error.h"
#include "hostkit/frame_format.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

namespace hostkit {
namespace {

/// Without SWS_FULL_CHR_H_INT each colour sample of 4:2:0 video stands for its two pixels of a row. That is four times
/// faster, and what the grade leaves alone goes back into 4:2:0 as it came instead of softer.
constexpr int kQuality = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP;
constexpr int kStandardDefinitionHeight = 576;

[[noreturn]] void failConverting(int width, int height, int toWidth, int toHeight) {
    if (width == toWidth && height == toHeight)
        throw MediaError("the clip's pixel format cannot be converted");
    throw MediaError("a picture of " + sizeText(width, height) + " pixels cannot be resampled to " +
                     sizeText(toWidth, toHeight));
}

} // namespace

Image scaled(const Image &image, const PixelRect &source, int width, int height) {
    if (source.left < 0 || source.top < 0 || source.width < 1 || source.height < 1 ||
        source.left + source.width > image.width() || source.top + source.height > image.height())
        throw std::invalid_argument("the part to resample leaves the picture");
    Image result(width, height);
    const Scaler scaler(sws_getContext(source.width, source.height, AV_PIX_FMT_BGRA, width, height, AV_PIX_FMT_BGRA,
                                       kQuality, nullptr, nullptr, nullptr));
    if (!scaler)
        failConverting(source.width, source.height, width, height);
    const std::uint8_t *from[] = {image.row(source.top) + std::ptrdiff_t{source.left} * 4};
    const int fromStride[] = {image.stride()};
    std::uint8_t *to[] = {result.row(0)};
    const int toStride[] = {result.stride()};
    sws_scale(scaler.get(), from, fromStride, 0, source.height, to, toStride);
    return result;
}

int withoutRange(int pixelFormat, bool &fullRange) {
    switch (pixelFormat) {
    case AV_PIX_FMT_YUVJ420P:
        fullRange = true;
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        fullRange = true;
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        fullRange = true;
        return AV_PIX_FMT_YUV444P;
    default:
        return pixelFormat;
    }
}

int assumedMatrix(int height) {
    return height > kStandardDefinitionHeight ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

void FrameConverter::prepare(const Geometry &geometry) {
    if (scaler_ && geometry == geometry_)
        return;
    scaler_.reset(sws_getContext(geometry.sourceWidth, geometry.sourceHeight,
                                 static_cast<AVPixelFormat>(geometry.sourceFormat), geometry.targetWidth,
                                 geometry.targetHeight, static_cast<AVPixelFormat>(geometry.targetFormat), kQuality,
                                 nullptr, nullptr, nullptr));
    if (!scaler_)
        failConverting(geometry.sourceWidth, geometry.sourceHeight, geometry.targetWidth, geometry.targetHeight);
    const int *const matrix = sws_getCoefficients(geometry.colors.matrix);
    const int videoRange = geometry.colors.fullRange ? 1 : 0;
    constexpr int kFullRange = 1;
    constexpr int kNeutral = 1 << 16; // contrast and saturation in 16.16
    sws_setColorspaceDetails(scaler_.get(), matrix, geometry.fromPicture ? kFullRange : videoRange, matrix,
                             geometry.toPicture ? kFullRange : videoRange, 0, kNeutral, kNeutral);
    geometry_ = geometry;
}

void FrameConverter::toImage(const AVFrame &frame, const VideoColors &colors, Image &image) {
    VideoColors actual = colors;
    const int format = withoutRange(frame.format, actual.fullRange);
    prepare({frame.width, frame.height, format, image.width(), image.height(), AV_PIX_FMT_BGRA, actual, false, true});
    std::uint8_t *to[] = {image.row(0)};
    const int toStride[] = {image.stride()};
    sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, to, toStride);
}

Image scaled(const AVFrame &frame, const VideoColors &colors, const PixelRect &source, int width, int height) {
    const AVPixFmtDescriptor &format = *av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    const std::ptrdiff_t sample = format.comp[0].depth > 8 ? 2 : 1;
    const AvFrame part = makeFrame();
    part->format = frame.format;
    part->width = source.width;
    part->height = source.height;
    for (int i = 0; i < 3; ++i) {
        const int left = i == 0 ? source.left : source.left >> format.log2_chroma_w;
        const int top = i == 0 ? source.top : source.top >> format.log2_chroma_h;
        part->data[i] = frame.data[i] + top * std::ptrdiff_t{frame.linesize[i]} + left * sample;
        part->linesize[i] = frame.linesize[i];
    }
    Image image(width, height);
    FrameConverter().toImage(*part, colors, image);
    return image;
}

void FrameConverter::toFrame(const Image &image, const VideoColors &colors, AVFrame &frame) {
    prepare(
        {image.width(), image.height(), AV_PIX_FMT_BGRA, frame.width, frame.height, frame.format, colors, true, false});
    const std::uint8_t *from[] = {image.row(0)};
    const int fromStride[] = {image.stride()};
    sws_scale(scaler_.get(), from, fromStride, 0, image.height(), frame.data, frame.linesize);
}

void FrameConverter::toFrame(const AVFrame &source, const VideoColors &colors, AVFrame &frame) {
    VideoColors actual = colors;
    const int format = withoutRange(source.format, actual.fullRange);
    prepare(
        {source.width, source.height, format, frame.width, frame.height, frame.format, actual, isRgb(format), false});
    sws_scale(scaler_.get(), source.data, source.linesize, 0, source.height, frame.data, frame.linesize);
}

} // namespace hostkit
