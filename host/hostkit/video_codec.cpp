// SPDX-License-Identifier: MIT
#include "hostkit/video_codec.h"

#include <stdexcept>

#include "hostkit/error.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

namespace hostkit {
namespace {

constexpr VideoCodec kCodecs[] = {
    {"h264", {"libx264", "libopenh264"}, "mp4", "mp4"},
    {"vp9", {"libvpx-vp9", "libsvt_vp9"}, "webm", "webm"},
};

} // namespace

const AVCodec *VideoCodec::encoder() const {
    for (const char *each : encoders)
        if (const AVCodec *const found = avcodec_find_encoder_by_name(each))
            return found;
    return nullptr;
}

const VideoCodec &videoCodec(const std::string &name) {
    for (const VideoCodec &codec : kCodecs)
        if (name == codec.name)
            return codec;
    throw std::invalid_argument("codec " + inQuotes(name) + " is not one of h264 and vp9");
}

std::string usableCodec(const std::string &wanted) {
    if (videoCodec(wanted).encoder() != nullptr)
        return wanted;
    for (const VideoCodec &codec : kCodecs)
        if (codec.encoder() != nullptr)
            return codec.name;
    throw MediaError("this machine's FFmpeg can encode neither H.264 nor VP9");
}

void setQuality(AVCodecContext &encoder) {
    // An encoder ignores what it does not know.
    constexpr struct {
        const char *name, *value;
    } kOptions[] = {
        {"preset", "veryfast"}, {"crf", "18"}, {"deadline", "realtime"}, {"cpu-used", "6"}, {"row-mt", "1"}};
    for (const auto &option : kOptions)
        av_opt_set(encoder.priv_data, option.name, option.value, 0);
    // VP9 takes crf as a quality only when no rate is asked for.
    if (encoder.codec_id == AV_CODEC_ID_VP9)
        encoder.bit_rate = 0;
}

} // namespace hostkit
