// SPDX-License-Identifier: MIT
#pragma once

namespace Quill {

/// Whose pixels a fill draws.
enum class RasterEngine {
    Portable, ///< this library's scan converter and flattener
    Native,   ///< the platform's, see platform/native_raster.h
};

/// Who fills the surfaces of callers: the platform's engine where there is one, unless the build chose the portable one
/// (ORVANEL_PORTABLE_RASTER) or an override is in force.
RasterEngine defaultRasterEngine();

/// Who makes runs and samples: the portable engine on every platform. It gives the pixels of the platform's without a
/// surface, hundreds of times as fast, at coordinates where the platform's own numbers overflow, too. A build can ask
/// for the platform's instead (ORVANEL_NATIVE_MASKS), to compare the two.
RasterEngine maskEngine();

/// Makes an engine the default of the whole process while it lives. For tests: everything else takes what it gets.
class RasterEngineOverride {
  public:
    explicit RasterEngineOverride(RasterEngine engine);
    ~RasterEngineOverride();
    RasterEngineOverride(const RasterEngineOverride &) = delete;
    RasterEngineOverride &operator=(const RasterEngineOverride &) = delete;

  private:
    int m_before;
};

} // namespace Quill
