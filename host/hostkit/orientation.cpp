// SPDX-License-Identifier: MIT
#include "hostkit/orientation.h"

#include <algorithm>
#include <cstdlib>

namespace hostkit {
namespace {

/// Pixels of a square that both pictures keep in the cache.
constexpr int kTile = 32;

struct PlaneSize {
    int width, height;
};

/// `size` is the target's.
template <typename Sample>
void turnPlane(const std::uint8_t *source, std::ptrdiff_t sourceStride, const Orientation &orientation,
               std::uint8_t *target, std::ptrdiff_t targetStride, PlaneSize size) {
    const auto copy = [&](int x, int y) {
        int column = orientation.mirroredX ? size.width - 1 - x : x;
        int row = orientation.mirroredY ? size.height - 1 - y : y;
        if (orientation.transposed)
            std::swap(column, row);
        reinterpret_cast<Sample *>(target + y * targetStride)[x] =
            reinterpret_cast<const Sample *>(source + row * sourceStride)[column];
    };
    for (int top = 0; top < size.height; top += kTile)
        for (int left = 0; left < size.width; left += kTile)
            for (int y = top; y < std::min(top + kTile, size.height); ++y)
                for (int x = left; x < std::min(left + kTile, size.width); ++x)
                    copy(x, y);
}

} // namespace

bool readDisplayMatrix(const std::int32_t *matrix, Orientation &orientation) {
    // A place (x, y) goes to (a x + c y, b x + d y).
    const std::int32_t a = matrix[0], b = matrix[1], c = matrix[3], d = matrix[4];
    const bool isStraight = a != 0 && d != 0 && b == 0 && c == 0;
    const bool isTransposed = a == 0 && d == 0 && b != 0 && c != 0;
    if (!isStraight && !isTransposed)
        return false;
    orientation.transposed = isTransposed;
    orientation.mirroredX = (isTransposed ? c : a) < 0;
    orientation.mirroredY = (isTransposed ? b : d) < 0;
    return true;
}

void turn(const Planes &source, const Orientation &orientation, const Planes &target) {
    for (int i = 0; i < 3; ++i) {
        const PlaneSize size =
            i == 0 ? PlaneSize{target.width, target.height} : PlaneSize{target.chromaWidth(), target.chromaHeight()};
        const auto run = target.depth > 8 ? turnPlane<std::uint16_t> : turnPlane<std::uint8_t>;
        run(source.data[i], source.stride[i], orientation, target.data[i], target.stride[i], size);
    }
}

} // namespace hostkit
