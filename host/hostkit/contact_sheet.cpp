// SPDX-License-Identifier: MIT
#include "hostkit/contact_sheet.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "hostkit/scale.h"
#include "hostkit/text.h"

namespace hostkit {
namespace {

constexpr int kGap = 6;
constexpr int kTextScale = 2;
constexpr int kLabelHeight = 22;
constexpr int kLabelTop = 4;
constexpr std::uint8_t kBackground = 24;
constexpr std::uint32_t kLabelColor = 0xB8B8B8;
constexpr std::uint32_t kHighlightColor = 0xFFC850;
constexpr std::uint8_t kBorderColor[3] = {0, 90, 255};
/// Share of the mask's size that the enlargement shows around it.
constexpr double kMargin = 0.15;

/// The part of the picture that an enlargement shows: the mask and a margin, in the panel's proportions, inside the
/// picture.
PixelRect partAround(const PixelRect &bounds, const Mask &picture, double proportion) {
    const double margin = kMargin * std::max(bounds.width, bounds.height);
    double width = bounds.width + 2 * margin;
    double height = bounds.height + 2 * margin;
    width = std::max(width, height * proportion);
    height = width / proportion;
    const double shrink = std::min({1.0, picture.width() / width, picture.height() / height});
    const int partWidth = std::max(1, static_cast<int>(width * shrink));
    const int partHeight = std::max(1, static_cast<int>(height * shrink));
    const int left = bounds.left + (bounds.width - partWidth) / 2;
    const int top = bounds.top + (bounds.height - partHeight) / 2;
    // Video has colour samples at every second place.
    return {std::clamp(left, 0, picture.width() - partWidth) & ~1,
            std::clamp(top, 0, picture.height() - partHeight) & ~1, partWidth, partHeight};
}

/// Draws the line between inside and outside into an enlargement of `part`: every pixel whose source pixel differs from
/// that of its neighbour above or to the left.
void drawBorder(Image &panel, const Mask &mask, const PixelRect &part) {
    const auto inside = [&](int x, int y) {
        return mask.row(part.top + y * part.height / panel.height())[part.left + x * part.width / panel.width()] != 0;
    };
    for (int y = 1; y < panel.height(); ++y)
        for (int x = 1; x < panel.width(); ++x)
            if (inside(x, y) != inside(x - 1, y) || inside(x, y) != inside(x, y - 1))
                std::copy_n(kBorderColor, 3, panel.row(y) + x * 4);
}

} // namespace

ContactSheet::ContactSheet(int columns, int frameWidth, int frameHeight)
    : columns_(columns), frameWidth_(frameWidth), frameHeight_(frameHeight) {
    if (columns < 1 || frameWidth < 1 || frameHeight < 1)
        throw std::invalid_argument("a contact sheet needs at least one column and frames of at least one pixel");
}

Image ContactSheet::enlargement(const PartOf &frame, const Mask &mask) const {
    const int width = frameHeight_; // a square panel suits tall and wide outlines alike
    const PixelRect bounds = mask.bounds();
    if (bounds.width == 0) {
        Image panel(width, frameHeight_);
        panel.fill(kBackground, kBackground, kBackground);
        const std::string text = "no mask";
        drawText(panel, (width - textWidth(text, kTextScale)) / 2, (frameHeight_ - textHeight(kTextScale)) / 2, text,
                 kTextScale, kLabelColor);
        return panel;
    }
    const PixelRect part = partAround(bounds, mask, static_cast<double>(width) / frameHeight_);
    Image panel = frame(part, width, frameHeight_);
    drawBorder(panel, mask, part);
    return panel;
}

void ContactSheet::add(const Image &frame, const Image &overlaid, const Mask &mask, const std::string &label,
                       bool highlighted) {
    if (frame.width() != mask.width() || frame.height() != mask.height())
        throw std::invalid_argument("the mask and the picture have different sizes");
    const auto partsOf = [](const Image &image) -> PartOf {
        return [&image](const PixelRect &part, int width, int height) { return scaled(image, part, width, height); };
    };
    add(partsOf(frame), partsOf(overlaid), mask, label, highlighted);
}

void ContactSheet::add(const PartOf &frame, const PartOf &overlaid, const Mask &mask, const std::string &label,
                       bool highlighted) {
    const Image whole = overlaid({0, 0, mask.width(), mask.height()}, frameWidth_, frameHeight_);
    const Image part = enlargement(frame, mask);

    Image cell(frameWidth_ + part.width(), frameHeight_ + kLabelHeight);
    cell.fill(kBackground, kBackground, kBackground);
    cell.paste(whole, 0, 0);
    cell.paste(part, frameWidth_, 0);
    drawText(cell, 2, frameHeight_ + kLabelTop, label, kTextScale, highlighted ? kHighlightColor : kLabelColor);
    cells_.push_back(std::move(cell));
}

Image ContactSheet::compose() const {
    if (cells_.empty())
        throw std::invalid_argument("a contact sheet needs at least one frame");
    const int columns = std::min(columns_, count());
    const int rows = (count() + columns - 1) / columns;
    const int cellWidth = cells_[0].width() + kGap;
    const int cellHeight = cells_[0].height() + kGap;
    Image sheet(columns * cellWidth + kGap, rows * cellHeight + kGap);
    sheet.fill(kBackground, kBackground, kBackground);
    for (int i = 0; i < count(); ++i)
        sheet.paste(cells_[static_cast<std::size_t>(i)], kGap + i % columns * cellWidth,
                    kGap + i / columns * cellHeight);
    return sheet;
}

} // namespace hostkit
