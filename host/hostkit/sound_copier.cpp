// SPDX-License-Identifier: MIT
#include "hostkit/sound_copier.h"

#include <limits>

#include "hostkit/clip_input.h"
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

SoundCopier::SoundCopier(const std::string &path, long long origin, AVFormatContext &output)
    : output_(output), origin_(origin), input_(openClip(path, true).input), packet_(makePacket()), isOver_(true) {
    for (unsigned i = 0; i < input_->nb_streams; ++i) {
        AVStream &source = *input_->streams[i];
        targets_.push_back(-1);
        source.discard = AVDISCARD_ALL;
        if (source.codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            continue;
        const AVCodecID codec = source.codecpar->codec_id;
        if (avformat_query_codec(output.oformat, codec, FF_COMPLIANCE_NORMAL) != 1) {
            refused_.push_back(avcodec_get_name(codec));
            continue;
        }
        AVStream *const target = avformat_new_stream(&output, nullptr);
        if (target == nullptr || avcodec_parameters_copy(target->codecpar, source.codecpar) < 0)
            throw std::bad_alloc();
        // The number that the clip's own container gives the codec means nothing in another one.
        target->codecpar->codec_tag = 0;
        target->time_base = source.time_base;
        target->disposition = source.disposition;
        av_dict_copy(&target->metadata, source.metadata, 0);
        source.discard = AVDISCARD_DEFAULT;
        targets_.back() = target->index;
        isOver_ = false;
    }
}

bool SoundCopier::readNext() {
    while (!isHeld_ && !isOver_) {
        // A file that breaks off has its sound up to there; whoever reads the pictures says so.
        if (av_read_frame(input_.get(), packet_.get()) < 0)
            isOver_ = true;
        else if (targets_[static_cast<std::size_t>(packet_->stream_index)] >= 0)
            isHeld_ = true;
        else
            av_packet_unref(packet_.get());
    }
    return isHeld_;
}

int SoundCopier::copyUntil(long long time) {
    while (readNext()) {
        const AVStream &source = *input_->streams[packet_->stream_index];
        const long long origin = av_rescale_q(origin_, kUnit, source.time_base);
        if (packet_->pts != AV_NOPTS_VALUE)
            packet_->pts -= origin;
        if (packet_->dts != AV_NOPTS_VALUE)
            packet_->dts -= origin;
        if (packet_->pts != AV_NOPTS_VALUE && toUnits(packet_->pts, source) >= time) {
            packet_->pts += origin;
            packet_->dts += packet_->dts == AV_NOPTS_VALUE ? 0 : origin;
            return 0;
        }
        const AVStream &target = *output_.streams[targets_[static_cast<std::size_t>(packet_->stream_index)]];
        av_packet_rescale_ts(packet_.get(), source.time_base, target.time_base);
        packet_->stream_index = target.index;
        packet_->pos = -1;
        isHeld_ = false;
        if (const int code = av_interleaved_write_frame(&output_, packet_.get()); code < 0)
            return code;
    }
    return 0;
}

int SoundCopier::copyAll() {
    return copyUntil(std::numeric_limits<long long>::max());
}

} // namespace hostkit
