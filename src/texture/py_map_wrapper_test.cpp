// SPDX-License-Identifier: MIT
// The refresh on one thread: what is asked, in which order, what is copied, and what a failing device leaves behind.

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/testing/raw_table.h"
#include "texture/testing/refresh_fixture.h"

namespace {

using Calls = std::vector<std::string>;
using PyMapWrapperRefresh = RefreshFixture;

/// Every device call of a refresh that copies, in order.
const Calls kCopy = {
    "texture 1: GetSurfaceLevel(0)",  "texture 1 surface: LockRect(whole, 0x2000)", "texture 1 surface: UnlockRect()",
    "texture 1: AddDirtyRect(whole)", "UpdateTexture(texture 1, texture 2)",
};

const AskedList kAskedWhenCopied = {"lock",  "time",  "allowed", "closest 1000", "prepare 1000 from start",
                                    "clean", "unlock"};

// --- What a refresh does ---

TEST_F(PyMapWrapperRefresh, Slot11CopiesAndCounts) {
    draw(1);
    device->record().record(true);
    EXPECT_EQ(1u, callSlot<UINT>(map.get(), 11));
    EXPECT_EQ(kCopy, device->record().takeCalls());
    EXPECT_EQ(kAskedWhenCopied, takeAsked());
    EXPECT_EQ(&syncer, owner.lastSyncer);
    EXPECT_TRUE(isShown());
    EXPECT_FALSE(owner.dirty);
    EXPECT_FALSE(owner.lock.isOwned());
    EXPECT_TRUE(event.isSignalled());
}

TEST_F(PyMapWrapperRefresh, Slot35DoesTheSame) {
    draw(1);
    device->record().record(true);
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 35));
    EXPECT_EQ(kCopy, device->record().takeCalls());
    EXPECT_TRUE(isShown());
    EXPECT_EQ(1u, map->UpdateCounter());
}

TEST_F(PyMapWrapperRefresh, SameTimeWithoutEditCopiesNothing) {
    EXPECT_EQ(1u, map->UpdateCounter());
    takeAsked();
    device->record().record(true);
    EXPECT_EQ(1u, map->UpdateCounter());
    EXPECT_EQ(Calls{}, device->record().takeCalls());
    EXPECT_EQ((AskedList{"lock", "time", "allowed", "unlock"}), takeAsked());
    EXPECT_TRUE(event.isSignalled());
}

TEST_F(PyMapWrapperRefresh, SameTimeAfterAnEditCopies) {
    map->UpdateCounter();
    draw(2);
    EXPECT_EQ(2u, map->UpdateCounter());
    EXPECT_TRUE(isShown());
}

TEST_F(PyMapWrapperRefresh, AnotherTimeCopiesWithoutEdit) {
    map->UpdateCounter();
    syncer.time = 2000;
    EXPECT_EQ(2u, map->UpdateCounter());
    syncer.time = 1000;
    EXPECT_EQ(3u, map->UpdateCounter());
}

TEST_F(PyMapWrapperRefresh, FirstRefreshCopiesWhateverTheTime) {
    for (const LONGLONG time : {LONGLONG{0}, LONGLONG{-1}, std::numeric_limits<LONGLONG>::min()}) {
        const auto fresh = makeMap<PyMapWrapper>();
        ASSERT_EQ(1, fresh->Create(kWidth, kHeight, nullptr, renderer.get()));
        fresh->SetOwner(&owner);
        fresh->SetSyncer(&syncer);
        owner.dirty = false;
        syncer.time = time;
        EXPECT_EQ(1u, fresh->UpdateCounter()) << time;
    }
}

TEST_F(PyMapWrapperRefresh, OutlineComesFromTheMappedTime) {
    owner.mappingOffset = -40;
    map->UpdateCounter();
    EXPECT_EQ((AskedList{"lock", "time", "allowed", "closest 1000", "prepare 960 from start", "clean", "unlock"}),
              takeAsked());
    // The video time was remembered, not the mapped one.
    EXPECT_EQ(1u, map->UpdateCounter());
}

TEST_F(PyMapWrapperRefresh, WholeBlockIsCopiedWhateverThePitch) {
    software_d3d9::DeviceOptions options;
    options.rowPadding = 8;
    const platform::ComPointer<software_d3d9::Device> padded(software_d3d9::Device::make(options));
    const Host paddedRenderer{{"GetRenderName", Host::value("'D3D9'")},
                              {"GetD3D", Host::pointer(padded->direct3D())},
                              {"GetD3DDevice", Host::pointer(static_cast<IDirect3DDevice9 *>(padded.get()))}};
    const auto sheared = makeMap<PyMapWrapper>();
    ASSERT_EQ(1, sheared->Create(kWidth, kHeight, nullptr, paddedRenderer.get()));
    sheared->SetOwner(&owner);
    sheared->SetSyncer(&syncer);
    draw(3);
    EXPECT_EQ(1u, sheared->UpdateCounter());
    const software_d3d9::SharedPicture shown = padded->pictureOf(sheared->VideoTexture());
    EXPECT_EQ(kWidth * 4 + 8, shown->pitch);
    EXPECT_EQ(0, std::memcmp(shown->bits, owner.picture.data(), owner.picture.size()));
}

// --- When nothing is copied ---

class PyMapWrapperSkips : public RefreshFixture {
  protected:
    /// A refresh that must leave the textures alone, succeed, and leave lock and event as they were.
    void expectNoCopy() {
        draw(9);
        device->record().record(true);
        EXPECT_EQ(S_OK, map->Update());
        EXPECT_EQ(Calls{}, device->record().takeCalls());
        EXPECT_FALSE(isShown());
        EXPECT_FALSE(owner.lock.isOwned());
        EXPECT_TRUE(event.isSignalled());
    }
};

TEST_F(PyMapWrapperSkips, HiddenOwner) {
    owner.visible = false;
    expectNoCopy();
    EXPECT_EQ((AskedList{"lock", "unlock"}), takeAsked());
    EXPECT_TRUE(owner.dirty);
}

TEST_F(PyMapWrapperSkips, EmptyBuffer) {
    owner.length = 0;
    expectNoCopy();
    EXPECT_EQ((AskedList{"lock", "unlock"}), takeAsked());
}

TEST_F(PyMapWrapperSkips, BufferOfAnotherSize) {
    for (const UINT length : {kWidth * kHeight * 4 - 4, kWidth * kHeight * 4 + 4, kWidth * kHeight}) {
        owner.length = length;
        expectNoCopy();
        EXPECT_EQ((AskedList{"lock", "unlock"}), takeAsked());
    }
}

TEST_F(PyMapWrapperSkips, SyncerThatSaysNo) {
    syncer.allowed = false;
    expectNoCopy();
    EXPECT_EQ((AskedList{"lock", "time", "allowed", "unlock"}), takeAsked());
    syncer.allowed = true;
    EXPECT_EQ(1u, map->UpdateCounter());
}

TEST_F(PyMapWrapperSkips, OwnerWithoutPicture) {
    owner.hasPicture = false;
    expectNoCopy();
    EXPECT_EQ((AskedList{"lock", "time", "allowed", "closest 1000", "prepare 1000 from start", "unlock"}), takeAsked());
    EXPECT_TRUE(owner.dirty);
}

TEST_F(PyMapWrapperSkips, PreviewModeOnlyCleans) {
    owner.preview = true;
    expectNoCopy();
    EXPECT_EQ(kAskedWhenCopied, takeAsked());
    EXPECT_FALSE(owner.dirty);
    EXPECT_EQ(0u, map->UpdateCounter());
}

TEST_F(PyMapWrapperSkips, StoppedMapLeavesItsOwnerAlone) {
    map->Stop();
    expectNoCopy();
    EXPECT_EQ(AskedList{}, takeAsked());
    EXPECT_EQ(0u, map->UpdateCounter());
}

TEST_F(PyMapWrapperSkips, NoSyncerOrOwnerFails) {
    draw(1);
    map->SetSyncer(nullptr);
    event.reset();
    EXPECT_EQ(E_FAIL, map->Update());
    EXPECT_FALSE(event.isSignalled()); // not even looked at
    event.set();
    map->SetSyncer(&syncer);
    map->SetOwner(nullptr);
    EXPECT_EQ(E_FAIL, map->Update());
    EXPECT_EQ(0u, map->UpdateCounter());
    EXPECT_EQ(AskedList{}, takeAsked());
    map->SetOwner(&owner);
    EXPECT_EQ(1u, map->UpdateCounter());
}

TEST_F(PyMapWrapperSkips, MapWithoutTexturesStillFollowsTheClip) {
    const auto bare = makeMap<PyMapWrapper>();
    ASSERT_EQ(1, bare->Create(kWidth, kHeight, nullptr, nullptr));
    bare->SetOwner(&owner);
    bare->SetSyncer(&syncer);
    draw(1);
    EXPECT_EQ(1u, bare->UpdateCounter());
    EXPECT_EQ(kAskedWhenCopied, takeAsked());
    EXPECT_EQ(1u, bare->UpdateCounter());
}

// --- The event ---

TEST_F(PyMapWrapperRefresh, EventIsResetDuringARefreshAndSetAfterTheLockIsLeft) {
    std::vector<bool> states;
    owner.onPrepare = [&] { states.push_back(event.isSignalled()); };
    owner.onUnlock = [&] { states.push_back(event.isSignalled()); };
    map->UpdateCounter();
    EXPECT_EQ((std::vector<bool>{false, false}), states);
    EXPECT_TRUE(event.isSignalled());
}

TEST_F(PyMapWrapperRefresh, JoinReturnsAtOnceWhenNothingIsUnderWay) {
    map->Join(platform::kInfinite); // without Stop
    map->Stop();
    map->Join(platform::kInfinite);
    map->Join(0);
}

TEST_F(PyMapWrapperRefresh, JoinInsideTheOwnRefreshDoesNotWaitForIt) {
    owner.onPrepare = [&] {
        map->Stop();
        map->Join(platform::kInfinite);
        map->SetOwner(nullptr);
        map->SetSyncer(nullptr);
    };
    EXPECT_EQ(S_OK, map->Update());
    EXPECT_EQ(E_FAIL, map->Update());
}

TEST_F(PyMapWrapperRefresh, SyncerMayTakeItselfAway) {
    syncer.onTime = [&] { map->SetSyncer(nullptr); };
    EXPECT_EQ(0u, map->UpdateCounter());
    // Asked for the time, and for nothing after that.
    EXPECT_EQ((AskedList{"lock", "time", "unlock"}), takeAsked());
    EXPECT_TRUE(event.isSignalled());
}

TEST_F(PyMapWrapperRefresh, MapReleasedInItsOwnRefreshGoesAtTheEnd) {
    PyMapWrapper *const raw = map.get();
    owner.onPrepare = [&] { map.reset(); };
    // The count is zero from the middle on; the textures stay until the refresh is through.
    EXPECT_EQ(1u, callSlot<UINT>(raw, 11));
    EXPECT_EQ(software_d3d9::LiveCounts{}, device->live());
}

// --- A failing device: each call in turn ---

class PyMapWrapperFailures : public RefreshFixture {
  protected:
    /// The refresh with call number `failing` refused; expects `made` calls of a copy before it gives up.
    void refreshWithFailure(std::size_t failing, std::size_t made) {
        draw(4);
        device->record().record(true);
        device->record().failCall(failing, D3DERR_DEVICELOST);
        EXPECT_EQ(S_OK, map->Update());
        EXPECT_EQ(Calls(kCopy.begin(), kCopy.begin() + static_cast<std::ptrdiff_t>(made)),
                  device->record().takeCalls());
        EXPECT_EQ((software_d3d9::LiveCounts{2, 0}), device->live());
        EXPECT_TRUE(event.isSignalled());
        EXPECT_FALSE(owner.lock.isOwned());
    }
    /// The next refresh at the same time, without another edit.
    void expectTheNextRefreshToCopy() {
        EXPECT_EQ(S_OK, map->Update());
        EXPECT_EQ(kCopy, device->record().takeCalls());
        EXPECT_TRUE(isShown());
        EXPECT_FALSE(owner.dirty);
        EXPECT_EQ(S_OK, map->Update());
        EXPECT_EQ(Calls{}, device->record().takeCalls());
    }
};

TEST_F(PyMapWrapperFailures, NoSurface) {
    refreshWithFailure(0, 1);
    EXPECT_TRUE(owner.dirty);
    EXPECT_FALSE(isShown());
    expectTheNextRefreshToCopy();
    EXPECT_EQ(1u, map->UpdateCounter());
}

TEST_F(PyMapWrapperFailures, NoLock) {
    refreshWithFailure(1, 2);
    EXPECT_TRUE(owner.dirty);
    EXPECT_FALSE(isShown());
    expectTheNextRefreshToCopy();
    EXPECT_EQ(1u, map->UpdateCounter());
}

TEST_F(PyMapWrapperFailures, UnlockThatFailsIsAnUnlock) {
    refreshWithFailure(2, 5);
    EXPECT_FALSE(owner.dirty);
    EXPECT_TRUE(isShown());
    draw(5);
    expectTheNextRefreshToCopy();
    EXPECT_EQ(2u, map->UpdateCounter());
}

TEST_F(PyMapWrapperFailures, NoDirtyRectangle) {
    refreshWithFailure(3, 5);
    EXPECT_FALSE(owner.dirty);
    EXPECT_TRUE(isShown()); // locking the texture had marked it already
    expectTheNextRefreshToCopy();
    EXPECT_EQ(2u, map->UpdateCounter());
}

TEST_F(PyMapWrapperFailures, NoUpload) {
    refreshWithFailure(4, 5);
    EXPECT_FALSE(owner.dirty);
    EXPECT_FALSE(isShown());
    // The upload counts, as every upload does, and is made up for.
    expectTheNextRefreshToCopy();
    EXPECT_EQ(2u, map->UpdateCounter());
}

TEST_F(PyMapWrapperFailures, NoUploadInAFrameThatIsOver) {
    refreshWithFailure(4, 5);
    syncer.time = 2000;
    expectTheNextRefreshToCopy();
}

} // namespace
