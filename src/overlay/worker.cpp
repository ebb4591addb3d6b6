// SPDX-License-Identifier: MIT
// The object's worker thread: each trigger becomes one ECB_POINT_UPDATE, delivered on that thread.

#include "overlay/worker.h"

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

} // namespace

void Orvanel::startWorker() {
    m_worker = std::make_shared<WorkerBlock>();
    m_worker->owner = this;
    m_workerThread = std::thread([block = m_worker] { runWorker(block); });
    m_workerId = m_workerThread.get_id();
}

void Orvanel::stopWorker() {
    m_worker->stop.set();
    m_worker->trigger.set();
    if (m_workerId == std::this_thread::get_id()) {
        // Called from a delivery on the worker itself, which cannot wait for its own end; it ends after this delivery.
        if (m_workerThread.joinable())
            m_workerThread.detach();
        return;
    }
    // The worker may be delivering, and its callable may want the lock that the host took before it called here.
    const int holds = m_textureLock.releaseAll();
    m_worker->done.wait(platform::kInfinite);
    m_textureLock.takeBack(holds);
    if (m_workerThread.joinable())
        m_workerThread.join();
}
