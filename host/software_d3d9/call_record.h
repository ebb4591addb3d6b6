// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/d3d9.h"

namespace software_d3d9 {

/// A set of flags among the arguments of a call: recorded in hexadecimal.
struct Flags {
    DWORD value;
};

/// What a device was asked, which calls it is to refuse, and where its caller broke the rules. Thread-safe.
///
/// A call is one line: the object unless it is the device, the method, and its arguments without the out-pointers, as
/// in "CreateTexture(64, 32, 1, 0x200, 21, 2)" and "texture 1: GetSurfaceLevel(0)". Of reference counting only the end
/// is recorded: "texture 1 is released".
class CallRecord {
  public:
    /// Starts or ends recording; recording starts with an empty list.
    void record(bool on);
    /// The calls recorded, in order; the list is empty afterwards.
    std::vector<std::string> takeCalls();

    /// Makes the call that comes `index` calls from now (0: the next one) fail with `result`, once. Only calls that
    /// return an HRESULT count.
    void failCall(std::size_t index, HRESULT result);
    /// Makes the call of `method` that comes `index` calls of it from now fail with `result`, once.
    void failMethod(const std::string &method, HRESULT result, std::size_t index = 0);
    /// Withdraws the faults that have not struck.
    void clearFaults();

    /// What the caller did wrong, in order: invalid arguments, calls in the wrong state, calls that are not offered,
    /// references given back too often.
    std::vector<std::string> violations() const;

    // --- For the objects of the device ---

    /// Enters a call that returns an HRESULT: the result it is to fail with, if any.
    template <typename... Arguments>
    std::optional<HRESULT> enter(const std::string &object, const char *method, const Arguments &...arguments) {
        if (!m_watching.load(std::memory_order_relaxed))
            return std::nullopt;
        return note(object, method, {text(arguments)...});
    }
    /// Records the end of an object.
    void noteReleased(const std::string &object);
    void addViolation(const std::string &object, const char *method, const char *reason);

  private:
    std::optional<HRESULT> note(const std::string &object, const char *method,
                                std::initializer_list<std::string> arguments);
    void watch();

    static std::string text(const std::string &value) { return value; }
    static std::string text(unsigned long value) { return std::to_string(value); }
    static std::string text(unsigned int value) { return std::to_string(value); }
    static std::string text(const RECT *rectangle);
    static std::string text(Flags flags);

    struct Fault {
        std::string method; ///< empty: any
        std::size_t index;
        HRESULT result;
    };

    mutable std::mutex m_mutex;
    std::atomic<bool> m_watching{false}; ///< whether calls have to be looked at: recording, or a fault is waiting
    bool m_recording = false;
    std::vector<std::string> m_calls;
    std::vector<Fault> m_faults;
    std::vector<std::string> m_violations;
};

} // namespace software_d3d9
