// SPDX-License-Identifier: MIT
#include "software_d3d9/texture.h"

#include "software_d3d9/testing/device_fixture.h"

namespace software_d3d9 {
namespace {

class SoftwareTexture : public SoftwareDevice {};

// --- Making textures ---

TEST_F(SoftwareTexture, MakesTexturesOfAllKindsThatAreAllowed) {
    EXPECT_TRUE(make(D3DUSAGE_DYNAMIC, D3DPOOL_SYSTEMMEM));
    EXPECT_TRUE(make(0, D3DPOOL_SYSTEMMEM));
    EXPECT_TRUE(make(0, D3DPOOL_DEFAULT));
    EXPECT_TRUE(make(D3DUSAGE_DYNAMIC, D3DPOOL_DEFAULT));
    EXPECT_TRUE(make(D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT));
    EXPECT_TRUE(make(0, D3DPOOL_MANAGED));
    expectViolations({});
}

TEST_F(SoftwareTexture, RefusesTexturesThatAreNotAllowed) {
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

TEST_F(SoftwareTexture, DescribesItsTextures) {
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

TEST_F(SoftwareTexture, LocksByTheRules) {
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

TEST_F(SoftwareTexture, LockedPartBeginsWhereItShould) {
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

TEST_F(SoftwareTexture, DiscardingPoisonsWhenAsked) {
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

TEST_F(SoftwareTexture, UpdateCopiesWhatWasWritten) {
    const TexturePointer system = makeSystem();
    const TexturePointer video = makeVideo();
    write(*system.get(), 0x11223344, nullptr, D3DLOCK_DISCARD);
    EXPECT_EQ(0u, pixelOf(*device->pictureOf(video.get()), 0, 0));
    ASSERT_EQ(S_OK, device->UpdateTexture(system.get(), video.get()));
    EXPECT_EQ(0x11223344u, pixelOf(*device->pictureOf(video.get()), 7, 3));
}

TEST_F(SoftwareTexture, LaterWritesDoNotShowBeforeTheNextUpdate) {
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

TEST_F(SoftwareTexture, UpdateCopiesOnlyWhatIsDirty) {
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

TEST_F(SoftwareTexture, RefusesUpdatesThatAreNotAllowed) {
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

TEST_F(SoftwareTexture, RowsArePaddedWhenAsked) {
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

TEST_F(SoftwareTexture, FillsRenderTargets) {
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

TEST_F(SoftwareTexture, RefusesToFillAPlainTextureAsRealDevicesDo) {
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

} // namespace
} // namespace software_d3d9
