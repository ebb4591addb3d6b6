// SPDX-License-Identifier: MIT
#pragma once

// Direct3D 9's root object and device: every operation in slot order, since callers and implementers meet at the table.

#include "platform/posix/d3d9_resources.h"

struct IDirect3DCubeTexture9;
struct IDirect3DIndexBuffer9;
struct IDirect3DPixelShader9;
struct IDirect3DQuery9;
struct IDirect3DStateBlock9;
struct IDirect3DSwapChain9;
struct IDirect3DVertexBuffer9;
struct IDirect3DVertexDeclaration9;
struct IDirect3DVertexShader9;
struct IDirect3DVolumeTexture9;

/// Slots 3 to 16.
struct IDirect3D9 : IUnknown {
    virtual HRESULT RegisterSoftwareDevice(void *initialize) = 0;
    virtual UINT GetAdapterCount() = 0;
    virtual HRESULT GetAdapterIdentifier(UINT adapter, DWORD flags, D3DADAPTER_IDENTIFIER9 *identifier) = 0;
    virtual UINT GetAdapterModeCount(UINT adapter, D3DFORMAT format) = 0;
    virtual HRESULT EnumAdapterModes(UINT adapter, D3DFORMAT format, UINT index, D3DDISPLAYMODE *mode) = 0;
    virtual HRESULT GetAdapterDisplayMode(UINT adapter, D3DDISPLAYMODE *mode) = 0;
    virtual HRESULT CheckDeviceType(UINT adapter, D3DDEVTYPE type, D3DFORMAT display, D3DFORMAT backBuffer,
                                    BOOL windowed) = 0;
    virtual HRESULT CheckDeviceFormat(UINT adapter, D3DDEVTYPE type, D3DFORMAT display, DWORD usage,
                                      D3DRESOURCETYPE resource, D3DFORMAT format) = 0;
    virtual HRESULT CheckDeviceMultiSampleType(UINT adapter, D3DDEVTYPE type, D3DFORMAT surface, BOOL windowed,
                                               D3DMULTISAMPLE_TYPE samples, DWORD *qualityLevels) = 0;
    virtual HRESULT CheckDepthStencilMatch(UINT adapter, D3DDEVTYPE type, D3DFORMAT display, D3DFORMAT renderTarget,
                                           D3DFORMAT depthStencil) = 0;
    virtual HRESULT CheckDeviceFormatConversion(UINT adapter, D3DDEVTYPE type, D3DFORMAT source, D3DFORMAT target) = 0;
    virtual HRESULT GetDeviceCaps(UINT adapter, D3DDEVTYPE type, D3DCAPS9 *capabilities) = 0;
    virtual HMONITOR GetAdapterMonitor(UINT adapter) = 0;
    virtual HRESULT CreateDevice(UINT adapter, D3DDEVTYPE type, HWND focusWindow, DWORD behaviour,
                                 D3DPRESENT_PARAMETERS *parameters, IDirect3DDevice9 **device) = 0;

  protected:
    ~IDirect3D9() = default;
};

/// Slots 3 to 118.
struct IDirect3DDevice9 : IUnknown {
    virtual HRESULT TestCooperativeLevel() = 0; // 3
    virtual UINT GetAvailableTextureMem() = 0;
    virtual HRESULT EvictManagedResources() = 0;
    virtual HRESULT GetDirect3D(IDirect3D9 **direct3D) = 0;
    virtual HRESULT GetDeviceCaps(D3DCAPS9 *capabilities) = 0;
    virtual HRESULT GetDisplayMode(UINT swapChain, D3DDISPLAYMODE *mode) = 0; // 8
    virtual HRESULT GetCreationParameters(D3DDEVICE_CREATION_PARAMETERS *parameters) = 0;
    virtual HRESULT SetCursorProperties(UINT hotSpotX, UINT hotSpotY, IDirect3DSurface9 *bitmap) = 0;
    virtual void SetCursorPosition(int x, int y, DWORD flags) = 0;
    virtual BOOL ShowCursor(BOOL show) = 0;
    virtual HRESULT CreateAdditionalSwapChain(D3DPRESENT_PARAMETERS *parameters, IDirect3DSwapChain9 **swapChain) = 0;
    virtual HRESULT GetSwapChain(UINT index, IDirect3DSwapChain9 **swapChain) = 0;
    virtual UINT GetNumberOfSwapChains() = 0;
    virtual HRESULT Reset(D3DPRESENT_PARAMETERS *parameters) = 0; // 16
    virtual HRESULT Present(const RECT *source, const RECT *destination, HWND window, const RGNDATA *dirty) = 0;
    virtual HRESULT GetBackBuffer(UINT swapChain, UINT index, D3DBACKBUFFER_TYPE type, IDirect3DSurface9 **surface) = 0;
    virtual HRESULT GetRasterStatus(UINT swapChain, D3DRASTER_STATUS *status) = 0;
    virtual HRESULT SetDialogBoxMode(BOOL enable) = 0;
    virtual void SetGammaRamp(UINT swapChain, DWORD flags, const D3DGAMMARAMP *ramp) = 0;
    virtual void GetGammaRamp(UINT swapChain, D3DGAMMARAMP *ramp) = 0;
    virtual HRESULT CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                  IDirect3DTexture9 **texture, HANDLE *shared) = 0; // 23
    virtual HRESULT CreateVolumeTexture(UINT width, UINT height, UINT depth, UINT levels, DWORD usage, D3DFORMAT format,
                                        D3DPOOL pool, IDirect3DVolumeTexture9 **texture, HANDLE *shared) = 0;
    virtual HRESULT CreateCubeTexture(UINT edge, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                      IDirect3DCubeTexture9 **texture, HANDLE *shared) = 0;
    virtual HRESULT CreateVertexBuffer(UINT length, DWORD usage, DWORD vertexFormat, D3DPOOL pool,
                                       IDirect3DVertexBuffer9 **buffer, HANDLE *shared) = 0;
    virtual HRESULT CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                      IDirect3DIndexBuffer9 **buffer, HANDLE *shared) = 0;
    virtual HRESULT CreateRenderTarget(UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE samples,
                                       DWORD quality, BOOL lockable, IDirect3DSurface9 **surface,
                                       HANDLE *shared) = 0; // 28
    virtual HRESULT CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE samples,
                                              DWORD quality, BOOL discard, IDirect3DSurface9 **surface,
                                              HANDLE *shared) = 0;
    virtual HRESULT UpdateSurface(IDirect3DSurface9 *source, const RECT *sourceRectangle,
                                  IDirect3DSurface9 *destination, const POINT *destinationPoint) = 0;
    virtual HRESULT UpdateTexture(IDirect3DBaseTexture9 *source, IDirect3DBaseTexture9 *destination) = 0; // 31
    virtual HRESULT GetRenderTargetData(IDirect3DSurface9 *renderTarget, IDirect3DSurface9 *destination) = 0;
    virtual HRESULT GetFrontBufferData(UINT swapChain, IDirect3DSurface9 *destination) = 0;
    virtual HRESULT StretchRect(IDirect3DSurface9 *source, const RECT *sourceRectangle, IDirect3DSurface9 *destination,
                                const RECT *destinationRectangle, D3DTEXTUREFILTERTYPE filter) = 0;
    virtual HRESULT ColorFill(IDirect3DSurface9 *surface, const RECT *rectangle, D3DCOLOR color) = 0; // 35
    virtual HRESULT CreateOffscreenPlainSurface(UINT width, UINT height, D3DFORMAT format, D3DPOOL pool,
                                                IDirect3DSurface9 **surface, HANDLE *shared) = 0;
    virtual HRESULT SetRenderTarget(DWORD index, IDirect3DSurface9 *surface) = 0;
    virtual HRESULT GetRenderTarget(DWORD index, IDirect3DSurface9 **surface) = 0;
    virtual HRESULT SetDepthStencilSurface(IDirect3DSurface9 *surface) = 0;
    virtual HRESULT GetDepthStencilSurface(IDirect3DSurface9 **surface) = 0; // 40
    virtual HRESULT BeginScene() = 0;
    virtual HRESULT EndScene() = 0;
    virtual HRESULT Clear(DWORD count, const D3DRECT *rectangles, DWORD flags, D3DCOLOR color, float z,
                          DWORD stencil) = 0;
    virtual HRESULT SetTransform(D3DTRANSFORMSTATETYPE state, const D3DMATRIX *matrix) = 0;
    virtual HRESULT GetTransform(D3DTRANSFORMSTATETYPE state, D3DMATRIX *matrix) = 0;
    virtual HRESULT MultiplyTransform(D3DTRANSFORMSTATETYPE state, const D3DMATRIX *matrix) = 0;
    virtual HRESULT SetViewport(const D3DVIEWPORT9 *viewport) = 0;
    virtual HRESULT GetViewport(D3DVIEWPORT9 *viewport) = 0; // 48
    virtual HRESULT SetMaterial(const D3DMATERIAL9 *material) = 0;
    virtual HRESULT GetMaterial(D3DMATERIAL9 *material) = 0;
    virtual HRESULT SetLight(DWORD index, const D3DLIGHT9 *light) = 0;
    virtual HRESULT GetLight(DWORD index, D3DLIGHT9 *light) = 0;
    virtual HRESULT LightEnable(DWORD index, BOOL enable) = 0;
    virtual HRESULT GetLightEnable(DWORD index, BOOL *enable) = 0;
    virtual HRESULT SetClipPlane(DWORD index, const float *plane) = 0;
    virtual HRESULT GetClipPlane(DWORD index, float *plane) = 0; // 56
    virtual HRESULT SetRenderState(D3DRENDERSTATETYPE state, DWORD value) = 0;
    virtual HRESULT GetRenderState(D3DRENDERSTATETYPE state, DWORD *value) = 0;
    virtual HRESULT CreateStateBlock(D3DSTATEBLOCKTYPE type, IDirect3DStateBlock9 **block) = 0;
    virtual HRESULT BeginStateBlock() = 0;
    virtual HRESULT EndStateBlock(IDirect3DStateBlock9 **block) = 0;
    virtual HRESULT SetClipStatus(const D3DCLIPSTATUS9 *status) = 0;
    virtual HRESULT GetClipStatus(D3DCLIPSTATUS9 *status) = 0;
    virtual HRESULT GetTexture(DWORD stage, IDirect3DBaseTexture9 **texture) = 0; // 64
    virtual HRESULT SetTexture(DWORD stage, IDirect3DBaseTexture9 *texture) = 0;
    virtual HRESULT GetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type, DWORD *value) = 0;
    virtual HRESULT SetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type, DWORD value) = 0;
    virtual HRESULT GetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type, DWORD *value) = 0;
    virtual HRESULT SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type, DWORD value) = 0;
    virtual HRESULT ValidateDevice(DWORD *passes) = 0;
    virtual HRESULT SetPaletteEntries(UINT palette, const PALETTEENTRY *entries) = 0;
    virtual HRESULT GetPaletteEntries(UINT palette, PALETTEENTRY *entries) = 0; // 72
    virtual HRESULT SetCurrentTexturePalette(UINT palette) = 0;
    virtual HRESULT GetCurrentTexturePalette(UINT *palette) = 0;
    virtual HRESULT SetScissorRect(const RECT *rectangle) = 0;
    virtual HRESULT GetScissorRect(RECT *rectangle) = 0;
    virtual HRESULT SetSoftwareVertexProcessing(BOOL software) = 0;
    virtual BOOL GetSoftwareVertexProcessing() = 0;
    virtual HRESULT SetNPatchMode(float segments) = 0;
    virtual float GetNPatchMode() = 0; // 80
    virtual HRESULT DrawPrimitive(D3DPRIMITIVETYPE type, UINT firstVertex, UINT count) = 0;
    virtual HRESULT DrawIndexedPrimitive(D3DPRIMITIVETYPE type, INT baseVertex, UINT lowestVertex, UINT vertexCount,
                                         UINT firstIndex, UINT count) = 0;
    virtual HRESULT DrawPrimitiveUP(D3DPRIMITIVETYPE type, UINT count, const void *vertices, UINT stride) = 0;
    virtual HRESULT DrawIndexedPrimitiveUP(D3DPRIMITIVETYPE type, UINT lowestVertex, UINT vertexCount, UINT count,
                                           const void *indices, D3DFORMAT indexFormat, const void *vertices,
                                           UINT stride) = 0;
    virtual HRESULT ProcessVertices(UINT sourceStart, UINT destinationIndex, UINT count,
                                    IDirect3DVertexBuffer9 *destination, IDirect3DVertexDeclaration9 *declaration,
                                    DWORD flags) = 0;
    virtual HRESULT CreateVertexDeclaration(const D3DVERTEXELEMENT9 *elements,
                                            IDirect3DVertexDeclaration9 **declaration) = 0;
    virtual HRESULT SetVertexDeclaration(IDirect3DVertexDeclaration9 *declaration) = 0;
    virtual HRESULT GetVertexDeclaration(IDirect3DVertexDeclaration9 **declaration) = 0; // 88
    virtual HRESULT SetFVF(DWORD vertexFormat) = 0;
    virtual HRESULT GetFVF(DWORD *vertexFormat) = 0;
    virtual HRESULT CreateVertexShader(const DWORD *code, IDirect3DVertexShader9 **shader) = 0;
    virtual HRESULT SetVertexShader(IDirect3DVertexShader9 *shader) = 0;
    virtual HRESULT GetVertexShader(IDirect3DVertexShader9 **shader) = 0;
    virtual HRESULT SetVertexShaderConstantF(UINT first, const float *data, UINT count) = 0;
    virtual HRESULT GetVertexShaderConstantF(UINT first, float *data, UINT count) = 0;
    virtual HRESULT SetVertexShaderConstantI(UINT first, const int *data, UINT count) = 0; // 96
    virtual HRESULT GetVertexShaderConstantI(UINT first, int *data, UINT count) = 0;
    virtual HRESULT SetVertexShaderConstantB(UINT first, const BOOL *data, UINT count) = 0;
    virtual HRESULT GetVertexShaderConstantB(UINT first, BOOL *data, UINT count) = 0;
    virtual HRESULT SetStreamSource(UINT stream, IDirect3DVertexBuffer9 *buffer, UINT offset, UINT stride) = 0;
    virtual HRESULT GetStreamSource(UINT stream, IDirect3DVertexBuffer9 **buffer, UINT *offset, UINT *stride) = 0;
    virtual HRESULT SetStreamSourceFreq(UINT stream, UINT divider) = 0;
    virtual HRESULT GetStreamSourceFreq(UINT stream, UINT *divider) = 0;
    virtual HRESULT SetIndices(IDirect3DIndexBuffer9 *buffer) = 0; // 104
    virtual HRESULT GetIndices(IDirect3DIndexBuffer9 **buffer) = 0;
    virtual HRESULT CreatePixelShader(const DWORD *code, IDirect3DPixelShader9 **shader) = 0;
    virtual HRESULT SetPixelShader(IDirect3DPixelShader9 *shader) = 0;
    virtual HRESULT GetPixelShader(IDirect3DPixelShader9 **shader) = 0;
    virtual HRESULT SetPixelShaderConstantF(UINT first, const float *data, UINT count) = 0;
    virtual HRESULT GetPixelShaderConstantF(UINT first, float *data, UINT count) = 0;
    virtual HRESULT SetPixelShaderConstantI(UINT first, const int *data, UINT count) = 0;
    virtual HRESULT GetPixelShaderConstantI(UINT first, int *data, UINT count) = 0; // 112
    virtual HRESULT SetPixelShaderConstantB(UINT first, const BOOL *data, UINT count) = 0;
    virtual HRESULT GetPixelShaderConstantB(UINT first, BOOL *data, UINT count) = 0;
    virtual HRESULT DrawRectPatch(UINT handle, const float *segments, const D3DRECTPATCH_INFO *patch) = 0;
    virtual HRESULT DrawTriPatch(UINT handle, const float *segments, const D3DTRIPATCH_INFO *patch) = 0;
    virtual HRESULT DeletePatch(UINT handle) = 0;
    virtual HRESULT CreateQuery(D3DQUERYTYPE type, IDirect3DQuery9 **query) = 0; // 118

  protected:
    ~IDirect3DDevice9() = default;
};

inline constexpr GUID IID_IDirect3D9 = {0x81BDCBCA, 0x64D4, 0x426D, {0xAE, 0x8D, 0xAD, 0x01, 0x47, 0xF4, 0x27, 0x5C}};
inline constexpr GUID IID_IDirect3DDevice9 = {
    0xD0223B96, 0xBF7A, 0x43FD, {0x92, 0xBD, 0xA4, 0x3B, 0x0D, 0x82, 0xB9, 0xEB}};
