// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <new>
#include <stdexcept>

#include "platform/win_types.h"

namespace platform {

/// The result code of a body behind an interface whose callers know no exceptions: what it returns, or what stands for
/// the exception that it threw.
template <typename Body>
HRESULT resultOf(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    } catch (const std::length_error &) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

} // namespace platform
