// SPDX-License-Identifier: MIT
#pragma once

#include "platform/win_types.h"

/// The host's clock: video time and frame arithmetic of the clip shown. Implemented by the host, never owned here.
///
/// Called through its method table, so the order of the operations is fixed and there is no virtual destructor.
class IVideoTextureSyncer {
  public:
    /// Slot 0: the current video time, in the host's time unit.
    virtual LONGLONG STDMETHODCALLTYPE GetVideoTime() = 0;
    /// Slot 1: how far a later time may lie and still count as the same frame as `duration`.
    virtual LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG duration) = 0;
    /// Slot 2: the number of the frame that is shown at `duration`.
    virtual LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) = 0;
    /// Slot 3: belongs to the host; never called here.
    virtual LONGLONG STDMETHODCALLTYPE HostOperation3() = 0;
    /// Slot 4: whether the overlay may be refreshed now.
    virtual bool STDMETHODCALLTYPE IsRefreshAllowed() = 0;

  protected:
    ~IVideoTextureSyncer() = default;
};
