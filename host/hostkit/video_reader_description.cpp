// SPDX-License-Identifier: MIT
// What a reader finds out about its clip from the container and from the first frame.

#include <algorithm>

#include "hostkit/video_reader.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
}

namespace hostkit {
namespace {

constexpr AVRational kFallbackRate = {25, 1};

const std::uint8_t *sideData(const AVStream &stream, const AVFrame &frame, AVPacketSideDataType ofStream,
                             AVFrameSideDataType ofFrame, std::size_t &size) {
    if (const std::uint8_t *const data = av_stream_get_side_data(&stream, ofStream, &size))
        return data;
    const AVFrameSideData *const data = av_frame_get_side_data(&frame, ofFrame);
    size = data == nullptr ? 0 : data->size;
    return data == nullptr ? nullptr : data->data;
}

/// Whether the frames come with alpha, or with a second stream of it that decoders leave aside.
bool hadAlpha(const AVStream &stream, const AVFrame &frame) {
    const AVDictionaryEntry *const mode = av_dict_get(stream.metadata, "alpha_mode", nullptr, 0);
    return hasAlpha(frame.format) || (mode != nullptr && std::string(mode->value) == "1");
}

/// A matrix whose three light shares a grade can go by.
bool hasShares(int matrix) {
    return matrix != AVCOL_SPC_YCGCO && matrix != AVCOL_SPC_ICTCP && matrix != AVCOL_SPC_BT2020_CL &&
           matrix < AVCOL_SPC_SMPTE2085;
}

} // namespace

void VideoReader::describeRate() {
    AVRational rate = av_guess_frame_rate(clip_.input.get(), &clip_.video(), nullptr);
    if (rate.num <= 0 || rate.den <= 0)
        rate = kFallbackRate;
    rateNumerator_ = rate.num;
    rateDenominator_ = rate.den;
}

void VideoReader::describe(int width, int height) {
    describeOrientation();
    clipWidth_ = orientation_.transposed ? codedHeight_ : codedWidth_;
    clipHeight_ = orientation_.transposed ? codedWidth_ : codedHeight_;
    format_.width = width == 0 && height == 0 ? clipWidth_ : width;
    format_.height = width == 0 && height == 0 ? clipHeight_ : height;
    format_.pixelFormat = workingFormat(frame_->format, orientation_.transposed);
    describeColors();

    AVRational aspect = av_guess_sample_aspect_ratio(clip_.input.get(), &clip_.video(), frame_.get());
    if (aspect.num <= 0 || aspect.den <= 0)
        aspect = {1, 1};
    if (orientation_.transposed)
        std::swap(aspect.num, aspect.den);
    if (clipWidth_ != format_.width || clipHeight_ != format_.height)
        av_reduce(&aspect.num, &aspect.den, std::int64_t{aspect.num} * clipWidth_ * format_.height,
                  std::int64_t{aspect.den} * clipHeight_ * format_.width, 65535);
    format_.aspectNumerator = std::max(aspect.num, 1);
    format_.aspectDenominator = std::max(aspect.den, 1);
    describeLosses();
}

void VideoReader::describeOrientation() {
    std::size_t size = 0;
    const std::uint8_t *const data =
        sideData(clip_.video(), *frame_, AV_PKT_DATA_DISPLAYMATRIX, AV_FRAME_DATA_DISPLAYMATRIX, size);
    if (size >= 9 * sizeof(std::int32_t) &&
        !readDisplayMatrix(reinterpret_cast<const std::int32_t *>(data), orientation_))
        notKept_.push_back("the rotation, which is no quarter turn");
}

void VideoReader::describeColors() {
    format_.primaries = frame_->color_primaries;
    format_.transfer = frame_->color_trc;
    format_.chromaLocation = frame_->chroma_location;
    bool fullRange = frame_->color_range == AVCOL_RANGE_JPEG;
    withoutRange(frame_->format, fullRange);
    format_.range = fullRange ? AVCOL_RANGE_JPEG : frame_->color_range;
    format_.matrix = frame_->colorspace;
    if (isRgb(frame_->format)) {
        format_.matrix = AVCOL_SPC_BT709;
        format_.range = AVCOL_RANGE_MPEG;
    }
    if (frame_->interlaced_frame != 0) {
        const AVFieldOrder declared = clip_.video().codecpar->field_order;
        const AVFieldOrder seen = frame_->top_field_first != 0 ? AV_FIELD_TT : AV_FIELD_BB;
        format_.fieldOrder = declared > AV_FIELD_PROGRESSIVE ? declared : seen;
    }
    // Rows of two fields lie next to each other no more, or change places.
    if (format_.isInterlaced() &&
        (orientation_.transposed || orientation_.mirroredY || format_.height != clipHeight_)) {
        format_.fieldOrder = AV_FIELD_PROGRESSIVE;
        notKept_.push_back("the field order (the picture is turned or resampled)");
    }
}

void VideoReader::describeLosses() {
    if (hadAlpha(clip_.video(), *frame_))
        notKept_.push_back("alpha");
    if (isRgb(frame_->format))
        notKept_.push_back("RGB (it becomes " + format_.text() + ")");
    else if (format_.pixelFormat != frame_->format && orientation_.transposed)
        notKept_.push_back("the sampling of colours (turned, it becomes " + format_.text() + ")");
    if (!hasShares(format_.matrix))
        notKept_.push_back(std::string("the exact grade (codes of matrix ") +
                           av_color_space_name(static_cast<AVColorSpace>(format_.matrix)) + " are graded as BT.709's)");
    if (av_frame_get_side_data(frame_.get(), AV_FRAME_DATA_DYNAMIC_HDR_PLUS) != nullptr)
        notKept_.push_back("HDR10+ metadata");
    if (av_stream_get_side_data(&clip_.video(), AV_PKT_DATA_DOVI_CONF, nullptr) != nullptr)
        notKept_.push_back("Dolby Vision metadata");
    int subtitles = 0;
    int videos = 0;
    for (unsigned i = 0; i < clip_.input->nb_streams; ++i) {
        const AVStream &stream = *clip_.input->streams[i];
        subtitles += stream.codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE;
        videos += stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
                  (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
    }
    if (subtitles > 0)
        notKept_.push_back("subtitles");
    if (videos > 1)
        notKept_.push_back("further video streams");
    if (clip_.input->nb_chapters > 0)
        notKept_.push_back("chapters");
}

void VideoReader::copyMetadata(AVFormatContext &output, AVStream &video) const {
    av_dict_copy(&output.metadata, clip_.input->metadata, 0);
    for (const char *const own : {"major_brand", "minor_version", "compatible_brands", "encoder"})
        av_dict_set(&output.metadata, own, nullptr, 0);
    constexpr struct {
        AVPacketSideDataType ofStream;
        AVFrameSideDataType ofFrame;
    } kKept[] = {{AV_PKT_DATA_MASTERING_DISPLAY_METADATA, AV_FRAME_DATA_MASTERING_DISPLAY_METADATA},
                 {AV_PKT_DATA_CONTENT_LIGHT_LEVEL, AV_FRAME_DATA_CONTENT_LIGHT_LEVEL}};
    for (const auto &kind : kKept) {
        std::size_t size = 0;
        const std::uint8_t *const data = sideData(clip_.video(), *frame_, kind.ofStream, kind.ofFrame, size);
        if (data == nullptr)
            continue;
        if (std::uint8_t *const copy = av_stream_new_side_data(&video, kind.ofStream, size))
            std::copy_n(data, size, copy);
    }
}

} // namespace hostkit
