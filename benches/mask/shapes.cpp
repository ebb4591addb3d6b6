// SPDX-License-Identifier: MIT
#include "shapes.h"

#include <cmath>
#include <random>

namespace bench {
namespace {

constexpr double kTurn = 6.283185307179586;

struct Position {
    double x;
    double y;
};

/// A closed chain through the positions with the tangents of a Catmull-Rom spline, or with straight segments.
Outline chain(const std::vector<Position> &anchors, bool straight) {
    const std::size_t count = anchors.size();
    const auto at = [&](std::size_t index) { return anchors[index % count]; };
    Outline outline;
    const auto add = [&](std::uint32_t type, double x, double y) {
        outline.push_back({type, static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)), 1, 1, 0});
    };
    for (std::size_t i = 0; i < count; ++i) {
        const Position before = at(i + count - 1);
        const Position a = at(i);
        const Position b = at(i + 1);
        const Position after = at(i + 2);
        add(kAnchorPoint, a.x, a.y);
        if (straight) {
            add(kControlPoint, a.x + (b.x - a.x) / 4, a.y + (b.y - a.y) / 4);
            add(kControlPoint, a.x + (b.x - a.x) * 3 / 4, a.y + (b.y - a.y) * 3 / 4);
        } else {
            add(kControlPoint, a.x + (b.x - before.x) / 6, a.y + (b.y - before.y) / 6);
            add(kControlPoint, b.x - (after.x - a.x) / 6, b.y - (after.y - a.y) / 6);
        }
    }
    return outline;
}

Outline draw(const Shape &shape, const Size &size, std::mt19937 &engine) {
    const auto random = [&] { return static_cast<double>(engine() >> 5) / (1 << 27); };
    const double radius = size.height * (0.36 + 0.08 * random());
    const double cx = size.width * (0.45 + 0.1 * random());
    const double cy = size.height * (0.48 + 0.04 * random());
    const double start = kTurn * random();
    std::vector<Position> anchors;
    for (int i = 0; i < shape.anchors; ++i) {
        const double angle = start + kTurn * i / shape.anchors;
        double reach = 1 - shape.roughness * random();
        if (shape.form == Shape::Form::Star && i % 2 == 1)
            reach *= 0.6;
        if (shape.form == Shape::Form::Eight)
            anchors.push_back({cx + 1.4 * radius * reach * std::sin(angle), cy + radius * reach * std::sin(2 * angle)});
        else
            anchors.push_back({cx + 1.2 * radius * reach * std::cos(angle), cy + radius * reach * std::sin(angle)});
    }
    return chain(anchors, shape.form == Shape::Form::Star);
}

} // namespace

std::array<Outline, kVariants> makeVariants(const Shape &shape, const Size &size) {
    std::mt19937 engine(static_cast<unsigned>(shape.anchors * 10000 + size.height));
    std::array<Outline, kVariants> variants;
    for (Outline &outline : variants)
        outline = draw(shape, size, engine);
    return variants;
}

} // namespace bench
