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
}

void Orvanel::stopWorker() {
    m_worker->stop.set();
    m_worker->trigger.set();
    if (m_workerThread.get_id() == std::this_thread::get_id()) {
        // Called from a delivery on the worker itself, which cannot wait for its own end; it ends after this delivery.
        m_workerThread.detach();
        return;
    }
    m_worker->done.wait(platform::kInfinite);
    if (m_workerThread.joinable())
        m_workerThread.join();
}
