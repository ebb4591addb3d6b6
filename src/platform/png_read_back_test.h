// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

/// A PNG file as another decoder sees it: 0xAARRGGBB per pixel, rows top to bottom. Empty when it cannot be read.
struct DecodedPng {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};
DecodedPng readBackPng(const std::string &path);

} // namespace platform
