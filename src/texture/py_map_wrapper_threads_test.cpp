// SPDX-License-Identifier: MIT
// The refresh on one thread against everything that other threads take away from it. A deadlock shows as a test that
// the runner ends.

#include <atomic>
#include <functional>
#include <future>
#include <memory>

#include <gtest/gtest.h>

#include "callback/py_locks.h"
#include "texture/testing/refresh_fixture.h"
#include "texture/testing/rendezvous.h"

namespace {

class PyMapWrapperThreads : public RefreshFixture {
  protected:
    static std::future<void> inBackground(std::function<void()> call) {
        return std::async(std::launch::async, std::move(call));
    }
    std::future<void> refreshInBackground() {
        return inBackground([this] { map->UpdateCounter(); });
    }
    /// A second map on the same device, with an owner and a syncer of its own.
    struct Other {
        AskedList asked;
        FakeOverlay owner{asked, kWidth, kHeight};
        FakeSyncer syncer{asked};
        platform::ComPointer<PyMapWrapper> map = makeMap<PyMapWrapper>();
    };
    std::unique_ptr<Other> makeOther() {
        auto other = std::make_unique<Other>();
        EXPECT_EQ(1, other->map->Create(kWidth, kHeight, nullptr, renderer.get()));
        other->map->SetOwner(&other->owner);
        other->map->SetSyncer(&other->syncer);
        return other;
    }

    /// Two threads do the same during a refresh that is held.
    void expectBothToWaitForTheRefresh(const std::function<void()> &act) {
        auto refresh = refreshInBackground();
        held.waitForArrival();
        auto first = inBackground(act);
        auto second = inBackground(act);
        EXPECT_TRUE(isStillRunning(first));
        EXPECT_TRUE(isStillRunning(second));
        held.release();
        first.get();
        second.get();
        refresh.get();
    }

    Rendezvous held; ///< where the refresh is held
};

// --- The syncer ---

TEST_F(PyMapWrapperThreads, ClosingTheSyncerWaitsForTheRefreshThatUsesIt) {
    syncer.onTime = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    auto close = inBackground([this] { map->SetSyncer(nullptr); });
    EXPECT_TRUE(isStillRunning(close));
    held.release();
    close.get();
    refresh.get();
    // Once closed it was not asked again.
    EXPECT_EQ((AskedList{"lock", "time", "unlock"}), asked);
}

TEST_F(PyMapWrapperThreads, WhoeverClosesTheSyncerWaitsAlsoWhenAnotherWasFirst) {
    syncer.onTime = [this] { held.arriveAndWait(); };
    expectBothToWaitForTheRefresh([this] { map->SetSyncer(nullptr); });
}

TEST_F(PyMapWrapperThreads, WhoeverTakesTheOwnerAwayWaitsAlsoWhenAnotherWasFirst) {
    owner.onPrepare = [this] { held.arriveAndWait(); };
    expectBothToWaitForTheRefresh([this] { map->SetOwner(nullptr); });
}

TEST_F(PyMapWrapperThreads, SettingWhatIsSetDoesNotWaitForARefreshThatUsesJustThat) {
    syncer.onTime = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    map->SetSyncer(&syncer);
    map->SetOwner(&owner);
    held.release();
    refresh.get();
}

TEST_F(PyMapWrapperThreads, ClosingTheSyncerDoesNotWaitForTheDrawing) {
    owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    map->SetSyncer(nullptr);
    held.release();
    refresh.get();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(E_FAIL, map->Update());
}

TEST_F(PyMapWrapperThreads, ReplacingTheSyncerWaitsForTheEarlierOneOnly) {
    FakeSyncer second(asked);
    syncer.onTime = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    auto replace = inBackground([&] { map->SetSyncer(&second); });
    EXPECT_TRUE(isStillRunning(replace));
    held.release();
    replace.get();
    refresh.get();
    EXPECT_EQ(1u, map->UpdateCounter());
    EXPECT_EQ(&second, owner.lastSyncer);
}

TEST_F(PyMapWrapperThreads, ClosingLetsTheInterpreterLockGoForASyncerThatWantsIt) {
    syncer.onTime = [this] {
        held.arriveAndWait();
        const PyGILGuard interpreter;
    };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    {
        const PyGILGuard interpreter;
        held.release();
        map->SetSyncer(nullptr);
        // Taken back by the time the call returns.
        EXPECT_EQ(PyGILState_GetThisThreadState(), _PyThreadState_Current);
    }
    refresh.get();
}

// --- The owner ---

TEST_F(PyMapWrapperThreads, JoinWaitsForTheRefreshUnderWay) {
    draw(1);
    owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    map->Stop();
    map->Join(1); // gives up
    EXPECT_FALSE(event.isSignalled());
    auto join = inBackground([this] { map->Join(platform::kInfinite); });
    EXPECT_TRUE(isStillRunning(join));
    held.release();
    join.get();
    // The owner may go now: the refresh is through with it, its lock included.
    EXPECT_TRUE(event.isSignalled());
    EXPECT_EQ("unlock", asked.back());
    refresh.get();
    EXPECT_TRUE(isShown());
}

TEST_F(PyMapWrapperThreads, JoinWithoutStopReturnsAtOnce) {
    owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    map->Join(platform::kInfinite);
    held.release();
    refresh.get();
}

TEST_F(PyMapWrapperThreads, ReplacingTheOwnerWaitsForTheRefreshThatHasIt) {
    FakeOverlay second(asked, kWidth, kHeight);
    owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    auto replace = inBackground([&] { map->SetOwner(&second); });
    EXPECT_TRUE(isStillRunning(replace));
    held.release();
    replace.get();
    refresh.get();
}

TEST_F(PyMapWrapperThreads, ThreadWithTheTextureLockCanEndTheMap) {
    owner.lock.lock();
    auto refresh = refreshInBackground();
    EXPECT_TRUE(isStillRunning(refresh)); // it cannot get the lock
    map->Stop();
    map->Join(platform::kInfinite);
    refresh.get();
    EXPECT_EQ(AskedList{}, takeAsked());
    owner.lock.unlock();
}

TEST_F(PyMapWrapperThreads, ThreadWithTheTextureLockCanTakeOwnerAndSyncerAway) {
    owner.lock.lock();
    auto refresh = refreshInBackground();
    EXPECT_TRUE(isStillRunning(refresh));
    map->SetSyncer(nullptr);
    map->SetOwner(nullptr);
    refresh.get();
    EXPECT_EQ(AskedList{}, takeAsked());
    owner.lock.unlock();
}

TEST_F(PyMapWrapperThreads, RefreshWaitsForTheTextureLock) {
    draw(1);
    owner.lock.lock();
    auto refresh = refreshInBackground();
    EXPECT_TRUE(isStillRunning(refresh));
    draw(2);
    owner.lock.unlock();
    refresh.get();
    EXPECT_TRUE(isShown());
}

TEST_F(PyMapWrapperThreads, MapThatTheHostKeepsNeverTouchesADeadOwner) {
    auto mortal = std::make_unique<FakeOverlay>(asked, kWidth, kHeight);
    map->SetOwner(mortal.get());
    map->UpdateCounter();
    map->AddRef(); // the host's
    map->Stop();
    map->Join(platform::kInfinite);
    map->Release();
    mortal.reset();
    takeAsked();
    EXPECT_EQ(1u, map->UpdateCounter());
    EXPECT_EQ(AskedList{}, takeAsked());
}

TEST_F(PyMapWrapperThreads, MapReleasedDuringARefreshGoesWhenItEnds) {
    PyMapWrapper *const raw = map.get();
    owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = inBackground([raw] { raw->UpdateCounter(); });
    held.waitForArrival();
    map.reset();
    EXPECT_EQ(2u, device->live().textures);
    held.release();
    refresh.get();
    EXPECT_EQ(0u, device->live().textures);
}

// --- The event that all maps share ---

TEST_F(PyMapWrapperThreads, JoinDoesNotWaitForAnotherMap) {
    const auto other = makeOther();
    other->owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = inBackground([&] { other->map->UpdateCounter(); });
    held.waitForArrival();
    EXPECT_FALSE(event.isSignalled());
    map->Stop();
    map->Join(platform::kInfinite);
    held.release();
    refresh.get();
}

TEST_F(PyMapWrapperThreads, AnotherMapsEndIsNotTakenForTheOwn) {
    const auto other = makeOther();
    owner.onPrepare = [this] { held.arriveAndWait(); };
    auto refresh = refreshInBackground();
    held.waitForArrival();
    other->map->UpdateCounter();
    EXPECT_TRUE(event.isSignalled());
    map->Stop();
    auto join = inBackground([this] { map->Join(platform::kInfinite); });
    EXPECT_TRUE(isStillRunning(join));
    held.release();
    join.get();
    refresh.get();
}

TEST_F(PyMapWrapperThreads, JoinEndsWhileAnotherMapRefreshesAtFullSpeed) {
    const auto other = makeOther();
    std::atomic<bool> done{false};
    auto rendering = inBackground([&] {
        while (!done) {
            other->owner.dirty = true;
            other->map->UpdateCounter();
            other->asked.clear();
        }
    });
    for (int i = 0; i < 200; ++i) {
        const auto passing = makeMap<PyMapWrapper>();
        passing->SetOwner(&owner);
        passing->SetSyncer(&syncer);
        passing->Stop();
        passing->Join(platform::kInfinite);
    }
    done = true;
    rendering.get();
}

TEST_F(PyMapWrapperThreads, JoinEndsWhileTheStoppedMapIsStillAskedAtFullSpeed) {
    std::atomic<bool> done{false};
    map->Stop();
    auto rendering = inBackground([&] {
        while (!done)
            map->UpdateCounter();
    });
    for (int i = 0; i < 200; ++i) {
        map->Join(platform::kInfinite);
        map->SetSyncer(i % 2 ? &syncer : nullptr);
        map->SetOwner(i % 2 ? &owner : nullptr);
    }
    done = true;
    rendering.get();
    EXPECT_EQ(AskedList{}, takeAsked());
}

} // namespace
