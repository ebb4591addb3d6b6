// SPDX-License-Identifier: MIT
// The interfaces off Windows against the slot numbers that every caller of Direct3D 9 has compiled in. On Windows the
// same table is held against the system's header, which shows that the table is right.

#include "platform/d3d9.h"

#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

namespace {

/// The slot of a virtual operation: its pointer is one more than the offset in the method table (Itanium ABI).
template <typename Method>
std::size_t slotOf(Method method) {
    std::size_t word = 0;
    std::memcpy(&word, &method, sizeof word);
    return (word - 1) / sizeof(void *);
}

TEST(Direct3D9Slots, Direct3D9) {
    EXPECT_EQ(0, slotOf(&IDirect3D9::QueryInterface));
    EXPECT_EQ(1, slotOf(&IDirect3D9::AddRef));
    EXPECT_EQ(2, slotOf(&IDirect3D9::Release));
    EXPECT_EQ(3, slotOf(&IDirect3D9::RegisterSoftwareDevice));
    EXPECT_EQ(4, slotOf(&IDirect3D9::GetAdapterCount));
    EXPECT_EQ(5, slotOf(&IDirect3D9::GetAdapterIdentifier));
    EXPECT_EQ(6, slotOf(&IDirect3D9::GetAdapterModeCount));
    EXPECT_EQ(7, slotOf(&IDirect3D9::EnumAdapterModes));
    EXPECT_EQ(8, slotOf(&IDirect3D9::GetAdapterDisplayMode));
    EXPECT_EQ(9, slotOf(&IDirect3D9::CheckDeviceType));
    EXPECT_EQ(10, slotOf(&IDirect3D9::CheckDeviceFormat));
    EXPECT_EQ(11, slotOf(&IDirect3D9::CheckDeviceMultiSampleType));
    EXPECT_EQ(12, slotOf(&IDirect3D9::CheckDepthStencilMatch));
    EXPECT_EQ(13, slotOf(&IDirect3D9::CheckDeviceFormatConversion));
    EXPECT_EQ(14, slotOf(&IDirect3D9::GetDeviceCaps));
    EXPECT_EQ(15, slotOf(&IDirect3D9::GetAdapterMonitor));
    EXPECT_EQ(16, slotOf(&IDirect3D9::CreateDevice));
}

TEST(Direct3D9Slots, Direct3DDevice9) {
    EXPECT_EQ(0, slotOf(&IDirect3DDevice9::QueryInterface));
    EXPECT_EQ(1, slotOf(&IDirect3DDevice9::AddRef));
    EXPECT_EQ(2, slotOf(&IDirect3DDevice9::Release));
    EXPECT_EQ(3, slotOf(&IDirect3DDevice9::TestCooperativeLevel));
    EXPECT_EQ(4, slotOf(&IDirect3DDevice9::GetAvailableTextureMem));
    EXPECT_EQ(5, slotOf(&IDirect3DDevice9::EvictManagedResources));
    EXPECT_EQ(6, slotOf(&IDirect3DDevice9::GetDirect3D));
    EXPECT_EQ(7, slotOf(&IDirect3DDevice9::GetDeviceCaps));
    EXPECT_EQ(8, slotOf(&IDirect3DDevice9::GetDisplayMode));
    EXPECT_EQ(9, slotOf(&IDirect3DDevice9::GetCreationParameters));
    EXPECT_EQ(10, slotOf(&IDirect3DDevice9::SetCursorProperties));
    EXPECT_EQ(11, slotOf(&IDirect3DDevice9::SetCursorPosition));
    EXPECT_EQ(12, slotOf(&IDirect3DDevice9::ShowCursor));
    EXPECT_EQ(13, slotOf(&IDirect3DDevice9::CreateAdditionalSwapChain));
    EXPECT_EQ(14, slotOf(&IDirect3DDevice9::GetSwapChain));
    EXPECT_EQ(15, slotOf(&IDirect3DDevice9::GetNumberOfSwapChains));
    EXPECT_EQ(16, slotOf(&IDirect3DDevice9::Reset));
    EXPECT_EQ(17, slotOf(&IDirect3DDevice9::Present));
    EXPECT_EQ(18, slotOf(&IDirect3DDevice9::GetBackBuffer));
    EXPECT_EQ(19, slotOf(&IDirect3DDevice9::GetRasterStatus));
    EXPECT_EQ(20, slotOf(&IDirect3DDevice9::SetDialogBoxMode));
    EXPECT_EQ(21, slotOf(&IDirect3DDevice9::SetGammaRamp));
    EXPECT_EQ(22, slotOf(&IDirect3DDevice9::GetGammaRamp));
    EXPECT_EQ(23, slotOf(&IDirect3DDevice9::CreateTexture));
    EXPECT_EQ(24, slotOf(&IDirect3DDevice9::CreateVolumeTexture));
    EXPECT_EQ(25, slotOf(&IDirect3DDevice9::CreateCubeTexture));
    EXPECT_EQ(26, slotOf(&IDirect3DDevice9::CreateVertexBuffer));
    EXPECT_EQ(27, slotOf(&IDirect3DDevice9::CreateIndexBuffer));
    EXPECT_EQ(28, slotOf(&IDirect3DDevice9::CreateRenderTarget));
    EXPECT_EQ(29, slotOf(&IDirect3DDevice9::CreateDepthStencilSurface));
    EXPECT_EQ(30, slotOf(&IDirect3DDevice9::UpdateSurface));
    EXPECT_EQ(31, slotOf(&IDirect3DDevice9::UpdateTexture));
    EXPECT_EQ(32, slotOf(&IDirect3DDevice9::GetRenderTargetData));
    EXPECT_EQ(33, slotOf(&IDirect3DDevice9::GetFrontBufferData));
    EXPECT_EQ(34, slotOf(&IDirect3DDevice9::StretchRect));
    EXPECT_EQ(35, slotOf(&IDirect3DDevice9::ColorFill));
    EXPECT_EQ(36, slotOf(&IDirect3DDevice9::CreateOffscreenPlainSurface));
    EXPECT_EQ(37, slotOf(&IDirect3DDevice9::SetRenderTarget));
    EXPECT_EQ(38, slotOf(&IDirect3DDevice9::GetRenderTarget));
    EXPECT_EQ(39, slotOf(&IDirect3DDevice9::SetDepthStencilSurface));
    EXPECT_EQ(40, slotOf(&IDirect3DDevice9::GetDepthStencilSurface));
    EXPECT_EQ(41, slotOf(&IDirect3DDevice9::BeginScene));
    EXPECT_EQ(42, slotOf(&IDirect3DDevice9::EndScene));
    EXPECT_EQ(43, slotOf(&IDirect3DDevice9::Clear));
    EXPECT_EQ(44, slotOf(&IDirect3DDevice9::SetTransform));
    EXPECT_EQ(45, slotOf(&IDirect3DDevice9::GetTransform));
    EXPECT_EQ(46, slotOf(&IDirect3DDevice9::MultiplyTransform));
    EXPECT_EQ(47, slotOf(&IDirect3DDevice9::SetViewport));
    EXPECT_EQ(48, slotOf(&IDirect3DDevice9::GetViewport));
    EXPECT_EQ(49, slotOf(&IDirect3DDevice9::SetMaterial));
    EXPECT_EQ(50, slotOf(&IDirect3DDevice9::GetMaterial));
    EXPECT_EQ(51, slotOf(&IDirect3DDevice9::SetLight));
    EXPECT_EQ(52, slotOf(&IDirect3DDevice9::GetLight));
    EXPECT_EQ(53, slotOf(&IDirect3DDevice9::LightEnable));
    EXPECT_EQ(54, slotOf(&IDirect3DDevice9::GetLightEnable));
    EXPECT_EQ(55, slotOf(&IDirect3DDevice9::SetClipPlane));
    EXPECT_EQ(56, slotOf(&IDirect3DDevice9::GetClipPlane));
    EXPECT_EQ(57, slotOf(&IDirect3DDevice9::SetRenderState));
    EXPECT_EQ(58, slotOf(&IDirect3DDevice9::GetRenderState));
    EXPECT_EQ(59, slotOf(&IDirect3DDevice9::CreateStateBlock));
    EXPECT_EQ(60, slotOf(&IDirect3DDevice9::BeginStateBlock));
    EXPECT_EQ(61, slotOf(&IDirect3DDevice9::EndStateBlock));
    EXPECT_EQ(62, slotOf(&IDirect3DDevice9::SetClipStatus));
    EXPECT_EQ(63, slotOf(&IDirect3DDevice9::GetClipStatus));
    EXPECT_EQ(64, slotOf(&IDirect3DDevice9::GetTexture));
    EXPECT_EQ(65, slotOf(&IDirect3DDevice9::SetTexture));
    EXPECT_EQ(66, slotOf(&IDirect3DDevice9::GetTextureStageState));
    EXPECT_EQ(67, slotOf(&IDirect3DDevice9::SetTextureStageState));
    EXPECT_EQ(68, slotOf(&IDirect3DDevice9::GetSamplerState));
    EXPECT_EQ(69, slotOf(&IDirect3DDevice9::SetSamplerState));
    EXPECT_EQ(70, slotOf(&IDirect3DDevice9::ValidateDevice));
    EXPECT_EQ(71, slotOf(&IDirect3DDevice9::SetPaletteEntries));
    EXPECT_EQ(72, slotOf(&IDirect3DDevice9::GetPaletteEntries));
    EXPECT_EQ(73, slotOf(&IDirect3DDevice9::SetCurrentTexturePalette));
    EXPECT_EQ(74, slotOf(&IDirect3DDevice9::GetCurrentTexturePalette));
    EXPECT_EQ(75, slotOf(&IDirect3DDevice9::SetScissorRect));
    EXPECT_EQ(76, slotOf(&IDirect3DDevice9::GetScissorRect));
    EXPECT_EQ(77, slotOf(&IDirect3DDevice9::SetSoftwareVertexProcessing));
    EXPECT_EQ(78, slotOf(&IDirect3DDevice9::GetSoftwareVertexProcessing));
    EXPECT_EQ(79, slotOf(&IDirect3DDevice9::SetNPatchMode));
    EXPECT_EQ(80, slotOf(&IDirect3DDevice9::GetNPatchMode));
    EXPECT_EQ(81, slotOf(&IDirect3DDevice9::DrawPrimitive));
    EXPECT_EQ(82, slotOf(&IDirect3DDevice9::DrawIndexedPrimitive));
    EXPECT_EQ(83, slotOf(&IDirect3DDevice9::DrawPrimitiveUP));
    EXPECT_EQ(84, slotOf(&IDirect3DDevice9::DrawIndexedPrimitiveUP));
    EXPECT_EQ(85, slotOf(&IDirect3DDevice9::ProcessVertices));
    EXPECT_EQ(86, slotOf(&IDirect3DDevice9::CreateVertexDeclaration));
    EXPECT_EQ(87, slotOf(&IDirect3DDevice9::SetVertexDeclaration));
    EXPECT_EQ(88, slotOf(&IDirect3DDevice9::GetVertexDeclaration));
    EXPECT_EQ(89, slotOf(&IDirect3DDevice9::SetFVF));
    EXPECT_EQ(90, slotOf(&IDirect3DDevice9::GetFVF));
    EXPECT_EQ(91, slotOf(&IDirect3DDevice9::CreateVertexShader));
    EXPECT_EQ(92, slotOf(&IDirect3DDevice9::SetVertexShader));
    EXPECT_EQ(93, slotOf(&IDirect3DDevice9::GetVertexShader));
    EXPECT_EQ(94, slotOf(&IDirect3DDevice9::SetVertexShaderConstantF));
    EXPECT_EQ(95, slotOf(&IDirect3DDevice9::GetVertexShaderConstantF));
    EXPECT_EQ(96, slotOf(&IDirect3DDevice9::SetVertexShaderConstantI));
    EXPECT_EQ(97, slotOf(&IDirect3DDevice9::GetVertexShaderConstantI));
    EXPECT_EQ(98, slotOf(&IDirect3DDevice9::SetVertexShaderConstantB));
    EXPECT_EQ(99, slotOf(&IDirect3DDevice9::GetVertexShaderConstantB));
    EXPECT_EQ(100, slotOf(&IDirect3DDevice9::SetStreamSource));
    EXPECT_EQ(101, slotOf(&IDirect3DDevice9::GetStreamSource));
    EXPECT_EQ(102, slotOf(&IDirect3DDevice9::SetStreamSourceFreq));
    EXPECT_EQ(103, slotOf(&IDirect3DDevice9::GetStreamSourceFreq));
    EXPECT_EQ(104, slotOf(&IDirect3DDevice9::SetIndices));
    EXPECT_EQ(105, slotOf(&IDirect3DDevice9::GetIndices));
    EXPECT_EQ(106, slotOf(&IDirect3DDevice9::CreatePixelShader));
    EXPECT_EQ(107, slotOf(&IDirect3DDevice9::SetPixelShader));
    EXPECT_EQ(108, slotOf(&IDirect3DDevice9::GetPixelShader));
    EXPECT_EQ(109, slotOf(&IDirect3DDevice9::SetPixelShaderConstantF));
    EXPECT_EQ(110, slotOf(&IDirect3DDevice9::GetPixelShaderConstantF));
    EXPECT_EQ(111, slotOf(&IDirect3DDevice9::SetPixelShaderConstantI));
    EXPECT_EQ(112, slotOf(&IDirect3DDevice9::GetPixelShaderConstantI));
    EXPECT_EQ(113, slotOf(&IDirect3DDevice9::SetPixelShaderConstantB));
    EXPECT_EQ(114, slotOf(&IDirect3DDevice9::GetPixelShaderConstantB));
    EXPECT_EQ(115, slotOf(&IDirect3DDevice9::DrawRectPatch));
    EXPECT_EQ(116, slotOf(&IDirect3DDevice9::DrawTriPatch));
    EXPECT_EQ(117, slotOf(&IDirect3DDevice9::DeletePatch));
    EXPECT_EQ(118, slotOf(&IDirect3DDevice9::CreateQuery));
}

TEST(Direct3D9Slots, Direct3DSurface9) {
    EXPECT_EQ(0, slotOf(&IDirect3DSurface9::QueryInterface));
    EXPECT_EQ(1, slotOf(&IDirect3DSurface9::AddRef));
    EXPECT_EQ(2, slotOf(&IDirect3DSurface9::Release));
    EXPECT_EQ(3, slotOf(&IDirect3DSurface9::GetDevice));
    EXPECT_EQ(4, slotOf(&IDirect3DSurface9::SetPrivateData));
    EXPECT_EQ(5, slotOf(&IDirect3DSurface9::GetPrivateData));
    EXPECT_EQ(6, slotOf(&IDirect3DSurface9::FreePrivateData));
    EXPECT_EQ(7, slotOf(&IDirect3DSurface9::SetPriority));
    EXPECT_EQ(8, slotOf(&IDirect3DSurface9::GetPriority));
    EXPECT_EQ(9, slotOf(&IDirect3DSurface9::PreLoad));
    EXPECT_EQ(10, slotOf(&IDirect3DSurface9::GetType));
    EXPECT_EQ(11, slotOf(&IDirect3DSurface9::GetContainer));
    EXPECT_EQ(12, slotOf(&IDirect3DSurface9::GetDesc));
    EXPECT_EQ(13, slotOf(&IDirect3DSurface9::LockRect));
    EXPECT_EQ(14, slotOf(&IDirect3DSurface9::UnlockRect));
    EXPECT_EQ(15, slotOf(&IDirect3DSurface9::GetDC));
    EXPECT_EQ(16, slotOf(&IDirect3DSurface9::ReleaseDC));
}

TEST(Direct3D9Slots, Direct3DTexture9) {
    EXPECT_EQ(0, slotOf(&IDirect3DTexture9::QueryInterface));
    EXPECT_EQ(1, slotOf(&IDirect3DTexture9::AddRef));
    EXPECT_EQ(2, slotOf(&IDirect3DTexture9::Release));
    EXPECT_EQ(3, slotOf(&IDirect3DTexture9::GetDevice));
    EXPECT_EQ(4, slotOf(&IDirect3DTexture9::SetPrivateData));
    EXPECT_EQ(5, slotOf(&IDirect3DTexture9::GetPrivateData));
    EXPECT_EQ(6, slotOf(&IDirect3DTexture9::FreePrivateData));
    EXPECT_EQ(7, slotOf(&IDirect3DTexture9::SetPriority));
    EXPECT_EQ(8, slotOf(&IDirect3DTexture9::GetPriority));
    EXPECT_EQ(9, slotOf(&IDirect3DTexture9::PreLoad));
    EXPECT_EQ(10, slotOf(&IDirect3DTexture9::GetType));
    EXPECT_EQ(11, slotOf(&IDirect3DTexture9::SetLOD));
    EXPECT_EQ(12, slotOf(&IDirect3DTexture9::GetLOD));
    EXPECT_EQ(13, slotOf(&IDirect3DTexture9::GetLevelCount));
    EXPECT_EQ(14, slotOf(&IDirect3DTexture9::SetAutoGenFilterType));
    EXPECT_EQ(15, slotOf(&IDirect3DTexture9::GetAutoGenFilterType));
    EXPECT_EQ(16, slotOf(&IDirect3DTexture9::GenerateMipSubLevels));
    EXPECT_EQ(17, slotOf(&IDirect3DTexture9::GetLevelDesc));
    EXPECT_EQ(18, slotOf(&IDirect3DTexture9::GetSurfaceLevel));
    EXPECT_EQ(19, slotOf(&IDirect3DTexture9::LockRect));
    EXPECT_EQ(20, slotOf(&IDirect3DTexture9::UnlockRect));
    EXPECT_EQ(21, slotOf(&IDirect3DTexture9::AddDirtyRect));
}

TEST(Direct3D9Slots, StructuresHaveTheSystemsLayout) {
    EXPECT_EQ(16u, sizeof(D3DDISPLAYMODE));
    EXPECT_EQ(16u, sizeof(D3DLOCKED_RECT));
    EXPECT_EQ(8u, offsetof(D3DLOCKED_RECT, pBits));
    EXPECT_EQ(32u, sizeof(D3DSURFACE_DESC));
    EXPECT_EQ(24u, offsetof(D3DSURFACE_DESC, Width));
    EXPECT_EQ(16u, sizeof(RECT));
    EXPECT_EQ(24u, sizeof(D3DDEVICE_CREATION_PARAMETERS));
}

TEST(Direct3D9Slots, ValuesAreTheSystems) {
    EXPECT_EQ(0x200, static_cast<int>(D3DUSAGE_DYNAMIC));
    EXPECT_EQ(0x2000, static_cast<int>(D3DLOCK_DISCARD));
    EXPECT_EQ(21, static_cast<int>(D3DFMT_A8R8G8B8));
    EXPECT_EQ(22, static_cast<int>(D3DFMT_X8R8G8B8));
    EXPECT_EQ(0, static_cast<int>(D3DPOOL_DEFAULT));
    EXPECT_EQ(2, static_cast<int>(D3DPOOL_SYSTEMMEM));
    EXPECT_EQ(3, static_cast<int>(D3DRTYPE_TEXTURE));
    EXPECT_EQ(static_cast<HRESULT>(0x8876086C), D3DERR_INVALIDCALL);
    EXPECT_EQ(static_cast<HRESULT>(0x88760868), D3DERR_DEVICELOST);
    EXPECT_EQ(static_cast<HRESULT>(0x8876086A), D3DERR_NOTAVAILABLE);
    EXPECT_EQ(static_cast<HRESULT>(0x8876017C), D3DERR_OUTOFVIDEOMEMORY);
}

} // namespace
