// SPDX-License-Identifier: MIT
#include "software_d3d9/surface.h"

#include "software_d3d9/texture.h"

namespace software_d3d9 {

Surface::Surface(Texture &texture, Core &core, const std::string &textureName)
    : m_texture(texture), m_core(core), m_name(textureName + " surface") {
    m_core.surfaces.insert(static_cast<IDirect3DSurface9 *>(this));
}

Surface::~Surface() {
    m_core.surfaces.erase(static_cast<IDirect3DSurface9 *>(this));
}

HRESULT Surface::QueryInterface(const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDirect3DResource9 && iid != IID_IDirect3DSurface9)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDirect3DSurface9 *>(this);
    return S_OK;
}

ULONG Surface::AddRef() {
    const std::lock_guard lock(m_core.mutex);
    m_texture.AddRef();
    ++m_core.live.surfaceReferences;
    return ++m_references;
}

ULONG Surface::Release() {
    ULONG left = 0;
    {
        const std::lock_guard lock(m_core.mutex);
        if (m_references == 0) {
            m_core.record.addViolation(m_name, "Release", "no reference is left");
            return 0;
        }
        left = --m_references;
        --m_core.live.surfaceReferences;
    }
    // Outside the lock: it goes with the last reference.
    m_texture.Release();
    return left;
}

HRESULT Surface::GetDevice(IDirect3DDevice9 **device) {
    return m_texture.GetDevice(device);
}

HRESULT Surface::GetContainer(const GUID &iid, void **container) {
    return m_texture.QueryInterface(iid, container);
}

HRESULT Surface::GetDesc(D3DSURFACE_DESC *description) {
    return m_texture.GetLevelDesc(0, description);
}

HRESULT Surface::LockRect(D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags) {
    return m_texture.lock(locked, rectangle, flags, m_name);
}

HRESULT Surface::UnlockRect() {
    return m_texture.unlock(m_name);
}

HRESULT Surface::SetPrivateData(const GUID &, const void *, DWORD, DWORD) {
    return unsupported("SetPrivateData");
}
HRESULT Surface::GetPrivateData(const GUID &, void *, DWORD *) {
    return unsupported("GetPrivateData");
}
HRESULT Surface::FreePrivateData(const GUID &) {
    return unsupported("FreePrivateData");
}
DWORD Surface::SetPriority(DWORD) {
    return 0;
}
DWORD Surface::GetPriority() {
    return 0;
}
HRESULT Surface::GetDC(HDC *) {
    return unsupported("GetDC");
}
HRESULT Surface::ReleaseDC(HDC) {
    return unsupported("ReleaseDC");
}

HRESULT Surface::unsupported(const char *method) {
    m_core.record.addViolation(m_name, method, "this device does not offer it");
    return D3DERR_NOTAVAILABLE;
}

} // namespace software_d3d9
