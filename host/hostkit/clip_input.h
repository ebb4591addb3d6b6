// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hostkit/av_handles.h"

struct AVCodec;
struct AVStream;

namespace hostkit {

/// An opened clip and its video stream.
struct ClipInput {
    AvInput input;
    int stream = -1;
    const AVCodec *decoder = nullptr;

    AVStream &video() const;
};

/// Opens a clip; only packets of its video come, unless `allStreams`. Throws MediaError when the file does not exist,
/// cannot be read or is not a video.
ClipInput openClip(const std::string &path, bool allStreams = false);

/// Whether a negative result of av_read_frame says that the file cannot be read. Everything else is the file's end,
/// where it should be or too early.
bool isReadError(const AVFormatContext &input, int code);

/// A stream's time in units of FrameClock.
long long toUnits(long long time, const AVStream &stream);

[[noreturn]] void failWithoutFrames(const std::string &path);

} // namespace hostkit
