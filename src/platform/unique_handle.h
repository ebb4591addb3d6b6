// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

namespace platform {

/// Owns one platform handle and gives it back with `close`. `none` is the value that owns nothing.
/// Every kind of handle is one alias line, as in `using RegistryKey = UniqueHandle<HKEY, &RegCloseKey>;`.
template <typename Handle, auto close, Handle none = Handle{}>
class UniqueHandle {
  public:
    UniqueHandle() = default;
    /// Takes the handle over.
    explicit UniqueHandle(Handle adopted) : m_handle(adopted) {}
    UniqueHandle(UniqueHandle &&other) noexcept : m_handle(other.release()) {}
    UniqueHandle &operator=(UniqueHandle &&other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    UniqueHandle(const UniqueHandle &) = delete;
    UniqueHandle &operator=(const UniqueHandle &) = delete;
    ~UniqueHandle() { reset(); }

    /// Closes the handle held and takes over another.
    void reset(Handle adopted = none) {
        const Handle old = std::exchange(m_handle, adopted);
        if (old != none)
            close(old);
    }
    /// Out-parameter of an opening call; closes what is held first.
    Handle *put() {
        reset();
        return &m_handle;
    }
    /// Lets go of the handle without closing it.
    Handle release() { return std::exchange(m_handle, none); }
    Handle get() const { return m_handle; }
    explicit operator bool() const { return m_handle != none; }

  private:
    Handle m_handle = none;
};

} // namespace platform
