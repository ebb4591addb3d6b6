// SPDX-License-Identifier: MIT
#include "platform/clock.h"

#include <windows.h>

// After <windows.h>, and not after win_types.h: this header still writes `far`.
#include <mmsystem.h>

namespace platform {

std::uint32_t millisecondClock() {
    return timeGetTime();
}

} // namespace platform
