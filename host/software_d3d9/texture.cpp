// SPDX-License-Identifier: MIT
#include "software_d3d9/texture.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "software_d3d9/device.h"

namespace software_d3d9 {
namespace {

constexpr std::size_t kPixel = 4;
constexpr int kPoison = 0xCD;
constexpr DWORD kLockFlags = D3DLOCK_READONLY | D3DLOCK_DISCARD | D3DLOCK_NO_DIRTY_UPDATE | D3DLOCK_NOSYSLOCK |
                             D3DLOCK_NOOVERWRITE | D3DLOCK_DONOTWAIT;

RECT united(const RECT &first, const RECT &second) {
    return {std::min(first.left, second.left), std::min(first.top, second.top), std::max(first.right, second.right),
            std::max(first.bottom, second.bottom)};
}

bool sameRectangle(const RECT &first, const RECT &second) {
    return first.left == second.left && first.top == second.top && first.right == second.right &&
           first.bottom == second.bottom;
}

std::uint8_t *pixelAt(Picture &picture, LONG x, LONG y) {
    return picture.row(static_cast<std::uint32_t>(y)) + static_cast<std::size_t>(x) * kPixel;
}

} // namespace

Texture::Texture(Device &device, std::shared_ptr<Core> core, const D3DSURFACE_DESC &description,
                 std::shared_ptr<Picture> pixels)
    : m_device(device), m_core(std::move(core)), m_description(description),
      m_name("texture " + std::to_string(++m_core->texturesMade)), m_surface(*this, *m_core, m_name),
      m_pixels(std::move(pixels)) {
    m_core->textures.insert(static_cast<IDirect3DBaseTexture9 *>(this));
    ++m_core->live.textures;
    m_device.AddRef();
}

Texture::~Texture() {
    m_core->textures.erase(static_cast<IDirect3DBaseTexture9 *>(this));
}

HRESULT Texture::QueryInterface(const GUID &iid, void **object) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter(m_name, "QueryInterface"))
        return *refusal;
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDirect3DResource9 && iid != IID_IDirect3DBaseTexture9 &&
        iid != IID_IDirect3DTexture9)
        return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IDirect3DTexture9 *>(this);
    return S_OK;
}

ULONG Texture::AddRef() {
    const std::lock_guard lock(m_core->mutex);
    if (m_references == 0) {
        m_device.AddRef();
        ++m_core->live.textures;
    }
    return ++m_references;
}

ULONG Texture::Release() {
    const std::shared_ptr<Core> core = m_core;
    Device &device = m_device;
    {
        const std::lock_guard lock(core->mutex);
        if (m_references == 0) {
            core->record.addViolation(m_name, "Release", "no reference is left");
            return 0;
        }
        if (--m_references > 0)
            return m_references;
        --core->live.textures;
        core->record.noteReleased(m_name);
        deleteIfUnused();
    }
    device.Release();
    return 0;
}

void Texture::unpin() {
    --m_pins;
    deleteIfUnused();
}

void Texture::deleteIfUnused() {
    if (m_references == 0 && m_pins == 0)
        delete this;
}

HRESULT Texture::GetDevice(IDirect3DDevice9 **device) {
    if (!device)
        return invalid("GetDevice", "no out-pointer");
    m_device.AddRef();
    *device = &m_device;
    return S_OK;
}

HRESULT Texture::GetLevelDesc(UINT level, D3DSURFACE_DESC *description) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter(m_name, "GetLevelDesc", level))
        return *refusal;
    if (level != 0 || !description)
        return invalid("GetLevelDesc", "no such level, or no out-pointer");
    *description = m_description;
    return S_OK;
}

HRESULT Texture::GetSurfaceLevel(UINT level, IDirect3DSurface9 **surface) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter(m_name, "GetSurfaceLevel", level))
        return *refusal;
    if (level != 0 || !surface)
        return invalid("GetSurfaceLevel", "no such level, or no out-pointer");
    m_surface.AddRef();
    *surface = &m_surface;
    return S_OK;
}

HRESULT Texture::LockRect(UINT level, D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags) {
    if (level != 0)
        return invalid("LockRect", "no such level");
    return lock(locked, rectangle, flags, m_name);
}

HRESULT Texture::UnlockRect(UINT level) {
    return level == 0 ? unlock(m_name) : invalid("UnlockRect", "no such level");
}

HRESULT Texture::lock(D3DLOCKED_RECT *locked, const RECT *rectangle, DWORD flags, const std::string &object) {
    const std::lock_guard guard(m_core->mutex);
    if (const auto refusal = m_core->record.enter(object, "LockRect", rectangle, Flags{flags}))
        return *refusal;
    const bool discards = (flags & D3DLOCK_DISCARD) != 0;
    const bool reads = (flags & D3DLOCK_READONLY) != 0;
    const bool isDynamic = (m_description.Usage & D3DUSAGE_DYNAMIC) != 0;
    if (!locked)
        return invalid("LockRect", "no out-pointer");
    *locked = {};
    if (m_locked)
        return invalid("LockRect", "it is locked already");
    if ((flags & ~kLockFlags) != 0)
        return invalid("LockRect", "unknown flags");
    if (m_description.Pool == D3DPOOL_DEFAULT && !isDynamic)
        return invalid("LockRect", "video memory that is not dynamic cannot be locked");
    if (discards && (!isDynamic || reads || rectangle))
        return invalid("LockRect", "only a dynamic texture can be discarded, as a whole, to be written");
    if (rectangle && !contains(*rectangle))
        return invalid("LockRect", "the rectangle lies outside");
    if (!reads && (discards || m_shared) && !unshare(!discards))
        return E_OUTOFMEMORY;
    if (discards && m_core->options.poisonsDiscarded)
        std::memset(m_pixels->bits, kPoison, m_pixels->bytes());
    const RECT area = rectangle ? *rectangle : whole();
    if (!reads && (flags & D3DLOCK_NO_DIRTY_UPDATE) == 0)
        addDirty(area);
    m_locked = true;
    locked->Pitch = static_cast<INT>(m_pixels->pitch);
    locked->pBits = pixelAt(*m_pixels, area.left, area.top);
    return S_OK;
}

HRESULT Texture::unlock(const std::string &object) {
    const std::lock_guard guard(m_core->mutex);
    const auto refusal = m_core->record.enter(object, "UnlockRect");
    if (!m_locked)
        return invalid("UnlockRect", "it is not locked");
    // Also when it is made to fail: the caller has no second way to end the lock.
    m_locked = false;
    return refusal.value_or(S_OK);
}

HRESULT Texture::AddDirtyRect(const RECT *rectangle) {
    const std::lock_guard lock(m_core->mutex);
    if (const auto refusal = m_core->record.enter(m_name, "AddDirtyRect", rectangle))
        return *refusal;
    if (rectangle && !contains(*rectangle))
        return invalid("AddDirtyRect", "the rectangle lies outside");
    addDirty(rectangle ? *rectangle : whole());
    return S_OK;
}

HRESULT Texture::updateFrom(Texture &source) {
    const std::optional<RECT> dirty = std::exchange(source.m_dirty, std::nullopt);
    if (!dirty)
        return S_OK;
    if (sameRectangle(*dirty, whole())) {
        m_pixels = source.m_pixels;
        m_shared = source.m_shared = true;
        return S_OK;
    }
    if (m_shared && !unshare(true))
        return E_OUTOFMEMORY;
    const std::size_t bytes = static_cast<std::size_t>(dirty->right - dirty->left) * kPixel;
    for (LONG y = dirty->top; y < dirty->bottom; ++y)
        std::memcpy(pixelAt(*m_pixels, dirty->left, y), pixelAt(*source.m_pixels, dirty->left, y), bytes);
    return S_OK;
}

HRESULT Texture::fill(const RECT *rectangle, D3DCOLOR color) {
    if (rectangle && !contains(*rectangle))
        return invalid("ColorFill", "the rectangle lies outside");
    if (m_shared && !unshare(true))
        return E_OUTOFMEMORY;
    const RECT area = rectangle ? *rectangle : whole();
    const auto value = static_cast<std::uint32_t>(color);
    for (LONG y = area.top; y < area.bottom; ++y)
        for (LONG x = area.left; x < area.right; ++x)
            std::memcpy(pixelAt(*m_pixels, x, y), &value, kPixel);
    return S_OK;
}

SharedPicture Texture::picture() {
    const std::lock_guard lock(m_core->mutex);
    m_shared = true;
    return m_pixels;
}

bool Texture::unshare(bool keepContent) {
    std::shared_ptr<Picture> own = m_core->pool->acquire(m_pixels->width, m_pixels->height, m_pixels->pitch);
    if (!own)
        return false;
    if (keepContent)
        std::memcpy(own->bits, m_pixels->bits, own->bytes());
    m_pixels = std::move(own);
    m_shared = false;
    return true;
}

RECT Texture::whole() const {
    return {0, 0, static_cast<LONG>(m_description.Width), static_cast<LONG>(m_description.Height)};
}

bool Texture::contains(const RECT &rectangle) const {
    return rectangle.left >= 0 && rectangle.top >= 0 && rectangle.left < rectangle.right &&
           rectangle.top < rectangle.bottom && rectangle.right <= whole().right && rectangle.bottom <= whole().bottom;
}

void Texture::addDirty(const RECT &rectangle) {
    m_dirty = m_dirty ? united(*m_dirty, rectangle) : rectangle;
}

HRESULT Texture::SetPrivateData(const GUID &, const void *, DWORD, DWORD) {
    return unsupported("SetPrivateData");
}
HRESULT Texture::GetPrivateData(const GUID &, void *, DWORD *) {
    return unsupported("GetPrivateData");
}
HRESULT Texture::FreePrivateData(const GUID &) {
    return unsupported("FreePrivateData");
}
DWORD Texture::SetPriority(DWORD) {
    return 0;
}
DWORD Texture::GetPriority() {
    return 0;
}
DWORD Texture::SetLOD(DWORD) {
    return 0;
}
HRESULT Texture::SetAutoGenFilterType(D3DTEXTUREFILTERTYPE) {
    return unsupported("SetAutoGenFilterType");
}

HRESULT Texture::unsupported(const char *method) {
    m_core->record.addViolation(m_name, method, "this device does not offer it");
    return D3DERR_NOTAVAILABLE;
}

HRESULT Texture::invalid(const char *method, const char *reason) {
    m_core->record.addViolation(m_name, method, reason);
    return D3DERR_INVALIDCALL;
}

} // namespace software_d3d9
