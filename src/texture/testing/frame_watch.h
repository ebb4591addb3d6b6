// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <utility>

#include <gtest/gtest.h>

#include "platform/com_pointer.h"
#include "software_d3d9/device.h"
#include "texture/allocator.h"

using MapPointer = platform::ComPointer<loom::IAllocator>;

inline MapPointer share(loom::IAllocator *map) {
    if (map)
        map->AddRef();
    return MapPointer(map);
}

/// Renders at full speed and looks at every frame, for overlays whose pictures carry the number of their drawing in all
/// pixels: a picture has one number only, no number is smaller than the one before it on the same map, and none is
/// larger than that of the last drawing.
class FrameWatch {
  public:
    /// Stands in the numbers of surfaces that have been cleared and not drawn on yet; nobody may see those.
    static constexpr std::uint32_t kCleared = 0x80000000U;

    /// `lastNumber` is that of the last drawing, the cleared surfaces' included.
    FrameWatch(software_d3d9::Device &device, const std::atomic<std::uint32_t> &lastNumber)
        : m_device(device), m_lastDrawn(lastNumber) {}

    /// What is rendered from the next frame on; null for nothing.
    void show(MapPointer map) {
        const std::lock_guard lock(m_mutex);
        std::swap(m_map, map);
    }

    /// Renders until stop() on the calling thread; `rounds` grows with every frame.
    void run(std::atomic<long> &rounds) {
        const loom::IAllocator *last = nullptr;
        std::uint32_t lastNumber = 0;
        MapPointer kept;
        for (; !m_stopped; ++rounds) {
            const MapPointer current = shown();
            if (!current)
                continue;
            if (current.get() != last) {
                // The map before, which its owner has let go of, waits in a host's queue of frames.
                if (kept)
                    kept->UpdateCounter();
                kept = share(current.get());
                last = current.get();
                lastNumber = 0;
            }
            current->UpdateCounter();
            if (current->BindToStage(0) == S_OK)
                lastNumber = look(*m_device.boundPicture(0), lastNumber);
        }
        m_device.SetTexture(0, nullptr);
    }
    void stop() { m_stopped = true; }

    /// How many different drawings have been seen.
    std::uint64_t changes() const { return m_changes; }
    void expectNothingWrong() const {
        EXPECT_EQ(0u, m_torn) << "pixels of another drawing than their picture's first, in " << m_frames << " frames";
        EXPECT_EQ(0u, m_cleared) << "frames that were cleared and not drawn, of " << m_frames;
        EXPECT_EQ(0u, m_backward) << "frames older than the one before, of " << m_frames;
        EXPECT_EQ(0u, m_invented) << "frames that nobody has drawn, of " << m_frames;
    }
    void print(long steps) const {
        std::printf("%ld steps, %llu frames, %llu changes seen\n", steps,
                    static_cast<unsigned long long>(m_frames.load()),
                    static_cast<unsigned long long>(m_changes.load()));
    }

  private:
    MapPointer shown() const {
        const std::lock_guard lock(m_mutex);
        return share(m_map.get());
    }

    /// The number of the drawing in a picture; 0 is what a texture starts with.
    std::uint32_t look(const software_d3d9::Picture &picture, std::uint32_t lastNumber) {
        std::uint32_t number = 0;
        std::memcpy(&number, picture.bits, sizeof number);
        for (std::uint32_t y = 0; y < picture.height; ++y)
            for (std::uint32_t x = 0; x < picture.width; ++x) {
                std::uint32_t pixel = 0;
                std::memcpy(&pixel, picture.row(y) + x * 4, sizeof pixel);
                m_torn += pixel != number;
            }
        m_cleared += (number & kCleared) != 0;
        number &= ~kCleared;
        m_backward += number < lastNumber;
        m_invented += number > m_lastDrawn;
        m_changes += number != lastNumber;
        ++m_frames;
        return number;
    }

    software_d3d9::Device &m_device;
    const std::atomic<std::uint32_t> &m_lastDrawn;
    mutable std::mutex m_mutex; ///< guards m_map
    MapPointer m_map;
    std::atomic<bool> m_stopped{false};
    std::atomic<std::uint64_t> m_frames{0};
    std::atomic<std::uint64_t> m_changes{0};
    std::atomic<std::uint64_t> m_torn{0};
    std::atomic<std::uint64_t> m_cleared{0};
    std::atomic<std::uint64_t> m_backward{0};
    std::atomic<std::uint64_t> m_invented{0};
};
