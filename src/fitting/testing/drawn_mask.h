// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "fitting/bit_picture.h"
#include "mask/mask_handler.h"

namespace fitting {

/// A mask drawn as text: a line a row, '#' inside.
struct DrawnMask {
    explicit DrawnMask(std::vector<std::string> lines) : rows(std::move(lines)) {}

    int width() const { return static_cast<int>(rows.front().size()); }
    int height() const { return static_cast<int>(rows.size()); }
    bool inside(int x, int y) const {
        return x >= 0 && y >= 0 && x < width() && y < height() &&
               rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
    }
    std::vector<Quill::MaskRunF> runs() const {
        std::vector<Quill::MaskRunF> result;
        for (int y = 0; y < height(); ++y) {
            for (int x = 0; x < width(); ++x) {
                if (!inside(x, y) || inside(x - 1, y))
                    continue;
                int length = 1;
                while (inside(x + length, y))
                    ++length;
                const auto fraction = [](int value, int extent) {
                    return static_cast<float>(value) / static_cast<float>(extent);
                };
                result.push_back({fraction(x, width()), fraction(y, height()), fraction(length, width())});
            }
        }
        return result;
    }
    BitPicture picture() const { return *decodeRuns(runs(), width(), height()); }

    std::vector<std::string> rows;
};

/// The pixels of a picture as such lines, over a mask of that size.
inline std::vector<std::string> drawn(const BitPicture &picture, int width, int height) {
    std::vector<std::string> rows(static_cast<std::size_t>(height), std::string(static_cast<std::size_t>(width), '.'));
    forEachPixel(picture,
                 [&rows](int x, int y) { rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = '#'; });
    return rows;
}

} // namespace fitting
