// SPDX-License-Identifier: MIT
#include "platform/png_read_back_test.h"

#include "platform/multibyte.h"
#include "platform/win32/gdiplus_session.h"

namespace platform {

DecodedPng readBackPng(const std::string &path) {
    using namespace Gdiplus;
    GdiplusBitmap bitmap;
    if (!startGdiplus() || DllExports::GdipCreateBitmapFromFile(wideFromMultibyte(path).c_str(), bitmap.put()) != Ok)
        return {};
    UINT width = 0;
    UINT height = 0;
    DllExports::GdipGetImageWidth(bitmap.get(), &width);
    DllExports::GdipGetImageHeight(bitmap.get(), &height);
    DecodedPng decoded{static_cast<int>(width), static_cast<int>(height), {}};
    for (UINT y = 0; y < height; ++y)
        for (UINT x = 0; x < width; ++x) {
            ARGB colour = 0;
            if (DllExports::GdipBitmapGetPixel(bitmap.get(), static_cast<INT>(x), static_cast<INT>(y), &colour) != Ok)
                return {};
            decoded.pixels.push_back(colour);
        }
    return decoded;
}

} // namespace platform
