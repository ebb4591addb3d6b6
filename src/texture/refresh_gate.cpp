// SPDX-License-Identifier: MIT
#include "texture/refresh_gate.h"

#include <chrono>
#include <utility>

#include "callback/py_locks.h"
#include "platform/event.h"

namespace {

/// How long a refresh waits for the owner's texture lock before it looks whether its owner has been taken away.
constexpr std::uint32_t kLockSliceMilliseconds = 5;

} // namespace

void RefreshGate::setOwner(OverlaySource *owner) {
    std::unique_lock lock(m_mutex);
    m_owner = owner;
    ++m_epoch;
    waitUntilUnused(lock, Use::Owner, owner, platform::kInfinite);
}

void RefreshGate::setSyncer(IVideoTextureSyncer *syncer) {
    std::unique_lock lock(m_mutex);
    m_syncer = syncer;
    ++m_epoch;
    waitUntilUnused(lock, Use::Syncer, syncer, platform::kInfinite);
}

void RefreshGate::stop() {
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    ++m_epoch;
}

bool RefreshGate::isStopped() const {
    const std::lock_guard lock(m_mutex);
    return m_stopped;
}

bool RefreshGate::waitUntilOwnerUnused(std::uint32_t milliseconds) {
    std::unique_lock lock(m_mutex);
    return waitUntilUnused(lock, Use::Owner, nullptr, milliseconds);
}

void RefreshGate::whenUnvisited(std::function<void()> destroy) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_visits) {
            m_destroy = std::move(destroy);
            return;
        }
    }
    destroy();
}

bool RefreshGate::isUsedByOthers(Use use, std::uint64_t before, const void *current) const {
    for (const Visit *visit = m_visits; visit; visit = visit->m_next) {
        const std::uint64_t since = use == Use::Owner ? visit->m_ownerEpoch : visit->m_syncerEpoch;
        const void *const used = use == Use::Owner ? static_cast<const void *>(visit->m_owner) : visit->m_syncer;
        if (since != 0 && since < before && used != current && visit->m_thread != std::this_thread::get_id())
            return true;
    }
    return false;
}

/// Returns with `lock` released.
bool RefreshGate::waitUntilUnused(std::unique_lock<std::mutex> &lock, Use use, const void *current,
                                  std::uint32_t milliseconds) {
    const auto isUnused = [this, use, current, before = m_epoch] { return !isUsedByOthers(use, before, current); };
    if (isUnused()) {
        lock.unlock();
        return true;
    }
    lock.unlock();
    const PyAllowThreads allowThreads;
    lock.lock();
    bool unused = true;
    if (milliseconds == platform::kInfinite)
        m_usesChanged.wait(lock, isUnused);
    else
        unused = m_usesChanged.wait_for(lock, std::chrono::milliseconds(milliseconds), isUnused);
    // Before the interpreter lock is waited for.
    lock.unlock();
    return unused;
}

RefreshGate::Visit::Visit(std::shared_ptr<RefreshGate> gate) : m_gate(std::move(gate)) {
    const std::lock_guard lock(m_gate->m_mutex);
    m_next = std::exchange(m_gate->m_visits, this);
}

RefreshGate::Visit::~Visit() {
    std::function<void()> destroy;
    {
        const std::lock_guard lock(m_gate->m_mutex);
        Visit **link = &m_gate->m_visits;
        while (*link != this)
            link = &(*link)->m_next;
        *link = m_next;
        if (m_ownerEpoch != 0 || m_syncerEpoch != 0)
            m_gate->m_usesChanged.notify_all();
        if (!m_gate->m_visits)
            destroy.swap(m_gate->m_destroy);
    }
    if (destroy)
        destroy();
}

RefreshGate::Visit::Admission RefreshGate::Visit::admit() {
    const std::lock_guard lock(m_gate->m_mutex);
    if (!m_gate->m_owner || !m_gate->m_syncer)
        return Admission::Unlinked;
    if (m_gate->m_stopped)
        return Admission::Stopped;
    m_owner = m_gate->m_owner;
    m_ownerEpoch = m_gate->m_epoch;
    return Admission::Admitted;
}

bool RefreshGate::Visit::isStillAdmitted() const {
    const std::lock_guard lock(m_gate->m_mutex);
    return !m_gate->m_stopped && m_gate->m_owner == m_owner;
}

IVideoTextureSyncer *RefreshGate::Visit::acquireSyncer() {
    const std::lock_guard lock(m_gate->m_mutex);
    m_syncer = m_gate->m_syncer;
    m_syncerEpoch = m_syncer ? m_gate->m_epoch : 0;
    return m_syncer;
}

bool RefreshGate::Visit::keepsSyncer() const {
    const std::lock_guard lock(m_gate->m_mutex);
    return m_gate->m_syncer == m_syncer;
}

void RefreshGate::Visit::releaseSyncer() {
    const std::lock_guard lock(m_gate->m_mutex);
    m_syncerEpoch = 0;
    m_gate->m_usesChanged.notify_all();
}

RefreshGate::Visit::OwnerLock::OwnerLock(Visit &visit) {
    while (!visit.m_owner->tryLockTexture(kLockSliceMilliseconds))
        if (!visit.isStillAdmitted())
            return;
    if (visit.isStillAdmitted())
        m_owner = visit.m_owner;
    else
        visit.m_owner->unlockTexture();
}

RefreshGate::Visit::OwnerLock::~OwnerLock() {
    if (m_owner)
        m_owner->unlockTexture();
}
