// SPDX-License-Identifier: MIT
#pragma once

#include "callback/py_callback_wnd.h"

/// The two callback classes as objects that a test can make anywhere.
class PlainCallback final : public PyCallback {
  public:
    ~PlainCallback() = default;
    void Destroy() override { destroyWhenUnused(this); }
};

class PlainCallbackWnd final : public PyCallbackWnd {
  public:
    using PyCallbackWnd::PyCallbackWnd;
    ~PlainCallbackWnd() = default;
    void Destroy() override { destroyWhenUnused(this); }
};
