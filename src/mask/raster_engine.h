// SPDX-License-Identifier: MIT
#pragma once

namespace Quill {

/// Whose pixels a fill draws.
enum class RasterEngine {
    Portable, ///< this library's scan converter and flattener
    Native,   ///< the platform's, see platform/native_raster.h
};

/// The platform's engine where there is one, unless the build chose the portable one (ORVANEL_PORTABLE_RASTER) or an
/// override is in force.
RasterEngine defaultRasterEngine();

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
