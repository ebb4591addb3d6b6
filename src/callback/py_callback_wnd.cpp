// SPDX-License-Identifier: MIT
#include "callback/py_callback_wnd.h"

namespace {
constexpr std::uint32_t kAliveSignature = 0x12345678;
}

PyCallbackWnd::PyCallbackWnd(const wchar_t *name) {
    m_fields.signature = kAliveSignature;
    m_fields.window.create(name ? name : L"Callback Window", this, &PyCallbackWnd::dispatch);
}

PyCallbackWnd::~PyCallbackWnd() {
    SetCallback(nullptr);
    m_fields.window.detach();
    m_fields.signature = 0;
    m_fields.window.destroy();
}

LRESULT PyCallbackWnd::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return platform::CallbackWindow::defaultHandler(m_fields.window.handle(), message, wParam, lParam);
}

bool PyCallbackWnd::dispatch(void *owner, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
    PyCallbackWnd *const self = static_cast<PyCallbackWnd *>(owner);
    if (self->m_fields.signature != kAliveSignature)
        return false;
    *result = self->HandleMessage(message, wParam, lParam);
    return true;
}
