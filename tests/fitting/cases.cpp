// SPDX-License-Identifier: MIT
#include "cases.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <tuple>

namespace fitting_quality {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;

class Random {
  public:
    explicit Random(std::uint32_t seed) : m_engine(seed) {}
    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine()) / 4294967296.0);
    }
    int below(int bound) { return static_cast<int>(m_engine() % static_cast<std::uint32_t>(bound)); }

  private:
    std::mt19937 m_engine;
};

/// The contours of a shape; what an odd number of them goes round is inside.
struct Shape {
    std::string kind;
    bool isConvex = false;
    std::vector<Polygon> contours;
};

Polygon around(double x, double y, int corners, auto radii) {
    Polygon polygon;
    for (int corner = 0; corner < corners; ++corner) {
        const auto [radiusX, radiusY, angle] = radii(corner);
        polygon.emplace_back(x + radiusX * std::cos(angle), y + radiusY * std::sin(angle));
    }
    return polygon;
}

Polygon turned(Polygon polygon, double x, double y, double angle) {
    for (auto &[px, py] : polygon) {
        const double dx = px - x;
        const double dy = py - y;
        px = x + dx * std::cos(angle) - dy * std::sin(angle);
        py = y + dx * std::sin(angle) + dy * std::cos(angle);
    }
    return polygon;
}

Polygon ellipse(double x, double y, double radiusX, double radiusY) {
    return around(x, y, 180, [=](int corner) { return std::tuple(radiusX, radiusY, kTurn * corner / 180); });
}

/// A wobbly ring of waves.
Polygon blob(Random &random, double x, double y, double radius) {
    const double phase = random.between(0, kTurn);
    const int waves = 2 + random.below(4);
    return around(x, y, 240, [=](int corner) {
        const double angle = kTurn * corner / 240;
        const double length =
            radius * (1 + 0.18 * std::sin(waves * angle + phase) + 0.06 * std::sin(5 * angle - phase));
        return std::tuple(length, length, angle);
    });
}

/// Capital letters of bars, on a grid of 4 x 6.
Polygon letter(int which) {
    switch (which) {
    case 0: // L
        return {{0, 0}, {1.3, 0}, {1.3, 4.7}, {4, 4.7}, {4, 6}, {0, 6}};
    case 1: // T
        return {{0, 0}, {4, 0}, {4, 1.3}, {2.7, 1.3}, {2.7, 6}, {1.3, 6}, {1.3, 1.3}, {0, 1.3}};
    case 2: // E
        return {{0, 0},     {4, 0},     {4, 1.3},   {1.3, 1.3}, {1.3, 2.4}, {3.3, 2.4},
                {3.3, 3.6}, {1.3, 3.6}, {1.3, 4.7}, {4, 4.7},   {4, 6},     {0, 6}};
    case 3: // H
        return {{0, 0}, {1.3, 0}, {1.3, 2.4}, {2.7, 2.4}, {2.7, 0}, {4, 0},
                {4, 6}, {2.7, 6}, {2.7, 3.6}, {1.3, 3.6}, {1.3, 6}, {0, 6}};
    case 4: // V
        return {{0, 0}, {1.4, 0}, {2, 3.6}, {2.6, 0}, {4, 0}, {2.8, 6}, {1.2, 6}};
    default: // Z
        return {{0, 0}, {4, 0}, {4, 1.3}, {1.8, 4.7}, {4, 4.7}, {4, 6}, {0, 6}, {0, 4.7}, {2.2, 1.3}, {0, 1.3}};
    }
}

Shape makeShape(Random &random, int kind) {
    const double x = kWidth * random.between(0.4, 0.6);
    const double y = kHeight * random.between(0.42, 0.58);
    const double angle = random.between(0, kTurn);
    const double size = random.between(50, 95);
    switch (kind) {
    case 0:
        return {"ellipse", true, {turned(ellipse(x, y, size, size * random.between(0.4, 1)), x, y, angle)}};
    case 1: {
        const int corners = 3 + random.below(5);
        return {"convex polygon", true, {around(x, y, corners, [=](int corner) {
                    return std::tuple(size, size, angle + kTurn * corner / corners);
                })}};
    }
    case 2: {
        const int spikes = 4 + random.below(4);
        const double inner = size * random.between(0.4, 0.65);
        return {"star", false, {around(x, y, 2 * spikes, [=](int corner) {
                    const double radius = corner % 2 == 0 ? size : inner;
                    return std::tuple(radius, radius, angle + kTurn * corner / (2 * spikes));
                })}};
    }
    case 3: {
        Polygon polygon = letter(random.below(6));
        const double scale = size / 2.6;
        for (auto &[px, py] : polygon) {
            px = x + (px - 2) * scale;
            py = y + (py - 3) * scale * 0.85;
        }
        return {"letter", false, {turned(polygon, x, y, random.between(-0.3, 0.3))}};
    }
    case 4: {
        Shape shape = {"blob with holes", false, {blob(random, x, y, size)}};
        for (int hole = 1 + random.below(2); hole > 0; --hole) {
            const double away = hole == 2 ? size * 0.4 : -size * 0.35;
            shape.contours.push_back(
                ellipse(x + away, y + random.between(-0.15, 0.15) * size, size * 0.2, size * 0.25));
        }
        return shape;
    }
    case 5: {
        const double thickness = random.between(3, 14);
        const Polygon bar = {{x - size * 1.2, y - thickness / 2},
                             {x + size * 1.2, y - thickness / 2},
                             {x + size * 1.2, y + thickness / 2},
                             {x - size * 1.2, y + thickness / 2}};
        return {"thin bar", false, {turned(bar, x, y, random.between(-0.6, 0.6))}};
    }
    default: {
        const double apart = size * random.between(0.75, 1.05);
        return {
            "two islands", false, {blob(random, x - apart, y, size * 0.55), blob(random, x + apart, y, size * 0.55)}};
    }
    }
}

Pixels fill(const std::vector<Polygon> &contours) {
    Pixels pixels(static_cast<std::size_t>(kWidth) * kHeight);
    std::vector<double> crossings;
    // The last row and column stay free: a run cannot end with a mask's last pixel.
    for (int row = 0; row + 1 < kHeight; ++row) {
        const double y = row + 0.5;
        crossings.clear();
        for (const Polygon &contour : contours) {
            for (std::size_t index = 0; index < contour.size(); ++index) {
                const auto &[ax, ay] = contour[index];
                const auto &[bx, by] = contour[(index + 1) % contour.size()];
                if ((ay <= y) != (by <= y))
                    crossings.push_back(ax + (y - ay) / (by - ay) * (bx - ax));
            }
        }
        std::ranges::sort(crossings);
        for (std::size_t pair = 0; pair + 1 < crossings.size(); pair += 2) {
            const int first = std::max(0, static_cast<int>(std::ceil(crossings[pair] - 0.5)));
            const int last = std::min(kWidth - 2, static_cast<int>(std::floor(crossings[pair + 1] - 0.5)));
            for (int column = first; column <= last; ++column)
                pixels[static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column)] = true;
        }
    }
    return pixels;
}

/// Points at equal distances along a contour.
Polygon spread(const Polygon &contour, int count, double start) {
    std::vector<double> ends;
    double length = 0;
    for (std::size_t index = 0; index < contour.size(); ++index) {
        const auto &[ax, ay] = contour[index];
        const auto &[bx, by] = contour[(index + 1) % contour.size()];
        ends.push_back(length += std::hypot(bx - ax, by - ay));
    }
    Polygon points;
    for (int number = 0; number < count; ++number) {
        const double at = std::fmod(start + number, count) / count * length;
        const auto index = static_cast<std::size_t>(std::ranges::lower_bound(ends, at) - ends.begin()) % contour.size();
        const auto &[ax, ay] = contour[index];
        const auto &[bx, by] = contour[(index + 1) % contour.size()];
        const double from = index == 0 ? 0 : ends[index - 1];
        const double part = ends[index] > from ? (at - from) / (ends[index] - from) : 0;
        points.emplace_back(ax + part * (bx - ax), ay + part * (by - ay));
    }
    return points;
}

/// The corners of a polygon without inward ones that holds every contour: what goes round two islands.
Polygon hull(const std::vector<Polygon> &contours) {
    Polygon points;
    for (const Polygon &contour : contours)
        points.insert(points.end(), contour.begin(), contour.end());
    std::ranges::sort(points);
    Polygon chain;
    const auto add = [&chain](const Point &point, std::size_t least) {
        while (chain.size() >= least + 2) {
            const auto &[ax, ay] = chain[chain.size() - 2];
            const auto &[bx, by] = chain.back();
            if ((bx - ax) * (point.second - ay) - (by - ay) * (point.first - ax) > 0)
                break;
            chain.pop_back();
        }
        chain.push_back(point);
    };
    for (const Point &point : points)
        add(point, 0);
    const std::size_t half = chain.size() - 1;
    for (std::size_t index = points.size(); index-- > 0;)
        add(points[index], half);
    chain.pop_back();
    return chain;
}

/// A hand in a hurry: the whole a little too large, too small or beside the shape, and each anchor off by a few pixels.
std::vector<std::pair<int, int>> drawRoughly(Random &random, const Shape &shape) {
    const int count = 6 + random.below(35);
    const Polygon outer = shape.kind == "two islands" ? hull(shape.contours) : shape.contours.front();
    double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9;
    for (const auto &[x, y] : outer) {
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
    const double size = std::hypot(right - left, bottom - top);
    const double scale = random.between(0.85, 1.18);
    const double shiftX = random.between(-0.03, 0.03) * size;
    const double shiftY = random.between(-0.03, 0.03) * size;
    std::vector<std::pair<int, int>> anchors;
    for (const auto &[x, y] : spread(outer, count, random.between(0, 1))) {
        const double centreX = (left + right) / 2;
        const double centreY = (top + bottom) / 2;
        const double drawnX = centreX + (x - centreX) * scale + shiftX + random.between(-0.03, 0.03) * size;
        const double drawnY = centreY + (y - centreY) * scale + shiftY + random.between(-0.03, 0.03) * size;
        anchors.emplace_back(std::clamp(static_cast<int>(drawnX), 0, kWidth - 1),
                             std::clamp(static_cast<int>(drawnY), 0, kHeight - 1));
    }
    return anchors;
}

} // namespace

Case makeCase(std::uint32_t seed) {
    Random random(seed * 2654435761U + 1);
    const Shape shape = makeShape(random, static_cast<int>(seed % 7));
    return {shape.kind, shape.isConvex, fill(shape.contours), drawRoughly(random, shape)};
}

std::vector<Quill::MaskRunF> runsOf(const Pixels &mask) {
    std::vector<Quill::MaskRunF> runs;
    for (int row = 0; row < kHeight; ++row) {
        const auto inside = [&](int column) {
            return mask[static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column)];
        };
        for (int column = 0; column < kWidth; ++column) {
            const int first = column;
            while (column < kWidth && inside(column))
                ++column;
            if (column > first)
                runs.push_back({static_cast<float>(first) / kWidth, static_cast<float>(row) / kHeight,
                                static_cast<float>(column - first) / kWidth});
        }
    }
    return runs;
}

Pixels pixelsOf(const std::vector<Quill::MaskRunF> &runs) {
    Pixels pixels(static_cast<std::size_t>(kWidth) * kHeight);
    for (const Quill::MaskRunF &run : runs) {
        const auto first =
            static_cast<std::size_t>(std::lround(run.y * kHeight) * kWidth + std::lround(run.x * kWidth));
        std::fill_n(pixels.begin() + static_cast<std::ptrdiff_t>(first), std::lround(run.length * kWidth), true);
    }
    return pixels;
}

double intersectionOverUnion(const Pixels &a, const Pixels &b) {
    std::size_t both = 0;
    std::size_t either = 0;
    for (std::size_t index = 0; index < a.size(); ++index) {
        both += a[index] && b[index] ? 1 : 0;
        either += a[index] || b[index] ? 1 : 0;
    }
    return either == 0 ? 0 : static_cast<double>(both) / static_cast<double>(either);
}

} // namespace fitting_quality
