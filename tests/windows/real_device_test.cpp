// SPDX-License-Identifier: MIT
// The texture map on the system's own Direct3D 9: made, written, refreshed, bound and drawn, and every pixel read back;
// by itself, and in an object that somebody edits.

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "callback/interpreter_gate.h"
#include "overlay/orvanel.h"
#include "platform/com_pointer.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/fake_overlay.h"
#include "texture/testing/python_host.h"

namespace {

using platform::ComPointer;

class PythonEnvironment : public testing::Environment {
  public:
    void SetUp() override {
        Py_InitializeEx(0);
        watchInterpreter();
        PyEval_SaveThread();
    }
};

const testing::Environment *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

class RealDevice : public testing::Test {
  protected:
    void SetUp() override {
        direct3D.reset(Direct3DCreate9(D3D_SDK_VERSION));
        if (!direct3D)
            GTEST_SKIP() << "there is no display for Direct3D";
        window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 16, 16, nullptr, nullptr, nullptr, nullptr);
        D3DPRESENT_PARAMETERS parameters = {};
        parameters.Windowed = TRUE;
        parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
        parameters.hDeviceWindow = window;
        if (FAILED(direct3D->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, window,
                                          D3DCREATE_SOFTWARE_VERTEXPROCESSING | D3DCREATE_MULTITHREADED, &parameters,
                                          device.put())))
            GTEST_SKIP() << "Direct3D makes no device on this display";
    }
    void TearDown() override {
        device.reset();
        direct3D.reset();
        if (window)
            DestroyWindow(window);
    }

    /// What the map shows when it is bound to stage 0 and drawn pixel by pixel.
    std::vector<BYTE> drawn(loom::IAllocator &map, UINT width, UINT height) {
        ComPointer<IDirect3DSurface9> target;
        ComPointer<IDirect3DSurface9> readable;
        EXPECT_EQ(D3D_OK, device->CreateRenderTarget(width, height, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                     target.put(), nullptr));
        EXPECT_EQ(D3D_OK, device->CreateOffscreenPlainSurface(width, height, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM,
                                                              readable.put(), nullptr));
        EXPECT_EQ(D3D_OK, device->SetRenderTarget(0, target.get()));
        EXPECT_EQ(D3D_OK, device->BeginScene());
        EXPECT_EQ(S_OK, map.BindToStage(0));
        device->SetTextureStageState(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
        device->SetTextureStageState(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
        device->SetTextureStageState(0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1);
        device->SetTextureStageState(0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE);
        device->SetSamplerState(0, D3DSAMP_MINFILTER, D3DTEXF_POINT);
        device->SetSamplerState(0, D3DSAMP_MAGFILTER, D3DTEXF_POINT);
        device->SetRenderState(D3DRS_LIGHTING, FALSE);
        device->SetRenderState(D3DRS_ZENABLE, D3DZB_FALSE);
        device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE);
        struct Corner {
            float x, y, z, w, u, v;
        };
        // Half a pixel back: texels and pixels have their centres in different places.
        const float right = static_cast<float>(width) - 0.5F;
        const float bottom = static_cast<float>(height) - 0.5F;
        const Corner corners[4] = {{-0.5F, -0.5F, 0, 1, 0, 0},
                                   {right, -0.5F, 0, 1, 1, 0},
                                   {-0.5F, bottom, 0, 1, 0, 1},
                                   {right, bottom, 0, 1, 1, 1}};
        device->SetFVF(D3DFVF_XYZRHW | D3DFVF_TEX1);
        EXPECT_EQ(D3D_OK, device->DrawPrimitiveUP(D3DPT_TRIANGLESTRIP, 2, corners, sizeof(Corner)));
        EXPECT_EQ(D3D_OK, device->EndScene());
        device->SetTexture(0, nullptr);
        EXPECT_EQ(D3D_OK, device->GetRenderTargetData(target.get(), readable.get()));
        std::vector<BYTE> pixels(std::size_t{width} * height * 4);
        D3DLOCKED_RECT locked = {};
        EXPECT_EQ(D3D_OK, readable->LockRect(&locked, nullptr, D3DLOCK_READONLY));
        for (UINT y = 0; y < height; ++y)
            std::memcpy(pixels.data() + std::size_t{y} * width * 4,
                        static_cast<const BYTE *>(locked.pBits) + std::size_t{y} * static_cast<UINT>(locked.Pitch),
                        std::size_t{width} * 4);
        readable->UnlockRect();
        ComPointer<IDirect3DSurface9> screen;
        device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, screen.put());
        device->SetRenderTarget(0, screen.get());
        return pixels;
    }

    HWND window = nullptr;
    ComPointer<IDirect3D9> direct3D;
    ComPointer<IDirect3DDevice9> device;
    AskedList asked;
    FakeSyncer syncer{asked};
};

TEST_F(RealDevice, ShowsEveryPixelOfTheOverlay) {
    using Host = PythonHostObject;
    const CObjectExtractor extractor;
    const Host windowProvider{{"GetWnd", Host::pointer(window)}};
    const Host renderer{{"GetRenderName", Host::value("'D3D9'")},
                        {"GetD3D", Host::pointer(direct3D.get())},
                        {"GetD3DDevice", Host::pointer(device.get())}};
    for (const auto &[width, height] : {std::pair<UINT, UINT>{64, 32}, {1920, 1080}, {3840, 2160}}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        FakeOverlay overlay(asked, width, height);
        const ComPointer<PyMapWrapper> map(new PyMapWrapper);
        map->AddRef();
        ASSERT_EQ(1, map->Create(width, height, windowProvider.get(), renderer.get()));
        EXPECT_EQ(window, map->window());
        map->SetOwner(&overlay);
        map->SetSyncer(&syncer);
        for (std::uint32_t picture = 1; picture <= 3; ++picture) {
            std::uint32_t value = picture * 2654435761U;
            for (std::size_t pixel = 0; pixel < overlay.picture.size(); pixel += 4) {
                value = value * 1664525U + 1013904223U;
                std::memcpy(overlay.picture.data() + pixel, &value, sizeof value);
            }
            overlay.dirty = true;
            EXPECT_EQ(picture, map->UpdateCounter());
            EXPECT_TRUE(drawn(*map.get(), width, height) == overlay.picture);
        }
        EXPECT_EQ(3u, map->UpdateCounter());
        map->Stop();
        map->Join(platform::kInfinite);
    }
}

/// Components can be created on this thread while it lives.
class ComponentThread {
  public:
    ComponentThread() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    ~ComponentThread() { CoUninitialize(); }
};

TEST_F(RealDevice, ShowsWhatIsEditedOnAnObject) {
    using Host = PythonHostObject;
    const ComponentThread components;
    const CObjectExtractor extractor;
    const Host windowProvider{{"GetWnd", Host::pointer(window)}};
    const Host renderer{{"GetRenderName", Host::value("'D3D9'")},
                        {"GetD3D", Host::pointer(direct3D.get())},
                        {"GetD3DDevice", Host::pointer(device.get())}};
    constexpr int kWidth = 640;
    constexpr int kHeight = 360;
    constexpr std::size_t kBytes = std::size_t{kWidth} * kHeight * 4;
    Orvanel object;
    object.SetVideoCoordinate(kWidth, kHeight, 0, 0, kWidth, kHeight);
    object.SetVideoInfo(0, 0, 0, 1000);
    ASSERT_TRUE(object.QueryBuffer()) << "the drawing component is not registered: regsvr32 OrvanelCanvas.dll";
    ASSERT_EQ(1, object.Create(windowProvider.get(), renderer.get(), &syncer));
    loom::IAllocator &map = *object.GetAllocator();

    const auto click = [&object](int x, int y) {
        object.Interactive(ECS_MOUSE_DOWN, x, y);
        object.Interactive(ECS_MOUSE_UP);
    };
    syncer.time = 0; // the position that the outline is closed at
    std::vector<BYTE> before(kBytes, 0);
    UINT counter = map.UpdateCounter();
    const auto expectAnotherPicture = [&](const char *edit) {
        SCOPED_TRACE(edit);
        const UINT next = map.UpdateCounter();
        EXPECT_GT(next, counter);
        counter = next;
        const std::vector<BYTE> overlay(object.QueryBuffer(), object.QueryBuffer() + kBytes);
        EXPECT_FALSE(overlay == before);
        EXPECT_TRUE(drawn(map, kWidth, kHeight) == overlay);
        before = overlay;
    };
    click(100, 80);
    click(500, 60);
    click(300, 300);
    expectAnotherPicture("three anchors");
    click(100, 80);
    expectAnotherPicture("the closed outline");
    object.Interactive(ECS_MOUSE_MOVE, 500, 60);
    object.Interactive(ECS_MOUSE_DOWN, 500, 60);
    object.Interactive(ECS_MOUSE_MOVE, 560, 200);
    object.Interactive(ECS_MOUSE_UP);
    expectAnotherPicture("an anchor in another place");
    object.Uninitialize();
}

TEST_F(RealDevice, AThousandMapsLeaveNothingOnTheDevice) {
    using Host = PythonHostObject;
    const auto references = [&] {
        device->AddRef();
        return device->Release();
    };
    const auto newHandle = [] {
        const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
        CloseHandle(event);
        return reinterpret_cast<std::uintptr_t>(event) / 4;
    };
    const CObjectExtractor extractor;
    const Host windowProvider{{"GetWnd", Host::pointer(window)}};
    const Host renderer{{"GetRenderName", Host::value("'D3D9'")},
                        {"GetD3D", Host::pointer(direct3D.get())},
                        {"GetD3DDevice", Host::pointer(device.get())}};
    const auto use = [&] {
        FakeOverlay overlay(asked, 16, 16);
        const ComPointer<PyMapWrapper> map(new PyMapWrapper);
        map->AddRef();
        EXPECT_EQ(1, map->Create(16, 16, windowProvider.get(), renderer.get()));
        map->SetOwner(&overlay);
        map->SetSyncer(&syncer);
        overlay.dirty = true;
        EXPECT_EQ(1u, map->UpdateCounter());
        map->Stop();
        map->Join(platform::kInfinite);
    };
    for (int round = 0; round < 20; ++round)
        use();
    const ULONG referencesBefore = references();
    const std::uintptr_t handleBefore = newHandle();
    for (int round = 0; round < 1000; ++round)
        use();
    EXPECT_EQ(references(), referencesBefore);
    EXPECT_LT(newHandle(), handleBefore + 20);
    asked.clear();
}

} // namespace
