// SPDX-License-Identifier: MIT
#include "mask/fill.h"
#include "mask/mask_handler.h"
#include "mask/no_throw.h"
#include "platform/png_file.h"
#include "support/diag_log.h"

namespace Quill {
namespace {

constexpr int kMinPolygonPoints = 3;
constexpr const char *kDumpPath = "D:\\Mask.png";

} // namespace

HRESULT MaskHandler::m_fnDrawPolygonMask(const MPoint *points, int count, int width, int height, int stride,
                                         std::uint8_t **buffer) {
    DiagLogPrint("Quill::MaskHandler::m_fnDrawPolygonMask() enter\n");
    if (!points) {
        DiagLogPrint("Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : points\n");
        return E_POINTER;
    }
    if (!buffer || !*buffer) {
        DiagLogPrint("Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : buffer\n");
        return E_POINTER;
    }
    if (count < kMinPolygonPoints)
        return E_FAIL;
    const HRESULT result = withoutThrowing([&] {
        fillPolygon(defaultRasterEngine(), {*buffer, width, height, stride}, points, count);
    });
    DiagLogPrint("Quill::MaskHandler::m_fnDrawPolygonMask() end\n");
    return result;
}

HRESULT MaskHandler::m_fnFillBezierCurveMask(const MPoint *points, int count, int width, int height, int stride,
                                             std::uint8_t **buffer, bool dump) {
    DiagLogPrint("Quill::MaskHandler::m_fnFillBezierCurveMask() enter\n");
    if (!points) {
        DiagLogPrint("Quill::MaskHandler::m_fnFillBezierCurveMask Null Pointer : points\n");
        return E_POINTER;
    }
    if (!buffer || !*buffer) {
        DiagLogPrint("Quill::MaskHandler::m_fnFillBezierCurveMask Null Pointer : buffer\n");
        return E_POINTER;
    }
    if (count < kMinOutlinePoints)
        return E_FAIL;
    const MaskSurface surface{*buffer, width, height, stride};
    const HRESULT result = withoutThrowing([&] { fillOutline(defaultRasterEngine(), surface, points, count); });
    if (dump && canDrawOn(surface)) // a picture that cannot be written is no failure
        platform::writePng(kDumpPath, platform::PngPixels::Bgr24, width, height, stride, *buffer);
    DiagLogPrint("Quill::MaskHandler::m_fnFillBezierCurveMask() end\n");
    return result;
}

} // namespace Quill
