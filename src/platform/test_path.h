// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace platform {

/// For tests: a path for files of the running test alone. The temporary folder is everybody's, so its name tells this
/// process from another that runs the same test.
inline std::string ownTemporaryPath(const std::string &prefix) {
#ifdef _WIN32
    const int process = _getpid();
#else
    const int process = getpid();
#endif
    return testing::TempDir() + prefix + testing::UnitTest::GetInstance()->current_test_info()->name() + "_" +
           std::to_string(process);
}

} // namespace platform
