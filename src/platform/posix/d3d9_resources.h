// SPDX-License-Identifier: MIT
#pragma once

// Direct3D 9's resources: the operations in slot order, numbered in the comments.

#include "platform/posix/d3d9_types.h"

struct IDirect3DDevice9;

/// Slots 3 to 10.
struct IDirect3DResource9 : IUnknown {
    virtual HRESULT GetDevice(IDirect3DDevice9 **device) = 0;
    virtual HRESULT SetPrivateData(const GUID &key, const void *data, DWORD size, DWORD flags) = 0;
    virtual HRESULT GetPrivateData(const GUID &key, void *data, DWORD *size) = 0;
    virtual HRESULT FreePrivateData(const GUID &key) = 0;
    virtual DWORD SetPriority(DWORD priority) = 0;
    virtual DWORD GetPriority() = 0;
    virtual void PreLoad() = 0;
    virtual D3DRESOURCETYPE GetType() = 0;

  protected:
    ~IDirect3DResource9() = default;
};

/// Slots 11 to 16.
struct IDirect3DSurface9 : IDirect3DResource9 {
    virtual HRESULT GetContainer(const GUID &iid, void **container) = 0;
    virtual HRESULT GetDesc(D3DSURFACE_DESC *description) = 0;
    virtual HRESULT LockRect(D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags) = 0;
    virtual HRESULT UnlockRect() = 0;
    virtual HRESULT GetDC(HDC *context) = 0;
    virtual HRESULT ReleaseDC(HDC context) = 0;

  protected:
    ~IDirect3DSurface9() = default;
};

/// Slots 11 to 16.
struct IDirect3DBaseTexture9 : IDirect3DResource9 {
    virtual DWORD SetLOD(DWORD level) = 0;
    virtual DWORD GetLOD() = 0;
    virtual DWORD GetLevelCount() = 0;
    virtual HRESULT SetAutoGenFilterType(D3DTEXTUREFILTERTYPE filter) = 0;
    virtual D3DTEXTUREFILTERTYPE GetAutoGenFilterType() = 0;
    virtual void GenerateMipSubLevels() = 0;

  protected:
    ~IDirect3DBaseTexture9() = default;
};

/// Slots 17 to 21.
struct IDirect3DTexture9 : IDirect3DBaseTexture9 {
    virtual HRESULT GetLevelDesc(UINT level, D3DSURFACE_DESC *description) = 0;
    virtual HRESULT GetSurfaceLevel(UINT level, IDirect3DSurface9 **surface) = 0;
    virtual HRESULT LockRect(UINT level, D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags) = 0;
    virtual HRESULT UnlockRect(UINT level) = 0;
    virtual HRESULT AddDirtyRect(const RECT *rectangle) = 0;

  protected:
    ~IDirect3DTexture9() = default;
};

inline constexpr GUID IID_IDirect3DResource9 = {
    0x05EEC05D, 0x8F7D, 0x4362, {0xB9, 0x99, 0xD1, 0xBA, 0xF3, 0x57, 0xC7, 0x04}};
inline constexpr GUID IID_IDirect3DSurface9 = {
    0x0CFBAF3A, 0x9FF6, 0x429A, {0x99, 0xB3, 0xA2, 0x79, 0x6A, 0xF8, 0xB8, 0x9B}};
inline constexpr GUID IID_IDirect3DBaseTexture9 = {
    0x580CA87E, 0x1D3C, 0x4D54, {0x99, 0x1D, 0xB7, 0xD3, 0xE3, 0xC2, 0x98, 0xCE}};
inline constexpr GUID IID_IDirect3DTexture9 = {
    0x85C31227, 0x3DE5, 0x4F00, {0x9B, 0x3A, 0xF1, 0x1A, 0xC3, 0x8C, 0x18, 0xB5}};
