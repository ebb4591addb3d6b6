// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

#include "overlay/types/video_texture_syncer.h"
#include "platform/event.h"
#include "texture/overlay_source.h"
#include "texture/py_map.h"
#include "texture/refresh_gate.h"

/// The texture map of one overlay: brings itself up to date for the video time of each frame that the renderer asks
/// for.
///
/// The refresh runs inside slots 11 and 35 on the calling (renderer's) thread, holds the owner's texture lock
/// throughout and never takes the interpreter lock. SetOwner, SetSyncer, Stop and Join may be called on any thread,
/// with the interpreter lock and the owner's texture lock held or not; where they wait they let the interpreter lock
/// go. A call from inside a refresh (by a syncer, say) does not wait for that refresh; the owner must then outlive it.
///
/// To let an owner or a map go: Stop, Join without limit, Release. No refresh touches the owner after that, even if the
/// host keeps the map and goes on asking. A map that is released in the middle of a refresh goes when the refresh ends.
class PyMapWrapper final : public PyMap {
  public:
    PyMapWrapper();

    UINT STDMETHODCALLTYPE UpdateCounter() override; ///< refreshes first
    void STDMETHODCALLTYPE Destroy() override;
    /// E_FAIL for a width or height of 0; otherwise 1 when the map's Create did not fail and 0 when it did.
    HRESULT STDMETHODCALLTYPE Create(UINT width, UINT height, PyObject *windowProvider, PyObject *renderer) override;
    PyMap *STDMETHODCALLTYPE Self() override { return this; }
    /// Slot 35: the refresh. E_FAIL without owner or syncer, else S_OK, whether there was something to copy or not.
    /// What the owner throws ends the refresh with a code: E_OUTOFMEMORY or E_UNEXPECTED.
    HRESULT STDMETHODCALLTYPE Update() override;

    /// Neither is owned. When SetSyncer returns no refresh uses the syncer that was set before, and when SetOwner
    /// returns none uses the earlier owner: both wait for a refresh that does.
    void SetOwner(OverlaySource *owner);
    void SetSyncer(IVideoTextureSyncer *syncer);

    /// From now on no refresh copies anything. Does not wait for one that is under way.
    void Stop();
    /// After Stop: waits up to `milliseconds` (platform::kInfinite: without limit) for a refresh under way to end.
    /// Without Stop it returns at once.
    void Join(std::uint32_t milliseconds);

  private:
    ~PyMapWrapper() = default;

    void refresh(RefreshGate::Visit &visit);
    void refreshOrForget(RefreshGate::Visit &visit);
    /// False when the device refused. A map without textures has nothing to write to, and that is fine.
    bool writeSystemTexture(const BYTE *picture, UINT length);

    const std::shared_ptr<RefreshGate> m_gate;
    std::atomic<std::uint32_t> m_renderTime{0}; ///< millisecond clock at the last update-counter call
    /// The video time seen last; nothing while the texture does not show the picture of that time, so that the next
    /// refresh copies whatever the time. Guarded by the owner's texture lock.
    std::optional<LONGLONG> m_lastVideoTime;
    /// Reset while a refresh runs. All maps of the session share it by name, so it tells nothing about this one: Join
    /// asks the gate.
    platform::Event m_updateEvent;
};
