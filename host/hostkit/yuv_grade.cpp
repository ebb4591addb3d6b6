// SPDX-License-Identifier: MIT
//
// The grade on the planes of a video frame.
//
// Every pixel takes the colour sample that covers it, is graded in red, green and blue, and gives its difference of
// colour back to that sample's mean. Interpolated colours would be softer with every generation; this way codes go
// through unchanged where the grade changes nothing.

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "hostkit/float_lanes.h"
#include "hostkit/grade.h"
#include "hostkit/light_curve.h"
#include "hostkit/quick_curve.h"

namespace hostkit {
namespace {

constexpr int kBt2020Primaries = 9;

Grade::Light lightOf(const YuvCoding &coding, int depth) {
    const LightCurve &curve = lightCurveOf(coding.transfer);
    const QuickCurve *const quick = depth <= 8 ? quickCurveOf(coding.transfer) : nullptr;
    if (coding.primaries == kBt2020Primaries)
        return {curve, 0.2627F, 0.6780F, 0.0593F, quick};
    return {curve, 0.2126F, 0.7152F, 0.0722F, quick};
}

/// The matrix between Y'CbCr and R'G'B'.
struct Matrix {
    float kr, kg, kb;
    float redOfCr, greenOfCb, greenOfCr, blueOfCb;

    explicit Matrix(const YuvCoding &coding)
        : kr(static_cast<float>(coding.kr)), kg(static_cast<float>(1 - coding.kr - coding.kb)),
          kb(static_cast<float>(coding.kb)), redOfCr(2 * (1 - kr)), greenOfCb(-2 * kb * (1 - kb) / kg),
          greenOfCr(-2 * kr * (1 - kr) / kg), blueOfCb(2 * (1 - kb)) {}
};

/// One block of pixels of the rows that share a row of colour samples.
template <typename Sample, int ShiftX>
class BlockGrader {
  public:
    BlockGrader(const Grade &grade, const Planes &planes, const ByteRows &coverage)
        : grade_(grade), planes_(planes), coverage_(coverage), light_(lightOf(planes.coding, planes.depth)),
          matrix_(planes.coding), scale_(planes.depth, planes.coding.fullRange) {}

    /// `x` is a multiple of the block's size.
    void run(int x, int chromaRow) {
        const int firstRow = chromaRow << planes_.shiftY;
        const int rows = std::min(1 << planes_.shiftY, planes_.height - firstRow);
        const int count = std::min(Grade::kBlock, planes_.width - x);
        bool isColorRead = false;
        for (int y = firstRow; y < firstRow + rows; ++y) {
            if (!readCoverage(coverage_.row(y) + x, count))
                continue;
            if (!isColorRead)
                readColor(x, chromaRow, count);
            isColorRead = true;
            gradeRow(reinterpret_cast<Sample *>(planes_.data[0] + y * planes_.stride[0]) + x, count);
        }
        if (isColorRead)
            writeColor(x, chromaRow, count, rows);
    }

  private:
    static constexpr int kColors = Grade::kBlock >> ShiftX;

    /// False when nothing of the block is covered. What lies beyond `count` is not.
    bool readCoverage(const std::uint8_t *source, int count) {
        if (count < Grade::kBlock)
            std::memset(covered_, 0, sizeof covered_);
        std::memcpy(covered_, source, static_cast<std::size_t>(count));
        std::uint64_t words[Grade::kBlock / 8];
        std::memcpy(words, covered_, sizeof words);
        std::uint64_t any = 0;
        for (const std::uint64_t word : words)
            any |= word;
        return any != 0;
    }

    Sample *colorRow(int plane, int x, int chromaRow) const {
        return reinterpret_cast<Sample *>(planes_.data[plane] + chromaRow * planes_.stride[plane]) + (x >> ShiftX);
    }

    void readColor(int x, int chromaRow, int count) {
        const int colors = (count + (1 << ShiftX) - 1) >> ShiftX;
        const float factor = 1 / scale_.chromaScale;
        for (int plane = 1; plane < 3; ++plane) {
            float *const values = color_[plane - 1];
            const Sample *const samples = colorRow(plane, x, chromaRow);
            std::fill_n(values, kColors, 0.0F);
            for (int i = 0; i < colors; ++i)
                values[i] = (static_cast<float>(samples[i]) - scale_.chromaOffset) * factor;
            std::fill_n(change_[plane - 1], Grade::kBlock, 0.0F);
        }
        const Matrix matrix = matrix_;
        for (int color = 0; color < kColors; ++color) {
            const float cb = color_[0][color];
            const float cr = color_[1][color];
            const int first = color << ShiftX;
            std::fill_n(offset_.red + first, 1 << ShiftX, matrix.redOfCr * cr);
            std::fill_n(offset_.green + first, 1 << ShiftX, matrix.greenOfCb * cb + matrix.greenOfCr * cr);
            std::fill_n(offset_.blue + first, 1 << ShiftX, matrix.blueOfCb * cb);
        }
    }

    void gradeRow(Sample *samples, int count) {
        // A row's last pixels are worked on in a copy, so that nothing beyond them is touched.
        Sample last[Grade::kBlock] = {};
        Sample *const codes = count == Grade::kBlock ? samples : last;
        if (codes == last)
            std::copy_n(samples, count, last);
        const FloatLanes scale = FloatLanes::all(scale_.lumaScale);
        const FloatLanes offset = FloatLanes::all(scale_.lumaOffset);
        const FloatLanes inverse = FloatLanes::all(1 / scale_.lumaScale);
        for (int i = 0; i < Grade::kBlock; i += FloatLanes::kCount) {
            const FloatLanes luma = (FloatLanes::load(codes + i) - offset) * inverse;
            (luma + FloatLanes::load(offset_.red + i)).store(block_.red + i);
            (luma + FloatLanes::load(offset_.green + i)).store(block_.green + i);
            (luma + FloatLanes::load(offset_.blue + i)).store(block_.blue + i);
        }
        grade_.apply(block_, covered_, light_);
        const FloatLanes kr = FloatLanes::all(matrix_.kr), kg = FloatLanes::all(matrix_.kg),
                         kb = FloatLanes::all(matrix_.kb);
        for (int i = 0; i < Grade::kBlock; i += FloatLanes::kCount) {
            const FloatLanes red = FloatLanes::load(block_.red + i), blue = FloatLanes::load(block_.blue + i);
            const FloatLanes luma = kr * red + kg * FloatLanes::load(block_.green + i) + kb * blue;
            (FloatLanes::load(change_[0] + i) + blue - luma - FloatLanes::load(offset_.blue + i)).store(change_[0] + i);
            (FloatLanes::load(change_[1] + i) + red - luma - FloatLanes::load(offset_.red + i)).store(change_[1] + i);
            nearestCodes(luma * scale + offset).store(codes + i);
        }
        if (codes == last)
            std::copy_n(last, count, samples);
    }

    void writeColor(int x, int chromaRow, int count, int rows) {
        const float factors[2] = {1 / matrix_.blueOfCb, 1 / matrix_.redOfCr};
        const int colors = (count + (1 << ShiftX) - 1) >> ShiftX;
        for (int plane = 1; plane < 3; ++plane) {
            const float *const change = change_[plane - 1];
            float *const values = color_[plane - 1];
            const float share = factors[plane - 1] / static_cast<float>(rows << ShiftX);
            for (int i = 0; i < kColors; ++i)
                values[i] += share * (ShiftX == 0 ? change[i] : change[2 * i] + change[2 * i + 1]);
            // A pixel beyond the picture has no say in a colour sample's mean.
            if (count % (1 << ShiftX) != 0)
                values[colors - 1] += share * (change[count - 1] - change[count]);
            Sample codes[kColors];
            const FloatLanes scale = FloatLanes::all(scale_.chromaScale), offset = FloatLanes::all(scale_.chromaOffset);
            for (int i = 0; i < kColors; i += FloatLanes::kCount)
                nearestCodes(FloatLanes::load(values + i) * scale + offset).store(codes + i);
            std::copy_n(codes, colors, colorRow(plane, x, chromaRow));
        }
    }

    /// Ready to be stored.
    FloatLanes nearestCodes(FloatLanes codes) const {
        const FloatLanes inside = lesser(greater(codes, FloatLanes::all(0)), FloatLanes::all(scale_.largest));
        return inside + FloatLanes::all(0.5F);
    }

    const Grade &grade_;
    const Planes &planes_;
    const ByteRows &coverage_;
    const Grade::Light light_;
    const Matrix matrix_;
    const CodeScale scale_;
    std::uint8_t covered_[Grade::kBlock];
    float color_[2][kColors];        ///< Cb and Cr
    float change_[2][Grade::kBlock]; ///< sums over the rows of a sample of how far blue and red went from Y'
    Grade::Block offset_;            ///< what the colour samples add to Y'
    Grade::Block block_;
};

template <typename Sample, int ShiftX>
void gradePlanes(const Grade &grade, const Planes &planes, const ByteRows &coverage, const PixelRect &covered) {
    BlockGrader<Sample, ShiftX> grader(grade, planes, coverage);
    const int lastRow = (covered.top + covered.height - 1) >> planes.shiftY;
    for (int row = covered.top >> planes.shiftY; row <= lastRow; ++row)
        for (int x = covered.left / Grade::kBlock * Grade::kBlock; x < covered.left + covered.width; x += Grade::kBlock)
            grader.run(x, row);
}

void gradeAny(const Grade &grade, const Planes &planes, const ByteRows &coverage, const PixelRect &covered) {
    const auto run = [&]<int ShiftX>() {
        if (planes.depth > 8)
            gradePlanes<std::uint16_t, ShiftX>(grade, planes, coverage, covered);
        else
            gradePlanes<std::uint8_t, ShiftX>(grade, planes, coverage, covered);
    };
    if (planes.shiftX == 0)
        run.template operator()<0>();
    else
        run.template operator()<1>();
}

} // namespace

void Grade::applyInside(const Planes &planes, const Mask &mask) const {
    if (planes.width != mask.width() || planes.height != mask.height())
        throw std::invalid_argument("the mask and the picture have different sizes");
    const PixelRect covered = mask.bounds();
    if (covered.width == 0)
        return;
    const ByteRows coverage = {mask.row(0), mask.width()};
    if (!planes.interlaced)
        return gradeAny(*this, planes, coverage, covered);
    for (int parity = 0; parity < 2; ++parity) {
        const Planes field = planes.field(parity);
        const int top = covered.top / 2;
        const int bottom = (covered.top + covered.height + 1) / 2;
        gradeAny(*this, field, coverage.field(parity), {covered.left, top, covered.width, bottom - top});
    }
}

} // namespace hostkit
