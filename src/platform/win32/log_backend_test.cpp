// SPDX-License-Identifier: MIT
#include "platform/log_backend.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/win32/test_debug_output.h"
#include "platform/win32/test_registry.h"

namespace platform {
namespace {

class WindowsLogBackendTest : public testing::Test {
  protected:
    LogBackend &backend = systemLogBackend();
    const PrivateLocalMachine machine;
};

TEST_F(WindowsLogBackendTest, TheSwitchesStandInTheRegistry) {
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), std::nullopt) << "no key";
    ASSERT_TRUE(machine.addKey(kDefaultLogKey));
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{false, false})) << "a key without values";
    ASSERT_TRUE(machine.set(kDefaultLogKey, L"DumpMsg", 1));
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{true, false}));
    ASSERT_TRUE(machine.set(kDefaultLogKey, L"DumpInETW", 0x80000000));
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{true, true}));
    ASSERT_TRUE(machine.set(kDefaultLogKey, L"DumpMsg", 0));
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{false, true}));
}

TEST_F(WindowsLogBackendTest, KeyAndDumpSwitchMayBeOthers) {
    ASSERT_TRUE(machine.set(L"SoftWare\\Other\\Preview", L"DumpPreview", 1));
    EXPECT_EQ(backend.readSwitches(L"SoftWare\\Other\\Preview", L"DumpPreview"), (LogSwitches{true, false}));
    EXPECT_EQ(backend.readSwitches(L"SoftWare\\Other\\Preview", kDumpSwitch), (LogSwitches{false, false}));
    EXPECT_EQ(backend.readSwitches(L"SoftWare\\Other\\Missing", L"DumpPreview"), std::nullopt);
}

TEST_F(WindowsLogBackendTest, AValueThatIsNoNumberIsOff) {
    const std::wstring text = L"1";
    ASSERT_TRUE(machine.set(kDefaultLogKey, L"DumpMsg", REG_SZ, text.c_str(), 4));
    const ULONGLONG longNumber = 1;
    ASSERT_TRUE(machine.set(kDefaultLogKey, L"DumpInETW", REG_QWORD, &longNumber, sizeof longNumber));
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{false, false}));
}

TEST_F(WindowsLogBackendTest, DebuggerLinesGoToOutputDebugString) {
    const DebugOutputCapture debugger;
    backend.writeDebug("[Orvanel] 100%s\n\n");
    EXPECT_EQ(debugger.narrow(), std::vector<std::string>{"[Orvanel] 100%s\n\n"});
    EXPECT_TRUE(debugger.wide().empty());
}

TEST_F(WindowsLogBackendTest, WideDebuggerLinesGoToOutputDebugString) {
    const DebugOutputCapture debugger;
    backend.writeDebugW(L"[Orvanel] 100%s\n");
    // A system older than the wide exception hands over the text converted.
    if (debugger.wide().empty())
        EXPECT_EQ(debugger.narrow(), std::vector<std::string>{"[Orvanel] 100%s\n"});
    else
        EXPECT_EQ(debugger.wide(), std::vector<std::wstring>{L"[Orvanel] 100%s\n"});
}

TEST_F(WindowsLogBackendTest, EventLogLinesDoNotReachTheDebugger) {
    const DebugOutputCapture debugger;
    EXPECT_TRUE(backend.openEventTrace());
    backend.writeEventTrace(L"[Orvanel] line\n");
    backend.closeEventTrace();
    backend.writeEventTrace(L"too late\n");
    EXPECT_TRUE(debugger.narrow().empty());
    EXPECT_TRUE(debugger.wide().empty());
}

TEST_F(WindowsLogBackendTest, ScopeEndsGoToStandardOutput) {
    testing::internal::CaptureStdout();
    backend.writeOutput("narrow %s\n");
    backend.writeOutputW(L"wide %s\n");
    std::string output = testing::internal::GetCapturedStdout();
    std::erase(output, '\r');
    EXPECT_EQ(output, "narrow %s\nwide %s\n");
}

} // namespace
} // namespace platform
