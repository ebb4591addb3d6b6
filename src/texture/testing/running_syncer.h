// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "callback/py_locks.h"
#include "overlay/types/video_texture_syncer.h"

/// A clock that runs with the frames asked for, 25 a second in milliseconds and each of them twice. It wants the
/// interpreter lock now and then, as one that is written in Python would, and says no now and then.
class RunningSyncer final : public IVideoTextureSyncer {
  public:
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override {
        const LONGLONG asked = ++m_asked;
        if (asked % 16 == 0)
            const PyGILGuard interpreter;
        return asked / 2 * kFrame;
    }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return kFrame - 1; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG time) override { return time / kFrame; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return m_asked % 7 != 0; }

  private:
    static constexpr LONGLONG kFrame = 40;

    std::atomic<LONGLONG> m_asked{0};
};
