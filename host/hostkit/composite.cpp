// SPDX-License-Identifier: MIT
#include "hostkit/composite.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

#include "hostkit/error.h"

namespace hostkit {
namespace {

/// `over` laid on `under` with `alpha` of 255, to the nearest integer.
std::uint8_t mix(std::uint8_t under, std::uint8_t over, unsigned alpha) {
    const unsigned sum = over * alpha + under * (255U - alpha) + 127U;
    return static_cast<std::uint8_t>(sum / 255U);
}

} // namespace

void compositeOverlay(Image &frame, const BYTE *overlay, std::size_t length) {
    const auto rowBytes = static_cast<std::size_t>(frame.width()) * 4;
    if (overlay == nullptr || length != rowBytes * static_cast<std::size_t>(frame.height()))
        throw std::invalid_argument("an overlay of " + std::to_string(length) + " bytes does not fit a frame of " +
                                    sizeText(frame.width(), frame.height()) + " pixels");
    for (int y = 0; y < frame.height(); ++y) {
        const BYTE *const source = overlay + static_cast<std::size_t>(y) * rowBytes;
        std::uint8_t *const target = frame.row(y);
        // The overlay is mostly empty: two transparent pixels are passed over with one comparison.
        for (std::size_t i = 0; i < rowBytes; i += 4) {
            std::uint64_t pair = 1;
            if (i + sizeof pair <= rowBytes)
                std::memcpy(&pair, source + i, sizeof pair);
            if (pair == 0) {
                i += 4;
                continue;
            }
            const unsigned alpha = source[i + 3];
            if (alpha == 0)
                continue;
            for (std::size_t channel = 0; channel < 3; ++channel)
                target[i + channel] = mix(target[i + channel], source[i + channel], alpha);
        }
    }
}

void tint(Image &image, const Mask &mask, std::uint8_t blue, std::uint8_t green, std::uint8_t red, double strength) {
    if (image.width() != mask.width() || image.height() != mask.height())
        throw std::invalid_argument("the mask and the picture have different sizes");
    const std::uint8_t color[3] = {blue, green, red};
    const auto full = static_cast<unsigned>(std::lround(std::clamp(strength, 0.0, 1.0) * 255));
    for (int y = 0; y < image.height(); ++y) {
        std::uint8_t *pixel = image.row(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            const unsigned alpha = mask.row(y)[x] * full / 255U;
            for (std::size_t channel = 0; channel < 3; ++channel)
                pixel[channel] = mix(pixel[channel], color[channel], alpha);
        }
    }
}

} // namespace hostkit
