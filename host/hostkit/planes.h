// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace hostkit {

/// What the codes of a Y'CbCr picture stand for.
struct YuvCoding {
    double kr = 0.2126; ///< share of red and of blue in Y'
    double kb = 0.0722;
    bool fullRange = false;
    int transfer = 2;  ///< AVColorTransferCharacteristic
    int primaries = 2; ///< AVColorPrimaries
};

/// Borrowed planes Y', Cb, Cr. Samples of up to 8 bits are bytes, deeper ones 16-bit integers of the machine's order.
struct Planes {
    std::uint8_t *data[3] = {};
    std::ptrdiff_t stride[3] = {}; ///< bytes from one row to the next
    int width = 0;
    int height = 0;
    int shiftX = 0; ///< 1 when a colour sample stands for two columns
    int shiftY = 0;
    int depth = 8;
    bool interlaced = false; ///< colour samples stand for rows of one field; heights are multiples of 4 then
    YuvCoding coding;

    int chromaWidth() const { return (width + (1 << shiftX) - 1) >> shiftX; }
    int chromaHeight() const { return (height + (1 << shiftY) - 1) >> shiftY; }

    /// Every second row, from row `parity` on, as a picture of its own.
    Planes field(int parity) const {
        Planes result = *this;
        for (int i = 0; i < 3; ++i) {
            result.data[i] += stride[i] * parity;
            result.stride[i] *= 2;
        }
        result.height = height / 2;
        result.interlaced = false;
        return result;
    }
};

/// Rows of bytes that belong to the pixels of a picture.
struct ByteRows {
    const std::uint8_t *data = nullptr;
    std::ptrdiff_t stride = 0;

    const std::uint8_t *row(int y) const { return data + y * stride; }
    ByteRows field(int parity) const { return {data + stride * parity, stride * 2}; }
};

/// Between the codes of a depth and the numbers that they stand for: Y' from 0 to 1, Cb and Cr from -0.5 to 0.5.
struct CodeScale {
    float lumaScale, lumaOffset, chromaScale, chromaOffset, largest;

    CodeScale(int depth, bool fullRange) {
        const auto unit = static_cast<float>(1 << (depth - 8));
        largest = static_cast<float>((1 << depth) - 1);
        lumaScale = fullRange ? largest : 219 * unit;
        lumaOffset = fullRange ? 0 : 16 * unit;
        chromaScale = fullRange ? largest : 224 * unit;
        chromaOffset = 128 * unit;
    }
    /// The nearest code of the depth.
    int code(float value, float scale, float offset) const {
        const float code = value * scale + offset;
        return static_cast<int>((code < 0 ? 0 : code > largest ? largest : code) + 0.5F);
    }
};

} // namespace hostkit
