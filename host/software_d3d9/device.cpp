// SPDX-License-Identifier: MIT
#include "software_d3d9/device.h"

#include <cstring>
#include <mutex>
#include <utility>

#include "software_d3d9/direct3d.h"
#include "software_d3d9/texture.h"

namespace software_d3d9 {
namespace {

constexpr std::size_t kPixel = 4;
constexpr DWORD kTextureUsages = D3DUSAGE_DYNAMIC | D3DUSAGE_RENDERTARGET;

/// What is wrong with the arguments of CreateTexture, or null.
const char *creationError(const DeviceOptions &options, const D3DSURFACE_DESC &wanted, UINT levels) {
    const bool isDynamic = (wanted.Usage & D3DUSAGE_DYNAMIC) != 0;
    const bool isTarget = (wanted.Usage & D3DUSAGE_RENDERTARGET) != 0;
    if (wanted.Width == 0 || wanted.Height == 0 || wanted.Width > options.largestTexture ||
        wanted.Height > options.largestTexture)
        return "no such size";
    if (levels != 1)
        return "one level is all there is";
    if ((wanted.Usage & ~kTextureUsages) != 0)
        return "unknown usage";
    if (wanted.Format != D3DFMT_A8R8G8B8 && wanted.Format != D3DFMT_X8R8G8B8)
        return "no such format";
    if (wanted.Pool != D3DPOOL_DEFAULT && wanted.Pool != D3DPOOL_MANAGED && wanted.Pool != D3DPOOL_SYSTEMMEM)
        return "no such pool";
    if (isDynamic && wanted.Pool == D3DPOOL_MANAGED)
        return "a managed texture cannot be dynamic";
    if (isTarget && (wanted.Pool != D3DPOOL_DEFAULT || isDynamic))
        return "a render target lies in video memory and is not dynamic";
    return nullptr;
}

} // namespace

Device *Device::make(const DeviceOptions &options) {
    return new Device(options);
}

Device::Device(const DeviceOptions &options)
    : m_core(std::make_shared<Core>(options)), m_direct3D(std::make_unique<Direct3D>(*this, *m_core)) {}

Device::~Device() {
    for (Texture *const texture : m_stages)
        if (texture)
            texture->unpin();
}

HRESULT Device::QueryInterface(const GUID &iid, void **object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDirect3DDevice9)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDirect3DDevice9 *>(this);
    return S_OK;
}

ULONG Device::AddRef() {
    const std::lock_guard lock(m_core->mutex);
    return ++m_references;
}

ULONG Device::Release() {
    const std::shared_ptr<Core> core = m_core;
    const std::lock_guard lock(core->mutex);
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

LiveCounts Device::live() const {
    const std::lock_guard lock(m_core->mutex);
    return m_core->live;
}

ULONG Device::references() const {
    const std::lock_guard lock(m_core->mutex);
    return m_references;
}

IDirect3D9 *Device::direct3D() const {
    return m_direct3D.get();
}

SharedPicture Device::boundPicture(DWORD stage) const {
    const std::lock_guard lock(m_core->mutex);
    Texture *const texture = stage < kStages ? m_stages[stage] : nullptr;
    return texture ? texture->picture() : nullptr;
}

SharedPicture Device::pictureOf(IDirect3DBaseTexture9 *texture) const {
    const std::lock_guard lock(m_core->mutex);
    Texture *const own = find(texture);
    return own ? own->picture() : nullptr;
}

HRESULT Device::TestCooperativeLevel() {
    const std::lock_guard lock(m_core->mutex);
    return m_core->record.enter({}, "TestCooperativeLevel").value_or(S_OK);
}

HRESULT Device::GetDirect3D(IDirect3D9 **direct3D) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter({}, "GetDirect3D"))
        return *refusal;
    if (!direct3D)
        return invalid("GetDirect3D", "no out-pointer");
    m_direct3D->AddRef();
    *direct3D = m_direct3D.get();
    return S_OK;
}

HRESULT Device::GetDisplayMode(UINT swapChain, D3DDISPLAYMODE *mode) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter({}, "GetDisplayMode", swapChain))
        return *refusal;
    if (swapChain != 0 || !mode)
        return invalid("GetDisplayMode", "no such swap chain, or no out-pointer");
    *mode = displayMode(m_core->options);
    return S_OK;
}

HRESULT Device::CreateTexture(UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                              IDirect3DTexture9 **texture, HANDLE *shared) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter({}, "CreateTexture", width, height, levels, Flags{usage},
                                                  static_cast<UINT>(format), static_cast<UINT>(pool)))
        return *refusal;
    if (!texture)
        return invalid("CreateTexture", "no out-pointer");
    *texture = nullptr;
    if (shared)
        return invalid("CreateTexture", "textures are not shared");
    const D3DSURFACE_DESC wanted = {format, D3DRTYPE_TEXTURE, usage, pool, D3DMULTISAMPLE_NONE, 0, width, height};
    if (const char *const error = creationError(m_core->options, wanted, levels))
        return invalid("CreateTexture", error);
    const std::size_t pitch = width * kPixel + m_core->options.rowPadding;
    std::shared_ptr<Picture> pixels = m_core->pool->acquire(width, height, pitch);
    if (!pixels)
        return pool == D3DPOOL_DEFAULT ? D3DERR_OUTOFVIDEOMEMORY : E_OUTOFMEMORY;
    std::memset(pixels->bits, 0, pixels->bytes());
    *texture = new Texture(*this, m_core, wanted, std::move(pixels));
    return S_OK;
}

HRESULT Device::UpdateTexture(IDirect3DBaseTexture9 *source, IDirect3DBaseTexture9 *destination) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter({}, "UpdateTexture", nameOf(source), nameOf(destination)))
        return *refusal;
    Texture *const from = find(source);
    Texture *const to = find(destination);
    if (!from || !to)
        return invalid("UpdateTexture", "not a texture of this device");
    const D3DSURFACE_DESC &system = from->description();
    const D3DSURFACE_DESC &video = to->description();
    if (system.Pool != D3DPOOL_SYSTEMMEM || video.Pool != D3DPOOL_DEFAULT)
        return invalid("UpdateTexture", "it copies from system memory to video memory");
    if (system.Width != video.Width || system.Height != video.Height || system.Format != video.Format)
        return invalid("UpdateTexture", "the textures differ in size or format");
    if (from->isLocked() || to->isLocked())
        return invalid("UpdateTexture", "a texture is locked");
    return to->updateFrom(*from);
}

HRESULT Device::ColorFill(IDirect3DSurface9 *surface, const RECT *rectangle, D3DCOLOR color) {
    const std::lock_guard lock(m_core->mutex);
    const bool isOwn = m_core->surfaces.count(surface) != 0;
    Texture *const texture = isOwn ? &static_cast<Surface *>(surface)->texture() : nullptr;
    if (const auto refusal = m_core->record.enter({}, "ColorFill", nameOf(texture), rectangle, Flags{color}))
        return *refusal;
    if (!texture)
        return invalid("ColorFill", "not a surface of this device");
    const D3DSURFACE_DESC &description = texture->description();
    const bool isTarget = (description.Usage & D3DUSAGE_RENDERTARGET) != 0;
    if (description.Pool != D3DPOOL_DEFAULT || texture->isLocked())
        return invalid("ColorFill", "it fills video memory that is not locked");
    // What drivers differ in is no mistake of the caller's.
    if (!isTarget && !m_core->options.fillsTextures)
        return D3DERR_INVALIDCALL;
    return texture->fill(rectangle, color);
}

HRESULT Device::GetTexture(DWORD stage, IDirect3DBaseTexture9 **texture) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter({}, "GetTexture", stage))
        return *refusal;
    if (stage >= kStages || !texture)
        return invalid("GetTexture", "no such stage, or no out-pointer");
    if (m_stages[stage])
        m_stages[stage]->AddRef();
    *texture = m_stages[stage];
    return S_OK;
}

HRESULT Device::SetTexture(DWORD stage, IDirect3DBaseTexture9 *texture) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter({}, "SetTexture", stage, nameOf(texture)))
        return *refusal;
    Texture *const own = find(texture);
    if (stage >= kStages || (texture && !own))
        return invalid("SetTexture", "no such stage, or not a texture of this device");
    if (own && own->description().Pool == D3DPOOL_SYSTEMMEM)
        return invalid("SetTexture", "a texture in system memory cannot be drawn");
    if (own)
        own->pin();
    if (Texture *const earlier = std::exchange(m_stages[stage], own))
        earlier->unpin();
    return S_OK;
}

HRESULT Device::unoffered(const char *method) {
    m_core->record.addViolation({}, method, "this device does not offer it");
    return D3DERR_NOTAVAILABLE;
}

HRESULT Device::invalid(const char *method, const char *reason) {
    m_core->record.addViolation({}, method, reason);
    return D3DERR_INVALIDCALL;
}

Texture *Device::find(const IDirect3DBaseTexture9 *texture) const {
    const auto found = m_core->textures.find(texture);
    if (found == m_core->textures.end())
        return nullptr;
    return static_cast<Texture *>(static_cast<IDirect3DBaseTexture9 *>(const_cast<void *>(*found)));
}

std::string Device::nameOf(const IDirect3DBaseTexture9 *texture) const {
    if (!texture)
        return "null";
    const Texture *const own = find(texture);
    return own ? own->name() : "foreign";
}

} // namespace software_d3d9
