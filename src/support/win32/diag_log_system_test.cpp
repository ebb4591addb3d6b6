// SPDX-License-Identifier: MIT
#include "support/diag_log.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log_backend.h"
#include "platform/win32/test_debug_output.h"
#include "platform/win32/test_registry.h"

// The log on this system's own switches and sinks: the registry and the debugger.

namespace {

class DiagLogSystemTest : public testing::Test {
  protected:
    DiagLogSystemTest() { diaglog::exchangeBackend(nullptr); }
    ~DiagLogSystemTest() override {
        DiagLogClose();
        diaglog::exchangeBackend(nullptr);
    }

    /// The narrow lines that reach the debugger.
    static std::vector<std::string> logged(bool open) {
        const platform::DebugOutputCapture debugger;
        if (open)
            DiagLogOpen("Orvanel");
        DiagLogPrint("Orvanel::ReDraw() enter\n");
        return debugger.narrow();
    }

    const platform::PrivateLocalMachine machine;
};

TEST_F(DiagLogSystemTest, TheRegistryTurnsTheLogOnAndOffAtTheNextOpening) {
    using Lines = std::vector<std::string>;
    const auto dump = [&](DWORD value) { ASSERT_TRUE(machine.set(platform::kDefaultLogKey, L"DumpMsg", value)); };
    EXPECT_EQ(logged(true), Lines{}) << "no key";
    dump(1);
    EXPECT_EQ(logged(false), Lines{}) << "not opened since";
    EXPECT_EQ(logged(true), Lines{"[Orvanel] Orvanel::ReDraw() enter\n\n"});
    dump(0);
    EXPECT_EQ(logged(true), Lines{});
}

TEST_F(DiagLogSystemTest, WithBothSwitchesTheDebuggerSeesNothing) {
    ASSERT_TRUE(machine.set(platform::kDefaultLogKey, L"DumpMsg", 1));
    ASSERT_TRUE(machine.set(platform::kDefaultLogKey, L"DumpInETW", 1));
    EXPECT_EQ(logged(true), std::vector<std::string>{});
    ASSERT_TRUE(machine.set(platform::kDefaultLogKey, L"DumpInETW", 0));
    EXPECT_EQ(logged(true).size(), 1U);
}

TEST_F(DiagLogSystemTest, ASubkeyAndAnotherSwitchName) {
    ASSERT_TRUE(machine.set(L"SoftWare\\Brannock\\Tintmoor\\Preview", L"DumpPreview", 1));
    DiagLogOpenKey("Orvanel", L"Preview", L"DumpPreview", nullptr);
    EXPECT_EQ(logged(false).size(), 1U);
}

TEST_F(DiagLogSystemTest, AMessageIsCutAt1023Characters) {
    ASSERT_TRUE(machine.set(platform::kDefaultLogKey, L"DumpMsg", 1));
    DiagLogOpen("Orvanel");
    const platform::DebugOutputCapture debugger;
    DiagLogPrint("%s", std::string(1024, 'x').c_str());
    EXPECT_EQ(debugger.narrow(), std::vector<std::string>{"[Orvanel] " + std::string(1023, 'x') + "\n"});
}

} // namespace
