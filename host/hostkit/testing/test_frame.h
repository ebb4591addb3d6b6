// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "hostkit/planes.h"

namespace hostkit {

/// A frame with memory of its own, filled with noise.
struct TestFrame {
    std::vector<std::uint16_t> memory[3];
    Planes planes;

    TestFrame(int width, int height, int shiftX, int shiftY, int depth) {
        std::mt19937 random(20261122);
        planes.width = width;
        planes.height = height;
        planes.shiftX = shiftX;
        planes.shiftY = shiftY;
        planes.depth = depth;
        for (int i = 0; i < 3; ++i) {
            const int columns = i == 0 ? width : planes.chromaWidth();
            const int rows = i == 0 ? height : planes.chromaHeight();
            memory[i].resize(static_cast<std::size_t>(columns * rows));
            planes.data[i] = reinterpret_cast<std::uint8_t *>(memory[i].data());
            planes.stride[i] = 2 * columns;
            for (int y = 0; y < rows; ++y)
                for (int x = 0; x < columns; ++x)
                    set(i, x, y, static_cast<int>(random() % (1U << depth)));
        }
    }
    int get(int plane, int x, int y) const {
        const std::uint8_t *const row = planes.data[plane] + y * planes.stride[plane];
        return planes.depth > 8 ? reinterpret_cast<const std::uint16_t *>(row)[x] : row[x];
    }
    void set(int plane, int x, int y, int code) {
        std::uint8_t *const row = planes.data[plane] + y * planes.stride[plane];
        if (planes.depth > 8)
            reinterpret_cast<std::uint16_t *>(row)[x] = static_cast<std::uint16_t>(code);
        else
            row[x] = static_cast<std::uint8_t>(code);
    }
    void fill(int luma, int cb, int cr) {
        for (int y = 0; y < planes.height; ++y)
            for (int x = 0; x < planes.width; ++x) {
                set(0, x, y, luma);
                set(1, x >> planes.shiftX, y >> planes.shiftY, cb);
                set(2, x >> planes.shiftX, y >> planes.shiftY, cr);
            }
    }
};

} // namespace hostkit
