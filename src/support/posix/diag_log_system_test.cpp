// SPDX-License-Identifier: MIT
#include "support/diag_log.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/test_environment.h"
#include "platform/test_path.h"

// The log on this system's own switches and sinks: a settings file and standard error.

namespace {

class DiagLogSystemTest : public testing::Test {
  protected:
    DiagLogSystemTest() {
        std::filesystem::remove(m_path);
        diaglog::exchangeBackend(nullptr);
    }
    ~DiagLogSystemTest() override {
        diaglog::exchangeBackend(nullptr);
        std::filesystem::remove(m_path);
    }
    void writeSettings(const std::string &text) const { std::ofstream(m_path) << text; }
    template <typename Function>
    static std::string standardError(Function function) {
        testing::internal::CaptureStderr();
        function();
        return testing::internal::GetCapturedStderr();
    }

    const std::string m_path = platform::ownTemporaryPath("orvanel_settings_");
    const platform::ScopedEnvironment m_variable{"ORVANEL_LOG_SETTINGS", m_path.c_str()};
};

void logBoth() {
    DiagLogPrint("Orvanel::ReDraw() enter\n");
    DiagLogPrintW(L"%s %S", L"wide", "narrow");
}

TEST_F(DiagLogSystemTest, TheSettingsFileTurnsTheLogOnAndOffAtTheNextOpening) {
    const auto openAndLog = [] {
        DiagLogOpen("Orvanel");
        logBoth();
    };
    EXPECT_EQ(standardError(openAndLog), "") << "no file";
    writeSettings("DumpMsg = 0\nDumpInETW = 1\n");
    EXPECT_EQ(standardError(openAndLog), "");
    writeSettings("DumpMsg = 1\n");
    EXPECT_EQ(standardError(&logBoth), "") << "not opened since";
    const std::string lines = "[Orvanel] Orvanel::ReDraw() enter\n\n[Orvanel] wide narrow\n";
    EXPECT_EQ(standardError(openAndLog), lines);
    std::filesystem::remove(m_path);
    EXPECT_EQ(standardError(openAndLog), lines) << "a missing file keeps the switches";
    writeSettings("DumpMsg = 0\n");
    EXPECT_EQ(standardError(openAndLog), "");
}

TEST_F(DiagLogSystemTest, ASectionStandsForAnotherKey) {
    writeSettings("DumpMsg = 0\n[SoftWare\\Brannock\\Tintmoor\\Preview]\nDumpPreview = 1\n");
    EXPECT_EQ(standardError([] {
                  DiagLogOpenKey("Orvanel", L"Preview", L"DumpPreview", nullptr);
                  DiagLogPrint("line");
              }),
              "[Orvanel] line\n");
}

} // namespace
