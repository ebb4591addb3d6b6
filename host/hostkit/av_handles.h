// SPDX-License-Identifier: MIT
#pragma once

// Owners of FFmpeg's objects, and its error codes in words.

#include <memory>
#include <string>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;
struct SwsContext;

namespace hostkit {

struct AvRelease {
    void operator()(AVCodecContext *context) const;
    void operator()(AVFrame *frame) const;
    void operator()(AVPacket *packet) const;
    void operator()(SwsContext *context) const;
};
struct CloseInput {
    void operator()(AVFormatContext *context) const;
};
/// Closes the file too; writes nothing.
struct CloseOutput {
    void operator()(AVFormatContext *context) const;
};

using AvCodec = std::unique_ptr<AVCodecContext, AvRelease>;
using AvFrame = std::unique_ptr<AVFrame, AvRelease>;
using AvPacket = std::unique_ptr<AVPacket, AvRelease>;
using Scaler = std::unique_ptr<SwsContext, AvRelease>;
using AvInput = std::unique_ptr<AVFormatContext, CloseInput>;
using AvOutput = std::unique_ptr<AVFormatContext, CloseOutput>;

/// What a negative result code says.
std::string avErrorText(int code);
/// Frames and packets are small; running out of memory for one is std::bad_alloc.
AvFrame makeFrame();
AvPacket makePacket();
/// FFmpeg prints nothing any more: everything that matters is reported as an exception. Idempotent.
void silenceAvLog();

} // namespace hostkit
