// SPDX-License-Identifier: MIT
#include "platform/native_raster.h"

namespace platform {

bool hasNativeRaster() {
    return false;
}
void nativeFillPolygon(const MaskSurface &, const PixelPoint *, int) {}
void nativeFillBeziers(const MaskSurface &, const PixelPoint *, int) {}
bool nativeFlattenBezier(const PixelPoint (&)[4], float, std::vector<PixelPoint> &) {
    return false;
}
bool nativeFlattenChain(const std::vector<PathPosition> &, float, std::vector<PathPosition> &) {
    return false;
}
std::string nativeRasterName() {
    return {};
}

} // namespace platform
