// SPDX-License-Identifier: MIT
#include "overlay/texture_lock.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "callback/interpreter_gate.h"
#include "callback/main_thread.h"
#include "callback/py_locks.h"
#include "platform/thread_slot.h"

namespace {

/// How often a thread that waits looks whether there is still something to wait for.
constexpr std::chrono::milliseconds kSlice{50};
/// How long the interpreter's end waits for a hold of the host's.
constexpr std::chrono::seconds kPatience{3};

constexpr const char *kEnding = "the interpreter is ending while another thread keeps the texture locked";
constexpr const char *kForked = "the texture was locked by a thread that this forked process does not have";

} // namespace

/// The locks that the host holds on one thread. It gives them back when the thread ends, whatever ended it.
class HostHoldsOfThread {
  public:
    ~HostHoldsOfThread() {
        for (const HeldLock &held : std::exchange(m_locks, {}))
            held.lock->endHostHolds();
    }
    /// Null when the thread has never had any.
    static HostHoldsOfThread *find() { return static_cast<HostHoldsOfThread *>(slot().get()); }
    /// Throws std::bad_alloc.
    static HostHoldsOfThread &own() {
        if (HostHoldsOfThread *const holds = find())
            return *holds;
        auto made = std::make_unique<HostHoldsOfThread>();
        if (!slot().set(made.get()))
            throw std::bad_alloc();
        return *made.release();
    }
    void add(TextureLock *lock) { m_locks.push_back({lock}); }
    void remove(TextureLock *lock) {
        std::erase_if(m_locks, [lock](const HeldLock &held) { return held.lock == lock; });
    }
    std::vector<HeldLock> &locks() { return m_locks; }

  private:
    static const platform::ThreadSlot &slot() {
        static const platform::ThreadSlot instance([](void *holds) { delete static_cast<HostHoldsOfThread *>(holds); });
        return instance;
    }

    std::vector<HeldLock> m_locks; ///< in the order in which they were taken
};

TextureLock::~TextureLock() {
    // Only an object that was made without new can go while its own thread holds it.
    if (m_lock.isOwned())
        forgetHostHolds();
}

void TextureLock::lock() {
    if (!m_lock.try_lock()) {
        const PyAllowThreads allowThreads;
        std::chrono::milliseconds waited{0};
        while (!m_lock.try_lock_for(kSlice)) {
            // What nobody has taken since the fork was left by a thread that stayed behind.
            if (mayBeLeftByAFork())
                throw TextureLockRefused(kForked);
            // Holds of the object's own code end by themselves, at most after a turn of the interpreter lock, which
            // whoever waits here has let go, as long as anybody is given it.
            const bool mayLast =
                m_hostHolds > 0 ? interpreterIsEnding() || mainThreadHasLeft() : interpreterKeepsItsLock();
            if (mayLast && (waited += kSlice) > kPatience)
                throw TextureLockRefused(kEnding);
        }
    }
    noteTaken();
}

bool TextureLock::tryLockFor(std::uint32_t milliseconds) {
    if (!m_lock.try_lock_for(std::chrono::milliseconds(milliseconds)))
        return false;
    noteTaken();
    return true;
}

void TextureLock::lockForHost() {
    lock();
    try {
        if (m_hostHolds == 0)
            HostHoldsOfThread::own().add(this);
    } catch (...) {
        unlock();
        throw;
    }
    ++m_hostHolds;
}

bool TextureLock::unlockForHost() {
    if (!m_lock.isOwned() || m_hostHolds == 0)
        return false;
    if (m_hostHolds == 1)
        forgetHostHolds();
    else
        --m_hostHolds;
    unlock();
    return true;
}

void TextureLock::forgetHostHolds() {
    if (m_hostHolds.exchange(0) > 0)
        HostHoldsOfThread::own().remove(this);
}

/// On the thread that ends, which runs none of the object's code any more.
void TextureLock::endHostHolds() {
    const int holds = m_hostHolds.exchange(0);
    if (holds == 0)
        return;
    // Whoever is told may destroy the object.
    const std::shared_ptr<AbandonedHolds> abandoned = m_abandoned;
    m_lock.abandon();
    abandoned->add(holds);
}

int TextureLock::giveUpHostHolds() {
    const int holds = m_hostHolds.exchange(0);
    m_lock.releaseAll();
    return holds;
}

bool TextureLock::takeBackHostHolds(int holds) {
    try {
        lock();
    } catch (const TextureLockRefused &) {
        return false;
    }
    for (int more = 1; more < holds; ++more)
        lock();
    m_hostHolds = holds;
    return true;
}

HostHoldsGivenUp::HostHoldsGivenUp() {
    if (HostHoldsOfThread *const holds = HostHoldsOfThread::find())
        m_held.swap(holds->locks());
    for (HeldLock &held : m_held)
        held.givenUp = held.lock->giveUpHostHolds();
}

HostHoldsGivenUp::~HostHoldsGivenUp() {
    if (m_held.empty())
        return;
    // What is refused is lost, and stays in use: whoever keeps it from this thread does so to the end.
    std::erase_if(m_held, [](const HeldLock &held) { return !held.lock->takeBackHostHolds(held.givenUp); });
    m_held.swap(HostHoldsOfThread::find()->locks());
}
