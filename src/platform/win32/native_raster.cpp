// SPDX-License-Identifier: MIT
#include "platform/native_raster.h"

#include "platform/win32/gdiplus_session.h"

namespace platform {
namespace {

namespace flat = Gdiplus::DllExports;

constexpr Gdiplus::ARGB kClearColour = 0x00000000;
constexpr Gdiplus::ARGB kFillColour = 0xFF0000FF;

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
            flat::GdipCreateSolidFill(kFillColour, brush.put()) != Gdiplus::Ok)
            return;
        flat::GdipGraphicsClear(graphics.get(), kClearColour);
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

/// Wine's flattener does not end at the fineness that sampling asks for; its library tells that it is there.
bool isWine() {
    static const bool found = [] {
        const HMODULE library = GetModuleHandleW(L"ntdll.dll");
        return library && GetProcAddress(library, "wine_get_version") != nullptr;
    }();
    return found;
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
    if (isWine() || !startGdiplus() || flat::GdipCreatePath(Gdiplus::FillModeAlternate, path.put()) != Gdiplus::Ok)
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

} // namespace platform
