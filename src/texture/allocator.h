// SPDX-License-Identifier: MIT
#pragma once

#include "platform/win_types.h"

namespace loom {

/// The host framework's texture source: what its renderer calls for each frame that it composes.
///
/// A foreign caller reaches the operations by slot number (IUnknown has 0 to 2), so their order is fixed and there is
/// no virtual destructor, which one compiler gives one slot and another two. Called on the renderer's thread.
class IAllocator : public IUnknown {
  public:
    /// Slot 3: sets the video-memory texture on the device at `stage`. S_FALSE when there is none.
    virtual HRESULT STDMETHODCALLTYPE BindToStage(DWORD stage) = 0;
    virtual HRESULT STDMETHODCALLTYPE Operation4() = 0; ///< slot 4: S_OK
    /// Slots 5 and 6: bracket work that takes several calls; re-entrant.
    virtual HRESULT STDMETHODCALLTYPE Lock() = 0;
    virtual HRESULT STDMETHODCALLTYPE Unlock() = 0;
    virtual float STDMETHODCALLTYPE Aspect() = 0;      ///< slot 7: width / height, 0 when height is 0
    virtual UINT STDMETHODCALLTYPE BitsPerPixel() = 0; ///< slot 8: 32
    virtual void STDMETHODCALLTYPE Operation9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Operation10() = 0; ///< slot 10: E_UNEXPECTED
    /// Slot 11: grows with every change of the picture. A map that follows a clip refreshes itself first.
    virtual UINT STDMETHODCALLTYPE UpdateCounter() = 0;
    virtual UINT STDMETHODCALLTYPE Width() = 0;  ///< slot 12: pixels
    virtual UINT STDMETHODCALLTYPE Height() = 0; ///< slot 13: pixels
    virtual UINT STDMETHODCALLTYPE Flag14() = 0; ///< slot 14: 1
    virtual UINT STDMETHODCALLTYPE Flag15() = 0; ///< slot 15: 0
    virtual void STDMETHODCALLTYPE Operation16() = 0;
    virtual bool STDMETHODCALLTYPE Flag17() = 0; ///< slot 17: false
    /// Slot 18: frames per second as a fraction, 60/1. False, with nothing written, when either pointer is null.
    virtual bool STDMETHODCALLTYPE FrameRate(UINT *numerator, UINT *denominator) = 0;
    virtual UINT STDMETHODCALLTYPE Flag19() = 0; ///< slot 19: 0
    virtual UINT STDMETHODCALLTYPE Flag20() = 0; ///< slot 20: 0
    virtual void STDMETHODCALLTYPE Operation21() = 0;
    virtual UINT STDMETHODCALLTYPE VideoWidth() = 0;     ///< slot 22: as slot 12
    virtual UINT STDMETHODCALLTYPE VideoHeight() = 0;    ///< slot 23: as slot 13
    virtual float STDMETHODCALLTYPE InverseAspect() = 0; ///< slot 24: height / width, 0 when width is 0
    virtual HRESULT STDMETHODCALLTYPE Operation25() = 0; ///< slot 25: E_NOTIMPL
    virtual UINT STDMETHODCALLTYPE Flag26() = 0;         ///< slot 26: 0
    virtual UINT STDMETHODCALLTYPE Flag27() = 0;         ///< slot 27: 0
    /// Slot 28: a reference to the video-memory texture; E_POINTER without `texture`, E_FAIL when there is none.
    virtual HRESULT STDMETHODCALLTYPE TextureInterface(IUnknown **texture) = 0;
    virtual UINT STDMETHODCALLTYPE Flag29() = 0; ///< slot 29: 1
    virtual void STDMETHODCALLTYPE Operation30() = 0;

  protected:
    ~IAllocator() = default;
};

} // namespace loom
