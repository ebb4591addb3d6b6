// SPDX-License-Identifier: MIT
#include "platform/win32/event_trace.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Calls = std::vector<std::string>;

/// What a library that answers like advapi32 was asked, in order.
Calls calls;
bool isThere = true;
std::string_view missing; ///< the one function that it lacks
GUID registered;
std::wstring written;

constexpr REGHANDLE kRegistration = 0x123456789ABCDEF0;

ULONG WINAPI fakeRegister(LPCGUID provider, PENABLECALLBACK callback, PVOID context, PREGHANDLE handle) {
    calls.emplace_back("register");
    EXPECT_EQ(callback, nullptr);
    EXPECT_EQ(context, nullptr);
    registered = *provider;
    *handle = kRegistration;
    return ERROR_SUCCESS;
}

ULONG WINAPI fakeUnregister(REGHANDLE handle) {
    calls.emplace_back("unregister");
    EXPECT_EQ(handle, kRegistration);
    return ERROR_SUCCESS;
}

ULONG WINAPI fakeWriteString(REGHANDLE handle, UCHAR level, ULONGLONG keyword, PCWSTR text) {
    calls.emplace_back("write");
    EXPECT_EQ(handle, missing == "EventRegister" ? 0 : kRegistration);
    EXPECT_EQ(level, 5);
    EXPECT_EQ(keyword, 0U);
    written = text;
    return ERROR_SUCCESS;
}

HMODULE WINAPI fakeLoad(LPCSTR name) {
    calls.emplace_back(std::string("load ") + name);
    return isThere ? reinterpret_cast<HMODULE>(&calls) : nullptr;
}

FARPROC WINAPI fakeFind(HMODULE library, LPCSTR name) {
    EXPECT_EQ(library, reinterpret_cast<HMODULE>(&calls));
    const std::string_view wanted = name;
    void *function = nullptr;
    if (wanted == missing)
        return nullptr;
    if (wanted == "EventRegister")
        function = reinterpret_cast<void *>(&fakeRegister);
    else if (wanted == "EventUnregister")
        function = reinterpret_cast<void *>(&fakeUnregister);
    else if (wanted == "EventWriteString")
        function = reinterpret_cast<void *>(&fakeWriteString);
    return reinterpret_cast<FARPROC>(function);
}

BOOL WINAPI fakeFree(HMODULE library) {
    EXPECT_EQ(library, reinterpret_cast<HMODULE>(&calls));
    calls.emplace_back("free");
    return TRUE;
}

class EventTraceTest : public testing::Test {
  protected:
    EventTraceTest() {
        calls.clear();
        isThere = true;
        missing = {};
        registered = {};
        written.clear();
    }

    EventTrace trace{LibraryLoader{&fakeLoad, &fakeFind, &fakeFree}};
};

TEST_F(EventTraceTest, TheProviderIsRegisteredOncePerLoad) {
    EXPECT_TRUE(trace.open());
    EXPECT_TRUE(trace.open());
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "register"}));
    // {9AD3F8FA-B0D3-45A2-8E95-5D1899E0AD05}
    const GUID provider = {0x9AD3F8FA, 0xB0D3, 0x45A2, {0x8E, 0x95, 0x5D, 0x18, 0x99, 0xE0, 0xAD, 0x05}};
    EXPECT_EQ(registered, provider);
    trace.close();
    EXPECT_TRUE(trace.open());
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "register", "unregister", "free", "load advapi32.dll", "register"}));
}

TEST_F(EventTraceTest, WritesStringsAtLevelFiveWithKeywordZero) {
    trace.write(L"too early");
    trace.open();
    trace.write(L"[Orvanel] line\n\n");
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "register", "write"}));
    EXPECT_EQ(written, L"[Orvanel] line\n\n");
}

TEST_F(EventTraceTest, CloseUnregistersAndFreesOnce) {
    trace.close();
    EXPECT_EQ(calls, Calls{});
    trace.open();
    trace.close();
    trace.close();
    trace.write(L"too late");
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "register", "unregister", "free"}));
}

TEST_F(EventTraceTest, WithoutTheLibraryThereIsNoEventLog) {
    isThere = false;
    EXPECT_FALSE(trace.open());
    trace.write(L"line");
    trace.close();
    EXPECT_EQ(calls, Calls{"load advapi32.dll"});
    isThere = true;
    EXPECT_TRUE(trace.open()) << "and it is looked for again";
}

TEST_F(EventTraceTest, AMissingFunctionOnlySkipsItsCalls) {
    missing = "EventWriteString";
    EXPECT_TRUE(trace.open());
    trace.write(L"line");
    trace.close();
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "register", "unregister", "free"}));

    calls.clear();
    missing = "EventRegister";
    EXPECT_TRUE(trace.open());
    trace.write(L"line");
    trace.close();
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "write", "free"}));

    calls.clear();
    missing = "EventUnregister";
    EXPECT_TRUE(trace.open());
    trace.close();
    EXPECT_EQ(calls, (Calls{"load advapi32.dll", "register", "free"}));
}

TEST(EventTraceSystemTest, TheSystemsOwnLibraryTakesEvents) {
    EventTrace trace;
    ASSERT_TRUE(trace.open());
    trace.write(L"a line of the tests\n");
    trace.close();
    EXPECT_TRUE(trace.open());
    trace.close();
}

} // namespace
} // namespace platform
