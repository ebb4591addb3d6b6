// SPDX-License-Identifier: MIT
// Every slot of the map's method table, called by number.

#include <cstdint>

#include <gtest/gtest.h>

#include "platform/testing/raw_table.h"
#include "texture/py_map.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/device_fixture.h"

namespace {

/// The same answers are expected of a plain map and of one that refreshes itself.
template <typename Map>
class PyMapSlots : public DeviceFixture {
  protected:
    /// A map with textures of the given size.
    platform::ComPointer<Map> createdMap(UINT width, UINT height) {
        platform::ComPointer<Map> map = makeMap<Map>();
        EXPECT_EQ(1, map->Create(width, height, windowProvider.get(), renderer.get()));
        return map;
    }
};

using Maps = testing::Types<PyMap, PyMapWrapper>;
TYPED_TEST_SUITE(PyMapSlots, Maps);

TYPED_TEST(PyMapSlots, Slot0KnowsNoOtherInterface) {
    const auto map = makeMap<TypeParam>();
    for (const GUID &iid : {IID_IUnknown, IID_IDirect3DTexture9, GUID{}}) {
        void *object = map.get();
        EXPECT_EQ(E_NOINTERFACE, (callSlot<HRESULT, const GUID *, void **>(map.get(), 0, &iid, &object)));
        EXPECT_EQ(nullptr, object);
    }
    EXPECT_EQ(E_NOINTERFACE, (callSlot<HRESULT, const GUID *, void **>(map.get(), 0, &IID_IUnknown, nullptr)));
}

TYPED_TEST(PyMapSlots, Slots1And2CountFromZero) {
    TypeParam *const map = new TypeParam;
    EXPECT_EQ(1u, callSlot<ULONG>(map, 1));
    EXPECT_EQ(2u, callSlot<ULONG>(map, 1));
    EXPECT_EQ(1u, callSlot<ULONG>(map, 2));
    EXPECT_EQ(0u, callSlot<ULONG>(map, 2));
}

TYPED_TEST(PyMapSlots, Slot2DestroysWithTheTextures) {
    TypeParam *const map = new TypeParam;
    map->AddRef();
    ASSERT_EQ(1, map->Create(8, 4, this->windowProvider.get(), this->renderer.get()));
    EXPECT_EQ(2u, this->device->live().textures);
    EXPECT_EQ(0u, callSlot<ULONG>(map, 2));
    EXPECT_EQ(0u, this->device->live().textures);
}

TYPED_TEST(PyMapSlots, Slot3BindsTheVideoTexture) {
    const auto map = this->createdMap(8, 4);
    this->device->record().record(true);
    EXPECT_EQ(S_OK, (callSlot<HRESULT, DWORD>(map.get(), 3, 5)));
    EXPECT_EQ((std::vector<std::string>{"SetTexture(5, texture 2)"}), this->device->record().takeCalls());
    EXPECT_EQ(this->device->pictureOf(map->VideoTexture()), this->device->boundPicture(5));
}

TYPED_TEST(PyMapSlots, Slot3WithoutTextureOrDevice) {
    const auto map = makeMap<TypeParam>();
    EXPECT_EQ(S_FALSE, (callSlot<HRESULT, DWORD>(map.get(), 3, 0)));
    ASSERT_EQ(1, map->Create(8, 4, nullptr, nullptr));
    EXPECT_EQ(S_FALSE, (callSlot<HRESULT, DWORD>(map.get(), 3, 0)));
}

TYPED_TEST(PyMapSlots, Slot3IgnoresTheDevicesRefusal) {
    const auto map = this->createdMap(8, 4);
    this->device->record().failMethod("SetTexture", D3DERR_INVALIDCALL);
    EXPECT_EQ(S_OK, (callSlot<HRESULT, DWORD>(map.get(), 3, 0)));
}

TYPED_TEST(PyMapSlots, Slots5And6LockAgainAndAgain) {
    const auto map = this->createdMap(8, 4);
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 5));
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 5));
    // Slots that read the textures work inside, too.
    EXPECT_NE(nullptr, callSlot<void *>(map.get(), 34));
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 6));
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 6));
    // One too many is a caller's mistake that must not damage the lock.
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 6));
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 5));
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 6));
}

TYPED_TEST(PyMapSlots, FixedAnswers) {
    for (const bool created : {false, true}) {
        const auto map = created ? this->createdMap(8, 4) : makeMap<TypeParam>();
        TypeParam *const raw = map.get();
        EXPECT_EQ(S_OK, callSlot<HRESULT>(raw, 4));
        EXPECT_EQ(32u, callSlot<UINT>(raw, 8));
        callSlot<void>(raw, 9);
        EXPECT_EQ(E_UNEXPECTED, callSlot<HRESULT>(raw, 10));
        EXPECT_EQ(1u, callSlot<UINT>(raw, 14));
        EXPECT_EQ(0u, callSlot<UINT>(raw, 15));
        callSlot<void>(raw, 16);
        EXPECT_FALSE(callSlot<bool>(raw, 17));
        EXPECT_EQ(0u, callSlot<UINT>(raw, 19));
        EXPECT_EQ(0u, callSlot<UINT>(raw, 20));
        callSlot<void>(raw, 21);
        EXPECT_EQ(E_NOTIMPL, callSlot<HRESULT>(raw, 25));
        EXPECT_EQ(0u, callSlot<UINT>(raw, 26));
        EXPECT_EQ(0u, callSlot<UINT>(raw, 27));
        EXPECT_EQ(1u, callSlot<UINT>(raw, 29));
        callSlot<void>(raw, 30);
    }
}

TYPED_TEST(PyMapSlots, SizeAndAspect) {
    const auto map = this->createdMap(16, 9);
    TypeParam *const raw = map.get();
    EXPECT_EQ(16.0F / 9.0F, callSlot<float>(raw, 7));
    EXPECT_EQ(16u, callSlot<UINT>(raw, 12));
    EXPECT_EQ(9u, callSlot<UINT>(raw, 13));
    EXPECT_EQ(16u, callSlot<UINT>(raw, 22));
    EXPECT_EQ(9u, callSlot<UINT>(raw, 23));
    EXPECT_EQ(9.0F / 16.0F, callSlot<float>(raw, 24));
}

TYPED_TEST(PyMapSlots, AspectsOfNothingAreZero) {
    const auto map = makeMap<TypeParam>();
    EXPECT_EQ(0.0F, callSlot<float>(map.get(), 7));
    EXPECT_EQ(0.0F, callSlot<float>(map.get(), 24));
    EXPECT_EQ(0u, callSlot<UINT>(map.get(), 12));
    EXPECT_EQ(0u, callSlot<UINT>(map.get(), 13));
}

TYPED_TEST(PyMapSlots, Slot11StartsAtZero) {
    const auto map = this->createdMap(8, 4);
    EXPECT_EQ(0u, callSlot<UINT>(map.get(), 11));
}

TYPED_TEST(PyMapSlots, Slot18IsSixtyFramesPerSecond) {
    const auto map = makeMap<TypeParam>();
    UINT numerator = 7;
    UINT denominator = 8;
    EXPECT_TRUE((callSlot<bool, UINT *, UINT *>(map.get(), 18, &numerator, &denominator)));
    EXPECT_EQ(60u, numerator);
    EXPECT_EQ(1u, denominator);
}

TYPED_TEST(PyMapSlots, Slot18WithANullPointerWritesNothing) {
    const auto map = makeMap<TypeParam>();
    UINT number = 7;
    EXPECT_FALSE((callSlot<bool, UINT *, UINT *>(map.get(), 18, &number, nullptr)));
    EXPECT_FALSE((callSlot<bool, UINT *, UINT *>(map.get(), 18, nullptr, &number)));
    EXPECT_FALSE((callSlot<bool, UINT *, UINT *>(map.get(), 18, nullptr, nullptr)));
    EXPECT_EQ(7u, number);
}

TYPED_TEST(PyMapSlots, Slot28GivesAReference) {
    const auto map = this->createdMap(8, 4);
    IUnknown *unknown = nullptr;
    this->device->record().record(true);
    ASSERT_EQ(S_OK, (callSlot<HRESULT, IUnknown **>(map.get(), 28, &unknown)));
    EXPECT_EQ((std::vector<std::string>{"texture 2: QueryInterface()"}), this->device->record().takeCalls());
    EXPECT_EQ(static_cast<IUnknown *>(map->VideoTexture()), unknown);
    EXPECT_EQ(1u, unknown->Release());
}

TYPED_TEST(PyMapSlots, Slot28ReturnsTheDevicesResult) {
    const auto map = this->createdMap(8, 4);
    IUnknown *unknown = map.get();
    this->device->record().failMethod("QueryInterface", E_OUTOFMEMORY);
    EXPECT_EQ(E_OUTOFMEMORY, (callSlot<HRESULT, IUnknown **>(map.get(), 28, &unknown)));
    EXPECT_EQ(nullptr, unknown);
}

TYPED_TEST(PyMapSlots, Slot28WithoutTextureOrPointer) {
    const auto map = makeMap<TypeParam>();
    IUnknown *unknown = map.get();
    EXPECT_EQ(E_FAIL, (callSlot<HRESULT, IUnknown **>(map.get(), 28, &unknown)));
    EXPECT_EQ(nullptr, unknown);
    EXPECT_EQ(E_POINTER, (callSlot<HRESULT, IUnknown **>(map.get(), 28, nullptr)));
}

TYPED_TEST(PyMapSlots, Slot31DestroysWhateverTheCount) {
    TypeParam *const map = new TypeParam;
    map->AddRef();
    ASSERT_EQ(1, map->Create(8, 4, nullptr, this->renderer.get()));
    EXPECT_EQ(2u, this->device->live().textures);
    callSlot<void>(map, 31);
    EXPECT_EQ(0u, this->device->live().textures);
}

TYPED_TEST(PyMapSlots, Slot32CreatesWithNullObjects) {
    const auto map = makeMap<TypeParam>();
    EXPECT_EQ(1, (callSlot<HRESULT, UINT, UINT, PyObject *, PyObject *>(map.get(), 32, 8, 4, nullptr, nullptr)));
    EXPECT_EQ(8u, map->Width());
    EXPECT_EQ(4u, map->Height());
}

TYPED_TEST(PyMapSlots, Slot33IsTheMapItself) {
    const auto map = makeMap<TypeParam>();
    EXPECT_EQ(static_cast<PyMap *>(map.get()), callSlot<PyMap *>(map.get(), 33));
    EXPECT_EQ(static_cast<void *>(map.get()), callSlot<void *>(map.get(), 33));
}

TYPED_TEST(PyMapSlots, Slot34IsTheVideoTextureBorrowed) {
    const auto map = this->createdMap(8, 4);
    IDirect3DTexture9 *const texture = callSlot<IDirect3DTexture9 *>(map.get(), 34);
    ASSERT_NE(nullptr, texture);
    D3DSURFACE_DESC description = {};
    texture->GetLevelDesc(0, &description);
    EXPECT_EQ(D3DPOOL_DEFAULT, description.Pool);
    EXPECT_EQ(2u, texture->AddRef());
    EXPECT_EQ(1u, texture->Release());
    EXPECT_EQ(nullptr, callSlot<void *>(makeMap<TypeParam>().get(), 34));
}

// --- Slots 11 and 35, which the refreshing map overrides ---

using PyMapUpdate = DeviceFixture;

TEST_F(PyMapUpdate, Slot35UploadsAndCounts) {
    const auto map = makeMap<PyMap>();
    ASSERT_EQ(1, map->Create(8, 4, nullptr, renderer.get()));
    device->record().record(true);
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 35));
    EXPECT_EQ((std::vector<std::string>{"texture 1: AddDirtyRect(whole)", "UpdateTexture(texture 1, texture 2)"}),
              device->record().takeCalls());
    EXPECT_EQ(1u, callSlot<UINT>(map.get(), 11));
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 35));
    EXPECT_EQ(2u, callSlot<UINT>(map.get(), 11));
}

TEST_F(PyMapUpdate, Slot35CountsWhateverTheDeviceAnswers) {
    const auto map = makeMap<PyMap>();
    ASSERT_EQ(1, map->Create(8, 4, nullptr, renderer.get()));
    for (const char *const method : {"AddDirtyRect", "UpdateTexture"}) {
        const UINT before = map->UpdateCounter();
        device->record().failMethod(method, D3DERR_DEVICELOST);
        EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 35)) << method;
        EXPECT_EQ(before + 1, map->UpdateCounter()) << method;
    }
}

TEST_F(PyMapUpdate, Slot35WithoutTexturesOnlyCounts) {
    const auto map = makeMap<PyMap>();
    EXPECT_EQ(S_OK, callSlot<HRESULT>(map.get(), 35));
    EXPECT_EQ(1u, callSlot<UINT>(map.get(), 11));
}

TEST_F(PyMapUpdate, Slot35OfARefreshingMapNeedsAnOwner) {
    const auto map = makeMap<PyMapWrapper>();
    EXPECT_EQ(E_FAIL, callSlot<HRESULT>(map.get(), 35));
    EXPECT_EQ(0u, callSlot<UINT>(map.get(), 11));
}

} // namespace
