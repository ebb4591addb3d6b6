// SPDX-License-Identifier: MIT
#include "canvas/dot_pattern.h"

#include <algorithm>
#include <cmath>

namespace canvas {

void DotPattern::setLook(double reach, double stepsPerPixel) {
    if (reach == m_reach && stepsPerPixel == m_stepsPerPixel)
        return;
    const auto longestSide = static_cast<std::size_t>(2 * std::ceil(reach) + 2);
    m_nearness.resize(longestSide * longestSide);
    m_reach = reach;
    m_stepsPerPixel = stepsPerPixel;
    m_fraction = kNone;
}

void DotPattern::setCentre(const Position &centre) {
    const Position whole = {std::floor(centre.x), std::floor(centre.y)};
    const Position fraction = {centre.x - whole.x, centre.y - whole.y};
    if (fraction != m_fraction) {
        m_fraction = fraction;
        compute();
    }
    m_left = static_cast<int>(whole.x) + m_offset;
    m_top = static_cast<int>(whole.y) + m_offset;
}

void DotPattern::compute() {
    m_offset = static_cast<int>(std::ceil(std::min(m_fraction.x, m_fraction.y) - m_reach));
    m_side = static_cast<int>(std::floor(std::max(m_fraction.x, m_fraction.y) + m_reach)) + 1 - m_offset;
    std::uint8_t *nearness = m_nearness.data();
    for (int row = 0; row < m_side; ++row)
        for (int column = 0; column < m_side; ++column) {
            const double dx = column + m_offset - m_fraction.x;
            const double dy = row + m_offset - m_fraction.y;
            const double steps = std::sqrt(dx * dx + dy * dy) * m_stepsPerPixel;
            *nearness++ = static_cast<std::uint8_t>(255 - static_cast<int>(std::min(steps, 255.0)));
        }
}

} // namespace canvas
