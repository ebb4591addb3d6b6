// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/d3d9.h"
#include "software_d3d9/core.h"

namespace software_d3d9 {

/// The one level of a texture. It lives inside its texture, and every reference to it is one to the texture as well.
class Surface final : public IDirect3DSurface9 {
  public:
    Surface(Texture &texture, Core &core, const std::string &textureName);
    Surface(const Surface &) = delete;
    Surface &operator=(const Surface &) = delete;
    ~Surface();

    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &iid, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9 **device) override;
    HRESULT STDMETHODCALLTYPE SetPrivateData(const GUID &key, const void *data, DWORD size, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE GetPrivateData(const GUID &key, void *data, DWORD *size) override;
    HRESULT STDMETHODCALLTYPE FreePrivateData(const GUID &key) override;
    DWORD STDMETHODCALLTYPE SetPriority(DWORD priority) override;
    DWORD STDMETHODCALLTYPE GetPriority() override;
    void STDMETHODCALLTYPE PreLoad() override {}
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_SURFACE; }
    HRESULT STDMETHODCALLTYPE GetContainer(const GUID &iid, void **container) override;
    HRESULT STDMETHODCALLTYPE GetDesc(D3DSURFACE_DESC *description) override;
    HRESULT STDMETHODCALLTYPE LockRect(D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect() override;
    HRESULT STDMETHODCALLTYPE GetDC(HDC *context) override;
    HRESULT STDMETHODCALLTYPE ReleaseDC(HDC context) override;

    Texture &texture() const { return m_texture; }

  private:
    HRESULT unsupported(const char *method);

    Texture &m_texture;
    Core &m_core;
    const std::string m_name;
    ULONG m_references = 0;
};

} // namespace software_d3d9
