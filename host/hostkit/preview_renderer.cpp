// SPDX-License-Identifier: MIT
#include "hostkit/preview_renderer.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "hostkit/composite.h"
#include "hostkit/error.h"

namespace hostkit {
namespace {

/// The stage that the overlay is bound to.
constexpr DWORD kStage = 0;
constexpr double kLongestInterval = 3600;

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool fits(const software_d3d9::Picture &picture, const Image &frame) {
    return static_cast<int>(picture.width) == frame.width() && static_cast<int>(picture.height) == frame.height();
}

std::string sizeText(long long width, long long height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

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

// --- Any thread ---

void PreviewRenderer::setOverlay(loom::IAllocator *map) {
    if (map)
        map->AddRef();
    Map fresh(map);
    // The earlier map goes after the mutex is left: nothing foreign runs under it.
    const std::lock_guard lock(mutex_);
    std::swap(map_, fresh);
}

bool PreviewRenderer::render(long long frame, Image &video, Image &composed) {
    clock_.startOf(frame);
    Request request{frame, video, composed};
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return closing_ || !request_; });
    if (closing_)
        throwClosed();
    request_ = &request;
    wake_.notify_all();
    changed_.wait(lock, [&] { return request.done; });
    if (request.error)
        std::rethrow_exception(request.error);
    return request.found;
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
    device_->SetTexture(kStage, nullptr);
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

// --- The renderer's thread ---

void PreviewRenderer::run() {
    std::unique_lock lock(mutex_);
    while (!closing_) {
        if (Request *const request = request_) {
            lock.unlock();
            serve(*request);
            lock.lock();
            request_ = nullptr;
            request->done = true;
            changed_.notify_all();
            const bool isAlone = playRate_ <= 0;
            lock.unlock();
            if (isAlone)
                readAhead(shown_ + 1);
            lock.lock();
        } else if (playRate_ <= 0) {
            wake_.wait(lock);
        } else if (Clock::now() < due_) {
            wake_.wait_until(lock, due_);
        } else {
            const std::chrono::duration<double> interval(std::min(1 / playRate_, kLongestInterval));
            // A frame that came late does not make the ones after it hurry.
            due_ = std::max(due_ + std::chrono::duration_cast<Clock::duration>(interval), Clock::now());
            isPlayingFrame_ = true;
            const long long held = held_;
            lock.unlock();
            std::exception_ptr error;
            try {
                playOn(held);
            } catch (...) {
                error = std::current_exception();
            }
            lock.lock();
            isPlayingFrame_ = false;
            if (error) {
                playError_ = error;
                playRate_ = 0;
            }
            changed_.notify_all();
        }
    }
    if (request_) {
        request_->error = std::make_exception_ptr(std::logic_error("the renderer is closed"));
        std::exchange(request_, nullptr)->done = true;
        changed_.notify_all();
    }
}

void PreviewRenderer::serve(Request &request) {
    try {
        Seconds seconds;
        if (!read(request.frame, request.video, seconds))
            return;
        request.composed = request.video;
        compose(request.frame, request.composed, WrongSize::Throws, seconds);
        request.found = true;
    } catch (...) {
        request.error = std::current_exception();
    }
}

void PreviewRenderer::playOn(long long held) {
    long long frame = held >= 0 ? held : (shown_ + 1) % clock_.frameCount();
    Seconds seconds;
    if (frame != playRead_) {
        playRead_ = -1;
        bool found = read(frame, playVideo_, seconds);
        if (!found && held < 0) {
            // A clip that ends early begins again early.
            frame = 0;
            found = read(frame, playVideo_, seconds);
        }
        if (!found)
            throw MediaError("the clip has no frame " + std::to_string(frame));
        playRead_ = frame;
    }
    playNext_ = playVideo_;
    compose(frame, playNext_, WrongSize::IsLeftOut, seconds);
    const std::lock_guard lock(mutex_);
    std::swap(playComposed_, playNext_);
    playShown_ = frame;
}

bool PreviewRenderer::read(long long frame, Image &image, Seconds &seconds) {
    if (frame == ahead_) {
        ahead_ = -1;
        std::swap(image, aheadImage_);
        seconds.read = aheadSeconds_;
        return true;
    }
    const auto start = Clock::now();
    const bool found = clip_.read(frame, image);
    seconds.read = secondsSince(start);
    return found;
}

void PreviewRenderer::readAhead(long long frame) {
    if (frame == ahead_ || frame >= clock_.frameCount())
        return;
    ahead_ = -1;
    Seconds seconds;
    try {
        if (read(frame, aheadImage_, seconds))
            ahead_ = frame;
        aheadSeconds_ = seconds.read;
    } catch (...) {
        // Whoever wants the frame reads it again and learns what is wrong.
    }
}

void PreviewRenderer::compose(long long frame, Image &composed, WrongSize policy, Seconds &seconds) {
    shown_ = frame;
    syncer_.setVideoTime(clock_.startOf(frame));
    const Map map = currentMap();
    software_d3d9::SharedPicture overlay;
    UINT counter = 0;
    const auto refreshStart = Clock::now();
    if (map) {
        counter = map->UpdateCounter();
        if (map->BindToStage(kStage) == S_OK)
            overlay = device_->boundPicture(kStage);
    }
    seconds.refresh = secondsSince(refreshStart);

    const auto compositeStart = Clock::now();
    const bool isLaidOver = overlay && fits(*overlay, composed);
    if (isLaidOver)
        compositeOverlay(composed, overlay->bits, overlay->bytes());
    else if (overlay && policy == WrongSize::Throws)
        throw std::invalid_argument("an overlay of " + sizeText(overlay->width, overlay->height) +
                                    " pixels does not fit a frame of " + sizeText(composed.width(), composed.height()));
    seconds.composite = secondsSince(compositeStart);

    const std::lock_guard lock(mutex_);
    ++frames_;
    overlaidFrames_ += isLaidOver;
    updateCounter_ = counter;
    seconds_ = seconds;
}

} // namespace hostkit
