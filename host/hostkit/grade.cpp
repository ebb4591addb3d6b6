// SPDX-License-Identifier: MIT
//
// Exposure and saturation in linear light.
//
// Video code values are display-referred: ITU-R BT.1886 with a black level of zero makes the light of a reference
// display the code's 2.4th power. One stop of exposure doubles that light, which is what a lens does; the same factor
// on the code values themselves would lift shadows and highlights unevenly. Saturation moves each channel away from or
// towards the luminance 0.2126 R + 0.7152 G + 0.0722 B of BT.709's primaries. The soft edge of a mask mixes light, not
// codes, so the seam has no dark fringe. Values outside of the display's range are clipped, per channel, at the very
// end.
//
// Decoding is a table of 256. Encoding looks up the square root of the light in a table fine enough that every code
// maps to itself: the square root spends the table's entries where the codes are dense (code 1 is 1.7e-6 of full
// light).
#include "hostkit/grade.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <stdexcept>

namespace hostkit {
namespace {

constexpr double kDisplayPower = 2.4;
constexpr std::size_t kEncodeSteps = 8192;

constexpr float kLumaRed = 0.2126F;
constexpr float kLumaGreen = 0.7152F;
constexpr float kLumaBlue = 0.0722F;

struct TransferTables {
    std::array<float, 256> lightOfCode;
    std::array<std::uint8_t, kEncodeSteps + 1> codeOfRoot;

    TransferTables() {
        for (std::size_t code = 0; code < lightOfCode.size(); ++code)
            lightOfCode[code] = static_cast<float>(std::pow(static_cast<double>(code) / 255.0, kDisplayPower));
        for (std::size_t i = 0; i <= kEncodeSteps; ++i) {
            const double root = static_cast<double>(i) / kEncodeSteps;
            codeOfRoot[i] = static_cast<std::uint8_t>(std::lround(255.0 * std::pow(root, 2.0 / kDisplayPower)));
        }
    }

    std::uint8_t encode(float light) const {
        const float root = std::sqrt(std::clamp(light, 0.0F, 1.0F));
        return codeOfRoot[static_cast<std::size_t>(root * kEncodeSteps + 0.5F)];
    }
};

const TransferTables &tables() {
    static const TransferTables instance;
    return instance;
}

} // namespace

Grade::Grade(double exposureStops, double saturation)
    : gain_(static_cast<float>(std::exp2(exposureStops))), saturation_(static_cast<float>(saturation)) {
    // Written so that NaN fails too.
    if (!(std::abs(exposureStops) <= 16) || !(saturation >= 0 && saturation <= 16))
        throw std::invalid_argument("exposure has to be -16 to 16 stops and saturation 0 to 16");
}

void Grade::applyInside(Image &image, const Mask &mask) const {
    if (image.width() != mask.width() || image.height() != mask.height())
        throw std::invalid_argument("the mask and the picture have different sizes");
    const TransferTables &transfer = tables();
    for (int y = 0; y < image.height(); ++y) {
        const std::uint8_t *coverage = mask.row(y);
        std::uint8_t *pixel = image.row(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            if (coverage[x] == 0)
                continue;
            const float share = static_cast<float>(coverage[x]) / 255.0F;
            const float blue = transfer.lightOfCode[pixel[0]];
            const float green = transfer.lightOfCode[pixel[1]];
            const float red = transfer.lightOfCode[pixel[2]];
            const float luminance = kLumaRed * red + kLumaGreen * green + kLumaBlue * blue;
            const auto graded = [&](float light) {
                const float target = gain_ * (luminance + saturation_ * (light - luminance));
                return transfer.encode(light + share * (target - light));
            };
            pixel[0] = graded(blue);
            pixel[1] = graded(green);
            pixel[2] = graded(red);
        }
    }
}

} // namespace hostkit
