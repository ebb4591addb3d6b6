// SPDX-License-Identifier: MIT
#pragma once

#include "platform/com.h"

namespace platform {

/// The factory registered for a class, or null.
ClassFactory findClassFactory(const GUID &clsid);

} // namespace platform
