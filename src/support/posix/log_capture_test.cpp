// SPDX-License-Identifier: MIT
#include "support/log_capture_test.h"

#include <gtest/gtest.h>

#include "support/diag_log.h"

struct LogCapture::State {
    bool taken = false;
};

LogCapture::LogCapture() : m_state(std::make_unique<State>()) {
    diaglog::dumpEnabled = true;
    testing::internal::CaptureStderr();
}

LogCapture::~LogCapture() {
    if (!m_state->taken)
        take();
    diaglog::dumpEnabled = false;
}

std::string LogCapture::take() {
    m_state->taken = true;
    return testing::internal::GetCapturedStderr();
}
