// SPDX-License-Identifier: MIT
#include "platform/clock.h"

#include "platform/win_types.h"

#include <mmsystem.h>

namespace platform {

std::uint32_t millisecondClock() {
    return timeGetTime();
}

} // namespace platform
