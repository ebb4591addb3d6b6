// SPDX-License-Identifier: MIT
// What the caller sees of the pipeline; what its threads do is in render_pipeline_threads.cpp.
#include "hostkit/render_pipeline.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace hostkit {
namespace {

/// Frames between two threads: one would make each wait for the other's every frame.
constexpr std::size_t kFramesBetween = 2;

} // namespace

RenderPipeline::RenderPipeline(VideoReader &reader, const FrameClock &clock, const std::vector<long long> &positions,
                               const Grade &grade, const RenderJob &job, ContactSheet &sheet)
    : reader_(reader), clock_(clock), positions_(positions), grade_(grade), job_(job), sheet_(sheet),
      format_(reader.format()), graded_(job.gradedPath, job.codec, reader, clock),
      overlaid_(job.overlayPath, job.codec, reader, clock), read_(kFramesBetween), orders_(kFramesBetween),
      toGraded_(kFramesBetween), toOverlaid_(kFramesBetween) {
    try {
        start([this] { readFrames(); });
        start([this] { gradeFrames(); });
        start([this] { encodeGraded(); });
        start([this] { encodeOverlaid(); });
    } catch (...) {
        close();
        throw;
    }
}

RenderPipeline::~RenderPipeline() {
    close();
}

void RenderPipeline::start(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        ++working_;
    }
    const auto run = [this, body = std::move(work)] {
        try {
            body();
        } catch (...) {
            fail(std::current_exception());
        }
        const std::lock_guard lock(mutex_);
        --working_;
        ended_.notify_all();
    };
    try {
        threads_.emplace_back(run);
    } catch (...) {
        const std::lock_guard lock(mutex_);
        --working_;
        throw;
    }
}

void RenderPipeline::fail(std::exception_ptr error) {
    {
        const std::lock_guard lock(mutex_);
        // What fails because another thread has stopped is not the reason.
        if (!error_)
            error_ = std::move(error);
    }
    read_.stop();
    orders_.stop();
    toGraded_.stop();
    toOverlaid_.stop();
}

void RenderPipeline::rethrow() {
    const std::lock_guard lock(mutex_);
    if (error_)
        std::rethrow_exception(error_);
}

void RenderPipeline::submit(const std::vector<MaskRun> &runs, bool covered, const PreviewRenderer &renderer,
                            const std::string &label, bool highlighted) {
    if (orders_.push({runs, covered, renderer.overlay(), label, highlighted}))
        return;
    rethrow();
    throw std::logic_error("the pipeline is closed");
}

bool RenderPipeline::finish(double seconds) {
    orders_.end();
    std::unique_lock lock(mutex_);
    const bool isDone = ended_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return working_ == 0; });
    if (error_)
        std::rethrow_exception(error_);
    return isDone;
}

void RenderPipeline::close() {
    if (threads_.empty())
        return;
    bool isWorking = false;
    {
        const std::lock_guard lock(mutex_);
        isWorking = working_ > 0;
    }
    if (isWorking)
        fail(std::make_exception_ptr(std::logic_error("the pipeline is closed")));
    for (std::thread &thread : threads_)
        thread.join();
    threads_.clear();
}

std::vector<std::string> RenderPipeline::notKept() const {
    std::vector<std::string> all = reader_.notKept();
    for (const std::string &what : graded_.notKept())
        all.push_back(what);
    return all;
}

double RenderPipeline::seconds(const std::string &stage) const {
    constexpr const char *kNames[kStages] = {"read", "mask", "grade", "encode", "composite", "contact sheet"};
    const std::lock_guard lock(mutex_);
    for (int i = 0; i < kStages; ++i)
        if (stage == kNames[i])
            return seconds_[i];
    throw std::invalid_argument("there is no stage '" + stage + "'");
}

} // namespace hostkit
