// SPDX-License-Identifier: MIT
// The object's worker thread: each trigger becomes one ECB_POINT_UPDATE, delivered on that thread.

#include "overlay/worker.h"

#include "callback/interpreter_gate.h"
#include "callback/main_thread.h"
#include "overlay/orvanel.h"

namespace {

void runWorker(const std::shared_ptr<WorkerBlock> &block) {
    if (!block->owner)
        return;
    while (!block->stop.isSignalled()) {
        block->trigger.wait(platform::kInfinite);
        // The callable may drop the object's last reference: from here on only the block is certain to exist.
        block->owner->CallBack(ECB_POINT_UPDATE);
    }
    block->done.set();
}

/// How often a thread that waits looks whether the interpreter is ending.
constexpr std::uint32_t kSliceMilliseconds = 50;
/// How long the interpreter's end waits for a callable that does not return. The object is in use until it does.
constexpr std::uint32_t kPatienceMilliseconds = 5000;

bool waitUntilDone(WorkerBlock &block) {
    std::uint32_t waited = 0;
    while (!block.done.wait(kSliceMilliseconds)) {
        if ((interpreterIsEnding() || mainThreadHasLeft()) && (waited += kSliceMilliseconds) > kPatienceMilliseconds)
            return false;
    }
    return true;
}

} // namespace

void Orvanel::startWorker() {
    m_worker = std::make_shared<WorkerBlock>();
    m_worker->owner = this;
    std::thread worker([block = m_worker] { runWorker(block); });
    m_workerId = worker.get_id();
    const std::lock_guard lock(m_worker->threadMutex);
    m_worker->thread = std::move(worker);
}

void Orvanel::wakeWorker() {
    if (m_worker->startedIn == platform::forkCount())
        m_worker->trigger.set();
}

// Any number of threads may come here at once, and the worker itself: all wait for `done`, and one of them gets the
// thread.
void Orvanel::stopWorker() {
    if (m_worker->startedIn != platform::forkCount())
        return;
    m_worker->stop.set();
    m_worker->trigger.set();
    if (m_workerId == std::this_thread::get_id()) {
        // Called from a delivery on the worker itself, which cannot wait for its own end; it ends after this delivery.
        if (std::thread own = m_worker->takeThread(); own.joinable())
            own.detach();
        return;
    }
    // The worker may be delivering, and its callable may want a lock that the host took before it called here, or
    // before it dropped the last reference somewhere: this object's or another's.
    const HostHoldsGivenUp othersGetOn;
    const bool ended = waitUntilDone(*m_worker);
    if (std::thread thread = m_worker->takeThread(); thread.joinable()) {
        if (ended)
            thread.join();
        else
            thread.detach();
    }
}
