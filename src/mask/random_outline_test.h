// SPDX-License-Identifier: MIT
#pragma once

// Random outlines of every kind that a person draws, and of those that nobody does. The fuzzers read the same cases
// from bytes; here they come from a seed.

#include <cstdint>
#include <random>
#include <vector>

#include "overlay/types/outline_points.h"

namespace Quill::test {

/// A reproducible stream of numbers: the same on every platform, which the standard distributions are not.
class Random {
  public:
    explicit Random(std::uint32_t seed) : m_engine(seed) {}

    /// Evenly from low to high, both included.
    int between(int low, int high) {
        const std::uint64_t count = static_cast<std::uint64_t>(std::int64_t{high} - low) + 1;
        return static_cast<int>(low + static_cast<std::int64_t>(m_engine() % count));
    }
    bool oneIn(int count) { return between(1, count) == 1; }
    double fraction() { return static_cast<double>(m_engine() >> 11) / 9007199254740992.0; }

  private:
    std::mt19937_64 m_engine;
};

enum class OutlineKind {
    Straight, ///< controls at a quarter and three quarters of the chord
    Smooth,   ///< round a centre, handles along the tangents
    Wild,     ///< every point anywhere in the surface
    Beyond,   ///< every point anywhere in and around the surface
    Outside,  ///< wholly off the surface
    Tiny,     ///< a few pixels across
    Grid,     ///< axis-parallel steps
    Enormous, ///< coordinates up to the largest that are drawn, and a little further
};
inline constexpr int kOutlineKinds = 8;

/// A closed outline of `anchors` anchors for a surface of that size.
std::vector<MPoint> randomOutline(Random &random, OutlineKind kind, int anchors, int width, int height);

/// Mostly few, now and then up to 2,000.
int randomAnchorCount(Random &random);

/// A map with one byte in `sparsity` excluded, runs of excluded bytes among them, and other values too.
std::vector<std::uint8_t> randomExclusion(Random &random, int width, int height);

/// Iterations of a random test: `quick`, or twenty times as many with ORVANEL_LONG_TESTS=1.
int iterations(int quick);

} // namespace Quill::test
