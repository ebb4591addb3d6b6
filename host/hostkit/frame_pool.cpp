// SPDX-License-Identifier: MIT
#include "hostkit/frame_pool.h"

#include <new>

extern "C" {
#include <libavutil/frame.h>
}

namespace hostkit {
namespace {

constexpr std::size_t kKept = 4;

void release(AVFrame *frame) {
    AvRelease()(frame);
}

} // namespace

SharedFrame FramePool::acquire(int pixelFormat, int width, int height) {
    AvFrame frame;
    {
        const std::lock_guard lock(mutex_);
        if (!free_.empty()) {
            frame = std::move(free_.back());
            free_.pop_back();
        }
    }
    if (!frame || frame->format != pixelFormat || frame->width != width || frame->height != height) {
        frame = makeFrame();
        frame->format = pixelFormat;
        frame->width = width;
        frame->height = height;
        if (av_frame_get_buffer(frame.get(), 0) < 0)
            throw std::bad_alloc();
    }
    return {frame.release(), [pool = shared_from_this()](AVFrame *used) { pool->giveBack(AvFrame(used)); }};
}

SharedFrame FramePool::share(AVFrame &frame) {
    AvFrame own = makeFrame();
    av_frame_move_ref(own.get(), &frame);
    return {own.release(), release};
}

void FramePool::giveBack(AvFrame frame) {
    // An encoder may still hold the memory.
    if (av_frame_is_writable(frame.get()) <= 0)
        return;
    const std::lock_guard lock(mutex_);
    if (free_.size() < kKept)
        free_.push_back(std::move(frame));
}

} // namespace hostkit
