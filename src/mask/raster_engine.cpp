// SPDX-License-Identifier: MIT
#include "mask/raster_engine.h"

#include <atomic>

#include "platform/native_raster.h"

namespace Quill {
namespace {

constexpr int kNoOverride = -1;
std::atomic<int> chosen{kNoOverride};

RasterEngine builtInEngine() {
#ifdef ORVANEL_PORTABLE_RASTER
    return RasterEngine::Portable;
#else
    return platform::hasNativeRaster() ? RasterEngine::Native : RasterEngine::Portable;
#endif
}

} // namespace

RasterEngine defaultRasterEngine() {
    const int engine = chosen.load(std::memory_order_relaxed);
    return engine == kNoOverride ? builtInEngine() : static_cast<RasterEngine>(engine);
}

RasterEngine maskEngine() {
#ifdef ORVANEL_NATIVE_MASKS
    return defaultRasterEngine();
#else
    return RasterEngine::Portable;
#endif
}

RasterEngineOverride::RasterEngineOverride(RasterEngine engine) : m_before(chosen.exchange(static_cast<int>(engine))) {}

RasterEngineOverride::~RasterEngineOverride() {
    chosen = m_before;
}

} // namespace Quill
