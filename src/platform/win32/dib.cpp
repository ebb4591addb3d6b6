// SPDX-License-Identifier: MIT
#include "platform/dib.h"

namespace platform {
namespace {

DeviceContext createCompatibleContext() {
    return reinterpret_cast<DeviceContext>(CreateCompatibleDC(nullptr));
}

void deleteContext(DeviceContext context) {
    DeleteDC(reinterpret_cast<HDC>(context));
}

void flush() {
    GdiFlush();
}

HBITMAP createSection(DeviceContext context, const DibHeader &header, void **bits) {
    static_assert(sizeof(DibHeader) == sizeof(BITMAPINFOHEADER));
    return CreateDIBSection(reinterpret_cast<HDC>(context), reinterpret_cast<const BITMAPINFO *>(&header),
                            DIB_RGB_COLORS, bits, nullptr, 0);
}

std::uint32_t lastError() {
    return GetLastError();
}

} // namespace

const DibCalls &systemDibCalls() {
    static constexpr DibCalls calls = {createCompatibleContext, deleteContext, flush, createSection, lastError};
    return calls;
}

void deleteBitmap(HBITMAP bitmap) {
    if (bitmap)
        DeleteObject(bitmap);
}

} // namespace platform
