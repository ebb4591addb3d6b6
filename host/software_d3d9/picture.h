// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace software_d3d9 {

/// The pixels of one texture: 32 bits each (B, G, R, A in memory), rows top to bottom.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::size_t pitch = 0; ///< bytes from one row to the next
    std::uint8_t *bits = nullptr;

    std::uint8_t *row(std::uint32_t y) { return bits + y * pitch; }
    const std::uint8_t *row(std::uint32_t y) const { return bits + y * pitch; }
    std::size_t bytes() const { return pitch * height; }
};

/// A picture that nobody writes any more.
using SharedPicture = std::shared_ptr<const Picture>;

/// Pixel memory that is used again. Pictures come back through the pool's lock, so whoever gets the memory next sees
/// the last reader done with it.
class PicturePool : public std::enable_shared_from_this<PicturePool> {
  public:
    /// A picture with undefined content, and null when there is no memory.
    std::shared_ptr<Picture> acquire(std::uint32_t width, std::uint32_t height, std::size_t pitch);

  private:
    struct Memory {
        std::unique_ptr<std::uint8_t[]> bits;
        std::size_t bytes = 0;
    };

    void giveBack(Memory memory);

    std::mutex m_mutex;
    std::vector<Memory> m_free; ///< the few that were used last
};

} // namespace software_d3d9
