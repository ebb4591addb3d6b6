// SPDX-License-Identifier: MIT
#pragma once

// The types and values of Direct3D 9 that the texture path needs, with the names, widths and values of the public
// interface. Types that only pass through operations nobody calls here stay incomplete.

#include "platform/win_types.h"

using HANDLE = void *;
using HDC = struct HDC__ *;
using HMONITOR = struct HMONITOR__ *;
using D3DCOLOR = DWORD; ///< 0xAARRGGBB

struct POINT {
    LONG x;
    LONG y;
};

struct RECT {
    LONG left;
    LONG top;
    LONG right;  ///< exclusive
    LONG bottom; ///< exclusive
};

enum D3DFORMAT : std::uint32_t {
    D3DFMT_UNKNOWN = 0,
    D3DFMT_A8R8G8B8 = 21,
    D3DFMT_X8R8G8B8 = 22,
};

enum D3DPOOL : std::uint32_t {
    D3DPOOL_DEFAULT = 0,
    D3DPOOL_MANAGED = 1,
    D3DPOOL_SYSTEMMEM = 2,
    D3DPOOL_SCRATCH = 3,
};

enum D3DRESOURCETYPE : std::uint32_t {
    D3DRTYPE_SURFACE = 1,
    D3DRTYPE_TEXTURE = 3,
};

enum D3DMULTISAMPLE_TYPE : std::uint32_t { D3DMULTISAMPLE_NONE = 0 };
enum D3DTEXTUREFILTERTYPE : std::uint32_t { D3DTEXF_NONE = 0, D3DTEXF_POINT = 1, D3DTEXF_LINEAR = 2 };
enum D3DDEVTYPE : std::uint32_t { D3DDEVTYPE_HAL = 1, D3DDEVTYPE_REF = 2, D3DDEVTYPE_SW = 3 };

enum D3DBACKBUFFER_TYPE : std::uint32_t;
enum D3DPRIMITIVETYPE : std::uint32_t;
enum D3DQUERYTYPE : std::uint32_t;
enum D3DRENDERSTATETYPE : std::uint32_t;
enum D3DSAMPLERSTATETYPE : std::uint32_t;
enum D3DSTATEBLOCKTYPE : std::uint32_t;
enum D3DTEXTURESTAGESTATETYPE : std::uint32_t;
enum D3DTRANSFORMSTATETYPE : std::uint32_t;

struct D3DDISPLAYMODE {
    UINT Width;
    UINT Height;
    UINT RefreshRate; ///< Hz
    D3DFORMAT Format;
};

struct D3DLOCKED_RECT {
    INT Pitch; ///< bytes from one row to the next
    void *pBits;
};

struct D3DSURFACE_DESC {
    D3DFORMAT Format;
    D3DRESOURCETYPE Type;
    DWORD Usage;
    D3DPOOL Pool;
    D3DMULTISAMPLE_TYPE MultiSampleType;
    DWORD MultiSampleQuality;
    UINT Width;
    UINT Height;
};

struct D3DDEVICE_CREATION_PARAMETERS {
    UINT AdapterOrdinal;
    D3DDEVTYPE DeviceType;
    HWND hFocusWindow;
    DWORD BehaviorFlags;
};

struct D3DADAPTER_IDENTIFIER9;
struct D3DCAPS9;
struct D3DCLIPSTATUS9;
struct D3DGAMMARAMP;
struct D3DLIGHT9;
struct D3DMATERIAL9;
struct D3DMATRIX;
struct D3DPRESENT_PARAMETERS;
struct D3DRASTER_STATUS;
struct D3DRECT;
struct D3DRECTPATCH_INFO;
struct D3DTRIPATCH_INFO;
struct D3DVERTEXELEMENT9;
struct D3DVIEWPORT9;
struct PALETTEENTRY;
struct RGNDATA;

inline constexpr DWORD D3DUSAGE_RENDERTARGET = 0x1;
inline constexpr DWORD D3DUSAGE_DEPTHSTENCIL = 0x2;
inline constexpr DWORD D3DUSAGE_DYNAMIC = 0x200;
inline constexpr DWORD D3DUSAGE_AUTOGENMIPMAP = 0x400;

inline constexpr DWORD D3DLOCK_READONLY = 0x10;
inline constexpr DWORD D3DLOCK_NOSYSLOCK = 0x800;
inline constexpr DWORD D3DLOCK_NOOVERWRITE = 0x1000;
inline constexpr DWORD D3DLOCK_DISCARD = 0x2000;
inline constexpr DWORD D3DLOCK_DONOTWAIT = 0x4000;
inline constexpr DWORD D3DLOCK_NO_DIRTY_UPDATE = 0x8000;

inline constexpr HRESULT D3D_OK = 0;
inline constexpr HRESULT D3DERR_OUTOFVIDEOMEMORY = static_cast<HRESULT>(0x8876017CU);
inline constexpr HRESULT D3DERR_DEVICELOST = static_cast<HRESULT>(0x88760868U);
inline constexpr HRESULT D3DERR_DEVICENOTRESET = static_cast<HRESULT>(0x88760869U);
inline constexpr HRESULT D3DERR_NOTAVAILABLE = static_cast<HRESULT>(0x8876086AU);
inline constexpr HRESULT D3DERR_INVALIDCALL = static_cast<HRESULT>(0x8876086CU);
