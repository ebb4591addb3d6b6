// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// A text of the contract as its writer gives it to the log, and whether it goes through the wide entry.
struct LogText {
    bool wide;
    const char *format;
};

/// Every text of the contract, by the room that writes it.
inline constexpr std::array kLogTexts = {
    // The object.
    LogText{false, "[Orvanel::Create] New PyMap, size=(%d,%d)"},
    LogText{false, "Orvanel::ResetBuffer() enter\n"},
    LogText{false, "Orvanel::ResetBuffer() end\n"},
    LogText{false, "Orvanel::SetVideoCoordinate DisplaySize=(%d,%d), Video left/top(DC)=(%d,%d), "
                   "Video width/height(DC)=(%d,%d)"},
    LogText{false, "Uninitialize!"},
    LogText{false, "Orvanel::ReDraw() enter\n"},
    LogText{false, "Orvanel::ReDraw() end\n"},
    // Keyframes.
    LogText{false, "Orvanel::PrepareKeyframe keyframe duration=%lld count=%d"},
    LogText{false, "Orvanel::PrepareKeyframe() end\n"},
    LogText{false, "Orvanel::CacheCurrentKeyframe() enter\n"},
    LogText{false, "Orvanel::CacheCurrentKeyframe() end\n"},
    LogText{false, "Orvanel::UpdateKeyFrameInCurrent duration=%lld"},
    LogText{false, "Orvanel::UpdateKeyFrameInSize duration=%lld"},
    LogText{false, "Orvanel::DrawExistKeyFrame() enter\n"},
    LogText{false, "[DrawExistKeyFrame] duration=%lld"},
    LogText{false, "Orvanel::DrawExistKeyFrame() end\n"},
    LogText{false, "Orvanel::DrawSpecificKeyFrame() enter\n"},
    LogText{false, "Orvanel::DrawSpecificKeyFrame() end\n"},
    LogText{false, "Orvanel::RemoveSpecificKeyFrame() enter\n"},
    LogText{false, "Orvanel::RemoveSpecificKeyFrame() end\n"},
    LogText{false, "[CalcKeyFrame] Key1-duration=%lld, Key2-duration=%lld, Dest-duration=%lld, point size=%d"},
    // Mask conversion and fitting.
    LogText{false, "Orvanel::Convert2Mask() enter\n"},
    LogText{false, "[Convert2Mask] Error! point size is not enough!!!"},
    LogText{false, "[Convert2Mask] MaskDataLen=%d(short), BufferSize=(%d,%d)"},
    LogText{false, "Orvanel::Convert2Mask() end\n"},
    LogText{false, "Orvanel::Convert2SelectionLineUS() enter\n"},
    LogText{false, "[Orvanel::Convert2SelectionLineUS] ConvertPoints2MaskUS result = %d"},
    LogText{false, "Orvanel::Convert2SelectionLineUS() end\n"},
    LogText{false, "Orvanel::AdjustPoints() enter\n"},
    LogText{false, "Orvanel::AdjustPoints() end\n"},
    LogText{true, "Orvanel::FindTargetPointsFromMask (%d, %d) - (%d, %d) = (%d, %d)"},
    LogText{true, "Orvanel::FindTargetPointsFromMask %d points not on border"},
    LogText{true, "Orvanel::FindTargetPointsFromMask skip bounding box finding"},
    LogText{false, "Orvanel::FindTargetPointsFromMask_IntersecRemoval() enter\n"},
    LogText{true, "Orvanel::FindTargetPointsFromMask_IntersecRemoval Impossible,+ redundant points"},
    LogText{true, "Orvanel::FindTargetPointsFromMask_IntersecRemoval Ordered"},
    LogText{true, "Orvanel::FindTargetPointsFromMask_IntersecRemoval Some Points missed"},
    LogText{false, "Orvanel::FindTargetPointsFromMask_IntersecRemoval() end\n"},
    // The rasterizer.
    LogText{false, "Quill::MaskHandler::m_fnClear Null Pointer : buffer\n"},
    LogText{false, "Quill::MaskHandler::m_fnDrawLine Null Pointer : buffer\n"},
    LogText{false, "Quill::MaskHandler::m_fnGetLinePoints Null Pointer : points\n"},
    LogText{false, "Quill::MaskHandler::m_fnDrawPolygonMask() enter\n"},
    LogText{false, "Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : points\n"},
    LogText{false, "Quill::MaskHandler::m_fnDrawPolygonMask Null Pointer : buffer\n"},
    LogText{false, "Quill::MaskHandler::m_fnDrawPolygonMask() end\n"},
    LogText{false, "Quill::MaskHandler::m_fnFillBezierCurveMask() enter\n"},
    LogText{false, "Quill::MaskHandler::m_fnFillBezierCurveMask Null Pointer : points\n"},
    LogText{false, "Quill::MaskHandler::m_fnFillBezierCurveMask Null Pointer : buffer\n"},
    LogText{false, "Quill::MaskHandler::m_fnFillBezierCurveMask() end\n"},
    LogText{false, "Quill::MaskHandler::ConvertPoints2Mask() enter\n"},
    LogText{false, "Quill::MaskHandler::ConvertPoints2Mask() end\n"},
    LogText{false, "Quill::MaskHandler::ConvertPoints2MaskUS() enter\n"},
    LogText{false, "Quill::MaskHandler::ConvertPoints2MaskUS() end\n"},
    LogText{false, "Quill::MaskHandler::GenAllPoints Null Pointer : points\n"},
    LogText{false, "Quill::MaskHandler::GenAllPoints Null Pointer : allpoints\n"},
    // The texture map.
    LogText{false, "UpdateFrame() m_renderTime=%d, video duration=%lld, mapping duration=%lld"},
    LogText{false, "UpdateFrame() buffer size(%d,%d) len=%d"},
    LogText{false, "UpdateFrame() End"},
    LogText{false, "PyMapWrapper::Join() enter\n"},
    LogText{false, "PyMapWrapper::Join() end\n"},
    // Bitmaps in memory.
    LogText{false, "CreateDIBSection32 Invalid argument! return FALSE\n"},
    LogText{false, "CreateDIBSection32 failed to create compatible DC! return FALSE\n"},
    LogText{false, "CreateDIBSection32 failed to create bitmap handle! error code = 0x%x\n"},
};
