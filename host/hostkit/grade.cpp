// SPDX-License-Identifier: MIT
//
// Exposure and saturation in linear light.
//
// Video code values are display-referred: ITU-R BT.1886 with a black level of zero makes the light of a reference
// display the code's 2.4th power. One stop of exposure doubles that light, which is what a lens does; the same factor
// on the code values themselves would lift shadows and highlights unevenly. Saturation moves each channel away from or
// towards the luminance, 0.2126 R + 0.7152 G + 0.0722 B for BT.709's primaries. The soft edge of a mask mixes light,
// not codes, so the seam has no dark fringe. Values outside of the display's range are clipped, per channel, at the
// very end; what a clip brings along beyond it (whiter than white) stays as it was.
#include "hostkit/grade.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <stdexcept>

#include "hostkit/float_lanes.h"
#include "hostkit/light_curve.h"
#include "hostkit/quick_curve.h"

namespace hostkit {
namespace {

/// Keeps graded light between black and white, or where the light was before.
FloatLanes clipped(FloatLanes graded, FloatLanes light) {
    const FloatLanes black = FloatLanes::all(0);
    const FloatLanes white = FloatLanes::all(1);
    return lesser(greater(graded, lesser(light, black)), greater(light, white));
}

bool isFull(const std::uint8_t *coverage) {
    static constexpr auto kFull = [] {
        std::array<std::uint8_t, Grade::kBlock> bytes{};
        bytes.fill(255);
        return bytes;
    }();
    return std::memcmp(coverage, kFull.data(), kFull.size()) == 0;
}

} // namespace

Grade::Grade(double exposureStops, double saturation)
    : gain_(static_cast<float>(std::exp2(exposureStops))), saturation_(static_cast<float>(saturation)) {
    // Written so that NaN fails too.
    if (!(std::abs(exposureStops) <= 16) || !(saturation >= 0 && saturation <= 16))
        throw std::invalid_argument("exposure has to be -16 to 16 stops and saturation 0 to 16");
}

template <bool kIsFull, typename Curve>
void Grade::applyCurve(Block &block, [[maybe_unused]] const std::uint8_t *coverage, const Light &light,
                       const Curve &curve) const {
    const auto &decode = curve.decode.lookup();
    const auto &encode = curve.encode.lookup();
    const FloatLanes ownShare = FloatLanes::all(gain_ * saturation_);
    const FloatLanes lumaShare = FloatLanes::all(gain_ * (1 - saturation_));
    const FloatLanes ofRed = FloatLanes::all(light.red), ofGreen = FloatLanes::all(light.green),
                     ofBlue = FloatLanes::all(light.blue);
    for (int i = 0; i < kBlock; i += FloatLanes::kCount) {
        const FloatLanes red = decode(FloatLanes::load(block.red + i));
        const FloatLanes green = decode(FloatLanes::load(block.green + i));
        const FloatLanes blue = decode(FloatLanes::load(block.blue + i));
        // Not a difference to the luminance: beside a bright channel a dark one would lose its digits.
        const FloatLanes luminance = lumaShare * (ofRed * red + ofGreen * green + ofBlue * blue);
        const auto graded = [&](FloatLanes channel) {
            const FloatLanes full = ownShare * channel + luminance;
            if constexpr (kIsFull)
                return clipped(full, channel);
            const FloatLanes share = FloatLanes::load(coverage + i) * FloatLanes::all(1.0F / 255);
            return clipped(channel + share * (full - channel), channel);
        };
        encode(graded(red)).store(block.red + i);
        encode(graded(green)).store(block.green + i);
        encode(graded(blue)).store(block.blue + i);
    }
}

void Grade::apply(Block &block, const std::uint8_t *coverage, const Light &light) const {
    const auto apply = [&](const auto &curve) {
        if (isFull(coverage))
            applyCurve<true>(block, coverage, light, curve);
        else
            applyCurve<false>(block, coverage, light, curve);
    };
    if (light.quick != nullptr)
        apply(*light.quick);
    else
        apply(light.curve);
}

void Grade::applyInside(Image &image, const Mask &mask) const {
    if (image.width() != mask.width() || image.height() != mask.height())
        throw std::invalid_argument("the mask and the picture have different sizes");
    const Light light = {lightCurveOf(kUnknownTransfer), 0.2126F, 0.7152F, 0.0722F, quickCurveOf(kUnknownTransfer)};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); x += kBlock) {
            const int count = std::min(kBlock, image.width() - x);
            std::uint8_t coverage[kBlock] = {};
            std::copy_n(mask.row(y) + x, count, coverage);
            if (std::all_of(coverage, coverage + count, [](std::uint8_t value) { return value == 0; }))
                continue;
            Block block = {};
            std::uint8_t *const pixels = image.row(y) + std::ptrdiff_t{x} * 4;
            for (int i = 0; i < count; ++i) {
                block.blue[i] = static_cast<float>(pixels[4 * i]) / 255.0F;
                block.green[i] = static_cast<float>(pixels[4 * i + 1]) / 255.0F;
                block.red[i] = static_cast<float>(pixels[4 * i + 2]) / 255.0F;
            }
            apply(block, coverage, light);
            for (int i = 0; i < count; ++i)
                for (int channel = 0; channel < 3; ++channel) {
                    const float *const values[] = {block.blue, block.green, block.red};
                    pixels[4 * i + channel] = static_cast<std::uint8_t>(values[channel][i] * 255 + 0.5F);
                }
        }
}

} // namespace hostkit
