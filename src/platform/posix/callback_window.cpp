// SPDX-License-Identifier: MIT
#include "platform/callback_window.h"

namespace platform {

// There is no window system whose identity a host could ask for: the handle stays null and no message ever arrives.
void CallbackWindow::create(const wchar_t *, void *, Dispatch) {}
void CallbackWindow::detach() {}
void CallbackWindow::destroy() {}
LRESULT CallbackWindow::defaultHandler(HWND, UINT, WPARAM, LPARAM) {
    return 0;
}

} // namespace platform
