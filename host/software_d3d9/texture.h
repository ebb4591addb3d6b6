// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/d3d9.h"
#include "software_d3d9/core.h"
#include "software_d3d9/surface.h"

namespace software_d3d9 {

class Device;

/// A texture of one level. Its pixels are shared when it is shown and copied when one of the sharers is written, as
/// drivers rename a buffer: showing a picture that was written as a whole moves no pixels.
class Texture final : public IDirect3DTexture9 {
  public:
    /// Comes with one reference, and holds one to the device as long as somebody refers to it.
    Texture(Device &device, std::shared_ptr<Core> core, const D3DSURFACE_DESC &description,
            std::shared_ptr<Picture> pixels);
    Texture(const Texture &) = delete;
    Texture &operator=(const Texture &) = delete;

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
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_TEXTURE; }
    DWORD STDMETHODCALLTYPE SetLOD(DWORD level) override;
    DWORD STDMETHODCALLTYPE GetLOD() override { return 0; }
    DWORD STDMETHODCALLTYPE GetLevelCount() override { return 1; }
    HRESULT STDMETHODCALLTYPE SetAutoGenFilterType(D3DTEXTUREFILTERTYPE filter) override;
    D3DTEXTUREFILTERTYPE STDMETHODCALLTYPE GetAutoGenFilterType() override { return D3DTEXF_NONE; }
    void STDMETHODCALLTYPE GenerateMipSubLevels() override {}
    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC *description) override;
    HRESULT STDMETHODCALLTYPE GetSurfaceLevel(UINT level, IDirect3DSurface9 **surface) override;
    HRESULT STDMETHODCALLTYPE LockRect(UINT level, D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect(UINT level) override;
    HRESULT STDMETHODCALLTYPE AddDirtyRect(const RECT *rectangle) override;

    // --- For the device and the surface ---

    const std::string &name() const { return m_name; }
    const D3DSURFACE_DESC &description() const { return m_description; }
    bool isLocked() const { return m_locked; }
    /// Reports a broken rule of a call; D3DERR_INVALIDCALL.
    HRESULT lock(D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags, const std::string &object);
    HRESULT unlock(const std::string &object);
    /// Takes over what is dirty in `source`, a texture of the same size.
    HRESULT updateFrom(Texture &source);
    HRESULT fill(const RECT *rectangle, D3DCOLOR color);
    /// The pixels as they are now; later writes do not change them.
    SharedPicture picture();
    /// Keeps the texture without counting as a reference: what a device does with a texture that it draws.
    void pin() { ++m_pins; }
    void unpin();

  private:
    ~Texture();

    RECT whole() const;
    bool contains(const RECT &rectangle) const;
    void addDirty(const RECT &rectangle);
    /// Makes the pixels this texture's own; false when there is no memory.
    bool unshare(bool keepContent);
    void deleteIfUnused();
    HRESULT unsupported(const char *method);
    HRESULT invalid(const char *method, const char *reason);

    Device &m_device;
    const std::shared_ptr<Core> m_core;
    const D3DSURFACE_DESC m_description;
    const std::string m_name;
    Surface m_surface;
    std::shared_ptr<Picture> m_pixels;
    bool m_shared = false; ///< whether somebody else may have the pixels
    std::optional<RECT> m_dirty;
    bool m_locked = false;
    ULONG m_references = 1;
    unsigned int m_pins = 0;
};

} // namespace software_d3d9
