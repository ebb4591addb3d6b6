// SPDX-License-Identifier: MIT
#pragma once

// Direct3D 9: the system's own header on Windows, the same interfaces declared slot for slot elsewhere. Nothing here
// makes a device; whoever hands one over implements it.

#include "platform/win_types.h"

#ifdef _WIN32
#include <d3d9.h>
#else
#include "platform/posix/d3d9_device.h"
#endif
