// SPDX-License-Identifier: MIT
// The renderer's thread: what it does and when.

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "hostkit/composite.h"
#include "hostkit/error.h"
#include "hostkit/preview_renderer.h"

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

} // namespace

void PreviewRenderer::run() {
    std::unique_lock lock(mutex_);
    while (!closing_) {
        if (Request *const request = request_) {
            // The request is its caller's again as soon as it is done.
            const bool isRead = request->video != nullptr;
            lock.unlock();
            serve(*request);
            lock.lock();
            request_ = nullptr;
            request->done = true;
            changed_.notify_all();
            const bool isAlone = playRate_ <= 0 && isRead;
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
    lock.unlock();
    device_->SetTexture(kStage, nullptr);
}

void PreviewRenderer::serve(Request &request) {
    try {
        Seconds seconds;
        if (request.video == nullptr) {
            UINT counter = 0;
            const software_d3d9::SharedPicture overlay = refresh(request.frame, seconds, counter);
            const std::lock_guard lock(mutex_);
            ++frames_;
            updateCounter_ = counter;
            seconds_ = seconds;
            return;
        }
        if (!read(request.frame, *request.video, seconds))
            return;
        *request.composed = *request.video;
        compose(request.frame, *request.composed, WrongSize::Throws, seconds);
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

software_d3d9::SharedPicture PreviewRenderer::refresh(long long frame, Seconds &seconds, UINT &counter) {
    shown_ = frame;
    syncer_.setVideoTime(clock_.startOf(frame));
    const Map map = currentMap();
    software_d3d9::SharedPicture overlay;
    const auto refreshStart = Clock::now();
    if (map) {
        counter = map->UpdateCounter();
        if (map->BindToStage(kStage) == S_OK)
            overlay = device_->boundPicture(kStage);
    }
    seconds.refresh = secondsSince(refreshStart);
    const std::lock_guard lock(mutex_);
    overlay_ = overlay;
    return overlay;
}

void PreviewRenderer::compose(long long frame, Image &composed, WrongSize policy, Seconds &seconds) {
    UINT counter = 0;
    const software_d3d9::SharedPicture overlay = refresh(frame, seconds, counter);

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
