// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "callback/python_fwd.h"
#include "platform/callback_window.h"
#include "platform/fork.h"

/// What a callback object consists of, behind the pointer to its method table.
///
/// Modules of one process share the window's class, and whichever registered it reads the objects of all: the fields up
/// to the window lie where every compiler has to find them. One structure for both classes, because compilers differ in
/// whether the fields of a derived class begin in the padding of its base.
struct CallbackFields {
    std::atomic<PyObject *> callable{nullptr}; ///< owned; other threads test it for null without the interpreter lock
    std::int32_t hostMainWindow = 0;           ///< read from the environment at construction
    /// 0x12345678 while the object is alive, 0 once it is being destroyed. Aligned as the first field of a derived
    /// class is.
    alignas(8) std::uint32_t signature = 0;
    platform::CallbackWindow window;

    // This module's own.
    mutable int uses = 0; ///< guarded by the interpreter lock, as is `doomed`
    bool doomed = false;  ///< to be destroyed when `uses` comes to 0
    const unsigned madeIn = platform::forkCount();
};

static_assert(std::is_standard_layout_v<CallbackFields>);
static_assert(sizeof(std::atomic<PyObject *>) == 8 && sizeof(platform::CallbackWindow) == 8);
static_assert(offsetof(CallbackFields, callable) == 0 && offsetof(CallbackFields, hostMainWindow) == 8 &&
              offsetof(CallbackFields, signature) == 16 && offsetof(CallbackFields, window) == 24 &&
              offsetof(CallbackFields, uses) == 32);
