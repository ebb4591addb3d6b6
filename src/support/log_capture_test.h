// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

/// For tests: turns the log on and sees its lines while it lives, one at a time, wherever the platform writes them.
class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// Everything written so far; once.
    std::string take();

  private:
    struct State;
    std::unique_ptr<State> m_state;
};
