// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>

namespace platform {

/// For tests: an environment variable with a value (or, with null, none) for a while. No other thread may read the
/// environment meanwhile.
class ScopedEnvironment {
  public:
    ScopedEnvironment(const char *name, const char *value) : m_name(name) {
        const char *const previous = std::getenv(name);
        m_wasSet = previous != nullptr;
        m_previous = previous ? previous : "";
        assign(value);
    }
    ~ScopedEnvironment() { assign(m_wasSet ? m_previous.c_str() : nullptr); }
    ScopedEnvironment(const ScopedEnvironment &) = delete;
    ScopedEnvironment &operator=(const ScopedEnvironment &) = delete;

  private:
    void assign(const char *value) const {
#ifdef _WIN32
        // An empty value removes the variable there.
        _putenv_s(m_name.c_str(), value ? value : "");
#else
        if (value)
            setenv(m_name.c_str(), value, 1);
        else
            unsetenv(m_name.c_str());
#endif
    }

    std::string m_name;
    std::string m_previous;
    bool m_wasSet = false;
};

} // namespace platform
