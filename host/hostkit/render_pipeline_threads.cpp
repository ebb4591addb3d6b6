// SPDX-License-Identifier: MIT
// The pipeline's threads.

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "hostkit/error.h"
#include "hostkit/mask_png.h"
#include "hostkit/render_pipeline.h"
#include "hostkit/yuv_overlay.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace hostkit {
namespace {

/// A copy that may be written to.
SharedFrame copyOf(const AVFrame &frame, FramePool &pool) {
    SharedFrame copy = pool.acquire(frame.format, frame.width, frame.height);
    if (av_frame_copy(copy.get(), &frame) < 0 || av_frame_copy_props(copy.get(), &frame) < 0)
        throw std::bad_alloc();
    return copy;
}

std::string maskPath(const std::string &folder, long long number) {
    char name[32];
    std::snprintf(name, sizeof name, "%04lld.png", number);
    return folder + "/" + name;
}

} // namespace

template <typename Work>
void RenderPipeline::timed(Stage stage, Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const double spent = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const std::lock_guard lock(mutex_);
    seconds_[stage] += spent;
}

void RenderPipeline::checkPosition(std::size_t frame, bool isThere) {
    const bool isExpected = frame < static_cast<std::size_t>(clock_.frameCount());
    const bool isInPlace = !isThere || positions_.empty() || !isExpected || positions_[frame] == reader_.position();
    if (isThere == isExpected && isInPlace)
        return;
    clipDiffers_ = true;
    throw MediaError("clip " + inQuotes(reader_.path()) + " has other frames now than a moment ago: frame " +
                     std::to_string(frame) + " of " + std::to_string(clock_.frameCount()) + " differs");
}

void RenderPipeline::readFrames() {
    for (std::size_t number = 0;; ++number) {
        SharedFrame frame;
        timed(kRead, [&] { frame = reader_.readFrame(); });
        checkPosition(number, frame != nullptr);
        if (!frame)
            return read_.end();
        if (!read_.push(std::move(frame)))
            return;
    }
}

void RenderPipeline::gradeFrames() {
    const std::shared_ptr<FramePool> pool = FramePool::make();
    Mask mask(format_.width, format_.height);
    long long number = 0;
    for (Overlaid item{nullptr, {}, Mask(1, 1)}; orders_.pop(item.order); ++number) {
        SharedFrame frame;
        if (!read_.pop(frame))
            break;
        timed(kMask, [&] {
            mask.setRuns(item.order.runs);
            // Where no outline is shown there is no outside of it either.
            if (job_.inverted && item.order.covered)
                mask.invert();
            writePng(maskPath(job_.maskFolder, number), mask, graded_.codedWidth(), graded_.codedHeight());
        });
        item.frame = frame;
        item.order.runs.clear();
        item.mask = item.order.label.empty() ? Mask(1, 1) : mask;
        if (!toOverlaid_.push(std::move(item)))
            return;
        item = {nullptr, {}, Mask(1, 1)};
        SharedFrame graded;
        timed(kGrade, [&] {
            mask.feather(job_.featherPixels, job_.featherPasses);
            graded = copyOf(*frame, *pool);
            grade_.applyInside(planesOf(*graded, format_), mask);
        });
        frame.reset();
        if (!toGraded_.push(std::move(graded)))
            return;
    }
    toGraded_.end();
    toOverlaid_.end();
}

void RenderPipeline::encodeGraded() {
    for (SharedFrame frame; toGraded_.pop(frame); frame.reset()) {
        timed(kEncode, [&] { graded_.write(*frame); });
        ++framesDone_;
    }
    // A pipeline that was stopped leaves the file as it is.
    if (graded_.frameCount() == clock_.frameCount())
        timed(kEncode, [&] { graded_.finish(); });
}

void RenderPipeline::encodeOverlaid() {
    const std::shared_ptr<FramePool> pool = FramePool::make();
    for (Overlaid item{nullptr, {}, Mask(1, 1)}; toOverlaid_.pop(item); item = {nullptr, {}, Mask(1, 1)}) {
        SharedFrame frame = item.frame;
        if (const software_d3d9::SharedPicture &overlay = item.order.overlay) {
            if (static_cast<int>(overlay->width) != frame->width || static_cast<int>(overlay->height) != frame->height)
                throw std::invalid_argument("the overlay and the frame have different sizes");
            timed(kComposite, [&] {
                frame = copyOf(*item.frame, *pool);
                compositeOverlay(planesOf(*frame, format_), overlay->bits, overlay->pitch);
            });
        }
        if (!item.order.label.empty())
            timed(kSheet, [&] { addToSheet(*item.frame, *frame, item); });
        timed(kEncode, [&] { overlaid_.write(*frame); });
    }
    if (overlaid_.frameCount() == clock_.frameCount())
        timed(kEncode, [&] { overlaid_.finish(); });
}

void RenderPipeline::addToSheet(const AVFrame &bare, const AVFrame &overlaid, const Overlaid &item) {
    const VideoColors colors = {format_.actualMatrix(), format_.isFullRange()};
    const auto partsOf = [&colors](const AVFrame &frame) -> ContactSheet::PartOf {
        return [&](const PixelRect &part, int width, int height) { return scaled(frame, colors, part, width, height); };
    };
    sheet_.add(partsOf(bare), partsOf(overlaid), item.mask, item.order.label, item.order.highlighted);
}

} // namespace hostkit
