// SPDX-License-Identifier: MIT
#include "software_d3d9/picture.h"

#include <new>
#include <utility>

namespace software_d3d9 {
namespace {

/// Two take turns when a texture is written and shown; one more is in the hands of a reader.
constexpr std::size_t kKept = 3;

} // namespace

std::shared_ptr<Picture> PicturePool::acquire(std::uint32_t width, std::uint32_t height, std::size_t pitch) {
    Memory memory;
    const std::size_t bytes = pitch * height;
    {
        const std::lock_guard lock(m_mutex);
        for (auto candidate = m_free.begin(); candidate != m_free.end(); ++candidate) {
            if (candidate->bytes == bytes) {
                memory = std::move(*candidate);
                m_free.erase(candidate);
                break;
            }
        }
    }
    if (!memory.bits)
        memory = {std::unique_ptr<std::uint8_t[]>(new (std::nothrow) std::uint8_t[bytes]), bytes};
    if (!memory.bits)
        return nullptr;

    struct Holder {
        Picture picture;
        Memory memory;
        std::shared_ptr<PicturePool> pool;
        ~Holder() { pool->giveBack(std::move(memory)); }
    };
    const Picture picture{width, height, pitch, memory.bits.get()};
    auto holder = std::shared_ptr<Holder>(new Holder{picture, std::move(memory), shared_from_this()});
    Picture *const pixels = &holder->picture;
    return std::shared_ptr<Picture>(std::move(holder), pixels);
}

void PicturePool::giveBack(Memory memory) {
    Memory oldest; // freed after the lock is left
    const std::lock_guard lock(m_mutex);
    if (m_free.size() == kKept) {
        oldest = std::move(m_free.front());
        m_free.erase(m_free.begin());
    }
    m_free.push_back(std::move(memory));
}

} // namespace software_d3d9
