// SPDX-License-Identifier: MIT
// What holds for the masks of all outlines: both routes agree, the three encodings are one mask, and moving or
// inverting a mask does what it says.

#include <gtest/gtest.h>

#include "mask/encode.h"
#include "mask/random_outline_test.h"
#include "mask/raster_support_test.h"

namespace Quill {
namespace {

using test::OutlineKind;
using test::Random;

/// One random encoding with everything it points at.
struct Case {
    std::vector<MPoint> points;
    std::vector<std::uint8_t> exclusion;
    EncodeJob job;
    std::int32_t originX;
    std::int32_t originY;
};

Case randomCase(Random &random) {
    const int width = random.between(1, random.oneIn(200) ? 2000 : 90);
    const int height = random.between(1, random.oneIn(200) ? 1200 : 70);
    const auto kind = static_cast<OutlineKind>(random.between(0, test::kOutlineKinds - 1));
    Case result;
    result.points = test::randomOutline(random, kind, test::randomAnchorCount(random), width, height);
    if (random.oneIn(10))
        result.points.resize(result.points.size() - 1 + static_cast<std::size_t>(random.between(0, 2)));
    if (result.points.size() < 9)
        result.points.resize(9);
    if (random.oneIn(3))
        result.exclusion = test::randomExclusion(random, width, height);
    result.job = {result.points.data(),
                  static_cast<int>(result.points.size()),
                  width,
                  height,
                  random.oneIn(2),
                  result.exclusion.empty() ? nullptr : result.exclusion.data()};
    result.originX = random.between(-1000, 1000);
    result.originY = random.between(-1000, 1000);
    return result;
}

template <typename T>
bool same(const PodBuffer<T> &a, const PodBuffer<T> &b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

/// One byte a pixel, 1 inside. Runs must be in order and must not touch.
class Bitmap {
  public:
    Bitmap(int width, int height)
        : m_width(static_cast<std::size_t>(width)), m_pixels(m_width * static_cast<std::size_t>(height), 0) {}

    void add(std::size_t row, std::size_t first, std::size_t end) {
        const std::size_t start = row * m_width + first;
        ASSERT_LT(first, end);
        ASSERT_LE(end, m_width);
        ASSERT_LT(row * m_width, m_pixels.size());
        ASSERT_TRUE(start >= m_last) << "out of order";
        if (first > 0) {
            ASSERT_EQ(m_pixels[start - 1], 0) << "touches the run before";
        }
        std::fill_n(m_pixels.begin() + static_cast<std::ptrdiff_t>(start), end - first, std::uint8_t{1});
        m_last = start + end - first;
    }

    friend bool operator==(const Bitmap &a, const Bitmap &b) { return a.m_pixels == b.m_pixels; }
    const std::vector<std::uint8_t> &pixels() const { return m_pixels; }

  private:
    std::size_t m_width;
    std::size_t m_last = 0;
    std::vector<std::uint8_t> m_pixels;
};

Bitmap decode(const PodBuffer<MaskRun> &runs, const EncodeJob &job) {
    Bitmap bitmap(job.width, job.height);
    for (const MaskRun &run : runs)
        bitmap.add(run.row, run.column, static_cast<std::size_t>(run.column) + run.length);
    return bitmap;
}

Bitmap decode(const PodBuffer<std::uint16_t> &values, const EncodeJob &job) {
    Bitmap bitmap(job.width, job.height);
    const std::uint16_t *value = values.begin();
    for (std::size_t row = 0; row < static_cast<std::size_t>(job.height); ++row) {
        const std::size_t count = *value++;
        for (const std::uint16_t *end = value + count; value != end; value += 2)
            bitmap.add(row, value[0], std::size_t{value[1]} + 1);
    }
    EXPECT_EQ(value, values.end());
    return bitmap;
}

Bitmap decode(const PodBuffer<MaskRunF> &runs, const EncodeJob &job, int originX, int originY) {
    Bitmap bitmap(job.width, job.height);
    const auto whole = [](float value, int scale, int origin) {
        return static_cast<std::size_t>(std::lround(value * static_cast<float>(scale)) + origin);
    };
    for (const MaskRunF &run : runs) {
        const std::size_t first = whole(run.x, job.width, originX);
        bitmap.add(whole(run.y, job.height, originY), first, first + whole(run.length, job.width, 0));
    }
    return bitmap;
}

TEST(EncodeProperty, DirectRouteEqualsFillAndScan) {
    Random random(20240611);
    RasterScratch direct;
    RasterScratch surface;
    const EncodeContext a{direct, EncodeRoute::Direct, RasterEngine::Portable};
    const EncodeContext b{surface, EncodeRoute::Surface, RasterEngine::Portable};
    const int count = test::iterations(21000);
    std::size_t values = 0;
    for (int i = 0; i < count; ++i) {
        const Case c = randomCase(random);
        ASSERT_TRUE(same(encodeRuns(a, c.job), encodeRuns(b, c.job))) << "case " << i;
        ASSERT_TRUE(same(encodeRowList(a, c.job), encodeRowList(b, c.job))) << "case " << i;
        ASSERT_TRUE(
            same(encodeFractions(a, c.job, c.originX, c.originY), encodeFractions(b, c.job, c.originX, c.originY)))
            << "case " << i;
        values += direct.values.size();
    }
    EXPECT_GT(values, 10u * static_cast<std::size_t>(count)) << "the cases must not be empty masks";
}

TEST(EncodeProperty, TheThreeEncodingsDecodeToOneMask) {
    Random random(7);
    RasterScratch scratch;
    const EncodeContext context{scratch, EncodeRoute::Direct, RasterEngine::Portable};
    for (int i = 0, count = test::iterations(3000); i < count; ++i) {
        const Case c = randomCase(random);
        const Bitmap runs = decode(encodeRuns(context, c.job), c.job);
        ASSERT_TRUE(runs == decode(encodeRowList(context, c.job), c.job)) << "case " << i;
        ASSERT_TRUE(runs == decode(encodeFractions(context, c.job, c.originX, c.originY), c.job, c.originX, c.originY))
            << "case " << i;
        if (HasFatalFailure())
            return;
    }
}

TEST(EncodeProperty, InvertingTwiceIsTheIdentity) {
    Random random(8);
    RasterScratch scratch;
    const EncodeContext context{scratch, EncodeRoute::Direct, RasterEngine::Portable};
    for (int i = 0, count = test::iterations(3000); i < count; ++i) {
        Case c = randomCase(random);
        c.job.exclusion = nullptr;
        c.job.invert = false;
        const Bitmap plain = decode(encodeRuns(context, c.job), c.job);
        c.job.invert = true;
        std::vector<std::uint8_t> twice = decode(encodeRuns(context, c.job), c.job).pixels();
        for (std::uint8_t &pixel : twice)
            pixel ^= 1;
        ASSERT_TRUE(twice == plain.pixels()) << "case " << i;
    }
}

TEST(EncodeProperty, MovingAnOutlineByWholePixelsMovesItsRuns) {
    Random random(9);
    RasterScratch scratch;
    const EncodeContext context{scratch, EncodeRoute::Direct, RasterEngine::Portable};
    for (int i = 0, count = test::iterations(3000); i < count; ++i) {
        // Wholly inside, before and after: at the edge runs are cut, and segments outside become chords.
        const int size = random.between(4, 200);
        std::vector<MPoint> points = test::randomOutline(random, OutlineKind::Wild, random.between(3, 30), size, size);
        const EncodeJob job{points.data(), static_cast<int>(points.size()), 3 * size, 3 * size};
        const auto &here = encodeRuns(context, job);
        std::vector<MaskRun> moved(here.begin(), here.end());
        const int dx = random.between(0, size);
        const int dy = random.between(0, size);
        for (MPoint &point : points)
            point = {point.type, point.x + dx, point.y + dy, 0, 0, 0};
        for (MaskRun &run : moved) {
            run.column = static_cast<std::uint16_t>(run.column + dx);
            run.row = static_cast<std::uint16_t>(run.row + dy);
        }
        const auto &there = encodeRuns(context, job);
        ASSERT_TRUE(std::equal(moved.begin(), moved.end(), there.begin(), there.end())) << "case " << i;
    }
}

} // namespace
} // namespace Quill
