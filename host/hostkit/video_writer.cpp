// SPDX-License-Identifier: MIT
#include "hostkit/video_writer.h"

#include <cstring>
#include <stdexcept>

#include "hostkit/error.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

namespace hostkit {
namespace {

/// A variable clip is timed on MPEG's clock; a constant one on its own rate, which is exact.
constexpr AVRational kVariableTimeBase = {1, 90000};
constexpr AVRational kUnit = {1, static_cast<int>(FrameClock::kUnitsPerSecond)};

struct CodecChoice {
    const char *name;
    const char *encoders[2]; ///< by preference; hardware encoders are left out: they differ from machine to machine
    const char *muxer;
    const char *extension;
};

constexpr CodecChoice kCodecs[] = {
    {"h264", {"libx264", "libopenh264"}, "mp4", "mp4"},
    {"vp9", {"libvpx-vp9", "libsvt_vp9"}, "webm", "webm"},
};

const CodecChoice &choiceOf(const std::string &codec) {
    for (const CodecChoice &choice : kCodecs)
        if (codec == choice.name)
            return choice;
    throw std::invalid_argument("codec " + inQuotes(codec) + " is not one of h264 and vp9");
}

const AVCodec *findEncoder(const CodecChoice &choice) {
    for (const char *name : choice.encoders)
        if (const AVCodec *encoder = avcodec_find_encoder_by_name(name))
            return encoder;
    return nullptr;
}

/// Visually transparent at a speed that does not dominate the job. An encoder ignores what it does not know.
void setQuality(AVCodecContext &encoder) {
    constexpr struct {
        const char *name, *value;
    } kOptions[] = {{"preset", "veryfast"}, {"crf", "18"}, {"deadline", "good"}, {"cpu-used", "5"}, {"row-mt", "1"}};
    for (const auto &option : kOptions)
        av_opt_set(encoder.priv_data, option.name, option.value, 0);
    // VP9 takes crf as a quality only when no rate is asked for.
    if (encoder.codec_id == AV_CODEC_ID_VP9)
        encoder.bit_rate = 0;
}

int evenUp(int size) {
    return size + size % 2;
}

/// Repeats the last column and row where `target` is one larger.
void padToEven(const Image &source, Image &target) {
    target.resize(evenUp(source.width()), evenUp(source.height()));
    target.paste(source, 0, 0);
    if (target.width() > source.width())
        for (int y = 0; y < source.height(); ++y)
            std::memcpy(target.row(y) + std::ptrdiff_t{source.width()} * 4,
                        source.row(y) + std::ptrdiff_t{source.width() - 1} * 4, 4);
    if (target.height() > source.height())
        std::memcpy(target.row(source.height()), target.row(source.height() - 1),
                    static_cast<std::size_t>(target.width()) * 4);
}

} // namespace

std::string VideoWriter::usableCodec(const std::string &wanted) {
    if (findEncoder(choiceOf(wanted)) != nullptr)
        return wanted;
    for (const CodecChoice &choice : kCodecs)
        if (findEncoder(choice) != nullptr)
            return choice.name;
    throw MediaError("this machine's FFmpeg can encode neither H.264 nor VP9");
}

std::string VideoWriter::fileExtension(const std::string &codec) {
    return choiceOf(codec).extension;
}

VideoWriter::VideoWriter(const std::string &path, const std::string &codec, int width, int height,
                         const FrameClock &clock, int pixelAspectNumerator, int pixelAspectDenominator, int colorMatrix)
    : path_(path), clock_(clock), frame_(makeFrame()), packet_(makePacket()), width_(width), height_(height) {
    silenceAvLog();
    const CodecChoice &choice = choiceOf(codec);
    const AVCodec *const encoder = findEncoder(choice);
    if (encoder == nullptr)
        throw MediaError("this machine's FFmpeg cannot encode " + codec);

    AVFormatContext *context = nullptr;
    // The protocol is named so that a colon in a file's name is part of the name.
    const std::string url = "file:" + path;
    if (const int code = avformat_alloc_output_context2(&context, nullptr, choice.muxer, url.c_str()); code < 0)
        fail(code);
    output_.reset(context);
    encoder_.reset(avcodec_alloc_context3(encoder));
    if (!encoder_)
        throw std::bad_alloc();
    const AVRational rate = {clock.rateNumerator(), clock.rateDenominator()};
    encoder_->width = evenUp(width);
    encoder_->height = evenUp(height);
    encoder_->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder_->framerate = rate;
    encoder_->time_base = clock.isConstant() ? av_inv_q(rate) : kVariableTimeBase;
    encoder_->sample_aspect_ratio = {pixelAspectNumerator, pixelAspectDenominator};
    encoder_->colorspace = static_cast<AVColorSpace>(colorMatrix);
    encoder_->color_range = AVCOL_RANGE_MPEG;
    encoder_->thread_count = 0;
    if ((context->oformat->flags & AVFMT_GLOBALHEADER) != 0)
        encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    setQuality(*encoder_);
    if (const int code = avcodec_open2(encoder_.get(), encoder, nullptr); code < 0)
        fail(code);
    openFile();

    frame_->format = encoder_->pix_fmt;
    frame_->width = encoder_->width;
    frame_->height = encoder_->height;
    if (const int code = av_frame_get_buffer(frame_.get(), 0); code < 0)
        fail(code);
}

VideoWriter::~VideoWriter() = default;

void VideoWriter::openFile() {
    AVStream *const stream = avformat_new_stream(output_.get(), nullptr);
    if (stream == nullptr)
        throw std::bad_alloc();
    avcodec_parameters_from_context(stream->codecpar, encoder_.get());
    stream->time_base = encoder_->time_base;
    stream->avg_frame_rate = encoder_->framerate;
    stream->sample_aspect_ratio = encoder_->sample_aspect_ratio;
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

void VideoWriter::write(const Image &image) {
    if (image.width() != width_ || image.height() != height_)
        throw std::invalid_argument("a frame of " + std::to_string(image.width()) + "x" +
                                    std::to_string(image.height()) + " pixels does not fit a video of " +
                                    std::to_string(width_) + "x" + std::to_string(height_));
    const long long start = clock_.startOf(frames_);
    if (const int code = av_frame_make_writable(frame_.get()); code < 0)
        fail(code);
    const bool odd = image.width() % 2 != 0 || image.height() % 2 != 0;
    if (odd)
        padToEven(image, padded_);
    converter_.toFrame(odd ? padded_ : image, {encoder_->colorspace, false}, *frame_);
    frame_->pts = clock_.isConstant() ? frames_ : av_rescale_q(start, kUnit, encoder_->time_base);
    encode(frame_.get());
    ++frames_;
}

void VideoWriter::finish() {
    if (finished_)
        return;
    encode(nullptr);
    if (const int code = av_write_trailer(output_.get()); code < 0)
        fail(code);
    if (const int code = avio_closep(&output_->pb); code < 0)
        fail(code);
    finished_ = true;
}

} // namespace hostkit
