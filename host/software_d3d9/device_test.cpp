// SPDX-License-Identifier: MIT
#include "software_d3d9/device.h"

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/com_pointer.h"

namespace {

using software_d3d9::Device;
using software_d3d9::DeviceOptions;
using software_d3d9::LiveCounts;
using software_d3d9::Picture;
using software_d3d9::SharedPicture;
using DevicePointer = platform::ComPointer<Device>;
using TexturePointer = platform::ComPointer<IDirect3DTexture9>;
using Lines = std::vector<std::string>;

constexpr UINT kWidth = 8;
constexpr UINT kHeight = 4;

std::uint32_t pixelOf(const Picture &picture, UINT x, UINT y) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, picture.row(y) + x * 4, sizeof pixel);
    return pixel;
}

class SoftwareDevice : public testing::Test {
  protected:
    TexturePointer make(DWORD usage, D3DPOOL pool, UINT width = kWidth, UINT height = kHeight) {
        IDirect3DTexture9 *texture = nullptr;
        EXPECT_EQ(S_OK, device->CreateTexture(width, height, 1, usage, D3DFMT_A8R8G8B8, pool, &texture, nullptr));
        return TexturePointer(texture);
    }
    TexturePointer makeSystem() { return make(D3DUSAGE_DYNAMIC, D3DPOOL_SYSTEMMEM); }
    TexturePointer makeVideo() { return make(0, D3DPOOL_DEFAULT); }

    /// Writes one value into a part of a texture.
    static void write(IDirect3DTexture9 &texture, std::uint32_t value, const RECT *part, DWORD flags) {
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(S_OK, texture.LockRect(0, &locked, part, flags));
        const UINT width = part ? static_cast<UINT>(part->right - part->left) : kWidth;
        const UINT height = part ? static_cast<UINT>(part->bottom - part->top) : kHeight;
        for (UINT y = 0; y < height; ++y)
            for (UINT x = 0; x < width; ++x)
                std::memcpy(static_cast<std::uint8_t *>(locked.pBits) + y * static_cast<UINT>(locked.Pitch) + x * 4,
                            &value, sizeof value);
        ASSERT_EQ(S_OK, texture.UnlockRect(0));
    }
    void expectRefused(HRESULT result) {
        EXPECT_EQ(D3DERR_INVALIDCALL, result);
        EXPECT_EQ(++refused, device->record().violations().size());
    }
    void expectViolations(const Lines &lines) { EXPECT_EQ(lines, device->record().violations()); }

    DevicePointer device{Device::make()};
    std::size_t refused = 0;
};

// --- Making textures ---

TEST_F(SoftwareDevice, MakesTexturesOfAllKindsThatAreAllowed) {
    EXPECT_TRUE(make(D3DUSAGE_DYNAMIC, D3DPOOL_SYSTEMMEM));
    EXPECT_TRUE(make(0, D3DPOOL_SYSTEMMEM));
    EXPECT_TRUE(make(0, D3DPOOL_DEFAULT));
    EXPECT_TRUE(make(D3DUSAGE_DYNAMIC, D3DPOOL_DEFAULT));
    EXPECT_TRUE(make(D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT));
    EXPECT_TRUE(make(0, D3DPOOL_MANAGED));
    expectViolations({});
}

TEST_F(SoftwareDevice, RefusesTexturesThatAreNotAllowed) {
    struct {
        UINT width, height, levels;
        DWORD usage;
        D3DFORMAT format;
        D3DPOOL pool;
    } const cases[] = {
        {0, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
        {8, 0, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
        {16385, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
        {8, 4, 0, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
        {8, 4, 2, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
        {8, 4, 1, D3DUSAGE_DEPTHSTENCIL, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
        {8, 4, 1, 0, D3DFMT_UNKNOWN, D3DPOOL_DEFAULT},
        {8, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_SCRATCH},
        {8, 4, 1, D3DUSAGE_DYNAMIC, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED},
        {8, 4, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM},
        {8, 4, 1, D3DUSAGE_RENDERTARGET | D3DUSAGE_DYNAMIC, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT},
    };
    for (const auto &wanted : cases) {
        IDirect3DTexture9 *texture = nullptr;
        expectRefused(device->CreateTexture(wanted.width, wanted.height, wanted.levels, wanted.usage, wanted.format,
                                            wanted.pool, &texture, nullptr));
        EXPECT_EQ(nullptr, texture);
    }
    HANDLE shared = nullptr;
    IDirect3DTexture9 *texture = nullptr;
    expectRefused(device->CreateTexture(8, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT, &texture, &shared));
    expectRefused(device->CreateTexture(8, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT, nullptr, nullptr));
}

TEST_F(SoftwareDevice, DescribesItsTextures) {
    const TexturePointer texture = makeSystem();
    D3DSURFACE_DESC description = {};
    ASSERT_EQ(S_OK, texture->GetLevelDesc(0, &description));
    EXPECT_EQ(kWidth, description.Width);
    EXPECT_EQ(kHeight, description.Height);
    EXPECT_EQ(D3DFMT_A8R8G8B8, description.Format);
    EXPECT_EQ(D3DPOOL_SYSTEMMEM, description.Pool);
    EXPECT_EQ(D3DUSAGE_DYNAMIC, static_cast<int>(description.Usage));
    expectRefused(texture->GetLevelDesc(1, &description));
    expectRefused(texture->GetLevelDesc(0, nullptr));
    EXPECT_EQ(1u, texture->GetLevelCount());
    EXPECT_EQ(D3DRTYPE_TEXTURE, texture->GetType());
}

// --- Locking ---

TEST_F(SoftwareDevice, LocksByTheRules) {
    const TexturePointer system = makeSystem();
    const TexturePointer still = make(0, D3DPOOL_SYSTEMMEM);
    const TexturePointer video = makeVideo();
    D3DLOCKED_RECT locked = {};
    const RECT part = {0, 0, 2, 2};
    const RECT outside = {0, 0, 9, 2};
    const RECT empty = {2, 2, 2, 3};
    expectRefused(system->LockRect(0, nullptr, nullptr, 0));
    expectRefused(system->LockRect(1, &locked, nullptr, 0));
    expectRefused(system->LockRect(0, &locked, nullptr, 0x1));
    expectRefused(system->LockRect(0, &locked, &outside, 0));
    expectRefused(system->LockRect(0, &locked, &empty, 0));
    expectRefused(system->LockRect(0, &locked, &part, D3DLOCK_DISCARD));
    expectRefused(system->LockRect(0, &locked, nullptr, D3DLOCK_DISCARD | D3DLOCK_READONLY));
    expectRefused(still->LockRect(0, &locked, nullptr, D3DLOCK_DISCARD));
    expectRefused(video->LockRect(0, &locked, nullptr, 0));
    expectRefused(system->UnlockRect(0));
    ASSERT_EQ(S_OK, system->LockRect(0, &locked, nullptr, D3DLOCK_DISCARD));
    expectRefused(system->LockRect(0, &locked, nullptr, 0));
    EXPECT_EQ(S_OK, system->UnlockRect(0));
}

TEST_F(SoftwareDevice, LockedPartBeginsWhereItShould) {
    const TexturePointer system = makeSystem();
    D3DLOCKED_RECT whole = {};
    ASSERT_EQ(S_OK, system->LockRect(0, &whole, nullptr, 0));
    ASSERT_EQ(S_OK, system->UnlockRect(0));
    D3DLOCKED_RECT locked = {};
    const RECT part = {3, 1, 5, 3};
    ASSERT_EQ(S_OK, system->LockRect(0, &locked, &part, 0));
    EXPECT_EQ(static_cast<int>(kWidth * 4), locked.Pitch);
    EXPECT_EQ(static_cast<std::uint8_t *>(whole.pBits) + kWidth * 4 + 3 * 4, locked.pBits);
    system->UnlockRect(0);
}

TEST_F(SoftwareDevice, DiscardingPoisonsWhenAsked) {
    DeviceOptions options;
    options.poisonsDiscarded = true;
    device.reset(Device::make(options));
    const TexturePointer system = makeSystem();
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(S_OK, system->LockRect(0, &locked, nullptr, D3DLOCK_DISCARD));
    EXPECT_EQ(0xCD, static_cast<std::uint8_t *>(locked.pBits)[0]);
    system->UnlockRect(0);
}

// --- Copying ---

TEST_F(SoftwareDevice, UpdateCopiesWhatWasWritten) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    write(*system.get(), 0x11223344, nullptr, D3DLOCK_DISCARD);
    EXPECT_EQ(0u, pixelOf(*device->pictureOf(video.get()), 0, 0));
    ASSERT_EQ(S_OK, device->UpdateTexture(system.get(), video.get()));
    EXPECT_EQ(0x11223344u, pixelOf(*device->pictureOf(video.get()), 7, 3));
}

TEST_F(SoftwareDevice, LaterWritesDoNotShowBeforeTheNextUpdate) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    for (const DWORD flags : {DWORD{D3DLOCK_DISCARD}, DWORD{0}}) {
        write(*system.get(), 1, nullptr, flags);
        device->UpdateTexture(system.get(), video.get());
        const SharedPicture shown = device->pictureOf(video.get());
        write(*system.get(), 2, nullptr, flags);
        EXPECT_EQ(1u, pixelOf(*shown, 0, 0));
        EXPECT_EQ(1u, pixelOf(*device->pictureOf(video.get()), 0, 0));
        device->UpdateTexture(system.get(), video.get());
        EXPECT_EQ(2u, pixelOf(*device->pictureOf(video.get()), 0, 0));
        EXPECT_EQ(1u, pixelOf(*shown, 0, 0));
    }
}

TEST_F(SoftwareDevice, UpdateCopiesOnlyWhatIsDirty) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    write(*system.get(), 1, nullptr, 0);
    device->UpdateTexture(system.get(), video.get());
    write(*system.get(), 2, nullptr, D3DLOCK_NO_DIRTY_UPDATE);
    device->UpdateTexture(system.get(), video.get());
    EXPECT_EQ(1u, pixelOf(*device->pictureOf(video.get()), 0, 0));
    const RECT part = {2, 1, 4, 3};
    ASSERT_EQ(S_OK, system->AddDirtyRect(&part));
    device->UpdateTexture(system.get(), video.get());
    const SharedPicture shown = device->pictureOf(video.get());
    for (UINT y = 0; y < kHeight; ++y)
        for (UINT x = 0; x < kWidth; ++x)
            EXPECT_EQ(x >= 2 && x < 4 && y >= 1 && y < 3 ? 2u : 1u, pixelOf(*shown, x, y)) << x << "," << y;
    ASSERT_EQ(S_OK, system->AddDirtyRect(nullptr));
    device->UpdateTexture(system.get(), video.get());
    EXPECT_EQ(2u, pixelOf(*device->pictureOf(video.get()), 7, 3));
}

TEST_F(SoftwareDevice, RefusesUpdatesThatAreNotAllowed) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    const TexturePointer larger = make(0, D3DPOOL_DEFAULT, kWidth + 1, kHeight);
    const DevicePointer other(Device::make());
    IDirect3DTexture9 *raw = nullptr;
    other->CreateTexture(kWidth, kHeight, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT, &raw, nullptr);
    const TexturePointer foreign(raw);
    expectRefused(device->UpdateTexture(nullptr, video.get()));
    expectRefused(device->UpdateTexture(system.get(), nullptr));
    expectRefused(device->UpdateTexture(video.get(), system.get()));
    expectRefused(device->UpdateTexture(system.get(), larger.get()));
    expectRefused(device->UpdateTexture(system.get(), foreign.get()));
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(S_OK, system->LockRect(0, &locked, nullptr, 0));
    expectRefused(device->UpdateTexture(system.get(), video.get()));
    system->UnlockRect(0);
    const RECT outside = {-1, 0, 2, 2};
    expectRefused(system->AddDirtyRect(&outside));
}

TEST_F(SoftwareDevice, RowsArePaddedWhenAsked) {
    DeviceOptions options;
    options.rowPadding = 12;
    device.reset(Device::make(options));
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    write(*system.get(), 7, nullptr, D3DLOCK_DISCARD);
    device->UpdateTexture(system.get(), video.get());
    const SharedPicture shown = device->pictureOf(video.get());
    EXPECT_EQ(kWidth * 4 + 12, shown->pitch);
    EXPECT_EQ(7u, pixelOf(*shown, 7, 3));
}

// --- Filling ---

TEST_F(SoftwareDevice, FillsRenderTargets) {
    const TexturePointer target = make(D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT);
    platform::ComPointer<IDirect3DSurface9> surface;
    ASSERT_EQ(S_OK, target->GetSurfaceLevel(0, surface.put()));
    const RECT part = {1, 1, 3, 2};
    EXPECT_EQ(S_OK, device->ColorFill(surface.get(), nullptr, 0xff000000));
    EXPECT_EQ(S_OK, device->ColorFill(surface.get(), &part, 0x80ff0000));
    const SharedPicture shown = device->pictureOf(target.get());
    EXPECT_EQ(0xff000000u, pixelOf(*shown, 0, 0));
    EXPECT_EQ(0x80ff0000u, pixelOf(*shown, 2, 1));
    EXPECT_EQ(0xff000000u, pixelOf(*shown, 3, 1));
    expectViolations({});
}

TEST_F(SoftwareDevice, RefusesToFillAPlainTextureAsRealDevicesDo) {
    const TexturePointer video = makeVideo();
    platform::ComPointer<IDirect3DSurface9> surface;
    ASSERT_EQ(S_OK, video->GetSurfaceLevel(0, surface.put()));
    EXPECT_EQ(D3DERR_INVALIDCALL, device->ColorFill(surface.get(), nullptr, 0xff000000));
    expectViolations({});
    expectRefused(device->ColorFill(nullptr, nullptr, 0));
    const TexturePointer system = makeSystem();
    ASSERT_EQ(S_OK, system->GetSurfaceLevel(0, surface.put()));
    expectRefused(device->ColorFill(surface.get(), nullptr, 0));
}

// --- Stages ---

TEST_F(SoftwareDevice, BoundTextureLivesWithoutReferences) {
    TexturePointer video = makeVideo();
    ASSERT_EQ(S_OK, device->SetTexture(3, video.get()));
    IDirect3DTexture9 *const raw = video.get();
    video.reset();
    EXPECT_EQ(LiveCounts{}, device->live());
    EXPECT_TRUE(device->boundPicture(3));
    EXPECT_FALSE(device->boundPicture(2));
    platform::ComPointer<IDirect3DBaseTexture9> again;
    ASSERT_EQ(S_OK, device->GetTexture(3, again.put()));
    EXPECT_EQ(raw, again.get());
    EXPECT_EQ((LiveCounts{1, 0}), device->live());
    again.reset();
    ASSERT_EQ(S_OK, device->SetTexture(3, nullptr));
    EXPECT_FALSE(device->boundPicture(3));
}

TEST_F(SoftwareDevice, DeviceGoesWithItsBoundTextures) {
    ASSERT_EQ(S_OK, device->SetTexture(0, makeVideo().get()));
    EXPECT_EQ(1u, device->references());
}

TEST_F(SoftwareDevice, RefusesBindingsThatAreNotAllowed) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    expectRefused(device->SetTexture(16, video.get()));
    expectRefused(device->SetTexture(0, system.get()));
    platform::ComPointer<IDirect3DBaseTexture9> bound;
    expectRefused(device->GetTexture(16, bound.put()));
    expectRefused(device->GetTexture(0, nullptr));
}

// --- References ---

TEST_F(SoftwareDevice, TexturesKeepTheirDevice) {
    TexturePointer video = makeVideo();
    EXPECT_EQ(2u, device->references());
    Device *const raw = device.get();
    device.reset();
    EXPECT_EQ(1u, raw->references());
    platform::ComPointer<IDirect3DDevice9> found;
    ASSERT_EQ(S_OK, video->GetDevice(found.put()));
    EXPECT_EQ(raw, found.get());
}

TEST_F(SoftwareDevice, SurfacesCountAndKeepTheirTexture) {
    TexturePointer video = makeVideo();
    platform::ComPointer<IDirect3DSurface9> surface;
    ASSERT_EQ(S_OK, video->GetSurfaceLevel(0, surface.put()));
    EXPECT_EQ((LiveCounts{1, 1}), device->live());
    platform::ComPointer<IDirect3DTexture9> container;
    void *found = nullptr;
    ASSERT_EQ(S_OK, surface->GetContainer(IID_IDirect3DTexture9, &found));
    container.reset(static_cast<IDirect3DTexture9 *>(found));
    EXPECT_EQ(video.get(), container.get());
    container.reset();
    video.reset();
    EXPECT_EQ((LiveCounts{1, 1}), device->live());
    surface.reset();
    EXPECT_EQ(LiveCounts{}, device->live());
}

TEST_F(SoftwareDevice, ReportsReferencesGivenBackTooOften) {
    const TexturePointer video = makeVideo();
    IDirect3DSurface9 *surface = nullptr;
    ASSERT_EQ(S_OK, video->GetSurfaceLevel(0, &surface));
    EXPECT_EQ(0u, surface->Release());
    EXPECT_EQ(0u, surface->Release());
    expectViolations({"texture 1 surface: Release: no reference is left"});
}

TEST_F(SoftwareDevice, KnowsItsInterfaces) {
    const TexturePointer video = makeVideo();
    for (const GUID &iid : {IID_IUnknown, IID_IDirect3DResource9, IID_IDirect3DBaseTexture9, IID_IDirect3DTexture9}) {
        void *found = nullptr;
        ASSERT_EQ(S_OK, video->QueryInterface(iid, &found));
        EXPECT_EQ(video.get(), found);
        video->Release();
    }
    void *found = &refused;
    EXPECT_EQ(E_NOINTERFACE, video->QueryInterface(IID_IDirect3DSurface9, &found));
    EXPECT_EQ(nullptr, found);
    EXPECT_EQ(E_POINTER, video->QueryInterface(IID_IUnknown, nullptr));
    ASSERT_EQ(S_OK, device->QueryInterface(IID_IDirect3DDevice9, &found));
    EXPECT_EQ(static_cast<IDirect3DDevice9 *>(device.get()), found);
    device->Release();
    platform::ComPointer<IDirect3D9> root;
    ASSERT_EQ(S_OK, device->GetDirect3D(root.put()));
    EXPECT_EQ(device->direct3D(), root.get());
    D3DDISPLAYMODE mode = {};
    ASSERT_EQ(S_OK, root->GetAdapterDisplayMode(0, &mode));
    EXPECT_EQ(1920u, mode.Width);
    EXPECT_EQ(60u, mode.RefreshRate);
}

// --- Record and faults ---

TEST_F(SoftwareDevice, RecordsCallsWithTheirArguments) {
    device->record().record(true);
    {
        const TexturePointer system = makeSystem();
        const RECT part = {1, 2, 3, 4};
        system->AddDirtyRect(&part);
        D3DDISPLAYMODE mode = {};
        device->GetDisplayMode(0, &mode);
        device->SetTexture(1, nullptr);
    }
    EXPECT_EQ((Lines{"CreateTexture(8, 4, 1, 0x200, 21, 2)", "texture 1: AddDirtyRect([1,2 3,4])", "GetDisplayMode(0)",
                     "SetTexture(1, null)", "texture 1 is released"}),
              device->record().takeCalls());
    device->record().record(false);
    makeVideo();
    EXPECT_EQ(Lines{}, device->record().takeCalls());
}

TEST_F(SoftwareDevice, FailsTheCallThatItWasTold) {
    D3DDISPLAYMODE mode = {};
    device->record().failCall(1, D3DERR_DEVICELOST);
    EXPECT_EQ(S_OK, device->TestCooperativeLevel());
    EXPECT_EQ(D3DERR_DEVICELOST, device->GetDisplayMode(0, &mode));
    EXPECT_EQ(S_OK, device->GetDisplayMode(0, &mode));
    device->record().failMethod("GetDisplayMode", E_FAIL, 1);
    EXPECT_EQ(S_OK, device->TestCooperativeLevel());
    EXPECT_EQ(S_OK, device->GetDisplayMode(0, &mode));
    EXPECT_EQ(E_FAIL, device->GetDisplayMode(0, &mode));
    device->record().failCall(0, E_FAIL);
    device->record().clearFaults();
    EXPECT_EQ(S_OK, device->TestCooperativeLevel());
    expectViolations({});
}

TEST_F(SoftwareDevice, ReportsWhatItDoesNotOffer) {
    EXPECT_EQ(D3DERR_NOTAVAILABLE, device->BeginScene());
    EXPECT_EQ(0u, device->GetAvailableTextureMem());
    EXPECT_EQ(D3DERR_NOTAVAILABLE, device->direct3D()->RegisterSoftwareDevice(nullptr));
    expectViolations({"BeginScene: this device does not offer it",
                      "GetAvailableTextureMem: this device does not offer it",
                      "Direct3D: RegisterSoftwareDevice: this device does not offer it"});
}

// --- Threads ---

TEST_F(SoftwareDevice, ReaderKeepsItsPictureWhileAnotherThreadWrites) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    device->SetTexture(0, video.get());
    std::thread writer([&] {
        for (std::uint32_t number = 1; number <= 2000; ++number) {
            write(*system.get(), number, nullptr, D3DLOCK_DISCARD);
            device->UpdateTexture(system.get(), video.get());
        }
    });
    std::uint32_t last = 0;
    std::size_t torn = 0;
    while (last < 2000) {
        const SharedPicture shown = device->boundPicture(0);
        const std::uint32_t number = pixelOf(*shown, 0, 0);
        for (UINT y = 0; y < kHeight; ++y)
            for (UINT x = 0; x < kWidth; ++x)
                torn += pixelOf(*shown, x, y) != number;
        EXPECT_GE(number, last);
        last = number;
    }
    writer.join();
    EXPECT_EQ(0u, torn);
    expectViolations({});
}

} // namespace
