// SPDX-License-Identifier: MIT
#include "canvas/stroker.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "canvas/look.h"

namespace {

using canvas::Pixel;
using canvas::Position;
using canvas::StrokeLook;
using canvas::StrokePalette;
using canvas::Stroker;
using canvas::Surface;

using Positions = std::vector<Position>;

// Core and edge in one colour each, soft over the whole reach, so that every distance shows.
StrokeLook look(float halfWidth) {
    return {halfWidth / 2, halfWidth, 0xFFFFFFFF, 0xFF000000};
}

double distanceTo(const Position &a, const Position &b, double x, double y) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double lengthSquared = dx * dx + dy * dy;
    const double along =
        lengthSquared > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / lengthSquared, 0.0, 1.0) : 0;
    return std::hypot(x - a.x - along * dx, y - a.y - along * dy);
}

double distanceTo(const Positions &line, double x, double y) {
    double distance = std::hypot(x - line[0].x, y - line[0].y);
    for (std::size_t i = 0; i + 1 < line.size(); ++i)
        distance = std::min(distance, distanceTo(line[i], line[i + 1], x, y));
    return distance;
}

std::vector<Pixel> pixelsOf(Surface &surface) {
    return {surface.pixels(), surface.pixels() + surface.pixelCount()};
}

std::vector<Pixel> drawn(const Positions &line, bool closed, const StrokeLook &style, int width, int height) {
    Surface surface;
    EXPECT_EQ(surface.resize(static_cast<UINT>(width), static_cast<UINT>(height)), S_OK);
    StrokePalette palette;
    palette.prepare(style);
    Stroker stroker;
    stroker.begin(surface, style);
    stroker.addPolyline(line, closed);
    stroker.paint(palette);
    return pixelsOf(surface);
}

// Every pixel is one that the palette has within `tolerance` pixels of the true distance.
void expectTrueDistances(const Positions &line, bool closed, float halfWidth, double tolerance, int width, int height) {
    const StrokeLook style = look(halfWidth);
    StrokePalette palette;
    palette.prepare(style);
    const std::vector<Pixel> pixels = drawn(line, closed, style, width, height);
    const double perPixel = style.stepsPerPixel();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double distance = distanceTo(line, x, y);
            const auto nearest =
                static_cast<int>(std::clamp(std::ceil(255 - (distance - tolerance) * perPixel), 0.0, 255.0));
            const auto farthest =
                static_cast<int>(std::clamp(std::floor(255 - (distance + tolerance) * perPixel), 0.0, 255.0));
            bool found = false;
            for (int nearness = farthest; nearness <= nearest && !found; ++nearness)
                found =
                    palette.at(static_cast<std::uint8_t>(nearness)) == pixels[static_cast<std::size_t>(y * width + x)];
            ASSERT_TRUE(found) << "at " << x << ", " << y << " of distance " << distance << ": " << std::hex
                               << pixels[static_cast<std::size_t>(y * width + x)];
        }
}

TEST(Stroker, DotIsRound) {
    expectTrueDistances({{20.25, 19.5}}, false, 6, 0.04, 40, 40);
}

TEST(Stroker, LinesInAllDirectionsHaveTrueDistances) {
    for (int i = 0; i < 64; ++i) {
        const double angle = i * 6.283185307179586 / 64;
        expectTrueDistances({{32, 32}, {32 + 24 * std::cos(angle), 32 + 24 * std::sin(angle)}}, false, 2.5F, 0.03, 64,
                            64);
    }
}

TEST(Stroker, AxisParallelLinesAreCrisp) {
    const StrokeLook style = {0.5F, 1.5F, 0xFFFFFFFF, 0xFF000000};
    const auto pixels = drawn({{4, 5}, {15, 5}}, false, style, 20, 11);
    for (int x = 5; x <= 14; ++x) {
        EXPECT_EQ(pixels[static_cast<std::size_t>(3 * 20 + x)], 0U);
        EXPECT_EQ(pixels[static_cast<std::size_t>(4 * 20 + x)], 0xFF000000);
        EXPECT_EQ(pixels[static_cast<std::size_t>(5 * 20 + x)], 0xFFFFFFFF);
        EXPECT_EQ(pixels[static_cast<std::size_t>(6 * 20 + x)], 0xFF000000);
        EXPECT_EQ(pixels[static_cast<std::size_t>(7 * 20 + x)], 0U);
    }
}

TEST(Stroker, RandomPolylinesHaveTrueDistances) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> coordinate(-30, 126);
    for (int round = 0; round < 150; ++round) {
        Positions line;
        for (int i = 0; i < 2 + round % 6; ++i)
            line.push_back({std::floor(coordinate(random) * 16) / 16, std::floor(coordinate(random) * 16) / 16});
        const bool closed = round % 2 == 0;
        if (closed)
            line.push_back(line.front());
        // Where mitres stand in for round corners the reach is exceeded by a hundredth.
        expectTrueDistances(line, closed, 1 + static_cast<float>(round % 5), 0.12, 96, 96);
    }
}

TEST(Stroker, SmoothCurvesOfShortPiecesHaveTrueDistances) {
    for (const double radius : {3.0, 8.0, 20.0, 40.0})
        for (const int pieces : {12, 40, 100, 400}) {
            Positions line;
            for (int i = 0; i < pieces; ++i) {
                const double angle = i * 6.283185307179586 / pieces;
                line.push_back({48 + radius * std::cos(angle), 47.5 + radius * std::sin(angle)});
            }
            line.push_back(line.front());
            expectTrueDistances(line, true, 2.5F, 0.1, 96, 96);
        }
}

TEST(Stroker, RepeatedPositionsChangeNothing) {
    const Positions once = {{10, 10}, {30, 14}, {20, 30}, {10, 10}};
    const Positions twice = {{10, 10}, {10, 10}, {30, 14}, {30, 14}, {30, 14}, {20, 30}, {10, 10}, {10, 10}};
    EXPECT_EQ(drawn(once, true, look(2), 48, 48), drawn(twice, true, look(2), 48, 48));
    EXPECT_EQ(drawn({{5, 5}, {5, 5}}, true, look(2), 12, 12), drawn({{5, 5}}, false, look(2), 12, 12));
}

TEST(Stroker, NothingIsDrawnForNoPositions) {
    const auto pixels = drawn({}, false, look(2), 12, 12);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0U), 144);
}

TEST(Stroker, FarEndsChangeNothingInSight) {
    // The same line, cut short outside the surface.
    const auto far = drawn({{-8000000, -4000000}, {8000000, 4000000}}, false, look(3), 64, 64);
    const auto near = drawn({{-200, -100}, {200, 100}}, false, look(3), 64, 64);
    EXPECT_EQ(far, near);
    const auto pixels = drawn({{-8000000, 20}, {8000000, 20}}, false, look(3), 64, 64);
    EXPECT_EQ(pixels[20 * 64], pixels[20 * 64 + 63]);
    EXPECT_NE(pixels[20 * 64], 0U);
}

TEST(Stroker, SmallestSurfaces) {
    for (int size = 1; size < 12; ++size)
        expectTrueDistances({{-3, -2}, {4, 5}, {9, 1}}, false, 2, 0.06, size, size);
}

// Strokes over something are laid over it pixel by pixel, whatever blocks they are painted in.
TEST(Stroker, OverAPictureEveryPixelIsBlendedOnce) {
    std::mt19937 random(29);
    std::uniform_real_distribution<double> place(-20, 120);
    std::uniform_int_distribution<int> extent(1, 100);
    constexpr Pixel kTint = 0x7D000078;
    for (int round = 0; round < 200; ++round) {
        Positions line(static_cast<std::size_t>(2 + round % 30));
        for (Position &position : line)
            position = {place(random), place(random)};
        const int width = extent(random);
        const int height = extent(random);
        StrokeLook style = look(0.75F + static_cast<float>(round % 7));
        style.edge = 0xB0000000;

        Surface surface;
        ASSERT_EQ(surface.resize(static_cast<UINT>(width), static_cast<UINT>(height)), S_OK);
        for (int y = 0; y < height; ++y)
            for (Pixel &pixel : std::span(surface.touch(y, 0, width), static_cast<std::size_t>(width)))
                pixel = random() % 4 == 0 ? canvas::kTransparent
                        : round % 3 == 0  ? kTint
                                          : static_cast<Pixel>(random() | 1U << 24);
        std::vector<Pixel> expected = pixelsOf(surface);
        const std::vector<Pixel> alone = drawn(line, round % 2 == 0, style, width, height);
        std::transform(expected.begin(), expected.end(), alone.begin(), expected.begin(), canvas::over);

        StrokePalette palette;
        palette.prepare(style);
        Stroker stroker;
        stroker.begin(surface, style);
        stroker.addPolyline(line, round % 2 == 0);
        stroker.paint(palette);
        ASSERT_EQ(pixelsOf(surface), expected) << round;
    }
}

TEST(Stroker, HiddenEndsChangeNothingThatIsNotHidden) {
    std::mt19937 random(41);
    std::uniform_real_distribution<double> place(-10, 90);
    constexpr int kSide = 80;
    const StrokeLook style = canvas::handleLook({{}, {}, CanvasColor::fromArgb(0xFF4AE1E1), 0}, 1);
    const auto reach = static_cast<double>(style.reach());
    int left = 0;
    for (int round = 0; round < 400; ++round) {
        const Position ends[] = {{place(random), place(random)}, {place(random), place(random)}};
        const double hidden = round % 12;
        const auto whole = drawn({ends[0], ends[1]}, false, style, kSide, kSide);
        Surface surface;
        ASSERT_EQ(surface.resize(kSide, kSide), S_OK);
        StrokePalette palette;
        palette.prepare(style);
        Stroker stroker;
        stroker.begin(surface, style);
        stroker.addLine(ends[0], ends[1], hidden);
        stroker.paint(palette);
        const double radius = std::hypot(hidden, reach) + 0.05;
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x) {
                const bool isHidden = std::hypot(x - ends[0].x, y - ends[0].y) <= radius ||
                                      std::hypot(x - ends[1].x, y - ends[1].y) <= radius;
                const Pixel pixel = surface.row(y)[x];
                if (!isHidden)
                    ASSERT_EQ(pixel, whole[static_cast<std::size_t>(y * kSide + x)]) << round << ": " << x << ' ' << y;
                else
                    left += pixel != whole[static_cast<std::size_t>(y * kSide + x)];
            }
    }
    EXPECT_GT(left, 1000) << "something was left out";
}

TEST(Stroker, UsedAgainItStartsAnew) {
    Surface surface;
    ASSERT_EQ(surface.resize(40, 40), S_OK);
    StrokePalette palette;
    palette.prepare(look(2));
    Stroker stroker;
    stroker.begin(surface, look(2));
    stroker.addPolyline(Positions{{1, 30}, {38, 3}}, false);
    stroker.paint(palette);
    surface.clear();
    ASSERT_EQ(surface.resize(40, 24), S_OK);
    stroker.begin(surface, look(2));
    stroker.addPolyline(Positions{{5, 5}, {30, 9}}, false);
    stroker.paint(palette);
    EXPECT_EQ(pixelsOf(surface), drawn({{5, 5}, {30, 9}}, false, look(2), 40, 24));
}

// More spans than a surface remembers, in many bands of rows: no seam between them.
TEST(Stroker, MoreSpansThanAreRememberedLeaveNoSeam) {
    constexpr int kWidth = 4200;
    constexpr int kHeight = 3000;
    Surface surface;
    ASSERT_EQ(surface.resize(kWidth, kHeight), S_OK);
    const StrokeLook style = look(1);
    StrokePalette palette;
    palette.prepare(style);
    Stroker stroker;
    stroker.begin(surface, style);
    for (int x = 5; x < kWidth; x += 10)
        stroker.addPolyline(Positions{{static_cast<double>(x), -20}, {static_cast<double>(x), kHeight + 20}}, false);
    stroker.paint(palette);
    const std::vector<Pixel> first(surface.row(0), surface.row(0) + kWidth);
    EXPECT_EQ(first[5], 0xFFFFFFFF);
    for (int y = 1; y < kHeight; ++y)
        ASSERT_TRUE(std::equal(first.begin(), first.end(), surface.row(y))) << y;
}

} // namespace
