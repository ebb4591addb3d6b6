// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "fitting/nearest.h"
#include "fitting/pixel.h"
#include "fitting/random.h"

// The choice of a border pixel by sorting the whole list for every place: what the fast one is measured against, and
// what its results are held to.

namespace fitting {

/// Places in the list of the first `limit` pixels, by distance; equal distances in list order.
inline std::vector<std::uint32_t> plainOrder(std::span<const Pixel> list, const Pixel &target, std::size_t limit) {
    std::vector<std::uint32_t> places(limit);
    for (std::size_t place = 0; place < limit; ++place)
        places[place] = static_cast<std::uint32_t>(place);
    std::ranges::stable_sort(places, {}, [&](std::uint32_t place) { return squaredDistance(list[place], target); });
    return places;
}

/// The same on the list itself, which stays as the sort and the shuffle leave it: the next choice starts from there.
inline Pixel plainChoice(std::span<Pixel> list, const Pixel &target, std::size_t limit) {
    const std::span<Pixel> first = list.first(limit);
    std::ranges::sort(first, {}, [&](const Pixel &pixel) { return squaredDistance(pixel, target); });
    shuffle(first.first(std::min(limit, kCandidates)));
    return first.front();
}

} // namespace fitting
