// SPDX-License-Identifier: MIT
//
// A mask is made from runs and may get a soft edge.
//
// The soft edge is a box blur in both directions, repeated: two passes make a quadratic ramp, three are within 3 % of a
// Gaussian. The passes' radii add up to the width asked for, so the ramp ends exactly that many pixels from the edge. A
// distance transform would keep corners sharper, but costs the same, needs floating point and shows ridges along the
// medial axis of thin shapes. The sums slide, so the cost does not depend on the width, and only the covered rectangle
// plus the ramp is visited: an outline is small against its picture.
#include "hostkit/mask.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "hostkit/error.h"

namespace hostkit {
namespace {

constexpr int kLargestSide = 32767;

/// Divides sums of up to 2^16 bytes by how many they are, to the nearest integer, without a division.
class Mean {
  public:
    explicit Mean(std::uint32_t count)
        : half_(count / 2), factor_(((std::uint64_t{1} << kShift) + count - 1) / count) {}

    std::uint8_t operator()(std::uint32_t sum) const {
        return static_cast<std::uint8_t>((sum + half_) * factor_ >> kShift);
    }

  private:
    static constexpr int kShift = 40;

    std::uint32_t half_;
    std::uint64_t factor_;
};

std::uint64_t eightAt(const std::uint8_t *bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// Blurs the rows of a rectangle. Values beyond the ends repeat the last one.
void blurRows(std::uint8_t *values, std::ptrdiff_t stride, std::size_t columns, std::size_t rows, int radius) {
    const auto margin = static_cast<std::size_t>(radius);
    std::vector<std::uint8_t> line(columns + 2 * margin);
    const std::uint32_t window = 2 * static_cast<std::uint32_t>(radius) + 1;
    const Mean mean(window);
    for (std::size_t y = 0; y < rows; ++y) {
        std::uint8_t *const row = values + static_cast<std::ptrdiff_t>(y) * stride;
        std::memcpy(line.data() + margin, row, columns);
        std::fill_n(line.data(), margin, row[0]);
        std::fill_n(line.data() + margin + columns, margin, row[columns - 1]);
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i + 1 < window; ++i)
            sum += line[i];
        for (std::size_t i = 0; i < columns;) {
            // Most of a mask is flat: where the same value comes in as goes out, eight times, there are eight equal
            // means.
            const std::uint64_t flat = 0x0101010101010101U * line[i];
            if (i + 8 <= columns && eightAt(&line[i]) == flat && eightAt(&line[i + 2 * margin]) == flat) {
                std::memset(row + i, mean(sum + line[i]), 8);
                i += 8;
                continue;
            }
            sum += line[i + 2 * margin];
            row[i] = mean(sum);
            sum -= line[i];
            ++i;
        }
    }
}

/// Blurs the columns of a rectangle, row by row with a sum for each column.
void blurColumns(std::uint8_t *values, std::ptrdiff_t stride, std::size_t columns, std::size_t rows, int radius) {
    std::vector<std::uint8_t> before(columns * rows);
    for (std::size_t y = 0; y < rows; ++y)
        std::memcpy(before.data() + y * columns, values + static_cast<std::ptrdiff_t>(y) * stride, columns);
    const auto rowOf = [&](std::ptrdiff_t y) {
        return before.data() +
               static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(y, 0, static_cast<std::ptrdiff_t>(rows) - 1)) *
                   columns;
    };
    const std::ptrdiff_t reach = radius;
    const Mean mean(2 * static_cast<std::uint32_t>(radius) + 1);
    std::vector<std::uint32_t> sums(columns);
    for (std::ptrdiff_t y = -reach; y <= reach; ++y)
        for (std::size_t x = 0; x < columns; ++x)
            sums[x] += rowOf(y)[x];
    for (std::size_t x = 0; x < columns; ++x)
        values[x] = mean(sums[x]);
    for (std::size_t y = 1; y < rows; ++y) {
        const std::uint8_t *const in = rowOf(static_cast<std::ptrdiff_t>(y) + reach);
        const std::uint8_t *const out = rowOf(static_cast<std::ptrdiff_t>(y) - reach - 1);
        std::uint8_t *const row = values + static_cast<std::ptrdiff_t>(y) * stride;
        for (std::size_t x = 0; x < columns;) {
            // The mean of the row above stays where what comes in is what goes out.
            if (x + 8 <= columns && eightAt(in + x) == eightAt(out + x)) {
                std::memcpy(row + x, row + x - stride, 8);
                x += 8;
                continue;
            }
            sums[x] += in[x];
            sums[x] -= out[x];
            row[x] = mean(sums[x]);
            ++x;
        }
    }
}

/// A run's end in whole pixels: the nearest one, since the runs are pixels divided by the size.
long toPixel(double fraction, int extent) {
    return std::lround(fraction * extent);
}

} // namespace

Mask::Mask(int width, int height) : width_(width), height_(height), firstRow_(height) {
    if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide)
        throw std::invalid_argument("a mask of " + sizeText(width, height) + " pixels cannot be made");
    coverage_.resize(offset(height));
}

void Mask::clear() {
    if (firstRow_ < endRow_)
        std::memset(coverage_.data() + offset(firstRow_), 0, offset(endRow_) - offset(firstRow_));
    firstRow_ = height_;
    endRow_ = 0;
}

void Mask::setRuns(const std::vector<MaskRun> &runs) {
    clear();
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const MaskRun &run = runs[i];
        // Written so that NaN fails too; lround of a finite fraction cannot overflow then.
        const bool plausible =
            run.x >= 0 && run.x <= 1 && run.y >= 0 && run.y <= 1 && run.length >= 0 && run.length <= 1;
        const long column = plausible ? toPixel(run.x, width_) : -1;
        const long line = plausible ? toPixel(run.y, height_) : -1;
        const long length = plausible ? toPixel(run.length, width_) : 0;
        if (column < 0 || line < 0 || line >= height_ || column + length > width_)
            throw std::invalid_argument("run " + std::to_string(i) + " lies outside of a mask of " +
                                        sizeText(width_, height_) + " pixels");
        std::memset(row(static_cast<int>(line)) + column, 255, static_cast<std::size_t>(length));
    }
}

void Mask::invert() {
    for (std::uint8_t &value : coverage_)
        value = static_cast<std::uint8_t>(255 - value);
    firstRow_ = 0;
    endRow_ = height_;
}

void Mask::feather(int pixels, int passes) {
    if (pixels < 0 || passes < 1)
        throw std::invalid_argument("a soft edge needs a width of 0 or more pixels and at least one pass");
    const PixelRect covered = bounds();
    if (pixels == 0 || covered.width == 0)
        return;
    const int left = std::max(covered.left - pixels, 0);
    const int top = std::max(covered.top - pixels, 0);
    const int right = std::min(covered.left + covered.width + pixels, width_);
    const int bottom = std::min(covered.top + covered.height + pixels, height_);
    const auto columns = static_cast<std::size_t>(right - left);
    const auto rows = static_cast<std::size_t>(bottom - top);

    for (int pass = 0; pass < passes; ++pass) {
        const int radius = pixels / passes + (pass < pixels % passes ? 1 : 0);
        if (radius == 0)
            break;
        std::uint8_t *const values = coverage_.data() + offset(top) + left;
        blurRows(values, width_, columns, rows, radius);
        blurColumns(values, width_, columns, rows, radius);
    }
    firstRow_ = std::min(firstRow_, top);
    endRow_ = std::max(endRow_, bottom);
}

PixelRect Mask::bounds() const {
    int left = width_;
    int right = 0;
    int top = height_;
    int bottom = 0;
    for (int y = firstRow_; y < endRow_; ++y) {
        const std::uint8_t *const begin = row(y);
        const std::uint8_t *const end = begin + width_;
        const std::uint8_t *first = begin;
        while (end - first >= 8 && eightAt(first) == 0)
            first += 8;
        while (first < end && *first == 0)
            ++first;
        if (first == end)
            continue;
        const std::uint8_t *last = end;
        while (last - first >= 8 && eightAt(last - 8) == 0)
            last -= 8;
        while (last[-1] == 0)
            --last;
        left = std::min(left, static_cast<int>(first - begin));
        right = std::max(right, static_cast<int>(last - begin));
        top = std::min(top, y);
        bottom = y + 1;
    }
    if (right == 0)
        return {};
    return {left, top, right - left, bottom - top};
}

std::size_t Mask::coveredPixels() const {
    return coverage_.size() - static_cast<std::size_t>(std::count(coverage_.begin(), coverage_.end(), std::uint8_t{0}));
}

int Mask::value(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_)
        throw std::invalid_argument("pixel (" + std::to_string(x) + ", " + std::to_string(y) +
                                    ") lies outside of the mask");
    return row(y)[x];
}

} // namespace hostkit
