// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>

namespace platform {

/// How many forks lie between the first process and this one. What was made under another number belongs to a process
/// whose other threads do not exist here: nobody will give back what they held, nobody answers what waits for them.
/// Always 0 where processes do not fork.
unsigned forkCount();

/// Has every fork take this mutex first and give it back on both sides, so that the child never finds it in the hands
/// of a thread that it does not have. For mutexes that are never destroyed; those that one thread may hold together are
/// named in the order in which it takes them.
void holdAcrossForks(std::mutex &mutex) noexcept;

} // namespace platform
