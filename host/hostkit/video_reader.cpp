// SPDX-License-Identifier: MIT
#include "hostkit/video_reader.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "hostkit/error.h"
#include "hostkit/frame_clock.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
#include <libavutil/pixdesc.h>
}

namespace hostkit {
namespace {

constexpr AVRational kFallbackRate = {25, 1};
constexpr AVRational kUnit = {1, static_cast<int>(FrameClock::kUnitsPerSecond)};

void requireRegularFile(const std::string &path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw MediaError("clip " + inQuotes(path) + " does not exist");
    if (status.type() == std::filesystem::file_type::none)
        throw MediaError("clip " + inQuotes(path) + " cannot be read: " + error.message());
    if (status.type() == std::filesystem::file_type::directory)
        throw MediaError("clip " + inQuotes(path) + " is a folder, not a video");
}

/// FFmpeg opens still pictures and text files as clips of one frame; nobody means that by a video.
bool isStillPictureOrText(const AVInputFormat &format) {
    const std::string_view name = format.name;
    return name == "tty" || name == "image2" || name.ends_with("_pipe");
}

[[noreturn]] void failNotAVideo(const std::string &path, const std::string &reason) {
    throw MediaError("clip " + inQuotes(path) + " is not a video: " + reason);
}

[[noreturn]] void failWithoutFrames(const std::string &path) {
    throw MediaError("clip " + inQuotes(path) + " has no frames");
}

} // namespace

VideoReader::VideoReader(const std::string &path, int width, int height)
    : path_(path), frame_(makeFrame()), packet_(makePacket()) {
    silenceAvLog();
    open();
    const AVStream &stream = *input_->streams[stream_];
    width_ = width == 0 && height == 0 ? clipWidth() : width;
    height_ = width == 0 && height == 0 ? clipHeight() : height;

    AVRational rate = av_guess_frame_rate(input_.get(), input_->streams[stream_], nullptr);
    if (rate.num <= 0 || rate.den <= 0)
        rate = kFallbackRate;
    rateNumerator_ = rate.num;
    rateDenominator_ = rate.den;

    AVRational aspect = av_guess_sample_aspect_ratio(input_.get(), input_->streams[stream_], nullptr);
    if (aspect.num <= 0 || aspect.den <= 0)
        aspect = {1, 1};
    if (stream.codecpar->width != width_ || stream.codecpar->height != height_)
        av_reduce(&aspect.num, &aspect.den, std::int64_t{aspect.num} * clipWidth() * height_,
                  std::int64_t{aspect.den} * clipHeight() * width_, 65535);
    aspectNumerator_ = std::max(aspect.num, 1);
    aspectDenominator_ = std::max(aspect.den, 1);
}

void VideoReader::open() {
    requireRegularFile(path_);
    decoder_.reset();
    AVFormatContext *context = nullptr;
    // The protocol is named so that a colon in a file's name is part of the name.
    if (const int code = avformat_open_input(&context, ("file:" + path_).c_str(), nullptr, nullptr); code < 0) {
        if (code == AVERROR_INVALIDDATA)
            failNotAVideo(path_, "its format is unknown");
        if (code == AVERROR_EOF)
            failWithoutFrames(path_);
        throw MediaError("clip " + inQuotes(path_) + " cannot be read: " + avErrorText(code));
    }
    input_.reset(context);
    if (isStillPictureOrText(*input_->iformat))
        failNotAVideo(path_, "it holds a still picture or text");
    if (const int code = avformat_find_stream_info(context, nullptr); code < 0)
        failNotAVideo(path_, avErrorText(code));

    const AVCodec *codec = nullptr;
    stream_ = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (stream_ == AVERROR_DECODER_NOT_FOUND)
        throw MediaError("clip " + inQuotes(path_) + " cannot be decoded: no decoder for its video");
    // The picture on a sound file's cover counts as a video stream.
    if (stream_ < 0 || (context->streams[stream_]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
        failNotAVideo(path_, "it has no video stream");
    for (unsigned i = 0; i < context->nb_streams; ++i)
        context->streams[i]->discard = static_cast<int>(i) == stream_ ? AVDISCARD_DEFAULT : AVDISCARD_ALL;

    const AVStream &stream = *context->streams[stream_];
    decoder_.reset(avcodec_alloc_context3(codec));
    if (!decoder_)
        throw std::bad_alloc();
    avcodec_parameters_to_context(decoder_.get(), stream.codecpar);
    decoder_->thread_count = 0;
    decoder_->pkt_timebase = stream.time_base;
    if (const int code = avcodec_open2(decoder_.get(), codec, nullptr); code < 0)
        throw MediaError("clip " + inQuotes(path_) + " cannot be decoded: " + avErrorText(code));
    if (stream.codecpar->width < 1 || stream.codecpar->height < 1)
        failWithoutFrames(path_);
    position_ = -1;
}

void VideoReader::rewind() {
    open();
}

void VideoReader::feed() {
    for (;;) {
        const int code = av_read_frame(input_.get(), packet_.get());
        if (code == AVERROR(EIO))
            throw MediaError("clip " + inQuotes(path_) + " cannot be read: " + avErrorText(code));
        if (code < 0) {
            // The end, or a file that breaks off: what the decoder still holds comes out.
            avcodec_send_packet(decoder_.get(), nullptr);
            return;
        }
        if (packet_->stream_index != stream_) {
            av_packet_unref(packet_.get());
            continue;
        }
        // A packet that the decoder refuses is damaged; the ones after it may be whole.
        const int sent = avcodec_send_packet(decoder_.get(), packet_.get());
        av_packet_unref(packet_.get());
        if (sent >= 0)
            return;
    }
}

bool VideoReader::decode() {
    for (;;) {
        const int code = avcodec_receive_frame(decoder_.get(), frame_.get());
        if (code == AVERROR_EOF)
            return false;
        if (code == AVERROR(EAGAIN)) {
            feed();
            continue;
        }
        if (code < 0)
            continue;
        const AVStream &stream = *input_->streams[stream_];
        if (frame_->best_effort_timestamp != AV_NOPTS_VALUE)
            position_ = av_rescale_q(frame_->best_effort_timestamp, stream.time_base, kUnit);
        else
            position_ += av_rescale_q(1, {rateDenominator_, rateNumerator_}, kUnit);
        return true;
    }
}

bool VideoReader::skip() {
    return decode();
}

bool VideoReader::read(Image &image) {
    if (!decode())
        return false;
    image.resize(width_, height_);
    converter_.toImage(*frame_, {colorMatrix(), frame_->color_range == AVCOL_RANGE_JPEG}, image);
    return true;
}

int VideoReader::clipWidth() const {
    return input_->streams[stream_]->codecpar->width;
}

int VideoReader::clipHeight() const {
    return input_->streams[stream_]->codecpar->height;
}

std::string VideoReader::codecName() const {
    return avcodec_get_name(decoder_->codec_id);
}

int VideoReader::colorMatrix() const {
    const AVColorSpace matrix = decoder_->colorspace;
    return matrix == AVCOL_SPC_UNSPECIFIED || matrix == AVCOL_SPC_RGB ? assumedMatrix(clipHeight()) : matrix;
}

} // namespace hostkit
