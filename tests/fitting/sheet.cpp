// SPDX-License-Identifier: MIT
#include "sheet.h"

#include <cmath>

#include "platform/png_file.h"

namespace fitting_quality {
namespace {

constexpr int kGap = 4;
// Half the size: a pixel is the mean of four.
constexpr int kCellWidth = kWidth / 2;
constexpr int kCellHeight = kHeight / 2;

} // namespace

Sheet::Picture Sheet::picture(const Pixels &mask, const Outline &outline) {
    // Covered as wanted: grey. Missing: blue. Too much: red.
    Picture full{std::vector<Color>(mask.size())};
    for (std::size_t index = 0; index < mask.size(); ++index) {
        if (mask[index])
            full.pixels[index] = outline.mask[index] ? Color{150, 150, 150} : Color{220, 110, 40};
        else
            full.pixels[index] = outline.mask[index] ? Color{50, 50, 200} : Color{28, 28, 28};
    }
    for (const auto &[x, y] : outline.anchors) {
        const int column = static_cast<int>(std::lround(x));
        const int row = static_cast<int>(std::lround(y));
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                if (column + dx >= 0 && column + dx < kWidth && row + dy >= 0 && row + dy < kHeight)
                    full.pixels[static_cast<std::size_t>((row + dy) * kWidth + column + dx)] = {60, 230, 250};
            }
        }
    }
    Picture small{std::vector<Color>(static_cast<std::size_t>(kCellWidth) * kCellHeight)};
    for (int row = 0; row < kCellHeight; ++row) {
        for (int column = 0; column < kCellWidth; ++column) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                int sum = 0;
                for (const int offset : {0, 1, kWidth, kWidth + 1})
                    sum += full.pixels[static_cast<std::size_t>(2 * row * kWidth + 2 * column + offset)][channel];
                small.pixels[static_cast<std::size_t>(row * kCellWidth + column)][channel] =
                    static_cast<std::uint8_t>(sum / 4);
            }
        }
    }
    return small;
}

void Sheet::add(const Pixels &mask, const Outline &drawn, const Outline &fitted) {
    m_pictures.push_back(picture(mask, drawn));
    m_pictures.push_back(picture(mask, fitted));
}

bool Sheet::write(const std::string &path) const {
    const int columns = 2 * m_columns;
    const int rows = (static_cast<int>(m_pictures.size()) + columns - 1) / columns;
    const int width = columns * (kCellWidth + kGap) + kGap;
    const int height = rows * (kCellHeight + kGap) + kGap;
    const int stride = (width * 3 + 3) / 4 * 4;
    std::vector<std::uint8_t> sheet(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height), 70);
    for (std::size_t number = 0; number < m_pictures.size(); ++number) {
        const int left = kGap + static_cast<int>(number) % columns * (kCellWidth + kGap);
        const int top = kGap + static_cast<int>(number) / columns * (kCellHeight + kGap);
        for (int row = 0; row < kCellHeight; ++row) {
            for (int column = 0; column < kCellWidth; ++column) {
                const Color &color = m_pictures[number].pixels[static_cast<std::size_t>(row * kCellWidth + column)];
                for (std::size_t channel = 0; channel < 3; ++channel)
                    sheet[static_cast<std::size_t>((top + row) * stride + (left + column) * 3) + channel] =
                        color[channel];
            }
        }
    }
    return platform::writePng(path.c_str(), platform::PngPixels::Bgr24, width, height, stride, sheet.data());
}

} // namespace fitting_quality
