// SPDX-License-Identifier: MIT
#pragma once

// The texture that shows the overlay on top of the video: one copy in system memory, which is written here, and one in
// video memory, which the host's renderer draws.
//
// The device belongs to the host; it is reached only through the objects that its Python side hands over. No exception
// leaves a slot. The slots run on the renderer's thread and never take the interpreter lock; Create calls Python
// objects and takes it for those calls.

#include <atomic>

#include "callback/python_fwd.h"
#include "platform/com_pointer.h"
#include "platform/d3d9.h"
#include "platform/reentrant_lock.h"
#include "texture/allocator.h"

class PyMap : public loom::IAllocator {
  public:
    /// No references yet: whoever makes a map takes the first one with AddRef.
    PyMap() = default;
    PyMap(const PyMap &) = delete;
    PyMap &operator=(const PyMap &) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(const GUID &iid, void **object) override; ///< always E_NOINTERFACE
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE BindToStage(DWORD stage) override;
    HRESULT STDMETHODCALLTYPE Operation4() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Lock() override;
    HRESULT STDMETHODCALLTYPE Unlock() override;
    float STDMETHODCALLTYPE Aspect() override;
    // The fixed answers are what the host's framework expects of an overlay.
    UINT STDMETHODCALLTYPE BitsPerPixel() override { return 32; }
    void STDMETHODCALLTYPE Operation9() override {}
    HRESULT STDMETHODCALLTYPE Operation10() override { return E_UNEXPECTED; }
    UINT STDMETHODCALLTYPE UpdateCounter() override { return m_updateCounter; }
    UINT STDMETHODCALLTYPE Width() override { return m_width; }
    UINT STDMETHODCALLTYPE Height() override { return m_height; }
    UINT STDMETHODCALLTYPE Flag14() override { return 1; }
    UINT STDMETHODCALLTYPE Flag15() override { return 0; }
    void STDMETHODCALLTYPE Operation16() override {}
    bool STDMETHODCALLTYPE Flag17() override { return false; }
    bool STDMETHODCALLTYPE FrameRate(UINT *numerator, UINT *denominator) override;
    UINT STDMETHODCALLTYPE Flag19() override { return 0; }
    UINT STDMETHODCALLTYPE Flag20() override { return 0; }
    void STDMETHODCALLTYPE Operation21() override {}
    UINT STDMETHODCALLTYPE VideoWidth() override { return m_width; }
    UINT STDMETHODCALLTYPE VideoHeight() override { return m_height; }
    float STDMETHODCALLTYPE InverseAspect() override;
    HRESULT STDMETHODCALLTYPE Operation25() override { return E_NOTIMPL; }
    UINT STDMETHODCALLTYPE Flag26() override { return 0; }
    UINT STDMETHODCALLTYPE Flag27() override { return 0; }
    HRESULT STDMETHODCALLTYPE TextureInterface(IUnknown **texture) override;
    UINT STDMETHODCALLTYPE Flag29() override { return 1; }
    void STDMETHODCALLTYPE Operation30() override {}

    /// Slot 31: deletes the map. Release calls it when the last reference goes.
    virtual void STDMETHODCALLTYPE Destroy();
    /// Slot 32: stores the size in pixels and makes the textures on the device that `renderer` answers.
    ///
    /// `windowProvider` answers "GetWnd"; `renderer` answers "GetRenderName" ("D3D9" is the one accepted), "GetD3D" and
    /// "GetD3DDevice". Null and None count as not given; without a renderer there are no textures. Both are borrowed.
    /// Takes the interpreter lock for each call; no Python error is left pending. Not while another thread uses the
    /// map. Returns 1, E_FAIL when an object does not answer, E_OUTOFMEMORY, or the device's error.
    virtual HRESULT STDMETHODCALLTYPE Create(UINT width, UINT height, PyObject *windowProvider, PyObject *renderer);
    /// Slot 33.
    virtual PyMap *STDMETHODCALLTYPE Self() { return this; }
    /// Slot 34: the video-memory texture, borrowed, or null.
    virtual IDirect3DTexture9 *STDMETHODCALLTYPE VideoTexture();
    /// Slot 35: brings the video-memory texture up to date and counts. S_OK.
    virtual HRESULT STDMETHODCALLTYPE Update();

    HWND window() const { return m_window; }
    IDirect3D9 *direct3D() const { return m_direct3D; }

  protected:
    ~PyMap();

    /// Bytes of one picture: width x height x 4, modulo 2^32.
    UINT bufferSize() const { return m_bufferSize; }
    IDirect3DTexture9 *systemTexture() const { return m_systemTexture.get(); }
    /// Copies the whole system-memory texture to the video-memory one and counts the update. The copy's first failure,
    /// or S_OK, also when there are no textures.
    HRESULT showSystemTexture();
    UINT updateCounter() const { return m_updateCounter; }

  private:
    HRESULT create(UINT width, UINT height, PyObject *windowProvider, PyObject *renderer);
    HRESULT createTextures();

    platform::ComPointer<IDirect3DTexture9> m_videoTexture;
    platform::ComPointer<IDirect3DTexture9> m_systemTexture;
    IDirect3D9 *m_direct3D = nullptr;     ///< the host's, no reference held
    IDirect3DDevice9 *m_device = nullptr; ///< the host's, no reference held; the textures keep it alive
    HWND m_window = nullptr;
    platform::ReentrantLock
        m_textureLock; ///< guards the two texture fields; never held while the owner's lock is taken
    std::atomic<UINT> m_width{0};
    std::atomic<UINT> m_height{0};
    std::atomic<UINT> m_bufferSize{0};
    std::atomic<ULONG> m_references{0};
    std::atomic<UINT> m_updateCounter{0};
};
