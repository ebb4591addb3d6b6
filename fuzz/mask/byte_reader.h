// SPDX-License-Identifier: MIT
#pragma once

// Fuzzer input to values. Past the end everything reads as zero, so every input is a case.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "overlay/types/outline_points.h"

namespace fuzz {

class ByteReader {
  public:
    ByteReader(const std::uint8_t *data, std::size_t size) : m_data(data), m_left(size) {}

    bool empty() const { return m_left == 0; }

    template <typename Value>
    Value take() {
        Value value{};
        const std::size_t size = sizeof value < m_left ? sizeof value : m_left;
        std::memcpy(&value, m_data, size);
        m_data += size;
        m_left -= size;
        return value;
    }

  private:
    const std::uint8_t *m_data;
    std::size_t m_left;
};

/// How coordinates are spelt: one byte around a small surface, sixteen bits around a large one, or all 32.
enum class Coordinates { Near, Wide, Any };

inline std::int32_t takeCoordinate(ByteReader &bytes, Coordinates kind) {
    switch (kind) {
    case Coordinates::Near:
        return bytes.take<std::int8_t>() + 64;
    case Coordinates::Wide:
        return bytes.take<std::int16_t>() / 8;
    case Coordinates::Any:
        break;
    }
    return bytes.take<std::int32_t>();
}

/// Points until the bytes end, at most `limit`. With `flags` each starts with a byte of type and curve flags; without,
/// types follow the layout of an outline.
inline std::vector<MPoint> takePoints(ByteReader &bytes, Coordinates kind, std::size_t limit, bool flags) {
    std::vector<MPoint> points;
    while (!bytes.empty() && points.size() < limit) {
        MPoint point;
        point.type = points.size() % 3 == 0 ? kAnchorPoint : kControlPoint;
        if (flags) {
            const auto bits = bytes.take<std::uint8_t>();
            point.type ^= bits >> 7;
            point.curveIn = bits & 1;
            point.curveOut = bits >> 1 & 1;
        }
        point.x = takeCoordinate(bytes, kind);
        point.y = takeCoordinate(bytes, kind);
        points.push_back(point);
    }
    return points;
}

inline void require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace fuzz
