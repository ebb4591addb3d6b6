// SPDX-License-Identifier: MIT
#pragma once

#include <new>
#include <stdexcept>

#include "platform/win_types.h"

namespace Quill {

/// Runs the body of a routine that must not throw. What can go wrong in it is memory.
template <typename Body>
HRESULT withoutThrowing(Body body) {
    try {
        body();
        return S_OK;
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    } catch (const std::length_error &) {
        return E_OUTOFMEMORY;
    }
}

} // namespace Quill
