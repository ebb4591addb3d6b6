// SPDX-License-Identifier: MIT
#include "platform/native_raster.h"

#include <cstring>

#include "platform/win32/gdiplus_session.h"

namespace platform {
namespace {

namespace flat = Gdiplus::DllExports;

void releaseGraphics(Gdiplus::GpGraphics *graphics) {
    flat::GdipDeleteGraphics(graphics);
}
void releaseBrush(Gdiplus::GpSolidFill *brush) {
    flat::GdipDeleteBrush(brush);
}
void releasePath(Gdiplus::GpPath *path) {
    flat::GdipDeletePath(path);
}
using Graphics = UniqueHandle<Gdiplus::GpGraphics *, &releaseGraphics>;
using SolidBrush = UniqueHandle<Gdiplus::GpSolidFill *, &releaseBrush>;
using Path = UniqueHandle<Gdiplus::GpPath *, &releasePath>;

/// A cleared surface with everything needed to fill on it. Not ready when GDI+ refuses the surface: nothing is drawn
/// then.
struct Drawing {
    explicit Drawing(const MaskSurface &surface) {
        if (!startGdiplus() ||
            flat::GdipCreateBitmapFromScan0(surface.width, surface.height, surface.stride, PixelFormat24bppRGB,
                                            surface.bits, bitmap.put()) != Gdiplus::Ok ||
            flat::GdipGetImageGraphicsContext(bitmap.get(), graphics.put()) != Gdiplus::Ok ||
            flat::GdipCreateSolidFill(kMaskFillColour, brush.put()) != Gdiplus::Ok)
            return;
        flat::GdipGraphicsClear(graphics.get(), kMaskClearColour);
        ready = true;
    }

    // In this order, so that they go in the reverse one.
    GdiplusBitmap bitmap;
    Graphics graphics;
    SolidBrush brush;
    bool ready = false;
};

std::vector<Gdiplus::GpPoint> gdiplusPoints(const PixelPoint *points, int count) {
    std::vector<Gdiplus::GpPoint> converted;
    converted.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        converted.emplace_back(points[index].x, points[index].y);
    return converted;
}

using WineVersion = const char *(CDECL *)();

/// Wine's flattener does not end at the fineness that sampling asks for; its library tells that it is there.
WineVersion wineVersion() {
    static const WineVersion found = [] {
        const HMODULE library = GetModuleHandleW(L"ntdll.dll");
        const FARPROC entry = library ? GetProcAddress(library, "wine_get_version") : nullptr;
        WineVersion version = nullptr;
        std::memcpy(&version, &entry, sizeof version);
        return version;
    }();
    return found;
}

/// The version record of a loaded library, "" when it has none.
std::string fileVersion(HMODULE library) {
    const HRSRC found = library ? FindResourceW(library, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16)) : nullptr;
    const HGLOBAL loaded = found ? LoadResource(library, found) : nullptr;
    const auto *const bytes = loaded ? static_cast<const std::uint8_t *>(LockResource(loaded)) : nullptr;
    if (!bytes)
        return {};
    // The fixed part follows its signature; nothing before it looks like that.
    constexpr DWORD kSignature = 0xFEEF04BD;
    const DWORD size = SizeofResource(library, found);
    for (DWORD offset = 0; offset + sizeof(VS_FIXEDFILEINFO) <= size; offset += 4) {
        VS_FIXEDFILEINFO info{};
        std::memcpy(&info, bytes + offset, sizeof info);
        if (info.dwSignature != kSignature)
            continue;
        std::string version;
        for (const DWORD part : {info.dwFileVersionMS, info.dwFileVersionLS})
            version += (version.empty() ? "" : ".") + std::to_string(HIWORD(part)) + "." + std::to_string(LOWORD(part));
        return version;
    }
    return {};
}

} // namespace

bool hasNativeRaster() {
    return true;
}

void nativeFillPolygon(const MaskSurface &surface, const PixelPoint *points, int count) {
    const Drawing drawing(surface);
    if (!drawing.ready)
        return;
    flat::GdipFillPolygonI(drawing.graphics.get(), drawing.brush.get(), gdiplusPoints(points, count).data(), count,
                           Gdiplus::FillModeAlternate);
}

void nativeFillBeziers(const MaskSurface &surface, const PixelPoint *points, int count) {
    const Drawing drawing(surface);
    Path path;
    if (!drawing.ready || count < 3 || flat::GdipCreatePath(Gdiplus::FillModeAlternate, path.put()) != Gdiplus::Ok)
        return;
    // The chain up to the last anchor, then the segment that leads back from it.
    flat::GdipAddPathBeziersI(path.get(), gdiplusPoints(points, count - 2).data(), count - 2);
    const PixelPoint *const last = points + count - 3;
    flat::GdipAddPathBezierI(path.get(), last[0].x, last[0].y, last[1].x, last[1].y, last[2].x, last[2].y, points[0].x,
                             points[0].y);
    flat::GdipFillPath(drawing.graphics.get(), drawing.brush.get(), path.get());
}

bool nativeFlattenBezier(const PixelPoint (&controls)[4], float flatness, std::vector<PixelPoint> &points) {
    Path path;
    if (wineVersion() || !startGdiplus() || flat::GdipCreatePath(Gdiplus::FillModeAlternate, path.put()) != Gdiplus::Ok)
        return false;
    INT count = 0;
    if (flat::GdipAddPathBezierI(path.get(), controls[0].x, controls[0].y, controls[1].x, controls[1].y, controls[2].x,
                                 controls[2].y, controls[3].x, controls[3].y) != Gdiplus::Ok ||
        flat::GdipFlattenPath(path.get(), nullptr, flatness) != Gdiplus::Ok ||
        flat::GdipGetPointCount(path.get(), &count) != Gdiplus::Ok || count <= 0)
        return false;
    std::vector<Gdiplus::GpPoint> flattened(static_cast<std::size_t>(count));
    if (flat::GdipGetPathPointsI(path.get(), flattened.data(), count) != Gdiplus::Ok)
        return false;
    for (const Gdiplus::GpPoint &point : flattened)
        points.push_back({point.X, point.Y});
    return true;
}

bool nativeFlattenChain(const std::vector<PathPosition> &chain, float flatness, std::vector<PathPosition> &vertices) {
    Path path;
    if (!startGdiplus() || flat::GdipCreatePath(Gdiplus::FillModeAlternate, path.put()) != Gdiplus::Ok)
        return false;
    std::vector<Gdiplus::GpPointF> points;
    for (const PathPosition &position : chain)
        points.emplace_back(position.x, position.y);
    INT count = 0;
    if (flat::GdipAddPathBeziers(path.get(), points.data(), static_cast<INT>(points.size())) != Gdiplus::Ok ||
        flat::GdipFlattenPath(path.get(), nullptr, flatness) != Gdiplus::Ok ||
        flat::GdipGetPointCount(path.get(), &count) != Gdiplus::Ok || count <= 0)
        return false;
    points.resize(static_cast<std::size_t>(count));
    if (flat::GdipGetPathPoints(path.get(), points.data(), count) != Gdiplus::Ok)
        return false;
    for (const Gdiplus::GpPointF &point : points)
        vertices.push_back({point.X, point.Y});
    return true;
}

std::string nativeRasterName() {
    const std::string version = startGdiplus() ? fileVersion(GetModuleHandleW(L"gdiplus.dll")) : "";
    std::string name = "gdiplus.dll " + (version.empty() ? "of no version" : version);
    if (const WineVersion wine = wineVersion())
        name += std::string(" of Wine ") + wine();
    return name;
}

} // namespace platform
