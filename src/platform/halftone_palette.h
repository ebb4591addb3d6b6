// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

// The palette that GDI+ gives to a new 8-bit indexed bitmap, so that a picture written elsewhere has the same colours:
// 16 system colours, 24 transparent entries, and a colour cube of six levels a channel.

namespace platform {

/// 0xAARRGGBB of one palette entry, 0 to 255.
constexpr std::uint32_t halftoneColour(std::uint32_t index) {
    const auto opaque = [](std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
        return 0xFF000000U | red << 16 | green << 8 | blue;
    };
    if (index == 8)
        return opaque(0xC0, 0xC0, 0xC0);
    if (index < 16) {
        const std::uint32_t level = index < 8 ? 0x80 : 0xFF;
        return opaque(index & 1 ? level : 0, index & 2 ? level : 0, index & 4 ? level : 0);
    }
    if (index < 40)
        return 0;
    const std::uint32_t cube = index - 40;
    return opaque(cube / 36 * 0x33, cube / 6 % 6 * 0x33, cube % 6 * 0x33);
}

/// All 256 entries.
constexpr std::array<std::uint32_t, 256> halftonePalette() {
    std::array<std::uint32_t, 256> palette{};
    for (std::uint32_t index = 0; index < palette.size(); ++index)
        palette[index] = halftoneColour(index);
    return palette;
}

} // namespace platform
