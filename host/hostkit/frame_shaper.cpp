// SPDX-License-Identifier: MIT
#include "hostkit/frame_shaper.h"

#include <utility>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

namespace hostkit {
namespace {

/// Whether the planes of `format` are those of `wanted`, apart from its alpha and its name for the range.
bool holds(int format, int wanted) {
    if (format == wanted)
        return true;
    bool fullRange = false;
    if (withoutRange(format, fullRange) == wanted)
        return true;
    const AVPixFmtDescriptor *const own = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    const AVPixFmtDescriptor *const other = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(wanted));
    return own != nullptr && other != nullptr && own->nb_components == 4 &&
           (own->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_BE)) == 0 &&
           (own->flags & AV_PIX_FMT_FLAG_PLANAR) != 0 && own->comp[0].depth == other->comp[0].depth &&
           own->log2_chroma_w == other->log2_chroma_w && own->log2_chroma_h == other->log2_chroma_h;
}

} // namespace

SharedFrame FrameShaper::converted(const AVFrame &frame, int width, int height) {
    SharedFrame result = unturned_->acquire(format_.pixelFormat, width, height);
    const bool fullRange = format_.isFullRange();
    converter_.toFrame(frame, {format_.actualMatrix(), fullRange}, *result);
    return result;
}

SharedFrame FrameShaper::shape(AVFrame &frame) {
    const int width = orientation_.transposed ? format_.height : format_.width;
    const int height = orientation_.transposed ? format_.width : format_.height;
    SharedFrame straight;
    if (holds(frame.format, format_.pixelFormat) && frame.width == width && frame.height == height) {
        straight = FramePool::share(frame);
        straight->format = format_.pixelFormat;
    } else {
        straight = converted(frame, width, height);
        av_frame_copy_props(straight.get(), &frame);
        av_frame_unref(&frame);
    }
    if (orientation_.isUpright())
        return straight;
    SharedFrame upright = pool_->acquire(format_.pixelFormat, format_.width, format_.height);
    turn(planesOf(*straight, format_), orientation_, planesOf(*upright, format_));
    av_frame_copy_props(upright.get(), straight.get());
    return upright;
}

} // namespace hostkit
