// SPDX-License-Identifier: MIT
#include "platform/png_file.h"

#include <atomic>
#include <string>

#include "platform/multibyte.h"
#include "platform/png_layout.h"
#include "platform/win32/gdiplus_session.h"

namespace platform {
namespace {

/// GDI+'s own PNG encoder.
constexpr wchar_t kPngEncoder[] = L"{557CF406-1A04-11D3-9A73-0000F81EF32E}";

Gdiplus::PixelFormat formatOf(PngPixels pixels) {
    switch (pixels) {
    case PngPixels::Bgr24:
        return PixelFormat24bppRGB;
    case PngPixels::Bgra32:
        return PixelFormat32bppARGB;
    case PngPixels::Indexed8:
        break;
    }
    return PixelFormat8bppIndexed; // comes with the default halftone palette
}

/// Unique within the machine, in the folder of `target`, where a move is one step.
std::wstring nameBeside(const std::wstring &target) {
    static std::atomic<unsigned> counter{0};
    const std::wstring folder = target.substr(0, target.find_last_of(L"\\/:") + 1);
    return folder + L".partial-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++);
}

} // namespace

bool writePng(const char *path, PngPixels pixels, int width, int height, int stride, const std::uint8_t *data) {
    if (!path || !data || !isPngLayout(pixels, width, height, stride) || !startGdiplus())
        return false;
    CLSID encoder;
    if (FAILED(CLSIDFromString(kPngEncoder, &encoder)))
        return false;
    // GDI+ only reads the buffer: nothing is ever drawn into this bitmap.
    GdiplusBitmap bitmap;
    if (Gdiplus::DllExports::GdipCreateBitmapFromScan0(width, height, stride, formatOf(pixels),
                                                       const_cast<BYTE *>(data), bitmap.put()) != Gdiplus::Ok)
        return false;
    const std::wstring target = wideFromMultibyte(path);
    const std::wstring partial = nameBeside(target);
    const bool saved =
        Gdiplus::DllExports::GdipSaveImageToFile(bitmap.get(), partial.c_str(), &encoder, nullptr) == Gdiplus::Ok;
    if (saved && MoveFileExW(partial.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING))
        return true;
    DeleteFileW(partial.c_str());
    return false;
}

} // namespace platform
