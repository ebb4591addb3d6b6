// SPDX-License-Identifier: MIT
#include "software_d3d9/device.h"

#include <thread>

#include "software_d3d9/testing/device_fixture.h"

namespace software_d3d9 {
namespace {

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
} // namespace software_d3d9
