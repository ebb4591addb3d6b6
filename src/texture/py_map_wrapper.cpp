// SPDX-License-Identifier: MIT
#include "texture/py_map_wrapper.h"

#include "platform/block_copy.h"
#include "platform/clock.h"
#include "platform/result_of.h"
#include "support/diag_log.h"

namespace {
constexpr const char *kUpdateEventName = "PyMapWrapper_UpdateEvt";
}

PyMapWrapper::PyMapWrapper()
    : m_gate(std::make_shared<RefreshGate>()), m_updateEvent(kUpdateEventName, platform::Event::Reset::Manual, true) {}

void PyMapWrapper::Destroy() {
    m_gate->whenUnvisited([this] { delete this; });
}

HRESULT PyMapWrapper::Create(UINT width, UINT height, PyObject *windowProvider, PyObject *renderer) {
    if (width == 0 || height == 0)
        return E_FAIL;
    m_lastVideoTime.reset();
    return SUCCEEDED(PyMap::Create(width, height, windowProvider, renderer)) ? 1 : 0;
}

void PyMapWrapper::SetOwner(OverlaySource *owner) {
    m_gate->setOwner(owner);
}

void PyMapWrapper::SetSyncer(IVideoTextureSyncer *syncer) {
    m_gate->setSyncer(syncer);
}

void PyMapWrapper::Stop() {
    m_gate->stop();
}

void PyMapWrapper::Join(std::uint32_t milliseconds) {
    DiagLogPrint("PyMapWrapper::Join() enter\n");
    if (m_gate->isStopped())
        m_gate->waitUntilOwnerUnused(milliseconds);
    DiagLogPrint("PyMapWrapper::Join() end\n");
}

UINT PyMapWrapper::UpdateCounter() {
    const RefreshGate::Visit visit(m_gate);
    m_renderTime = platform::millisecondClock();
    Update();
    return updateCounter();
}

HRESULT PyMapWrapper::Update() {
    RefreshGate::Visit visit(m_gate);
    const auto admission = visit.admit();
    if (admission == RefreshGate::Visit::Admission::Unlinked)
        return E_FAIL;
    m_updateEvent.reset();
    HRESULT result = S_OK;
    if (admission == RefreshGate::Visit::Admission::Admitted) {
        result = platform::resultOf([&] {
            if (const RefreshGate::Visit::OwnerLock lock(visit); lock)
                refreshOrForget(visit);
            return S_OK;
        });
    }
    m_updateEvent.set();
    return result;
}

/// A refresh that was thrown out of shows nothing: the next one starts afresh.
void PyMapWrapper::refreshOrForget(RefreshGate::Visit &visit) {
    try {
        refresh(visit);
    } catch (...) {
        m_lastVideoTime.reset();
        throw;
    }
}

void PyMapWrapper::refresh(RefreshGate::Visit &visit) {
    OverlaySource &owner = visit.owner();
    if (!owner.isVisible())
        return;
    const UINT length = owner.bufferLength();
    if (length == 0 || length != bufferSize())
        return;

    IVideoTextureSyncer *const syncer = visit.acquireSyncer();
    if (!syncer)
        return;
    const LONGLONG videoTime = syncer->GetVideoTime();
    if (!visit.keepsSyncer() || !syncer->IsRefreshAllowed() || !visit.keepsSyncer())
        return;
    if (m_lastVideoTime == videoTime && !owner.isDirty())
        return;
    m_lastVideoTime = videoTime;
    const LONGLONG mappingTime = owner.closestKeyFramePosition(videoTime, syncer);
    visit.releaseSyncer();

    const BYTE *const buffer = owner.prepareKeyframe(mappingTime, true);
    if (!buffer)
        return;
    if (owner.isPreviewMode()) {
        owner.resetDirtyFlag();
        return;
    }
    DiagLogPrint("UpdateFrame() m_renderTime=%d, video duration=%lld, mapping duration=%lld",
                 static_cast<int>(m_renderTime.load()), static_cast<long long>(videoTime),
                 static_cast<long long>(mappingTime));
    DiagLogPrint("UpdateFrame() buffer size(%d,%d) len=%d", static_cast<int>(Width()), static_cast<int>(Height()),
                 static_cast<int>(length));
    if (!writeSystemTexture(buffer, length)) {
        m_lastVideoTime.reset();
        return;
    }
    owner.resetDirtyFlag();
    if (FAILED(showSystemTexture()))
        m_lastVideoTime.reset();
    DiagLogPrint("UpdateFrame() End");
}

bool PyMapWrapper::writeSystemTexture(const BYTE *picture, UINT length) {
    if (!systemTexture())
        return true;
    platform::ComPointer<IDirect3DSurface9> surface;
    if (FAILED(systemTexture()->GetSurfaceLevel(0, surface.put())) || !surface)
        return false;
    D3DLOCKED_RECT locked = {};
    if (FAILED(surface->LockRect(&locked, nullptr, D3DLOCK_DISCARD)))
        return false;
    // One block: rows are taken to follow one another without a gap, so the pitch is not looked at.
    if (locked.pBits)
        platform::copyBlock(locked.pBits, picture, length);
    surface->UnlockRect();
    return locked.pBits != nullptr;
}
