// SPDX-License-Identifier: MIT
#include "hostkit/video_reader.h"

#include "hostkit/error.h"
#include "hostkit/frame_clock.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
}

namespace hostkit {
namespace {

constexpr AVRational kUnit = {1, static_cast<int>(FrameClock::kUnitsPerSecond)};

} // namespace

VideoReader::VideoReader(const std::string &path, int width, int height)
    : path_(path), frame_(makeFrame()), packet_(makePacket()) {
    open();
    // Frames without a time of their own are a frame's length apart.
    describeRate();
    if (!decode())
        failWithoutFrames(path_);
    isAhead_ = true;
    firstPosition_ = position_;
    describe(width, height);
    shaper_ = std::make_unique<FrameShaper>(format_, orientation_);
}

void VideoReader::open() {
    decoder_.reset();
    clip_ = openClip(path_);
    decoder_.reset(avcodec_alloc_context3(clip_.decoder));
    if (!decoder_)
        throw std::bad_alloc();
    const AVStream &stream = clip_.video();
    avcodec_parameters_to_context(decoder_.get(), stream.codecpar);
    decoder_->thread_count = 0;
    decoder_->pkt_timebase = stream.time_base;
    if (const int code = avcodec_open2(decoder_.get(), clip_.decoder, nullptr); code < 0)
        throw MediaError("clip " + inQuotes(path_) + " cannot be decoded: " + avErrorText(code));
    position_ = -1;
    decoded_ = damagedFrames_ = lostFrames_ = 0;
    isAhead_ = false;
}

void VideoReader::rewind() {
    open();
}

void VideoReader::feed() {
    for (;;) {
        const int code = av_read_frame(clip_.input.get(), packet_.get());
        if (code < 0 && isReadError(*clip_.input, code))
            throw MediaError("clip " + inQuotes(path_) + " cannot be read: " + avErrorText(code));
        if (code < 0) {
            // The end, or a file that breaks off: what the decoder still holds comes out.
            avcodec_send_packet(decoder_.get(), nullptr);
            return;
        }
        if (packet_->stream_index != clip_.stream) {
            av_packet_unref(packet_.get());
            continue;
        }
        // A packet that the decoder refuses is damaged; the ones after it may be whole.
        const int sent = avcodec_send_packet(decoder_.get(), packet_.get());
        av_packet_unref(packet_.get());
        if (sent >= 0)
            return;
        ++lostFrames_;
    }
}

bool VideoReader::decode() {
    if (isAhead_) {
        isAhead_ = false;
        return true;
    }
    for (;;) {
        const int code = avcodec_receive_frame(decoder_.get(), frame_.get());
        if (code == AVERROR_EOF)
            return false;
        if (code == AVERROR(EAGAIN)) {
            feed();
            continue;
        }
        if (code < 0) {
            ++lostFrames_;
            continue;
        }
        if (codedWidth_ == 0) {
            codedWidth_ = frame_->width;
            codedHeight_ = frame_->height;
        } else if (frame_->width != codedWidth_ || frame_->height != codedHeight_) {
            throw MediaError("clip " + inQuotes(path_) + " changes its size from " +
                             sizeText(codedWidth_, codedHeight_) + " to " + sizeText(frame_->width, frame_->height) +
                             " at frame " + std::to_string(decoded_));
        }
        ++decoded_;
        damagedFrames_ += frame_->decode_error_flags != 0 || (frame_->flags & AV_FRAME_FLAG_CORRUPT) != 0;
        if (frame_->best_effort_timestamp != AV_NOPTS_VALUE)
            position_ = toUnits(frame_->best_effort_timestamp, clip_.video());
        else
            position_ += av_rescale_q(1, {rateDenominator_, rateNumerator_}, kUnit);
        return true;
    }
}

bool VideoReader::skip() {
    return decode();
}

SharedFrame VideoReader::readFrame() {
    return decode() ? shaper_->shape(*frame_) : nullptr;
}

bool VideoReader::read(Image &image) {
    const SharedFrame frame = readFrame();
    if (!frame)
        return false;
    image.resize(width(), height());
    converter_.toImage(*frame, {colorMatrix(), format_.isFullRange()}, image);
    return true;
}

std::string VideoReader::codecName() const {
    return avcodec_get_name(decoder_->codec_id);
}

} // namespace hostkit
