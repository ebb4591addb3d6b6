// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "canvas/testing/scenes.h"

namespace canvas::testing {

/// FNV-1a (64 bits) over width, height and pixels, each as four bytes, lowest first. Stands for a picture where no PNG
/// file can be read.
inline std::uint64_t fingerprint(const Picture &picture) {
    std::uint64_t hash = 0xCBF29CE484222325;
    const auto add = [&hash](std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            hash = (hash ^ (value >> shift & 255)) * 0x100000001B3;
    };
    add(static_cast<std::uint32_t>(picture.width));
    add(static_cast<std::uint32_t>(picture.height));
    for (const std::uint32_t pixel : picture.pixels)
        add(pixel);
    return hash;
}

} // namespace canvas::testing
