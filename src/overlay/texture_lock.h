// SPDX-License-Identifier: MIT
#pragma once

// The lock around the outline, the keyframes and the overlay picture. Two kinds of holders share it:
//
//   the object's own code   for as long as one operation changes or copies state. No code of the host's runs meanwhile,
//                           so these holds always end by themselves
//   the host                with LockTexture and UnlockTexture, for as long as it likes
//
// The host's holds are counted apart: it can give back what it took and nothing else. They end with their thread; and
// nobody waits without limit for one that will never end.

#include <atomic>
#include <cassert>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

#include "overlay/abandoned_holds.h"
#include "platform/fork.h"
#include "platform/reentrant_lock.h"

/// The lock is not to be had any more. The binding makes a RuntimeError of it.
class TextureLockRefused : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

class TextureLock {
  public:
    TextureLock() = default;
    ~TextureLock();
    TextureLock(const TextureLock &) = delete;
    TextureLock &operator=(const TextureLock &) = delete;

    /// Re-entrant. Never blocks with the interpreter lock held: whoever has this one may be about to ask for that one.
    /// Without contention nothing is released. Throws TextureLockRefused when the interpreter is ending and the host
    /// does not let go, or when the holder is a thread of the process that this one was forked from.
    void lock();
    /// For a renderer's thread, which holds no interpreter lock; false when it took longer than `milliseconds`.
    bool tryLockFor(std::uint32_t milliseconds);
    void unlock() { m_lock.unlock(); }
    /// For operations that take only the smaller locks, which are never held outside of this one: throws as lock() does
    /// when a thread of the process that this one was forked from holds it.
    void refuseWhatAForkLeft() {
        if (mayBeLeftByAFork()) {
            lock();
            unlock();
        }
    }
    bool isOwned() const { return m_lock.isOwned(); }

    /// A hold of the host's on the calling thread.
    void lockForHost();
    /// Gives one of them back; false when the calling thread has none.
    bool unlockForHost();
    /// Holds of the host's that ended with their threads.
    const std::shared_ptr<AbandonedHolds> &abandonedHolds() const { return m_abandoned; }

  private:
    friend class HostHoldsOfThread;
    friend class HostHoldsGivenUp;

    void endHostHolds();
    /// Returns how many there were.
    int giveUpHostHolds();
    /// False when they are refused.
    bool takeBackHostHolds(int holds);
    void forgetHostHolds();
    void noteTaken() { m_takenIn.store(platform::forkCount(), std::memory_order_relaxed); }
    bool mayBeLeftByAFork() const { return m_takenIn.load(std::memory_order_relaxed) != platform::forkCount(); }

    platform::ReentrantLock m_lock;
    std::atomic<int> m_hostHolds{0};                        ///< written by the owner
    std::atomic<unsigned> m_takenIn{platform::forkCount()}; ///< where it was taken last
    const std::shared_ptr<AbandonedHolds> m_abandoned = std::make_shared<AbandonedHolds>();
};

/// A lock that the host holds on one thread.
struct HeldLock {
    TextureLock *lock;
    int givenUp = 0;
};

/// For a wait during which others must get on: gives up every hold of the host's on the calling thread, on whichever
/// object, and takes them again in the same order afterwards. The calling thread runs nothing meanwhile.
class HostHoldsGivenUp {
  public:
    HostHoldsGivenUp();
    ~HostHoldsGivenUp();
    HostHoldsGivenUp(const HostHoldsGivenUp &) = delete;
    HostHoldsGivenUp &operator=(const HostHoldsGivenUp &) = delete;

  private:
    std::vector<HeldLock> m_held;
};

/// Takes the texture lock for one operation of the object's own.
///
/// No code of the host's may run in such a scope: it could wait for a thread that wants the lock. Arguments are
/// converted before, results are built from copies afterwards.
class TextureLockGuard {
  public:
    explicit TextureLockGuard(TextureLock &lock) : m_lock(lock) {
        lock.lock();
        count(1);
    }
    ~TextureLockGuard() {
        count(-1);
        m_lock.unlock();
    }
    TextureLockGuard(const TextureLockGuard &) = delete;
    TextureLockGuard &operator=(const TextureLockGuard &) = delete;

    /// For whatever can run Python code. A lock that the host took for itself does not count.
    static void assertNoneHeld() { assert(heldHere == 0); }

  private:
#ifdef NDEBUG
    static void count(int) {}
#else
    static void count(int change) {
        heldHere += change;
    }
    /// Scopes of the calling thread, whichever the object.
    inline static thread_local int heldHere = 0;
#endif

    TextureLock &m_lock;
};
