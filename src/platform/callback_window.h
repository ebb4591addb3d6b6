// SPDX-License-Identifier: MIT
#pragma once

#include "platform/win_types.h"

namespace platform {

/// The hidden window of one callback object: a user32 window on Windows, nothing (a null handle) elsewhere.
class CallbackWindow {
  public:
    /// Offers a message to the owner whose address stands in the window's user data: true when the owner is alive and
    /// has stored the message's result.
    using Dispatch = bool (*)(void *owner, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);

    /// Registers the class (a second registration fails harmlessly) and makes the window; class name and title are
    /// `name`.
    void create(const wchar_t *name, void *owner, Dispatch dispatch);
    /// Clears the window's user data, so that no message reaches the owner any more.
    void detach();
    /// Detaches and ends the window. On another thread than the one that made it: as soon as that one looks at its
    /// messages.
    void destroy();
    HWND handle() const { return m_handle; }
    /// The system's default treatment of a message (0 where there is no window).
    static LRESULT defaultHandler(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  private:
    HWND m_handle = nullptr;
};

} // namespace platform
