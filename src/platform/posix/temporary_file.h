// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>

#include "platform/unique_handle.h"

namespace platform {

/// A file written under another name in the folder of its target and moved there when complete, so that nobody ever
/// sees half of it. Removed on destruction unless committed.
class TemporaryFile {
  public:
    explicit TemporaryFile(const char *target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    /// Null when the file could not be made.
    std::FILE *stream() const { return m_stream.get(); }
    /// Closes the file and gives it its final name; false, and nothing left behind, when either fails.
    bool commit();

  private:
    std::string m_target;
    std::string m_name;
    UniqueHandle<std::FILE *, &std::fclose> m_stream;
};

} // namespace platform
