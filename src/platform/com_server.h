// SPDX-License-Identifier: MIT
#pragma once

#include "platform/win_types.h"

// What an in-process component server writes into the registry. Windows only: elsewhere components are linked in.

namespace platform {

/// Offers a class in the library that this code is part of, for any threading model: for the whole machine or, where
/// its registry is closed to the caller, for the user. `description` is for people.
HRESULT registerServer(const GUID &clsid, const wchar_t *description);

/// Withdraws the class again, wherever it was written. A class that is not registered is no error.
HRESULT unregisterServer(const GUID &clsid);

} // namespace platform
