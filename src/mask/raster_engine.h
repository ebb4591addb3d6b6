// SPDX-License-Identifier: MIT
#pragma once

namespace Quill {

/// Whose pixels a fill draws.
enum class RasterEngine {
    Portable, ///< this library's scan converter and flattener
    Native,   ///< the platform's, see platform/native_raster.h
};

/// The platform's engine where there is one, unless the build chose the portable one (ORVANEL_PORTABLE_RASTER).
RasterEngine defaultRasterEngine();

} // namespace Quill
