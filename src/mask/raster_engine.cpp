// SPDX-License-Identifier: MIT
#include "mask/raster_engine.h"

#include "platform/native_raster.h"

namespace Quill {

RasterEngine defaultRasterEngine() {
#ifdef ORVANEL_PORTABLE_RASTER
    return RasterEngine::Portable;
#else
    return platform::hasNativeRaster() ? RasterEngine::Native : RasterEngine::Portable;
#endif
}

} // namespace Quill
