// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

namespace platform {

/// Owns one reference to a reference-counted interface.
template <typename Interface>
class ComPointer {
  public:
    ComPointer() = default;
    /// Takes over the caller's reference.
    explicit ComPointer(Interface *adopted) : m_pointer(adopted) {}
    ComPointer(ComPointer &&other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}
    ComPointer &operator=(ComPointer &&other) noexcept {
        if (this != &other)
            reset(std::exchange(other.m_pointer, nullptr));
        return *this;
    }
    ComPointer(const ComPointer &) = delete;
    ComPointer &operator=(const ComPointer &) = delete;
    ~ComPointer() { reset(); }

    /// Releases the reference held and takes over another.
    void reset(Interface *adopted = nullptr) {
        if (Interface *const old = std::exchange(m_pointer, adopted))
            old->Release();
    }
    /// Out-parameter of a creating call; releases what is held first.
    Interface **put() {
        reset();
        return &m_pointer;
    }
    Interface *get() const { return m_pointer; }
    Interface *operator->() const { return m_pointer; }
    explicit operator bool() const { return m_pointer != nullptr; }

  private:
    Interface *m_pointer = nullptr;
};

} // namespace platform
