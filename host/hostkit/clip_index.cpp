// SPDX-License-Identifier: MIT
#include "hostkit/clip_index.h"

#include <algorithm>

#include "hostkit/error.h"
#include "hostkit/frame_clock.h"

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
}

namespace hostkit {
namespace {

constexpr int kPacketsAStep = 200;
/// Containers round their durations, and the last packet of a stream may have none.
constexpr long long kDurationTolerance = FrameClock::kUnitsPerSecond / 4;

} // namespace

ClipIndex::ClipIndex(const std::string &path) : clip_(openClip(path, true)), packet_(makePacket()) {}

bool ClipIndex::step() {
    for (int i = 0; i < kPacketsAStep; ++i) {
        const int code = av_read_frame(clip_.input.get(), packet_.get());
        if (code < 0) {
            if (isReadError(*clip_.input, code))
                throw MediaError("clip " + inQuotes(clip_.input->url + 5) + " cannot be read: " + avErrorText(code));
            finish();
            return false;
        }
        const AVPacket &packet = *packet_;
        const AVStream &stream = *clip_.input->streams[packet.stream_index];
        const long long time = packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts;
        if (time != AV_NOPTS_VALUE)
            end_ = std::max(end_, toUnits(time + packet.duration, stream));
        if (packet.stream_index == clip_.stream) {
            ++packets_;
            isTrusted_ = isTrusted_ && packet.pts != AV_NOPTS_VALUE && (packet.flags & AV_PKT_FLAG_CORRUPT) == 0;
            // What an edit list cuts away is decoded and not shown.
            if ((packet.flags & AV_PKT_FLAG_DISCARD) != 0)
                ++cutAway_;
            else if (packet.pts != AV_NOPTS_VALUE)
                positions_.push_back(toUnits(packet.pts, stream));
            if (packets_ == 1)
                isTrusted_ = isTrusted_ && (packet.flags & AV_PKT_FLAG_KEY) != 0;
        }
        av_packet_unref(packet_.get());
    }
    return true;
}

void ClipIndex::finish() {
    std::sort(positions_.begin(), positions_.end());
    isTrusted_ = isTrusted_ && std::adjacent_find(positions_.begin(), positions_.end()) == positions_.end();
    const AVStream &stream = clip_.video();
    const AVFormatContext &input = *clip_.input;
    if (stream.nb_frames > 0) {
        missing_ = std::max<long long>(stream.nb_frames - packets_, 0);
        return;
    }
    // A duration that FFmpeg has estimated from the file's size, or from its last packet, says nothing.
    if (input.duration_estimation_method != AVFMT_DURATION_FROM_STREAM || input.duration <= 0)
        return;
    const long long begin = input.start_time == AV_NOPTS_VALUE ? 0 : input.start_time;
    constexpr long long kUnits = FrameClock::kUnitsPerSecond / AV_TIME_BASE;
    // Some writers count the duration from the clip's beginning and some from time zero.
    const bool isFromZero = end_ <= input.duration * kUnits + kDurationTolerance;
    const long long promised = (input.duration + (isFromZero ? 0 : begin)) * kUnits;
    const AVRational rate = stream.avg_frame_rate.num > 0 ? stream.avg_frame_rate : stream.r_frame_rate;
    if (promised - end_ > kDurationTolerance && rate.num > 0)
        missing_ =
            av_rescale(promised - end_, rate.num, static_cast<long long>(rate.den) * FrameClock::kUnitsPerSecond);
}

} // namespace hostkit
