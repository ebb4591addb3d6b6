// SPDX-License-Identifier: MIT
// Mouse and key events: the dispatcher, and the release of the button.
//
// A gesture is press, moves, release. While an outline is being drawn, presses append anchors until one on the first
// anchor closes it; from then on gestures edit: drag points, insert one on a segment, or select with a rubber band.

#include "overlay/orvanel.h"

#include "callback/py_locks.h"
#include "overlay/event_queue.h"
#include "overlay/texture_lock.h"

HRESULT Orvanel::Interactive(INT state, INT x, INT y) {
    const PyAllowThreads allowThreads;
    HRESULT result = E_FAIL;
    // Host code must not run inside the lock: what the handlers raise is delivered once it has been left.
    std::vector<ECallBack_State> events;
    {
        const TextureLockGuard lock(m_textureLock);
        if (!m_canvas)
            return E_FAIL;
        const EventQueue queue(m_eventQueue, events);
        result = dispatchEvent(state, {kAnchorPoint, x, y, 0, 0, 0});
    }
    for (const ECallBack_State event : events)
        raise(event);
    return result;
}

HRESULT Orvanel::dispatchEvent(INT state, const MPoint &position) {
    switch (state) {
    case ECS_MOUSE_MOVE:
        return handleMove(position);
    case ECS_MOUSE_DOWN:
        return handlePress(position);
    case ECS_MOUSE_UP:
        return handleRelease();
    case ECS_MOUSE_DBCLICK:
        return 1;
    case ECS_DELETE:
        if (m_isMask && !m_selected.empty())
            DeleteFocusPoint();
        else
            DeleteAllPoints();
        return 1;
    case ECS_DELETE_LAST_POINT:
        if (!m_isMask)
            DeleteLastPoint();
        return 1;
    default:
        return E_FAIL;
    }
}

HRESULT Orvanel::handleRelease() {
    m_mouseDown = false;
    if (m_band.width != 0 && m_band.height != 0)
        clearDragBookkeeping();
    markEdited();
    if (m_pointsMoved && m_dragged) {
        if (m_selected.size() == 1) {
            if (m_shiftPressed)
                mirrorOppositeHandle(TwinUpdate::Only);
            else
                restoreOppositeHandle();
        }
        raise(ECB_MASK_UPDATE);
    }
    m_pointsMoved = false;
    m_dragged = false;
    m_shiftPressed = false;
    return S_OK;
}
