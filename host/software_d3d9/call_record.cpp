// SPDX-License-Identifier: MIT
#include "software_d3d9/call_record.h"

#include <cstdio>
#include <utility>

namespace software_d3d9 {
namespace {

std::string prefixed(const std::string &object, const char *method) {
    return object.empty() ? method : object + ": " + method;
}

} // namespace

void CallRecord::record(bool on) {
    const std::lock_guard lock(m_mutex);
    m_recording = on;
    m_calls.clear();
    watch();
}

std::vector<std::string> CallRecord::takeCalls() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_calls, {});
}

void CallRecord::failCall(std::size_t index, HRESULT result) {
    failMethod({}, result, index);
}

void CallRecord::failMethod(const std::string &method, HRESULT result, std::size_t index) {
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({method, index, result});
    watch();
}

void CallRecord::clearFaults() {
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
    watch();
}

std::vector<std::string> CallRecord::violations() const {
    const std::lock_guard lock(m_mutex);
    return m_violations;
}

void CallRecord::addViolation(const std::string &object, const char *method, const char *reason) {
    const std::lock_guard lock(m_mutex);
    m_violations.push_back(prefixed(object, method) + ": " + reason);
}

void CallRecord::noteReleased(const std::string &object) {
    const std::lock_guard lock(m_mutex);
    if (m_recording)
        m_calls.push_back(object + " is released");
}

std::optional<HRESULT> CallRecord::note(const std::string &object, const char *method,
                                        std::initializer_list<std::string> arguments) {
    const std::lock_guard lock(m_mutex);
    if (m_recording) {
        std::string line = prefixed(object, method) + "(";
        const char *separator = "";
        for (const std::string &argument : arguments) {
            line += std::exchange(separator, ", ") + argument;
        }
        m_calls.push_back(line + ")");
    }
    std::optional<HRESULT> refusal;
    for (auto fault = m_faults.begin(); fault != m_faults.end();) {
        if (!fault->method.empty() && fault->method != method) {
            ++fault;
        } else if (fault->index > 0) {
            --fault->index;
            ++fault;
        } else {
            refusal = fault->result;
            fault = m_faults.erase(fault);
        }
    }
    watch();
    return refusal;
}

void CallRecord::watch() {
    m_watching = m_recording || !m_faults.empty();
}

std::string CallRecord::text(const RECT *rectangle) {
    if (!rectangle)
        return "whole";
    char line[64];
    std::snprintf(line, sizeof line, "[%d,%d %d,%d]", static_cast<int>(rectangle->left),
                  static_cast<int>(rectangle->top), static_cast<int>(rectangle->right),
                  static_cast<int>(rectangle->bottom));
    return line;
}

std::string CallRecord::text(Flags flags) {
    char line[16];
    std::snprintf(line, sizeof line, "0x%x", static_cast<unsigned int>(flags.value));
    return line;
}

} // namespace software_d3d9
