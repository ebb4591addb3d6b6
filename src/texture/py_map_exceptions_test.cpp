// SPDX-License-Identifier: MIT
// No exception reaches the renderer, whose callers know result codes only.

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "platform/testing/failing_new.h"
#include "platform/testing/raw_table.h"
#include "texture/testing/refresh_fixture.h"

namespace {

constexpr std::size_t kUpdateCounter = 11;
constexpr std::size_t kUpdate = 35;

class PyMapExceptions : public RefreshFixture {};

TEST_F(PyMapExceptions, AnOverlayThatRunsOutOfMemoryEndsTheRefresh) {
    draw(1);
    owner.onPrepare = [] { throw std::bad_alloc(); };
    EXPECT_EQ(callSlot<UINT>(map.get(), kUpdateCounter), 0U);
    EXPECT_TRUE(event.isSignalled());
    EXPECT_TRUE(owner.lock.try_lock()) << "the texture lock was left";
    owner.lock.unlock();
    EXPECT_EQ(callSlot<HRESULT>(map.get(), kUpdate), E_OUTOFMEMORY);
    owner.onPrepare = [] { throw std::runtime_error("anything else"); };
    EXPECT_EQ(callSlot<HRESULT>(map.get(), kUpdate), E_UNEXPECTED);
    EXPECT_EQ(callSlot<UINT>(map.get(), kUpdateCounter), 0U);
}

TEST_F(PyMapExceptions, TheNextRefreshOfTheSameTimeShowsThePicture) {
    draw(2);
    owner.onPrepare = [this] {
        owner.dirty = false;
        throw std::bad_alloc();
    };
    callSlot<UINT>(map.get(), kUpdateCounter);
    owner.onPrepare = nullptr;
    EXPECT_EQ(callSlot<UINT>(map.get(), kUpdateCounter), 1U);
    EXPECT_TRUE(isShown());
}

TEST_F(PyMapExceptions, ASyncerThatThrowsIsTakenAwayWithoutAWait) {
    draw(3);
    syncer.onTime = [] { throw std::bad_alloc(); };
    EXPECT_EQ(callSlot<HRESULT>(map.get(), kUpdate), E_OUTOFMEMORY);
    map->SetSyncer(nullptr);
    EXPECT_EQ(callSlot<HRESULT>(map.get(), kUpdate), E_FAIL);
}

TEST_F(PyMapExceptions, CreateWithoutMemoryIsACode) {
    // A name too long for a text's own memory.
    const Host longName{{"GetRenderName", Host::value("'D3D9' + 100 * 'x'")}};
    const auto fresh = makeMap<PyMap>();
    PyObject *const object = longName.get();
    HRESULT result = S_OK;
    bool failed = false;
    {
        const platform::FailingNew failing(0);
        result = fresh->Create(4, 4, nullptr, object);
        failed = failing.hasFailed();
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(result, E_OUTOFMEMORY);
    const PyGILGuard interpreter;
    EXPECT_FALSE(PyErr_Occurred());
}

} // namespace
