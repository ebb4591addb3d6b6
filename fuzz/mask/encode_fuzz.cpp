// SPDX-License-Identifier: MIT
// An outline through both routes of all three encodings: any difference is a crash.
//
// Input: flags (bits 0-1 coordinates, 2 invert, 3 exclusion map), width, height (16 bits each, taken modulo what the
// surface route can do in a moment), origin (16 bits each), a byte that seeds the map, then points.

#include <algorithm>

#include "byte_reader.h"
#include "mask/encode.h"

namespace {

constexpr int kMaxWidth = 1024;
constexpr int kMaxPixels = 1 << 13;

template <typename Value>
bool same(const Quill::PodBuffer<Value> &a, const Quill::PodBuffer<Value> &b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

std::vector<std::uint8_t> exclusionMap(std::uint8_t seed, int width, int height) {
    std::vector<std::uint8_t> map(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::uint32_t state = seed;
    for (std::uint8_t &byte : map) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>((state >> 24) % (2 + seed % 7));
    }
    return map;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    // The handler too, where the platform has an engine of its own: its curves are the platform's.
    static const Quill::RasterEngineOverride engine(Quill::RasterEngine::Portable);
    fuzz::ByteReader bytes(data, size);
    const auto flags = bytes.take<std::uint8_t>();
    const int width = bytes.take<std::uint16_t>() % (kMaxWidth + 1);
    const int height = bytes.take<std::uint16_t>() % (kMaxPixels / std::max(width, 64) + 1);
    const std::int32_t originX = bytes.take<std::int16_t>();
    const std::int32_t originY = bytes.take<std::int16_t>();
    const auto seed = bytes.take<std::uint8_t>();
    const auto points = fuzz::takePoints(bytes, static_cast<fuzz::Coordinates>(flags % 4 % 3), 900, false);

    std::vector<Quill::MaskRun> runs;
    const auto exclusion = exclusionMap(seed, width, height);
    const Quill::EncodeJob job{points.data(),
                               static_cast<int>(points.size()),
                               width,
                               height,
                               (flags & 4) != 0,
                               (flags & 8) != 0 ? exclusion.data() : nullptr};
    const HRESULT result =
        Quill::MaskHandler::ConvertPoints2Mask(job.points, job.count, width, height, job.invert, job.exclusion, &runs);
    fuzz::require(result == (job.count < 9 ? E_FAIL : S_OK));
    if (result != S_OK)
        return 0;

    using Quill::EncodeRoute;
    using Quill::RasterEngine;
    static Quill::RasterScratch scratch[2];
    const Quill::EncodeContext direct{scratch[0], EncodeRoute::Direct, RasterEngine::Portable};
    const Quill::EncodeContext surface{scratch[1], EncodeRoute::Surface, RasterEngine::Portable};
    fuzz::require(same(encodeRuns(direct, job), encodeRuns(surface, job)));
    fuzz::require(same(encodeRowList(direct, job), encodeRowList(surface, job)));
    fuzz::require(
        same(encodeFractions(direct, job, originX, originY), encodeFractions(surface, job, originX, originY)));
    fuzz::require(std::equal(runs.begin(), runs.end(), scratch[0].runs.begin(), scratch[0].runs.end()));
    return 0;
}
