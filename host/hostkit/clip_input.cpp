// SPDX-License-Identifier: MIT
#include "hostkit/clip_input.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "hostkit/error.h"
#include "hostkit/frame_clock.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
}

namespace hostkit {
namespace {

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
    // A clip is read more than once: for its list of frames, its sound and its pictures.
    if (status.type() != std::filesystem::file_type::regular)
        throw MediaError("clip " + inQuotes(path) + " is a pipe or a device: save it to a file first");
}

/// FFmpeg opens still pictures and text files as clips of one frame; nobody means that by a video.
bool isStillPictureOrText(const AVInputFormat &format) {
    const std::string_view name = format.name;
    return name == "tty" || name == "image2" || name.ends_with("_pipe");
}

[[noreturn]] void failNotAVideo(const std::string &path, const std::string &reason) {
    throw MediaError("clip " + inQuotes(path) + " is not a video: " + reason);
}

/// The table of contents of an MP4 file stands at its end when the recorder has put it there, and is missing when the
/// recorder, or a copy, broke off.
bool beginsAsMp4(const std::string &url) {
    AVIOContext *file = nullptr;
    if (avio_open(&file, url.c_str(), AVIO_FLAG_READ) < 0)
        return false;
    unsigned char head[8] = {};
    const int count = avio_read(file, head, sizeof head);
    avio_closep(&file);
    return count == sizeof head && std::string_view(reinterpret_cast<const char *>(head) + 4, 4) == "ftyp";
}

} // namespace

AVStream &ClipInput::video() const {
    return *input->streams[stream];
}

void failWithoutFrames(const std::string &path) {
    throw MediaError("clip " + inQuotes(path) + " has no frames");
}

bool isReadError(const AVFormatContext &input, int code) {
    // Demuxers say the same of a file that ends too early; the file itself has no error then.
    return code == AVERROR(EIO) && input.pb != nullptr && input.pb->error < 0 && input.pb->error != AVERROR_EOF;
}

long long toUnits(long long time, const AVStream &stream) {
    return av_rescale_q(time, stream.time_base, kUnit);
}

ClipInput openClip(const std::string &path, bool allStreams) {
    silenceAvLog();
    requireRegularFile(path);
    ClipInput clip;
    AVFormatContext *context = nullptr;
    // The protocol is named so that a colon in a file's name is part of the name.
    const std::string url = "file:" + path;
    if (const int code = avformat_open_input(&context, url.c_str(), nullptr, nullptr); code < 0) {
        if (code == AVERROR_INVALIDDATA && beginsAsMp4(url))
            throw MediaError("clip " + inQuotes(path) +
                             " cannot be read: it is truncated or damaged, its table of contents is missing");
        if (code == AVERROR_INVALIDDATA)
            failNotAVideo(path, "its format is unknown");
        if (code == AVERROR_EOF)
            failWithoutFrames(path);
        throw MediaError("clip " + inQuotes(path) + " cannot be read: " + avErrorText(code));
    }
    clip.input.reset(context);
    if (isStillPictureOrText(*context->iformat))
        failNotAVideo(path, "it holds a still picture or text");
    if (const int code = avformat_find_stream_info(context, nullptr); code < 0)
        failNotAVideo(path, avErrorText(code));
    clip.stream = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, &clip.decoder, 0);
    if (clip.stream == AVERROR_DECODER_NOT_FOUND)
        throw MediaError("clip " + inQuotes(path) + " cannot be decoded: no decoder for its video");
    // The picture on a sound file's cover counts as a video stream.
    if (clip.stream < 0 || (clip.video().disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
        failNotAVideo(path, "it has no video stream");
    if (clip.video().codecpar->width < 1 || clip.video().codecpar->height < 1)
        failWithoutFrames(path);
    for (unsigned i = 0; i < context->nb_streams && !allStreams; ++i)
        context->streams[i]->discard = static_cast<int>(i) == clip.stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    return clip;
}

} // namespace hostkit
