// SPDX-License-Identifier: MIT
#pragma once

#include "callback/py_callback.h"
#include "platform/win_types.h"

/// A callback holder with a hidden window as its native identity. Nothing is sent through the window.
class PyCallbackWnd : public PyCallback {
  public:
    /// Class name and title of the window; null means "Callback Window".
    explicit PyCallbackWnd(const wchar_t *name = nullptr);

    /// Slot 1: treats a message that arrived at the window. The base passes it to the system's default.
    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

    HWND windowHandle() const { return m_fields.window.handle(); }

  protected:
    ~PyCallbackWnd();

  private:
    static bool dispatch(void *owner, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
};

static_assert(sizeof(PyCallbackWnd) == sizeof(PyCallback));
