// SPDX-License-Identifier: MIT
#include "platform/callback_window.h"

#include <atomic>

namespace platform {
namespace {

// One dispatcher serves all windows: the owner's own signature tells whether it is alive.
std::atomic<CallbackWindow::Dispatch> dispatcher{nullptr};

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    void *const owner = reinterpret_cast<void *>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const CallbackWindow::Dispatch dispatch = dispatcher.load();
    LRESULT result = 0;
    if (owner && dispatch && dispatch(owner, message, wParam, lParam, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

void CallbackWindow::create(const wchar_t *name, void *owner, Dispatch dispatch) {
    dispatcher = dispatch;
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    windowClass.lpfnWndProc = &windowProcedure;
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    windowClass.lpszClassName = name;
    // The second object of a process finds the class registered already; the error is read so that it does not linger.
    if (!RegisterClassExW(&windowClass))
        GetLastError();
    m_handle = CreateWindowExW(0, name, name, WS_CLIPSIBLINGS | WS_CLIPCHILDREN, 0, 0, 10, 10, nullptr, nullptr,
                               nullptr, nullptr);
    if (!m_handle)
        return;
    SetWindowLongPtrW(m_handle, GWL_STYLE, GetWindowLongPtrW(m_handle, GWL_STYLE) & ~static_cast<LONG_PTR>(WS_CAPTION));
    SetWindowLongPtrW(m_handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(owner));
}

void CallbackWindow::detach() {
    if (m_handle)
        SetWindowLongPtrW(m_handle, GWLP_USERDATA, 0);
}

void CallbackWindow::destroy() {
    // Only the thread that made a window may destroy it. Another one asks: detached, the window has the system's
    // default handler, which answers WM_CLOSE by destroying. As a notification it waits for nobody and needs no message
    // loop, only that the thread looks at its messages again; with the thread's end the window goes anyway.
    detach();
    if (m_handle && !DestroyWindow(m_handle))
        SendNotifyMessageW(m_handle, WM_CLOSE, 0, 0);
    m_handle = nullptr;
}

LRESULT CallbackWindow::defaultHandler(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace platform
