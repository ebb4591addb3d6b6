// SPDX-License-Identifier: MIT
#include "platform/com.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include "platform/com_pointer.h"

namespace platform {
namespace {

/// A class that every Windows registers: the free-threaded marshaller.
constexpr GUID kSystemClass = {0x0000033A, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr GUID kUnknownClass = {0x6C1B7A10, 0x52E4, 0x4D0B, {0x9F, 0x31, 0x0A, 0x5E, 0x77, 0x21, 0xC3, 0x04}};

HRESULT refuse(const GUID &, void **) {
    return E_ABORT;
}

class WindowsComTest : public testing::Test {
  protected:
    WindowsComTest() { CoInitialize(nullptr); }
    ~WindowsComTest() override { CoUninitialize(); }
};

TEST_F(WindowsComTest, CreatesWhatTheSystemHasRegistered) {
    ComPointer<IUnknown> object;
    EXPECT_EQ(createInstance(kSystemClass, IID_IUnknown, reinterpret_cast<void **>(object.put())), S_OK);
    EXPECT_TRUE(object);
}

TEST_F(WindowsComTest, AFactoryOfThisProcessComesFirst) {
    registerClassFactory(kSystemClass, &refuse);
    void *object = nullptr;
    EXPECT_EQ(createInstance(kSystemClass, IID_IUnknown, &object), E_ABORT);
    registerClassFactory(kSystemClass, nullptr);
}

TEST_F(WindowsComTest, AnUnknownClassIsNotRegistered) {
    void *object = &object;
    EXPECT_EQ(createInstance(kUnknownClass, IID_IUnknown, &object), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(object, nullptr);
}

} // namespace
} // namespace platform
