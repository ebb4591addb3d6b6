// SPDX-License-Identifier: MIT
#include "overlay/abandoned_holds.h"

#include <exception>
#include <memory>
#include <thread>
#include <utility>

#include "callback/py_locks.h"
#include "overlay/orvanel.h"

namespace {

/// Stays until the object is gone, or the interpreter. An object begins to go with the interpreter lock held, so that
/// it is there as long as this has the lock and has not been told otherwise.
void destroyAfterLastHold(const std::shared_ptr<AbandonedHolds> &abandoned, Orvanel &object) {
    for (;;) {
        abandoned->wait();
        const PyGILGuard lock;
        if (!lock || abandoned->isObjectGone)
            return;
        const PyCallback::Use use(object);
        object.IsHeldByHost();
    }
}

} // namespace

void Orvanel::Destroy() {
    // What was made before a fork stays where it is.
    if (m_hostUses > 0 && m_fields.madeIn == platform::forkCount())
        waitForAbandonedHolds();
    destroyWhenUnused(this);
}

/// Without memory or a thread for it, an object whose last hold is abandoned goes at the next deletion.
void Orvanel::waitForAbandonedHolds() {
    const std::shared_ptr<AbandonedHolds> abandoned = m_textureLock.abandonedHolds();
    if (std::exchange(abandoned->isWaitedFor, true))
        return;
    try {
        AtDestruction([abandoned] {
            abandoned->isObjectGone = true;
            abandoned->wake();
        });
        std::thread([abandoned, this] { destroyAfterLastHold(abandoned, *this); }).detach();
    } catch (const std::exception &) {
        abandoned->isWaitedFor = false;
    }
}
