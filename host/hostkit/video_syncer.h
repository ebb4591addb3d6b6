// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "hostkit/frame_clock.h"
#include "overlay/types/video_texture_syncer.h"

namespace hostkit {

/// What the module asks about video time, answered from a clip's frame clock. Has to outlive every map it was given to.
///
/// The user interface sets the time on its thread; the renderer's thread reads it.
class VideoSyncer final : public IVideoTextureSyncer {
  public:
    explicit VideoSyncer(const FrameClock &clock) : clock_(clock) {}

    void setVideoTime(LONGLONG time) { time_ = time; }
    void setRefreshAllowed(bool allowed) { refreshAllowed_ = allowed; }

    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return time_; }
    /// What is left of the frame that is shown at `duration`: the frame's last unit is the last that still counts.
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG duration) override;
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return clock_.frameAt(duration); }
    /// Nobody calls it.
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return refreshAllowed_; }

  private:
    FrameClock clock_;
    std::atomic<LONGLONG> time_{0};
    std::atomic<bool> refreshAllowed_{true};
};

} // namespace hostkit
