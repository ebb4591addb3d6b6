// SPDX-License-Identifier: MIT
#include "platform/log_backend.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <syslog.h>

#include "platform/posix/log_settings.h"
#include "platform/test_environment.h"
#include "platform/test_path.h"

namespace {

/// What reached the system's event log: priority and text.
std::vector<std::pair<int, std::string>> systemLog;

void record(int priority, const char *format, va_list arguments) {
    std::array<char, 4096> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    systemLog.emplace_back(priority, text.data());
}

} // namespace

// The program's own definitions come before the C library's, so the backend's calls arrive here and no daemon is
// needed.
extern "C" void syslog(int priority, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    record(priority, format, arguments);
    va_end(arguments);
}
// What the call becomes with _FORTIFY_SOURCE.
extern "C" void __syslog_chk(int priority, int, const char *format, ...);
extern "C" void __syslog_chk(int priority, int, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    record(priority, format, arguments);
    va_end(arguments);
}

namespace platform {
namespace {

class PosixLogBackendTest : public testing::Test {
  protected:
    PosixLogBackendTest() {
        std::filesystem::remove_all(m_path);
        systemLog.clear();
    }
    ~PosixLogBackendTest() override {
        backend.closeEventTrace();
        std::filesystem::remove_all(m_path);
    }
    void writeSettings(const std::string &text) const { std::ofstream(m_path) << text; }

    LogBackend &backend = systemLogBackend();
    const std::string m_path = ownTemporaryPath("orvanel_log_");
    const ScopedEnvironment m_variable{kLogSettingsVariable, m_path.c_str()};
};

TEST_F(PosixLogBackendTest, TheSwitchesStandInTheSettingsFile) {
    writeSettings("DumpMsg = 1\n[Other]\nDumpInETW = 1\n");
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{true, false}));
    EXPECT_EQ(backend.readSwitches(L"Other", kDumpSwitch), (LogSwitches{false, true}));
    EXPECT_EQ(backend.readSwitches(L"Missing", kDumpSwitch), std::nullopt);
    writeSettings("DumpMsg = 0\n");
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), (LogSwitches{false, false})) << "read every time";
}

TEST_F(PosixLogBackendTest, AMissingFileDoesNotOpen) {
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), std::nullopt);
    std::filesystem::create_directory(m_path);
    EXPECT_EQ(backend.readSwitches(kDefaultLogKey, kDumpSwitch), std::nullopt) << "nor does a folder";
}

TEST_F(PosixLogBackendTest, DebuggerLinesGoToStandardErrorAsUtf8) {
    testing::internal::CaptureStderr();
    backend.writeDebug("narrow %s K\xC3\xA4se\n");
    backend.writeDebugW(L"wide %s K\xE4se\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "narrow %s K\xC3\xA4se\nwide %s K\xC3\xA4se\n");
    EXPECT_TRUE(systemLog.empty());
}

TEST_F(PosixLogBackendTest, ScopeEndsGoToStandardOutputAsUtf8) {
    testing::internal::CaptureStdout();
    backend.writeOutput("narrow %s\n");
    backend.writeOutputW(L"wide %s K\xE4se\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "narrow %s\nwide %s K\xC3\xA4se\n");
}

TEST_F(PosixLogBackendTest, EventLogLinesGoToSyslogWhileItIsOpen) {
    backend.writeEventTrace(L"too early");
    testing::internal::CaptureStderr();
    EXPECT_TRUE(backend.openEventTrace());
    EXPECT_TRUE(backend.openEventTrace());
    backend.writeEventTrace(L"[Orvanel] 100%s K\xE4se\n\n");
    backend.closeEventTrace();
    backend.writeEventTrace(L"too late");
    EXPECT_EQ(systemLog,
              (std::vector<std::pair<int, std::string>>{{LOG_USER | LOG_DEBUG, "[Orvanel] 100%s K\xC3\xA4se\n\n"}}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace platform
