// SPDX-License-Identifier: MIT
#pragma once

#include "platform/d3d9.h"

namespace software_d3d9 {

/// A device that offers nothing: every operation answers "not available" and is reported, so that a caller who needs
/// more than the texture path notices. What a device does offer is overridden.
class UnofferedDevice : public IDirect3DDevice9 {
  public:
    UINT STDMETHODCALLTYPE GetAvailableTextureMem() override {
        unoffered("GetAvailableTextureMem");
        return {};
    }
    HRESULT STDMETHODCALLTYPE EvictManagedResources() override { return unoffered("EvictManagedResources"); }
    HRESULT STDMETHODCALLTYPE GetDeviceCaps(D3DCAPS9 *) override { return unoffered("GetDeviceCaps"); }
    HRESULT STDMETHODCALLTYPE GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS *) override {
        return unoffered("GetCreationParameters");
    }
    HRESULT STDMETHODCALLTYPE SetCursorProperties(UINT, UINT, IDirect3DSurface9 *) override {
        return unoffered("SetCursorProperties");
    }
    void STDMETHODCALLTYPE SetCursorPosition(int, int, DWORD) override { unoffered("SetCursorPosition"); }
    BOOL STDMETHODCALLTYPE ShowCursor(BOOL) override {
        unoffered("ShowCursor");
        return {};
    }
    HRESULT STDMETHODCALLTYPE CreateAdditionalSwapChain(D3DPRESENT_PARAMETERS *, IDirect3DSwapChain9 **) override {
        return unoffered("CreateAdditionalSwapChain");
    }
    HRESULT STDMETHODCALLTYPE GetSwapChain(UINT, IDirect3DSwapChain9 **) override { return unoffered("GetSwapChain"); }
    HRESULT STDMETHODCALLTYPE Reset(D3DPRESENT_PARAMETERS *) override { return unoffered("Reset"); }
    HRESULT STDMETHODCALLTYPE Present(const RECT *, const RECT *, HWND, const RGNDATA *) override {
        return unoffered("Present");
    }
    HRESULT STDMETHODCALLTYPE GetBackBuffer(UINT, UINT, D3DBACKBUFFER_TYPE, IDirect3DSurface9 **) override {
        return unoffered("GetBackBuffer");
    }
    HRESULT STDMETHODCALLTYPE GetRasterStatus(UINT, D3DRASTER_STATUS *) override {
        return unoffered("GetRasterStatus");
    }
    HRESULT STDMETHODCALLTYPE SetDialogBoxMode(BOOL) override { return unoffered("SetDialogBoxMode"); }
    void STDMETHODCALLTYPE SetGammaRamp(UINT, DWORD, const D3DGAMMARAMP *) override { unoffered("SetGammaRamp"); }
    void STDMETHODCALLTYPE GetGammaRamp(UINT, D3DGAMMARAMP *) override { unoffered("GetGammaRamp"); }
    HRESULT STDMETHODCALLTYPE CreateVolumeTexture(UINT, UINT, UINT, UINT, DWORD, D3DFORMAT, D3DPOOL,
                                                  IDirect3DVolumeTexture9 **, HANDLE *) override {
        return unoffered("CreateVolumeTexture");
    }
    HRESULT STDMETHODCALLTYPE CreateCubeTexture(UINT, UINT, DWORD, D3DFORMAT, D3DPOOL, IDirect3DCubeTexture9 **,
                                                HANDLE *) override {
        return unoffered("CreateCubeTexture");
    }
    HRESULT STDMETHODCALLTYPE CreateVertexBuffer(UINT, DWORD, DWORD, D3DPOOL, IDirect3DVertexBuffer9 **,
                                                 HANDLE *) override {
        return unoffered("CreateVertexBuffer");
    }
    HRESULT STDMETHODCALLTYPE CreateIndexBuffer(UINT, DWORD, D3DFORMAT, D3DPOOL, IDirect3DIndexBuffer9 **,
                                                HANDLE *) override {
        return unoffered("CreateIndexBuffer");
    }
    HRESULT STDMETHODCALLTYPE CreateRenderTarget(UINT, UINT, D3DFORMAT, D3DMULTISAMPLE_TYPE, DWORD, BOOL,
                                                 IDirect3DSurface9 **, HANDLE *) override {
        return unoffered("CreateRenderTarget");
    }
    HRESULT STDMETHODCALLTYPE CreateDepthStencilSurface(UINT, UINT, D3DFORMAT, D3DMULTISAMPLE_TYPE, DWORD, BOOL,
                                                        IDirect3DSurface9 **, HANDLE *) override {
        return unoffered("CreateDepthStencilSurface");
    }
    HRESULT STDMETHODCALLTYPE UpdateSurface(IDirect3DSurface9 *, const RECT *, IDirect3DSurface9 *,
                                            const POINT *) override {
        return unoffered("UpdateSurface");
    }
    HRESULT STDMETHODCALLTYPE GetRenderTargetData(IDirect3DSurface9 *, IDirect3DSurface9 *) override {
        return unoffered("GetRenderTargetData");
    }
    HRESULT STDMETHODCALLTYPE GetFrontBufferData(UINT, IDirect3DSurface9 *) override {
        return unoffered("GetFrontBufferData");
    }
    HRESULT STDMETHODCALLTYPE StretchRect(IDirect3DSurface9 *, const RECT *, IDirect3DSurface9 *, const RECT *,
                                          D3DTEXTUREFILTERTYPE) override {
        return unoffered("StretchRect");
    }
    HRESULT STDMETHODCALLTYPE CreateOffscreenPlainSurface(UINT, UINT, D3DFORMAT, D3DPOOL, IDirect3DSurface9 **,
                                                          HANDLE *) override {
        return unoffered("CreateOffscreenPlainSurface");
    }
    HRESULT STDMETHODCALLTYPE SetRenderTarget(DWORD, IDirect3DSurface9 *) override {
        return unoffered("SetRenderTarget");
    }
    HRESULT STDMETHODCALLTYPE GetRenderTarget(DWORD, IDirect3DSurface9 **) override {
        return unoffered("GetRenderTarget");
    }
    HRESULT STDMETHODCALLTYPE SetDepthStencilSurface(IDirect3DSurface9 *) override {
        return unoffered("SetDepthStencilSurface");
    }
    HRESULT STDMETHODCALLTYPE GetDepthStencilSurface(IDirect3DSurface9 **) override {
        return unoffered("GetDepthStencilSurface");
    }
    HRESULT STDMETHODCALLTYPE BeginScene() override { return unoffered("BeginScene"); }
    HRESULT STDMETHODCALLTYPE EndScene() override { return unoffered("EndScene"); }
    HRESULT STDMETHODCALLTYPE Clear(DWORD, const D3DRECT *, DWORD, D3DCOLOR, float, DWORD) override {
        return unoffered("Clear");
    }
    HRESULT STDMETHODCALLTYPE SetTransform(D3DTRANSFORMSTATETYPE, const D3DMATRIX *) override {
        return unoffered("SetTransform");
    }
    HRESULT STDMETHODCALLTYPE GetTransform(D3DTRANSFORMSTATETYPE, D3DMATRIX *) override {
        return unoffered("GetTransform");
    }
    HRESULT STDMETHODCALLTYPE MultiplyTransform(D3DTRANSFORMSTATETYPE, const D3DMATRIX *) override {
        return unoffered("MultiplyTransform");
    }
    HRESULT STDMETHODCALLTYPE SetViewport(const D3DVIEWPORT9 *) override { return unoffered("SetViewport"); }
    HRESULT STDMETHODCALLTYPE GetViewport(D3DVIEWPORT9 *) override { return unoffered("GetViewport"); }
    HRESULT STDMETHODCALLTYPE SetMaterial(const D3DMATERIAL9 *) override { return unoffered("SetMaterial"); }
    HRESULT STDMETHODCALLTYPE GetMaterial(D3DMATERIAL9 *) override { return unoffered("GetMaterial"); }
    HRESULT STDMETHODCALLTYPE SetLight(DWORD, const D3DLIGHT9 *) override { return unoffered("SetLight"); }
    HRESULT STDMETHODCALLTYPE GetLight(DWORD, D3DLIGHT9 *) override { return unoffered("GetLight"); }
    HRESULT STDMETHODCALLTYPE LightEnable(DWORD, BOOL) override { return unoffered("LightEnable"); }
    HRESULT STDMETHODCALLTYPE GetLightEnable(DWORD, BOOL *) override { return unoffered("GetLightEnable"); }
    HRESULT STDMETHODCALLTYPE SetClipPlane(DWORD, const float *) override { return unoffered("SetClipPlane"); }
    HRESULT STDMETHODCALLTYPE GetClipPlane(DWORD, float *) override { return unoffered("GetClipPlane"); }
    HRESULT STDMETHODCALLTYPE SetRenderState(D3DRENDERSTATETYPE, DWORD) override { return unoffered("SetRenderState"); }
    HRESULT STDMETHODCALLTYPE GetRenderState(D3DRENDERSTATETYPE, DWORD *) override {
        return unoffered("GetRenderState");
    }
    HRESULT STDMETHODCALLTYPE CreateStateBlock(D3DSTATEBLOCKTYPE, IDirect3DStateBlock9 **) override {
        return unoffered("CreateStateBlock");
    }
    HRESULT STDMETHODCALLTYPE BeginStateBlock() override { return unoffered("BeginStateBlock"); }
    HRESULT STDMETHODCALLTYPE EndStateBlock(IDirect3DStateBlock9 **) override { return unoffered("EndStateBlock"); }
    HRESULT STDMETHODCALLTYPE SetClipStatus(const D3DCLIPSTATUS9 *) override { return unoffered("SetClipStatus"); }
    HRESULT STDMETHODCALLTYPE GetClipStatus(D3DCLIPSTATUS9 *) override { return unoffered("GetClipStatus"); }
    HRESULT STDMETHODCALLTYPE GetTextureStageState(DWORD, D3DTEXTURESTAGESTATETYPE, DWORD *) override {
        return unoffered("GetTextureStageState");
    }
    HRESULT STDMETHODCALLTYPE SetTextureStageState(DWORD, D3DTEXTURESTAGESTATETYPE, DWORD) override {
        return unoffered("SetTextureStageState");
    }
    HRESULT STDMETHODCALLTYPE GetSamplerState(DWORD, D3DSAMPLERSTATETYPE, DWORD *) override {
        return unoffered("GetSamplerState");
    }
    HRESULT STDMETHODCALLTYPE SetSamplerState(DWORD, D3DSAMPLERSTATETYPE, DWORD) override {
        return unoffered("SetSamplerState");
    }
    HRESULT STDMETHODCALLTYPE ValidateDevice(DWORD *) override { return unoffered("ValidateDevice"); }
    HRESULT STDMETHODCALLTYPE SetPaletteEntries(UINT, const PALETTEENTRY *) override {
        return unoffered("SetPaletteEntries");
    }
    HRESULT STDMETHODCALLTYPE GetPaletteEntries(UINT, PALETTEENTRY *) override {
        return unoffered("GetPaletteEntries");
    }
    HRESULT STDMETHODCALLTYPE SetCurrentTexturePalette(UINT) override { return unoffered("SetCurrentTexturePalette"); }
    HRESULT STDMETHODCALLTYPE GetCurrentTexturePalette(UINT *) override {
        return unoffered("GetCurrentTexturePalette");
    }
    HRESULT STDMETHODCALLTYPE SetScissorRect(const RECT *) override { return unoffered("SetScissorRect"); }
    HRESULT STDMETHODCALLTYPE GetScissorRect(RECT *) override { return unoffered("GetScissorRect"); }
    HRESULT STDMETHODCALLTYPE SetSoftwareVertexProcessing(BOOL) override {
        return unoffered("SetSoftwareVertexProcessing");
    }
    BOOL STDMETHODCALLTYPE GetSoftwareVertexProcessing() override {
        unoffered("GetSoftwareVertexProcessing");
        return {};
    }
    HRESULT STDMETHODCALLTYPE SetNPatchMode(float) override { return unoffered("SetNPatchMode"); }
    float STDMETHODCALLTYPE GetNPatchMode() override {
        unoffered("GetNPatchMode");
        return {};
    }
    HRESULT STDMETHODCALLTYPE DrawPrimitive(D3DPRIMITIVETYPE, UINT, UINT) override {
        return unoffered("DrawPrimitive");
    }
    HRESULT STDMETHODCALLTYPE DrawIndexedPrimitive(D3DPRIMITIVETYPE, INT, UINT, UINT, UINT, UINT) override {
        return unoffered("DrawIndexedPrimitive");
    }
    HRESULT STDMETHODCALLTYPE DrawPrimitiveUP(D3DPRIMITIVETYPE, UINT, const void *, UINT) override {
        return unoffered("DrawPrimitiveUP");
    }
    HRESULT STDMETHODCALLTYPE DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE, UINT, UINT, UINT, const void *, D3DFORMAT,
                                                     const void *, UINT) override {
        return unoffered("DrawIndexedPrimitiveUP");
    }
    HRESULT STDMETHODCALLTYPE ProcessVertices(UINT, UINT, UINT, IDirect3DVertexBuffer9 *, IDirect3DVertexDeclaration9 *,
                                              DWORD) override {
        return unoffered("ProcessVertices");
    }
    HRESULT STDMETHODCALLTYPE CreateVertexDeclaration(const D3DVERTEXELEMENT9 *,
                                                      IDirect3DVertexDeclaration9 **) override {
        return unoffered("CreateVertexDeclaration");
    }
    HRESULT STDMETHODCALLTYPE SetVertexDeclaration(IDirect3DVertexDeclaration9 *) override {
        return unoffered("SetVertexDeclaration");
    }
    HRESULT STDMETHODCALLTYPE GetVertexDeclaration(IDirect3DVertexDeclaration9 **) override {
        return unoffered("GetVertexDeclaration");
    }
    HRESULT STDMETHODCALLTYPE SetFVF(DWORD) override { return unoffered("SetFVF"); }
    HRESULT STDMETHODCALLTYPE GetFVF(DWORD *) override { return unoffered("GetFVF"); }
    HRESULT STDMETHODCALLTYPE CreateVertexShader(const DWORD *, IDirect3DVertexShader9 **) override {
        return unoffered("CreateVertexShader");
    }
    HRESULT STDMETHODCALLTYPE SetVertexShader(IDirect3DVertexShader9 *) override {
        return unoffered("SetVertexShader");
    }
    HRESULT STDMETHODCALLTYPE GetVertexShader(IDirect3DVertexShader9 **) override {
        return unoffered("GetVertexShader");
    }
    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantF(UINT, const float *, UINT) override {
        return unoffered("SetVertexShaderConstantF");
    }
    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantF(UINT, float *, UINT) override {
        return unoffered("GetVertexShaderConstantF");
    }
    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantI(UINT, const int *, UINT) override {
        return unoffered("SetVertexShaderConstantI");
    }
    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantI(UINT, int *, UINT) override {
        return unoffered("GetVertexShaderConstantI");
    }
    HRESULT STDMETHODCALLTYPE SetVertexShaderConstantB(UINT, const BOOL *, UINT) override {
        return unoffered("SetVertexShaderConstantB");
    }
    HRESULT STDMETHODCALLTYPE GetVertexShaderConstantB(UINT, BOOL *, UINT) override {
        return unoffered("GetVertexShaderConstantB");
    }
    HRESULT STDMETHODCALLTYPE SetStreamSource(UINT, IDirect3DVertexBuffer9 *, UINT, UINT) override {
        return unoffered("SetStreamSource");
    }
    HRESULT STDMETHODCALLTYPE GetStreamSource(UINT, IDirect3DVertexBuffer9 **, UINT *, UINT *) override {
        return unoffered("GetStreamSource");
    }
    HRESULT STDMETHODCALLTYPE SetStreamSourceFreq(UINT, UINT) override { return unoffered("SetStreamSourceFreq"); }
    HRESULT STDMETHODCALLTYPE GetStreamSourceFreq(UINT, UINT *) override { return unoffered("GetStreamSourceFreq"); }
    HRESULT STDMETHODCALLTYPE SetIndices(IDirect3DIndexBuffer9 *) override { return unoffered("SetIndices"); }
    HRESULT STDMETHODCALLTYPE GetIndices(IDirect3DIndexBuffer9 **) override { return unoffered("GetIndices"); }
    HRESULT STDMETHODCALLTYPE CreatePixelShader(const DWORD *, IDirect3DPixelShader9 **) override {
        return unoffered("CreatePixelShader");
    }
    HRESULT STDMETHODCALLTYPE SetPixelShader(IDirect3DPixelShader9 *) override { return unoffered("SetPixelShader"); }
    HRESULT STDMETHODCALLTYPE GetPixelShader(IDirect3DPixelShader9 **) override { return unoffered("GetPixelShader"); }
    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantF(UINT, const float *, UINT) override {
        return unoffered("SetPixelShaderConstantF");
    }
    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantF(UINT, float *, UINT) override {
        return unoffered("GetPixelShaderConstantF");
    }
    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantI(UINT, const int *, UINT) override {
        return unoffered("SetPixelShaderConstantI");
    }
    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantI(UINT, int *, UINT) override {
        return unoffered("GetPixelShaderConstantI");
    }
    HRESULT STDMETHODCALLTYPE SetPixelShaderConstantB(UINT, const BOOL *, UINT) override {
        return unoffered("SetPixelShaderConstantB");
    }
    HRESULT STDMETHODCALLTYPE GetPixelShaderConstantB(UINT, BOOL *, UINT) override {
        return unoffered("GetPixelShaderConstantB");
    }
    HRESULT STDMETHODCALLTYPE DrawRectPatch(UINT, const float *, const D3DRECTPATCH_INFO *) override {
        return unoffered("DrawRectPatch");
    }
    HRESULT STDMETHODCALLTYPE DrawTriPatch(UINT, const float *, const D3DTRIPATCH_INFO *) override {
        return unoffered("DrawTriPatch");
    }
    HRESULT STDMETHODCALLTYPE DeletePatch(UINT) override { return unoffered("DeletePatch"); }
    HRESULT STDMETHODCALLTYPE CreateQuery(D3DQUERYTYPE, IDirect3DQuery9 **) override {
        return unoffered("CreateQuery");
    }

  protected:
    ~UnofferedDevice() = default;

    /// Reports the call; D3DERR_NOTAVAILABLE.
    virtual HRESULT unoffered(const char *method) = 0;
};

} // namespace software_d3d9
