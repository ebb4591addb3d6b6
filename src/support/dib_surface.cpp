// SPDX-License-Identifier: MIT
#include "support/dib_surface.h"

#include "support/diag_log.h"

namespace {

constexpr std::int32_t kPixelsPerMetre = 100;

// Bytes of the image in signed 32-bit arithmetic that wraps, as the header has always stated it: an overflowing size is
// wrong here and left to the system to judge. Unsigned products keep the wrap-around defined.
std::uint32_t statedImageSize(std::uint32_t width, std::int32_t height) {
    const std::uint32_t rows =
        height < 0 ? 0U - static_cast<std::uint32_t>(height) : static_cast<std::uint32_t>(height);
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(rows * width * 32U) / 8);
}

} // namespace

BOOL createDibSection32(const platform::DibCalls &calls, UINT width, INT height, HBITMAP *bitmap, void **bits) {
    if (width == 0 || height == 0 || !bitmap) {
        DiagLogPrint("CreateDIBSection32 Invalid argument! return FALSE\n");
        return 0;
    }
    const platform::DeviceContext context = calls.createCompatibleContext();
    if (!context) {
        DiagLogPrint("CreateDIBSection32 failed to create compatible DC! return FALSE\n");
        return 0;
    }

    platform::DibHeader header;
    header.width = static_cast<std::int32_t>(width);
    header.height = height;
    header.imageSize = statedImageSize(width, height);
    header.xPixelsPerMetre = kPixelsPerMetre;
    header.yPixelsPerMetre = kPixelsPerMetre;

    calls.flush();
    *bitmap = calls.createSection(context, header, bits);
    if (!*bitmap) {
        // The context is kept on purpose: this failure has always leaked it, and nothing else.
        DiagLogPrint("CreateDIBSection32 failed to create bitmap handle! error code = 0x%x\n", calls.lastError());
        return 0;
    }
    calls.deleteContext(context);
    return 1;
}

BOOL CreateDIBSection32(UINT width, INT height, HBITMAP *bitmap, void **bits) {
    return createDibSection32(platform::systemDibCalls(), width, height, bitmap, bits);
}
