// SPDX-License-Identifier: MIT
// The component as the system finds it: through the registry and CoCreateInstance. Registers the built library for the
// length of a test.

#include <cstring>

#include <gtest/gtest.h>

#include "canvas/testing/raw_canvas.h"
#include "overlay/types/overlay_canvas.h"
#include "platform/com.h"
#include "platform/com_pointer.h"
#include "platform/unique_handle.h"

namespace {

using Library = platform::UniqueHandle<HMODULE, &FreeLibrary>;

class CanvasServer : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
        m_library = Library(LoadLibraryA(ORVANEL_CANVAS_SERVER));
        ASSERT_TRUE(m_library) << ORVANEL_CANVAS_SERVER << ": error " << GetLastError();
    }
    void TearDown() override {
        call("DllUnregisterServer");
        m_library.reset();
        CoUninitialize();
    }

    template <typename... Parameters, typename... Arguments>
    HRESULT callWith(const char *name, Arguments... arguments) {
        using Function = HRESULT(STDMETHODCALLTYPE *)(Parameters...);
        const auto address = GetProcAddress(m_library.get(), name);
        Function function = nullptr;
        std::memcpy(&function, &address, sizeof function);
        return function ? function(arguments...) : E_NOTIMPL;
    }
    HRESULT call(const char *name) { return callWith<>(name); }
    HRESULT getClassObject(const GUID *clsid, const GUID *iid, void **object) {
        return callWith<const GUID *, const GUID *, void **>("DllGetClassObject", clsid, iid, object);
    }
    static HRESULT create(void **object) {
        return platform::createInstance(CLSID_OverlayCanvas, IID_OverlayCanvas, object);
    }

    Library m_library;
};

TEST_F(CanvasServer, IsCreatedThroughTheRegistryAndDraws) {
    ASSERT_EQ(call("DllRegisterServer"), S_OK);
    void *object = nullptr;
    ASSERT_EQ(create(&object), S_OK);
    {
        const canvas::testing::RawCanvas canvas(object);
        EXPECT_EQ(call("DllCanUnloadNow"), S_FALSE);
        ASSERT_EQ(canvas.setSize(16, 8), S_OK);
        MPoint point;
        point.x = 5;
        point.y = 4;
        const CanvasColor white = CanvasColor::fromArgb(0xFFFFFFFF);
        EXPECT_EQ(canvas.drawMarker(&point, 3, &white), S_OK);
        BYTE *buffer = nullptr;
        std::uint64_t length = 0;
        ASSERT_EQ(canvas.getBuffer(&buffer, &length), S_OK);
        EXPECT_EQ(length, 16U * 8 * 4);
        EXPECT_EQ(buffer[4 * (4 * 16 + 5)], 0xFF);
        EXPECT_EQ(buffer[0], 0);
    }
    EXPECT_EQ(call("DllCanUnloadNow"), S_OK);
}

TEST_F(CanvasServer, NothingIsFoundWhenNothingIsRegistered) {
    ASSERT_EQ(call("DllUnregisterServer"), S_OK) << "withdrawing what is not there is no error";
    void *object = &object;
    EXPECT_EQ(create(&object), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(object, nullptr);
    ASSERT_EQ(call("DllRegisterServer"), S_OK);
    ASSERT_EQ(call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(create(&object), REGDB_E_CLASSNOTREG);
}

TEST_F(CanvasServer, FactoryKeepsItsPromises) {
    void *object = &object;
    const GUID stranger = {1, 2, 3, {4}};
    EXPECT_EQ(getClassObject(&stranger, &IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(getClassObject(&CLSID_OverlayCanvas, &IID_OverlayCanvas, &object), E_NOINTERFACE);
    EXPECT_EQ(getClassObject(&CLSID_OverlayCanvas, &IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(call("DllCanUnloadNow"), S_OK);

    ASSERT_EQ(getClassObject(&CLSID_OverlayCanvas, &IID_IClassFactory, &object), S_OK);
    const platform::ComPointer<IClassFactory> factory(static_cast<IClassFactory *>(object));
    EXPECT_EQ(call("DllCanUnloadNow"), S_FALSE);
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_OverlayCanvas, &object), S_OK);
    const canvas::testing::RawCanvas canvas(object);
    EXPECT_EQ(canvas.setSize(4, 4), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
}

} // namespace
