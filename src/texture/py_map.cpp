// SPDX-License-Identifier: MIT
#include "texture/py_map.h"

#include <mutex>
#include <new>

#include "platform/result_of.h"
#include "texture/host_objects.h"

namespace {

constexpr const char *kRendererName = "D3D9";
constexpr UINT kBytesPerPixel = 4;
constexpr UINT kFramesPerSecond = 60;
constexpr D3DCOLOR kOpaqueBlack = 0xff000000;

float ratio(UINT numerator, UINT denominator) {
    return denominator == 0 ? 0.0F : static_cast<float>(numerator) / static_cast<float>(denominator);
}

} // namespace

PyMap::~PyMap() {
    m_videoTexture.reset();
    m_systemTexture.reset();
}

HRESULT PyMap::QueryInterface(const GUID &, void **object) {
    if (object)
        *object = nullptr;
    return E_NOINTERFACE;
}

ULONG PyMap::AddRef() {
    return ++m_references;
}

ULONG PyMap::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        Destroy();
    return left;
}

void PyMap::Destroy() {
    // Not `delete this`: there is no virtual destructor, because of its slots. A derived class deletes itself.
    this->PyMap::~PyMap();
    ::operator delete(this);
}

HRESULT PyMap::BindToStage(DWORD stage) {
    IDirect3DTexture9 *const texture = VideoTexture();
    if (!texture || !m_device)
        return S_FALSE;
    m_device->SetTexture(stage, texture);
    return S_OK;
}

HRESULT PyMap::Lock() {
    m_textureLock.lock();
    return S_OK;
}

HRESULT PyMap::Unlock() {
    m_textureLock.unlock();
    return S_OK;
}

float PyMap::Aspect() {
    return ratio(m_width, m_height);
}

float PyMap::InverseAspect() {
    return ratio(m_height, m_width);
}

bool PyMap::FrameRate(UINT *numerator, UINT *denominator) {
    if (!numerator || !denominator)
        return false;
    *numerator = kFramesPerSecond;
    *denominator = 1;
    return true;
}

HRESULT PyMap::TextureInterface(IUnknown **texture) {
    if (!texture)
        return E_POINTER;
    *texture = nullptr;
    const std::lock_guard lock(m_textureLock);
    if (!m_videoTexture)
        return E_FAIL;
    void *unknown = nullptr;
    const HRESULT result = m_videoTexture->QueryInterface(IID_IUnknown, &unknown);
    *texture = static_cast<IUnknown *>(unknown);
    return result;
}

IDirect3DTexture9 *PyMap::VideoTexture() {
    const std::lock_guard lock(m_textureLock);
    return m_videoTexture.get();
}

HRESULT PyMap::Create(UINT width, UINT height, PyObject *windowProvider, PyObject *renderer) {
    return platform::resultOf([&] { return create(width, height, windowProvider, renderer); });
}

HRESULT PyMap::create(UINT width, UINT height, PyObject *windowProvider, PyObject *renderer) {
    m_width = width;
    m_height = height;
    m_bufferSize = width * height * kBytesPerPixel;
    m_direct3D = nullptr;
    m_device = nullptr;
    if (isGiven(windowProvider)) {
        m_window = static_cast<HWND>(askPointer(windowProvider, "GetWnd"));
        if (!m_window)
            return E_FAIL;
    }
    if (!isGiven(renderer))
        return 1;
    if (askText(renderer, "GetRenderName") != kRendererName)
        return E_FAIL;
    m_direct3D = static_cast<IDirect3D9 *>(askPointer(renderer, "GetD3D"));
    if (!m_direct3D)
        return E_FAIL;
    m_device = static_cast<IDirect3DDevice9 *>(askPointer(renderer, "GetD3DDevice"));
    if (!m_device)
        return E_FAIL;
    const HRESULT result = createTextures();
    return SUCCEEDED(result) ? 1 : result;
}

HRESULT PyMap::createTextures() {
    platform::ComPointer<IDirect3DTexture9> system;
    platform::ComPointer<IDirect3DTexture9> video;
    // A map whose system-memory texture could not be made still counts as created, since the renderer can draw it.
    m_device->CreateTexture(m_width, m_height, 1, D3DUSAGE_DYNAMIC, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM, system.put(),
                            nullptr);
    D3DDISPLAYMODE mode = {};
    HRESULT result = m_device->GetDisplayMode(0, &mode);
    if (SUCCEEDED(result))
        result =
            m_device->CreateTexture(m_width, m_height, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT, video.put(), nullptr);
    if (SUCCEEDED(result) && video) {
        // Devices refuse to fill a texture of this kind as a rule; what the first refresh copies covers it in any case.
        platform::ComPointer<IDirect3DSurface9> surface;
        if (SUCCEEDED(video->GetSurfaceLevel(0, surface.put())) && surface)
            m_device->ColorFill(surface.get(), nullptr, kOpaqueBlack);
    }
    const std::lock_guard lock(m_textureLock);
    m_videoTexture = std::move(video);
    m_systemTexture = std::move(system);
    return result;
}

HRESULT PyMap::Update() {
    showSystemTexture();
    return S_OK;
}

HRESULT PyMap::showSystemTexture() {
    ++m_updateCounter;
    if (!m_device || !m_systemTexture || !m_videoTexture)
        return S_OK;
    const HRESULT marked = m_systemTexture->AddDirtyRect(nullptr);
    const HRESULT copied = m_device->UpdateTexture(m_systemTexture.get(), m_videoTexture.get());
    return FAILED(marked) ? marked : copied;
}
