// SPDX-License-Identifier: MIT
#pragma once

#include "platform/win_types.h"

namespace hostkit {

/// Where pictures would be presented, as the module asks for it. There is no window system behind it: the handle names
/// this object and nobody looks behind it.
class Window {
  public:
    HWND GetWnd() { return reinterpret_cast<HWND>(this); }
};

} // namespace hostkit
