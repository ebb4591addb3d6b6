// SPDX-License-Identifier: MIT
#include "software_d3d9/direct3d.h"

#include "software_d3d9/device.h"

namespace software_d3d9 {

HRESULT Direct3D::QueryInterface(const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDirect3D9)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDirect3D9 *>(this);
    return S_OK;
}

ULONG Direct3D::AddRef() {
    return m_device.AddRef();
}

ULONG Direct3D::Release() {
    return m_device.Release();
}

HRESULT Direct3D::GetAdapterDisplayMode(UINT adapter, D3DDISPLAYMODE *mode) {
    if (adapter != 0 || !mode) {
        m_core.record.addViolation("Direct3D", "GetAdapterDisplayMode", "no such adapter, or no out-pointer");
        return D3DERR_INVALIDCALL;
    }
    *mode = displayMode(m_core.options);
    return S_OK;
}

HRESULT Direct3D::unoffered(const char *method) {
    m_core.record.addViolation("Direct3D", method, "this device does not offer it");
    return D3DERR_NOTAVAILABLE;
}

D3DDISPLAYMODE displayMode(const DeviceOptions &options) {
    return {options.displayWidth, options.displayHeight, options.refreshRate, D3DFMT_X8R8G8B8};
}

} // namespace software_d3d9
