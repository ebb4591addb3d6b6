// SPDX-License-Identifier: MIT
// What other threads ask of the renderer; what it does is in preview_renderer_thread.cpp.
#include "hostkit/preview_renderer.h"

#include <stdexcept>
#include <utility>

namespace hostkit {
namespace {

[[noreturn]] void throwClosed() {
    throw std::logic_error("the renderer is closed");
}

} // namespace

PreviewRenderer::PreviewRenderer(VideoReader &reader, const FrameClock &clock, VideoSyncer &syncer)
    : device_(software_d3d9::Device::make()), clock_(clock), syncer_(syncer), clip_(reader),
      thread_([this] { run(); }) {}

PreviewRenderer::~PreviewRenderer() {
    close();
}

void PreviewRenderer::setOverlay(loom::IAllocator *map) {
    if (map)
        map->AddRef();
    Map fresh(map);
    // The earlier map goes after the mutex is left: nothing foreign runs under it.
    const std::lock_guard lock(mutex_);
    std::swap(map_, fresh);
}

void PreviewRenderer::await(Request &request) {
    clock_.startOf(request.frame);
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return closing_ || !request_; });
    if (closing_)
        throwClosed();
    request_ = &request;
    wake_.notify_all();
    changed_.wait(lock, [&] { return request.done; });
    if (request.error)
        std::rethrow_exception(request.error);
}

bool PreviewRenderer::render(long long frame, Image &video, Image &composed) {
    Request request{frame, &video, &composed};
    await(request);
    return request.found;
}

void PreviewRenderer::refresh(long long frame) {
    Request request{frame, nullptr, nullptr};
    await(request);
}

software_d3d9::SharedPicture PreviewRenderer::overlay() const {
    const std::lock_guard lock(mutex_);
    return overlay_;
}

void PreviewRenderer::startPlaying(long long held, double framesPerSecond) {
    if (!(framesPerSecond > 0))
        throw std::invalid_argument("a clip is played at a positive rate");
    if (closing_)
        throwClosed();
    held_ = held;
    playRate_ = framesPerSecond;
    playShown_ = -1;
    due_ = Clock::now();
    wake_.notify_all();
}

void PreviewRenderer::throwPlayError() {
    if (const std::exception_ptr error = std::exchange(playError_, nullptr))
        std::rethrow_exception(error);
}

void PreviewRenderer::play(double framesPerSecond) {
    const std::lock_guard lock(mutex_);
    startPlaying(-1, framesPerSecond);
}

void PreviewRenderer::hold(long long frame, double framesPerSecond) {
    clock_.startOf(frame);
    std::unique_lock lock(mutex_);
    startPlaying(frame, framesPerSecond);
    changed_.wait(lock, [&] { return playShown_ == frame || playRate_ <= 0 || closing_; });
    throwPlayError();
}

void PreviewRenderer::pause() {
    std::unique_lock lock(mutex_);
    playRate_ = 0;
    wake_.notify_all();
    changed_.notify_all();
    changed_.wait(lock, [this] { return !isPlayingFrame_; });
    throwPlayError();
}

bool PreviewRenderer::latest(Image &composed) const {
    const std::lock_guard lock(mutex_);
    if (playComposed_.empty())
        return false;
    composed = playComposed_;
    return true;
}

void PreviewRenderer::close() {
    std::thread ending;
    {
        const std::lock_guard lock(mutex_);
        closing_ = true;
        ending.swap(thread_);
        wake_.notify_all();
        changed_.notify_all();
    }
    if (ending.joinable())
        ending.join();
    setOverlay(nullptr);
}

PreviewRenderer::Map PreviewRenderer::currentMap() const {
    const std::lock_guard lock(mutex_);
    if (map_)
        map_->AddRef();
    return Map(map_.get());
}

PreviewRenderer::Seconds PreviewRenderer::lastSeconds() const {
    const std::lock_guard lock(mutex_);
    return seconds_;
}

long long PreviewRenderer::frames() const {
    const std::lock_guard lock(mutex_);
    return frames_;
}

long long PreviewRenderer::overlaidFrames() const {
    const std::lock_guard lock(mutex_);
    return overlaidFrames_;
}

unsigned int PreviewRenderer::updateCounter() const {
    const std::lock_guard lock(mutex_);
    return updateCounter_;
}

double PreviewRenderer::readSeconds() const {
    return lastSeconds().read;
}
double PreviewRenderer::refreshSeconds() const {
    return lastSeconds().refresh;
}
double PreviewRenderer::compositeSeconds() const {
    return lastSeconds().composite;
}

} // namespace hostkit
