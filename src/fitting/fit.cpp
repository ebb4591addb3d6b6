// SPDX-License-Identifier: MIT
#include "fitting/fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

#include "fitting/random.h"
#include "fitting/trace.h"
#include "overlay/types/placement.h"

namespace fitting {
namespace {

/// Anchors further apart than this share of the mask's shorter side get another one between them.
constexpr double kLongestGap = 0.14;

std::vector<Pixel> shuffled(std::vector<Pixel> pixels) {
    shuffle(std::span(pixels));
    return pixels;
}

} // namespace

std::optional<Target> Target::decode(std::span<const Quill::MaskRunF> runs, int width, int height) {
    try {
        std::optional<BitPicture> mask = decodeRuns(runs, width, height);
        if (!mask)
            return std::nullopt;
        return Target(std::move(*mask), width, height);
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}

Target::Target(BitPicture mask, int width, int height)
    : m_width(width), m_height(height), m_mask(std::move(mask)), m_border(m_mask), m_centroid(centroidOf(m_mask)),
      m_extremes(findExtremes(m_border.pixels())), m_shuffled(shuffled(m_border.pixels())), m_nearest(m_shuffled) {}

Place Target::placeOf(const Pixel &pixel) const {
    return {static_cast<float>(pixel.x) / static_cast<float>(m_width),
            static_cast<float>(pixel.y) / static_cast<float>(m_height)};
}

Pixel Target::pixelOf(const Place &place) const {
    return {truncateToInt32(static_cast<float>(m_width) * place.x),
            truncateToInt32(static_cast<float>(m_height) * place.y)};
}

double Target::longestGap() const {
    return kLongestGap * std::min(m_width, m_height);
}

Pixel Target::chooseNear(const Pixel &target, std::size_t limit) {
    const std::span<const std::uint32_t> nearest = m_nearest.find(target, limit);
    std::array<std::uint32_t, kCandidates> candidates{};
    std::ranges::copy(nearest, candidates.begin());
    shuffle(std::span(candidates).first(nearest.size()));
    return m_shuffled[candidates.front()];
}

std::size_t Target::snap(std::span<Place> places, const Pixel &shift) {
    // At least one: the smallest border, of one pixel and one beside it, has two.
    const std::size_t half = m_shuffled.size() / 2;
    std::size_t onBorder = 0;
    for (Place &place : places) {
        const Pixel pixel = pixelOf(place);
        const Pixel target = {truncateToInt32(static_cast<double>(pixel.x) + shift.x),
                              truncateToInt32(static_cast<double>(pixel.y) + shift.y)};
        const bool hits = m_border.contains(target);
        onBorder += hits ? 1 : 0;
        place = placeOf(hits ? target : chooseNear(target, half));
    }
    return onBorder;
}

Pixel Target::fillGap(const Pixel &a, const Pixel &b) {
    const auto middle = [](std::int32_t first, std::int32_t second) {
        return static_cast<std::int32_t>((std::int64_t{first} + second) / 2);
    };
    return chooseNear({middle(a.x, b.x), middle(a.y, b.y)}, m_shuffled.size());
}

std::vector<std::uint32_t> Target::trace(std::span<const Place> places, double reach) {
    std::vector<BorderPlace> anchors;
    anchors.reserve(places.size());
    for (const Place &place : places) {
        // Rounded, not truncated: dividing by the size and multiplying with it again may have lost a little.
        const Pixel pixel = {truncateToInt32(static_cast<float>(m_width) * place.x + 0.5),
                             truncateToInt32(static_cast<float>(m_height) * place.y + 0.5)};
        const Pixel &nearest = m_shuffled[m_nearest.find(pixel, m_shuffled.size()).front()];
        const bool isNear = squaredDistance(pixel, nearest) <= reach * reach;
        anchors.push_back(isNear ? m_border.indexOf(nearest) : std::nullopt);
    }
    return traceAnchors(m_mask, m_border, anchors);
}

} // namespace fitting
