// SPDX-License-Identifier: MIT
#include "hostkit/video_writer.h"

#include <cstring>
#include <stdexcept>

#include "hostkit/error.h"
#include "hostkit/sound_copier.h"
#include "hostkit/video_codec.h"
#include "hostkit/video_reader.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
}

namespace hostkit {
namespace {

/// A variable clip is timed on MPEG's clock; a constant one on its own rate, which is exact.
constexpr AVRational kVariableTimeBase = {1, 90000};
constexpr AVRational kUnit = {1, static_cast<int>(FrameClock::kUnitsPerSecond)};

/// A size that colour samples of `shift` cover evenly.
int coverable(int size, int shift) {
    return (size + (1 << shift) - 1) >> shift << shift;
}

FrameFormat pictureFormat(int width, int height, int aspectNumerator, int aspectDenominator, int matrix) {
    FrameFormat format;
    format.width = width;
    format.height = height;
    format.pixelFormat = AV_PIX_FMT_YUV420P;
    format.matrix = matrix;
    format.range = AVCOL_RANGE_MPEG;
    format.aspectNumerator = aspectNumerator;
    format.aspectDenominator = aspectDenominator;
    return format;
}

/// Repeats the last column and row of a plane.
void padPlane(std::uint8_t *plane, std::ptrdiff_t stride, std::size_t sample, int width, int height, int codedWidth,
              int codedHeight) {
    for (int y = 0; y < height; ++y)
        for (int x = width; x < codedWidth; ++x)
            std::memcpy(plane + y * stride + x * static_cast<std::ptrdiff_t>(sample),
                        plane + y * stride + (width - 1) * static_cast<std::ptrdiff_t>(sample), sample);
    for (int y = height; y < codedHeight; ++y)
        std::memcpy(plane + y * stride, plane + (height - 1) * stride, static_cast<std::size_t>(codedWidth) * sample);
}

} // namespace

std::string VideoWriter::usableCodec(const std::string &wanted) {
    return hostkit::usableCodec(wanted);
}

std::string VideoWriter::fileExtension(const std::string &codec) {
    return videoCodec(codec).extension;
}

VideoWriter::VideoWriter(const std::string &path, const FrameFormat &format, const FrameClock &clock)
    : path_(path), format_(format), clock_(clock), frame_(makeFrame()), sent_(makeFrame()), packet_(makePacket()) {
    silenceAvLog();
}

VideoWriter::VideoWriter(const std::string &path, const std::string &codec, int width, int height,
                         const FrameClock &clock, int pixelAspectNumerator, int pixelAspectDenominator, int colorMatrix)
    : VideoWriter(path, pictureFormat(width, height, pixelAspectNumerator, pixelAspectDenominator, colorMatrix),
                  clock) {
    open(codec, nullptr);
}

VideoWriter::VideoWriter(const std::string &path, const std::string &codec, const VideoReader &clip,
                         const FrameClock &clock)
    : VideoWriter(path, clip.format(), clock) {
    open(codec, &clip);
}

VideoWriter::~VideoWriter() = default;

void VideoWriter::open(const std::string &codec, const VideoReader *clip) {
    const VideoCodec &choice = videoCodec(codec);
    const AVCodec *const encoder = choice.encoder();
    if (encoder == nullptr)
        throw MediaError("this machine's FFmpeg cannot encode " + codec);
    AVFormatContext *context = nullptr;
    // The protocol is named so that a colon in a file's name is part of the name.
    const std::string url = "file:" + path_;
    if (const int code = avformat_alloc_output_context2(&context, nullptr, choice.muxer, url.c_str()); code < 0)
        fail(code);
    output_.reset(context);
    encoder_.reset(avcodec_alloc_context3(encoder));
    if (!encoder_)
        throw std::bad_alloc();
    encoder_->pix_fmt = static_cast<AVPixelFormat>(
        encodableFormat(format_.pixelFormat, reinterpret_cast<const int *>(encoder->pix_fmts)));
    describe(*encoder_);
    if (encoder_->pix_fmt != format_.pixelFormat) {
        FrameFormat coded = format_;
        coded.pixelFormat = encoder_->pix_fmt;
        notKept_.push_back(format_.text() + " (" + codec + " takes " + coded.text() + ")");
    }
    if (encoder_->width != format_.width || encoder_->height != format_.height)
        notKept_.push_back("the odd size (padded to " + sizeText(encoder_->width, encoder_->height) + ")");
    setQuality(*encoder_);
    if (const int code = avcodec_open2(encoder_.get(), encoder, nullptr); code < 0)
        fail(code);
    openFile(clip);

    frame_->format = encoder_->pix_fmt;
    frame_->width = encoder_->width;
    frame_->height = encoder_->height;
    if (const int code = av_frame_get_buffer(frame_.get(), 0); code < 0)
        fail(code);
}

void VideoWriter::describe(AVCodecContext &encoder) const {
    const AVPixFmtDescriptor &pixels = *av_pix_fmt_desc_get(encoder.pix_fmt);
    encoder.width = coverable(format_.width, pixels.log2_chroma_w);
    encoder.height = coverable(format_.height, pixels.log2_chroma_h);
    const AVRational rate = {clock_.rateNumerator(), clock_.rateDenominator()};
    encoder.framerate = rate;
    encoder.time_base = clock_.isConstant() ? av_inv_q(rate) : kVariableTimeBase;
    encoder.sample_aspect_ratio = {format_.aspectNumerator, format_.aspectDenominator};
    encoder.color_primaries = static_cast<AVColorPrimaries>(format_.primaries);
    encoder.color_trc = static_cast<AVColorTransferCharacteristic>(format_.transfer);
    encoder.colorspace = static_cast<AVColorSpace>(format_.matrix);
    encoder.color_range = static_cast<AVColorRange>(format_.range);
    encoder.chroma_sample_location = static_cast<AVChromaLocation>(format_.chromaLocation);
    encoder.field_order = static_cast<AVFieldOrder>(format_.fieldOrder);
    if (format_.isInterlaced())
        encoder.flags |= AV_CODEC_FLAG_INTERLACED_DCT;
    encoder.thread_count = 0;
    if ((output_->oformat->flags & AVFMT_GLOBALHEADER) != 0)
        encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
}

void VideoWriter::openFile(const VideoReader *clip) {
    AVStream *const stream = avformat_new_stream(output_.get(), nullptr);
    if (stream == nullptr)
        throw std::bad_alloc();
    avcodec_parameters_from_context(stream->codecpar, encoder_.get());
    stream->time_base = encoder_->time_base;
    stream->avg_frame_rate = encoder_->framerate;
    stream->sample_aspect_ratio = encoder_->sample_aspect_ratio;
    if (clip != nullptr) {
        clip->copyMetadata(*output_, *stream);
        sound_ = std::make_unique<SoundCopier>(clip->path(), clip->firstPosition(), *output_);
        for (const std::string &codec : sound_->refused())
            notKept_.push_back("sound (" + codec + " does not go into " + output_->oformat->name + ")");
    }
    if (const int code = avio_open(&output_->pb, output_->url, AVIO_FLAG_WRITE); code < 0)
        fail(code);
    AVDictionary *options = nullptr;
    // Players can start before they have the whole file; muxers without the option leave it in the dictionary.
    av_dict_set(&options, "movflags", "+faststart", 0);
    const int code = avformat_write_header(output_.get(), &options);
    av_dict_free(&options);
    if (code < 0)
        fail(code);
}

int VideoWriter::codedWidth() const {
    return encoder_->width;
}

int VideoWriter::codedHeight() const {
    return encoder_->height;
}

void VideoWriter::fail(int code) const {
    throw MediaError("cannot write " + inQuotes(path_) + ": " + avErrorText(code));
}

void VideoWriter::encode(const AVFrame *frame) {
    int code = avcodec_send_frame(encoder_.get(), frame);
    while (code >= 0) {
        code = avcodec_receive_packet(encoder_.get(), packet_.get());
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF)
            return;
        if (code < 0)
            break;
        AVStream *const stream = output_->streams[0];
        // Without a length the container would end when the last frame begins, and the average rate would be off.
        packet_->duration = av_rescale_q(1, av_inv_q(encoder_->framerate), encoder_->time_base);
        av_packet_rescale_ts(packet_.get(), encoder_->time_base, stream->time_base);
        packet_->stream_index = 0;
        code = av_interleaved_write_frame(output_.get(), packet_.get());
    }
    fail(code);
}

void VideoWriter::requireSize(int width, int height) const {
    if (width != format_.width || height != format_.height)
        throw std::invalid_argument("a frame of " + sizeText(width, height) + " pixels does not fit a video of " +
                                    sizeText(format_.width, format_.height));
}

template <typename Fill>
AVFrame &VideoWriter::codedFrame(Fill fill) {
    if (const int code = av_frame_make_writable(frame_.get()); code < 0)
        fail(code);
    AVFrame &frame = *frame_;
    frame.width = format_.width;
    frame.height = format_.height;
    fill(frame, VideoColors{format_.actualMatrix(), format_.isFullRange()});
    frame.width = encoder_->width;
    frame.height = encoder_->height;
    const std::size_t sample = av_pix_fmt_desc_get(encoder_->pix_fmt)->comp[0].depth > 8 ? 2 : 1;
    // Colour samples cover the odd column and row already.
    padPlane(frame.data[0], frame.linesize[0], sample, format_.width, format_.height, frame.width, frame.height);
    return frame;
}

void VideoWriter::write(const Image &image) {
    requireSize(image.width(), image.height());
    clock_.startOf(frames_);
    send(codedFrame([&](AVFrame &frame, const VideoColors &colors) { converter_.toFrame(image, colors, frame); }));
}

void VideoWriter::write(const AVFrame &frame) {
    requireSize(frame.width, frame.height);
    clock_.startOf(frames_);
    if (frame.format == encoder_->pix_fmt && frame.width == encoder_->width && frame.height == encoder_->height) {
        if (const int code = av_frame_ref(sent_.get(), &frame); code < 0)
            fail(code);
        send(*sent_);
        av_frame_unref(sent_.get());
        return;
    }
    AVFrame &coded =
        codedFrame([&](AVFrame &target, const VideoColors &colors) { converter_.toFrame(frame, colors, target); });
    av_frame_copy_props(&coded, &frame);
    send(coded);
}

void VideoWriter::send(AVFrame &frame) {
    const long long start = clock_.startOf(frames_);
    frame.pts = clock_.isConstant() ? frames_ : av_rescale_q(start, kUnit, encoder_->time_base);
    // Which frames are keyframes is the encoder's decision, not the clip's.
    frame.pict_type = AV_PICTURE_TYPE_NONE;
    encode(&frame);
    ++frames_;
    if (sound_)
        if (const int code = sound_->copyUntil(start); code < 0)
            fail(code);
}

void VideoWriter::finish() {
    if (finished_)
        return;
    encode(nullptr);
    if (sound_)
        if (const int code = sound_->copyAll(); code < 0)
            fail(code);
    if (const int code = av_write_trailer(output_.get()); code < 0)
        fail(code);
    if (const int code = avio_closep(&output_->pb); code < 0)
        fail(code);
    finished_ = true;
}

} // namespace hostkit
