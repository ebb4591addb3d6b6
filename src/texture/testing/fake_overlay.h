// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/reentrant_lock.h"
#include "texture/overlay_source.h"

/// What the fakes below are asked, in one list.
using AskedList = std::vector<std::string>;

/// The host's clock with settable answers.
class FakeSyncer : public IVideoTextureSyncer {
  public:
    explicit FakeSyncer(AskedList &askedList) : asked(askedList) {}
    virtual ~FakeSyncer() = default;

    LONGLONG STDMETHODCALLTYPE GetVideoTime() override {
        asked.push_back("time");
        if (onTime)
            onTime();
        return time;
    }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 0; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return duration; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override {
        asked.push_back("host operation");
        return 0;
    }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override {
        asked.push_back("allowed");
        return allowed;
    }

    AskedList &asked;
    LONGLONG time = 1000;
    bool allowed = true;
    std::function<void()> onTime; ///< runs inside GetVideoTime
};

/// An overlay with settable answers and a picture of its own.
class FakeOverlay : public OverlaySource {
  public:
    FakeOverlay(AskedList &askedList, UINT width, UINT height)
        : asked(askedList), picture(std::size_t{width} * height * 4, 0) {}
    virtual ~FakeOverlay() = default;

    void lockTexture() override {
        asked.push_back("lock");
        lock.lock();
    }
    bool tryLockTexture(std::uint32_t milliseconds) override {
        if (!lock.try_lock_for(std::chrono::milliseconds(milliseconds)))
            return false;
        asked.push_back("lock");
        return true;
    }
    void unlockTexture() override {
        asked.push_back("unlock");
        if (onUnlock)
            onUnlock();
        lock.unlock();
    }
    bool isVisible() const override { return visible; }
    bool isPreviewMode() const override { return preview; }
    UINT bufferLength() const override { return length ? *length : static_cast<UINT>(picture.size()); }
    bool isDirty() const override { return dirty; }
    void resetDirtyFlag() override {
        asked.push_back("clean");
        dirty = false;
    }
    LONGLONG closestKeyFramePosition(LONGLONG duration, IVideoTextureSyncer *syncer) const override {
        asked.push_back("closest " + std::to_string(duration));
        lastSyncer = syncer;
        return duration + mappingOffset;
    }
    const BYTE *prepareKeyframe(LONGLONG duration, bool fromClipStart) override {
        asked.push_back("prepare " + std::to_string(duration) + (fromClipStart ? " from start" : ""));
        if (onPrepare)
            onPrepare();
        return hasPicture ? picture.data() : nullptr;
    }

    AskedList &asked;
    platform::ReentrantLock lock;
    std::vector<BYTE> picture;
    std::optional<UINT> length; ///< reported instead of the picture's
    std::atomic<bool> visible{true};
    std::atomic<bool> preview{false};
    std::atomic<bool> dirty{true};
    bool hasPicture = true;
    LONGLONG mappingOffset = 0;
    mutable IVideoTextureSyncer *lastSyncer = nullptr;
    std::function<void()> onPrepare; ///< runs inside prepareKeyframe
    std::function<void()> onUnlock;  ///< runs before the lock is left
};
