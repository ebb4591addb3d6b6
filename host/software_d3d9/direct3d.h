// SPDX-License-Identifier: MIT
#pragma once

#include "platform/d3d9.h"
#include "software_d3d9/core.h"

namespace software_d3d9 {

class Device;

/// The root object of a device: one adapter and its display mode. Its references are the device's.
class Direct3D final : public IDirect3D9 {
  public:
    Direct3D(Device &device, Core &core) : m_device(device), m_core(core) {}
    Direct3D(const Direct3D &) = delete;
    Direct3D &operator=(const Direct3D &) = delete;
    ~Direct3D() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &iid, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    UINT STDMETHODCALLTYPE GetAdapterCount() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetAdapterDisplayMode(UINT adapter, D3DDISPLAYMODE *mode) override;

    HRESULT STDMETHODCALLTYPE RegisterSoftwareDevice(void *) override { return unoffered("RegisterSoftwareDevice"); }
    HRESULT STDMETHODCALLTYPE GetAdapterIdentifier(UINT, DWORD, D3DADAPTER_IDENTIFIER9 *) override {
        return unoffered("GetAdapterIdentifier");
    }
    UINT STDMETHODCALLTYPE GetAdapterModeCount(UINT, D3DFORMAT) override {
        unoffered("GetAdapterModeCount");
        return {};
    }
    HRESULT STDMETHODCALLTYPE EnumAdapterModes(UINT, D3DFORMAT, UINT, D3DDISPLAYMODE *) override {
        return unoffered("EnumAdapterModes");
    }
    HRESULT STDMETHODCALLTYPE CheckDeviceType(UINT, D3DDEVTYPE, D3DFORMAT, D3DFORMAT, BOOL) override {
        return unoffered("CheckDeviceType");
    }
    HRESULT STDMETHODCALLTYPE CheckDeviceFormat(UINT, D3DDEVTYPE, D3DFORMAT, DWORD, D3DRESOURCETYPE,
                                                D3DFORMAT) override {
        return unoffered("CheckDeviceFormat");
    }
    HRESULT STDMETHODCALLTYPE CheckDeviceMultiSampleType(UINT, D3DDEVTYPE, D3DFORMAT, BOOL, D3DMULTISAMPLE_TYPE,
                                                         DWORD *) override {
        return unoffered("CheckDeviceMultiSampleType");
    }
    HRESULT STDMETHODCALLTYPE CheckDepthStencilMatch(UINT, D3DDEVTYPE, D3DFORMAT, D3DFORMAT, D3DFORMAT) override {
        return unoffered("CheckDepthStencilMatch");
    }
    HRESULT STDMETHODCALLTYPE CheckDeviceFormatConversion(UINT, D3DDEVTYPE, D3DFORMAT, D3DFORMAT) override {
        return unoffered("CheckDeviceFormatConversion");
    }
    HRESULT STDMETHODCALLTYPE GetDeviceCaps(UINT, D3DDEVTYPE, D3DCAPS9 *) override {
        return unoffered("GetDeviceCaps");
    }
    HMONITOR STDMETHODCALLTYPE GetAdapterMonitor(UINT) override {
        unoffered("GetAdapterMonitor");
        return {};
    }
    HRESULT STDMETHODCALLTYPE CreateDevice(UINT, D3DDEVTYPE, HWND, DWORD, D3DPRESENT_PARAMETERS *,
                                           IDirect3DDevice9 **) override {
        return unoffered("CreateDevice");
    }

  private:
    HRESULT unoffered(const char *method);

    Device &m_device;
    Core &m_core;
};

/// The mode of the one display.
D3DDISPLAYMODE displayMode(const DeviceOptions &options);

} // namespace software_d3d9
