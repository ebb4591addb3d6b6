// SPDX-License-Identifier: MIT
#include "platform/posix/temporary_file.h"

#include <atomic>
#include <cstring>

#include <unistd.h>

namespace platform {
namespace {

/// Unique within the machine, in the folder of `target`, where a rename is one step.
std::string nameBeside(const std::string &target) {
    static std::atomic<unsigned> counter{0};
    const std::string folder = target.substr(0, target.rfind('/') + 1);
    return folder + ".partial-" + std::to_string(getpid()) + "-" + std::to_string(counter++);
}

} // namespace

TemporaryFile::TemporaryFile(const char *target)
    : m_target(target), m_name(nameBeside(m_target)), m_stream(std::fopen(m_name.c_str(), "wbxe")) {}

TemporaryFile::~TemporaryFile() {
    if (m_stream)
        std::remove(m_name.c_str());
}

bool TemporaryFile::commit() {
    // Closing writes what is still buffered, so it is the last chance of a full disk to show.
    if (m_stream && std::fclose(m_stream.release()) == 0 && std::rename(m_name.c_str(), m_target.c_str()) == 0)
        return true;
    std::remove(m_name.c_str());
    return false;
}

} // namespace platform
