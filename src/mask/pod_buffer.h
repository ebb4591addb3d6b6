// SPDX-License-Identifier: MIT
#pragma once

// A growable array of plain values that keeps its memory when it is emptied and never initialises what it is about to
// overwrite. The rasterizer's inner loops write through raw pointers into room they asked for beforehand.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>

namespace Quill {

template <typename T>
class PodBuffer {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

  public:
    T *data() { return m_data.get(); }
    const T *data() const { return m_data.get(); }
    T *begin() { return data(); }
    T *end() { return data() + m_size; }
    const T *begin() const { return data(); }
    const T *end() const { return data() + m_size; }
    std::size_t size() const { return m_size; }
    std::size_t capacity() const { return m_capacity; }
    bool empty() const { return m_size == 0; }
    T &operator[](std::size_t index) { return m_data[index]; }
    const T &operator[](std::size_t index) const { return m_data[index]; }
    const T &back() const { return m_data[m_size - 1]; }

    /// Empties the array and keeps its memory.
    void clear() { m_size = 0; }

    void push_back(const T &value) {
        const T copy = value;
        *room(1) = copy;
        ++m_size;
    }

    /// Room for `count` more values; returns where they go. What is written there counts once setEnd() says so.
    T *room(std::size_t count) {
        if (m_capacity - m_size < count)
            grow(m_size + count);
        return m_data.get() + m_size;
    }

    /// Makes everything before `end` part of the array; `end` lies within the room asked for.
    void setEnd(const T *end) { m_size = static_cast<std::size_t>(end - m_data.get()); }

    /// Sets the size without initialising new values.
    void resize(std::size_t size) {
        if (size > m_capacity)
            grow(size);
        m_size = size;
    }

  private:
    void grow(std::size_t needed) {
        const std::size_t capacity = std::max<std::size_t>({needed, m_capacity * 2, 64});
        auto data = std::make_unique_for_overwrite<T[]>(capacity);
        std::copy_n(m_data.get(), m_size, data.get());
        m_data = std::move(data);
        m_capacity = capacity;
    }

    std::unique_ptr<T[]> m_data;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

} // namespace Quill
