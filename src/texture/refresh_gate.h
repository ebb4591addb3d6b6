// SPDX-License-Identifier: MIT
#pragma once

// How refreshes on the renderer's threads use an owner and a syncer that other threads take away.
//
// To take one away means that no refresh gets it any more, and that the thread which takes it waits until the refreshes
// that have it are done with it. The gate's own mutex is held for a few instructions and nothing foreign runs under it,
// so it cannot be part of a deadlock. What is waited for are refreshes, and two kinds of those could in turn wait for
// the waiting thread:
//   - one that wants the owner's texture lock, which the waiting thread holds. A refresh asks for that lock in short
//     slices, and gives up once its owner is taken away;
//   - one inside a syncer that wants the interpreter lock, which the waiting thread holds. It is let go while waiting.
// A refresh on the waiting thread itself is not waited for. Counting visits instead of locking for their length also
// lets a map be released in the middle of its own refresh: the last visit that leaves destroys it.
//
// Rejected: a mutex held for the length of a refresh (deadlocks in both cases above), and waiting for the named event
// that refreshes signal (all maps of the session share it: one map's end would pass for another's, and a map that
// hangs, or a process that died in the middle, would hang everybody).

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "overlay/types/video_texture_syncer.h"
#include "texture/overlay_source.h"

class RefreshGate {
  public:
    class Visit;

    /// Replaces the owner, and waits until no refresh has an earlier one, whoever took that one away.
    void setOwner(OverlaySource *owner);
    /// Replaces the syncer, and waits until no refresh uses an earlier one, whoever took that one away.
    void setSyncer(IVideoTextureSyncer *syncer);
    /// Takes the owner away for good, without waiting.
    void stop();
    bool isStopped() const;
    /// After stop: waits for the refreshes that still have the owner; false when the time (milliseconds) ran out.
    bool waitUntilOwnerUnused(std::uint32_t milliseconds);
    /// Runs `destroy` as soon as nobody visits: here, or at the end of the last visit.
    void whenUnvisited(std::function<void()> destroy);

  private:
    enum class Use { Owner, Syncer };

    /// Whether another thread's visit got, before that epoch, an owner or a syncer other than `current`.
    bool isUsedByOthers(Use use, std::uint64_t before, const void *current) const;
    bool waitUntilUnused(std::unique_lock<std::mutex> &lock, Use use, const void *current, std::uint32_t milliseconds);

    mutable std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_usesChanged;
    OverlaySource *m_owner = nullptr;
    IVideoTextureSyncer *m_syncer = nullptr;
    bool m_stopped = false;
    std::uint64_t m_epoch = 1; ///< grows whenever something is taken away: who got it earlier is waited for
    Visit *m_visits = nullptr; ///< the visits under way, linked through themselves
    std::function<void()> m_destroy;
};

/// One thread's stay in a call of the map, on that thread's stack. Keeps the gate and the map behind it in existence.
class RefreshGate::Visit {
  public:
    explicit Visit(std::shared_ptr<RefreshGate> gate);
    ~Visit();
    Visit(const Visit &) = delete;
    Visit &operator=(const Visit &) = delete;

    enum class Admission { Unlinked, Stopped, Admitted };
    /// Asks for the owner until the end of the visit: Unlinked when owner or syncer is missing.
    Admission admit();
    /// Only when admitted.
    OverlaySource &owner() const { return *m_owner; }
    /// The syncer, which stays usable until releaseSyncer, or null when there is none any more.
    IVideoTextureSyncer *acquireSyncer();
    /// Whether the syncer acquired is still the map's. A call into a syncer may take that very syncer away.
    bool keepsSyncer() const;
    void releaseSyncer();

    /// The owner's texture lock for a scope.
    class OwnerLock {
      public:
        /// Not held when the owner was taken away while waiting.
        explicit OwnerLock(Visit &visit);
        ~OwnerLock();
        OwnerLock(const OwnerLock &) = delete;
        OwnerLock &operator=(const OwnerLock &) = delete;
        explicit operator bool() const { return m_owner != nullptr; }

      private:
        OverlaySource *m_owner = nullptr;
    };

  private:
    friend class RefreshGate;

    bool isStillAdmitted() const;

    const std::shared_ptr<RefreshGate> m_gate;
    const std::thread::id m_thread = std::this_thread::get_id();
    OverlaySource *m_owner = nullptr;
    IVideoTextureSyncer *m_syncer = nullptr;
    std::uint64_t m_ownerEpoch = 0;  ///< when the owner was acquired; 0: not held
    std::uint64_t m_syncerEpoch = 0; ///< when the syncer was acquired; 0: not in use
    Visit *m_next = nullptr;
};
