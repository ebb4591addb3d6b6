// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

/// The nine mark sizes in pixels: their order is that of the bases below.
struct MarkSizes {
    enum Mark {
        SpareA,
        SpareB,
        SelectedOuter,
        SelectedInner,
        HoverOuter,
        HoverInner,
        LineOuter,
        LineMiddle,
        LineInner
    };

    /// At scale 1. The two spare sizes are kept and scaled for hosts that know of them; no drawing step reads them.
    static constexpr std::array<std::uint32_t, 9> kBase = {9, 4, 9, 7, 9, 3, 9, 7, 3};

    std::array<std::uint32_t, 9> pixels = kBase;

    /// Every base times `scale`, halves rounded up. What is no size (negative, not a number) becomes 0.
    static MarkSizes scaled(float scale);

    std::uint32_t operator[](Mark mark) const { return pixels[static_cast<std::size_t>(mark)]; }
};
