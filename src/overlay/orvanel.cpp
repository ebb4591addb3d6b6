// SPDX-License-Identifier: MIT
// Construction, destruction, and the small services around the object's state.

#include "overlay/orvanel.h"

#include <algorithm>
#include <utility>

#include "callback/py_locks.h"
#include "overlay/event_queue.h"
#include "overlay/frame_source.h"
#include "overlay/texture_lock.h"
#include "overlay/worker.h"
#include "platform/com.h"
#include "support/diag_log.h"
#include "texture/py_map_wrapper.h"

Orvanel::Orvanel() {
    m_frameSource = std::make_unique<FrameSource>(*this);
    DiagLogOpen("Orvanel");
    OverlayCanvas *canvas = nullptr;
    // Without the component the object lives on: what needs it answers E_FAIL.
    platform::createInstance(CLSID_OverlayCanvas, IID_OverlayCanvas, reinterpret_cast<void **>(&canvas));
    m_canvas.reset(canvas);
    startWorker();
}

Orvanel::~Orvanel() {
    // Before the interpreter lock is let go for the first time.
    for (const auto &act : std::exchange(m_atDestruction, {}))
        act();
    Uninitialize();
}

int Orvanel::Uninitialize() {
    const PyAllowThreads allowThreads;
    stopWorker();
    releaseTextureMap();
    // The host's component and the records go after the lock.
    platform::ComPointer<OverlayCanvas> canvas;
    std::vector<KeyFrame> keyFrames;
    {
        const TextureLockGuard lock(m_textureLock);
        std::swap(canvas, m_canvas);
        keyFrames.swap(m_keyFrames);
    }
    canvas.reset();
    keyFrames.clear();
    DiagLogPrint("Uninitialize!");
    return 0;
}

int Orvanel::SetCallbackFunc(PyObject *callable) {
    SetCallback(callable);
    return 0;
}

void Orvanel::CallBack(ECallBack_State state) {
    TextureLockGuard::assertNoneHeld();
    Call("i", static_cast<int>(state));
}

void Orvanel::raise(ECallBack_State state) {
    if (m_textureLock.isOwned() && m_eventQueue && m_eventQueue->isOfThisThread())
        m_eventQueue->push(state);
    else
        CallBack(state);
}

void Orvanel::LockTexture() {
    // New holds would keep an object that was deleted for as long as threads take turns.
    if (isDoomed() && !m_textureLock.isOwned())
        throw TextureLockRefused("the object has been deleted");
    beginUse();
    ++m_hostUses;
    try {
        m_textureLock.lockForHost();
    } catch (...) {
        endHostUses(1);
        throw;
    }
}

void Orvanel::UnlockTexture() {
    if (m_textureLock.unlockForHost())
        endHostUses(1);
}

void Orvanel::UnlockTextureOfThread() {
    int holds = 0;
    while (m_textureLock.unlockForHost())
        ++holds;
    endHostUses(holds);
}

bool Orvanel::IsHeldByHost() {
    endHostUses(m_textureLock.abandonedHolds()->take());
    return m_hostUses > 0;
}

/// The object may be gone afterwards.
void Orvanel::endHostUses(int count) {
    m_hostUses -= count;
    for (int use = 0; use < count; ++use)
        endUse();
}

void Orvanel::markEdited() {
    m_dirty = true;
    m_dirtyIndex = -1;
}

void Orvanel::markWholeSurfaceDirty() {
    m_dirtyRect = {0, 0, static_cast<std::int32_t>(m_displayWidth), static_cast<std::int32_t>(m_displayHeight)};
    m_dirty = true;
}

void Orvanel::setHover(const HoverPoint &hover) {
    const std::lock_guard lock(m_hoverLock);
    m_hover = hover;
}

void Orvanel::clearDragBookkeeping() {
    m_press = {};
    m_band = {};
}

void Orvanel::forgetSelectionAndHover() {
    clearDragBookkeeping();
    m_selected.clear();
    setHover({});
}

bool Orvanel::isSelected(std::uint32_t index) const {
    return std::find(m_selected.begin(), m_selected.end(), index) != m_selected.end();
}
