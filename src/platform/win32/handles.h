// SPDX-License-Identifier: MIT
#pragma once

#include "platform/unique_handle.h"
#include "platform/win_types.h"

namespace platform {

/// An event or another kernel object whose invalid value is null.
using KernelHandle = UniqueHandle<HANDLE, &CloseHandle>;
using RegistryKey = UniqueHandle<HKEY, &RegCloseKey>;

} // namespace platform
