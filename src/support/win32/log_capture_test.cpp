// SPDX-License-Identifier: MIT
#include "support/log_capture_test.h"

#include "platform/win32/test_debug_output.h"
#include "support/diag_log.h"

struct LogCapture::State {
    platform::DebugOutputCapture output;
};

LogCapture::LogCapture() : m_state(std::make_unique<State>()) {
    diaglog::dumpEnabled = true;
}

LogCapture::~LogCapture() {
    diaglog::dumpEnabled = false;
}

std::string LogCapture::take() {
    std::string lines;
    for (const std::string &line : m_state->output.narrow())
        lines += line;
    return lines;
}
