// SPDX-License-Identifier: MIT
#include "hostkit/av_handles.h"

#include <new>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

namespace hostkit {

void AvRelease::operator()(AVCodecContext *context) const {
    avcodec_free_context(&context);
}

void AvRelease::operator()(AVFrame *frame) const {
    av_frame_free(&frame);
}

void AvRelease::operator()(AVPacket *packet) const {
    av_packet_free(&packet);
}

void AvRelease::operator()(SwsContext *context) const {
    sws_freeContext(context);
}

void CloseInput::operator()(AVFormatContext *context) const {
    avformat_close_input(&context);
}

void CloseOutput::operator()(AVFormatContext *context) const {
    avio_closep(&context->pb);
    avformat_free_context(context);
}

std::string avErrorText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(code, text, sizeof text);
    return text;
}

AvFrame makeFrame() {
    AvFrame frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

AvPacket makePacket() {
    AvPacket packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

void silenceAvLog() {
    av_log_set_level(AV_LOG_QUIET);
}

} // namespace hostkit
