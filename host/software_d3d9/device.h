// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>

#include "platform/d3d9.h"
#include "software_d3d9/core.h"
#include "software_d3d9/unoffered_device.h"

namespace software_d3d9 {

class Direct3D;
class Texture;

/// A Direct3D 9 device that draws nothing: it makes textures, lets them be written, copies them and remembers which is
/// bound where, so that a host without a graphics card can read what a renderer would show.
///
/// It accepts exactly what the documentation allows, keeps a record of its calls and of its caller's mistakes, can be
/// told to fail, and counts references. May be used from several threads. Textures keep their device in existence.
class Device final : public UnofferedDevice {
  public:
    /// Comes with one reference.
    static Device *make(const DeviceOptions &options = {});

    CallRecord &record() { return m_core->record; }
    /// What the caller still holds.
    LiveCounts live() const;
    ULONG references() const;
    /// The Direct3D object behind the device, borrowed.
    IDirect3D9 *direct3D() const;

    /// What the texture bound to a stage shows now; later writes do not change it. Null when none is bound.
    SharedPicture boundPicture(DWORD stage) const;
    /// The same for any texture of this device; null for a foreign one.
    SharedPicture pictureOf(IDirect3DBaseTexture9 *texture) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &iid, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE TestCooperativeLevel() override;
    HRESULT STDMETHODCALLTYPE GetDirect3D(IDirect3D9 **direct3D) override;
    HRESULT STDMETHODCALLTYPE GetDisplayMode(UINT swapChain, D3DDISPLAYMODE *mode) override;
    UINT STDMETHODCALLTYPE GetNumberOfSwapChains() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format,
                                            D3DPOOL pool, IDirect3DTexture9 **texture, HANDLE *shared) override;
    HRESULT STDMETHODCALLTYPE UpdateTexture(IDirect3DBaseTexture9 *source, IDirect3DBaseTexture9 *destination) override;
    HRESULT STDMETHODCALLTYPE ColorFill(IDirect3DSurface9 *surface, const RECT *rectangle, D3DCOLOR color) override;
    HRESULT STDMETHODCALLTYPE GetTexture(DWORD stage, IDirect3DBaseTexture9 **texture) override;
    HRESULT STDMETHODCALLTYPE SetTexture(DWORD stage, IDirect3DBaseTexture9 *texture) override;

  private:
    /// Sixteen samplers of the pixel stage; the vertex stage's are not offered.
    static constexpr std::size_t kStages = 16;

    explicit Device(const DeviceOptions &options);
    ~Device();

    HRESULT unoffered(const char *method) override;
    HRESULT invalid(const char *method, const char *reason);
    Texture *find(const IDirect3DBaseTexture9 *texture) const;
    std::string nameOf(const IDirect3DBaseTexture9 *texture) const;

    const std::shared_ptr<Core> m_core;
    const std::unique_ptr<Direct3D> m_direct3D;
    std::array<Texture *, kStages> m_stages{}; ///< pinned
    ULONG m_references = 1;
};

} // namespace software_d3d9
