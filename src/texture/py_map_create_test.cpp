// SPDX-License-Identifier: MIT
// How a map finds the host's device through Python objects, and what it then asks of it.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "texture/py_map.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/device_fixture.h"
#include "texture/testing/fake_overlay.h"

namespace {

using Calls = std::vector<std::string>;

/// Every call that a successful creation makes, in order.
const Calls kCreation = {
    "CreateTexture(64, 32, 1, 0x200, 21, 2)",  "GetDisplayMode(0)",
    "CreateTexture(64, 32, 1, 0x0, 21, 0)",    "texture 2: GetSurfaceLevel(0)",
    "ColorFill(texture 2, whole, 0xff000000)",
};

class PyMapCreate : public DeviceFixture {
  protected:
    HRESULT create(PyObject *window, PyObject *rendering) { return map->Create(64, 32, window, rendering); }
    HRESULT createWith(const Host &rendering) { return create(nullptr, rendering.get()); }

    IDirect3DDevice9 *d3dDevice() const { return device.get(); }
    /// A renderer that is in order but for the one answer.
    Host rendererWith(const char *method, Host::Answer answer) const {
        const auto choose = [&](const char *name, Host::Answer usual) {
            return name == std::string(method) ? answer : usual;
        };
        return {{"GetRenderName", choose("GetRenderName", Host::value("'D3D9'"))},
                {"GetD3D", choose("GetD3D", Host::pointer(device->direct3D()))},
                {"GetD3DDevice", choose("GetD3DDevice", Host::pointer(d3dDevice()))}};
    }
    static bool isPythonErrorPending() {
        const PyGILGuard interpreter;
        return PyErr_Occurred() != nullptr;
    }

    platform::ComPointer<PyMap> map = makeMap<PyMap>();
    // Before the fixture counts what is left.
    void TearDown() override { map.reset(); }
};

TEST_F(PyMapCreate, AsksTheHostAndThenTheDevice) {
    device->record().record(true);
    EXPECT_EQ(1, create(windowProvider.get(), renderer.get()));
    EXPECT_EQ("GetWnd", windowProvider.calls());
    EXPECT_EQ("GetRenderName GetD3D GetD3DDevice", renderer.calls());
    EXPECT_EQ(kCreation, device->record().takeCalls());
    EXPECT_EQ(windowHandle(), map->window());
    EXPECT_EQ(device->direct3D(), map->direct3D());
    EXPECT_EQ((software_d3d9::LiveCounts{2, 0}), device->live());
}

TEST_F(PyMapCreate, WithoutRendererStoresSizeAndWindow) {
    EXPECT_EQ(1, create(windowProvider.get(), nullptr));
    EXPECT_EQ(64u, map->Width());
    EXPECT_EQ(32u, map->Height());
    EXPECT_EQ(windowHandle(), map->window());
    EXPECT_EQ(nullptr, map->VideoTexture());
    EXPECT_EQ(0u, device->live().textures);
}

TEST_F(PyMapCreate, WithoutWindowProviderMakesTextures) {
    EXPECT_EQ(1, create(nullptr, renderer.get()));
    EXPECT_EQ(nullptr, map->window());
    EXPECT_NE(nullptr, map->VideoTexture());
}

TEST_F(PyMapCreate, NoneCountsAsNotGiven) {
    EXPECT_EQ(1, create(Py_None, Py_None));
    EXPECT_EQ(0u, device->live().textures);
}

// --- What the host's objects may answer ---

TEST_F(PyMapCreate, RendererNameMustBeExact) {
    for (const char *const name : {"'D3D9Ex'", "'D3D9 '", "'d3d9'", "'D3D'", "'D3D11'", "''", "' D3D9'", "u'D3D9'",
                                   "None", "9", "'D3D9\\0'", "['D3D9']"}) {
        EXPECT_EQ(E_FAIL, createWith(rendererWith("GetRenderName", Host::value(name)))) << name;
        EXPECT_FALSE(isPythonErrorPending()) << name;
    }
    EXPECT_EQ(nullptr, map->VideoTexture());
}

TEST_F(PyMapCreate, NothingIsAskedAfterAWrongName) {
    const Host other = rendererWith("GetRenderName", Host::value("'OpenGL'"));
    EXPECT_EQ(E_FAIL, createWith(other));
    EXPECT_EQ("GetRenderName", other.calls());
}

TEST_F(PyMapCreate, EachAnswerMustBeAPointer) {
    for (const char *const method : {"GetD3D", "GetD3DDevice"}) {
        for (const char *const answer : {"None", "0", "4660", "4660L", "'D3D9'", "object()"}) {
            EXPECT_EQ(E_FAIL, createWith(rendererWith(method, Host::value(answer)))) << method << " " << answer;
            EXPECT_FALSE(isPythonErrorPending());
        }
        EXPECT_EQ(E_FAIL, createWith(rendererWith(method, Host::pointer(nullptr)))) << method;
    }
    for (const char *const answer : {"None", "0", "4660", "4660L", "object()"})
        EXPECT_EQ(E_FAIL, create(Host{{"GetWnd", Host::value(answer)}}.get(), renderer.get())) << answer;
    EXPECT_EQ(0u, device->live().textures);
}

TEST_F(PyMapCreate, ExceptionsAreFailuresAndDropped) {
    for (const char *const method : {"GetRenderName", "GetD3D", "GetD3DDevice"}) {
        EXPECT_EQ(E_FAIL, createWith(rendererWith(method, Host::raising("ValueError('no')")))) << method;
        EXPECT_FALSE(isPythonErrorPending()) << method;
    }
    EXPECT_EQ(E_FAIL, create(Host{{"GetWnd", Host::raising("SystemExit(3)")}}.get(), nullptr));
    EXPECT_FALSE(isPythonErrorPending());
}

TEST_F(PyMapCreate, MissingMethodsAreFailures) {
    EXPECT_EQ(E_FAIL, create(Host{}.get(), nullptr));
    EXPECT_EQ(E_FAIL, createWith(Host{}));
    EXPECT_EQ(E_FAIL, createWith(Host{{"GetRenderName", Host::value("'D3D9'")}}));
    EXPECT_FALSE(isPythonErrorPending());
}

TEST_F(PyMapCreate, RefusesEverythingUntilAnExtractorIsRegistered) {
    const PointerExtractor registered = registerPointerExtractor(nullptr);
    EXPECT_EQ(E_FAIL, create(windowProvider.get(), nullptr));
    registerPointerExtractor(registered);
    EXPECT_EQ(1, create(windowProvider.get(), nullptr));
}

TEST_F(PyMapCreate, KeepsNoReferenceToTheHostsObjects) {
    const auto references = [](const Host &object) {
        const PyGILGuard interpreter;
        return object.get()->ob_refcnt;
    };
    const Py_ssize_t window = references(windowProvider);
    const Py_ssize_t rendering = references(renderer);
    EXPECT_EQ(1, create(windowProvider.get(), renderer.get()));
    EXPECT_EQ(window, references(windowProvider));
    EXPECT_EQ(rendering, references(renderer));
}

TEST_F(PyMapCreate, WorksWithTheInterpreterLockHeld) {
    const PyGILGuard interpreter;
    EXPECT_EQ(1, create(windowProvider.get(), renderer.get()));
}

// --- The device's failures: each call in turn ---

TEST_F(PyMapCreate, SystemTextureMayFail) {
    device->record().record(true);
    device->record().failCall(0, D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(1, create(nullptr, renderer.get()));
    // The texture that was made is the first one now.
    EXPECT_EQ((Calls{kCreation[0], kCreation[1], kCreation[2], "texture 1: GetSurfaceLevel(0)",
                     "ColorFill(texture 1, whole, 0xff000000)"}),
              device->record().takeCalls());
    EXPECT_EQ((software_d3d9::LiveCounts{1, 0}), device->live());
    // There is nothing to upload, which must not reach the device.
    EXPECT_EQ(S_OK, map->Update());
    EXPECT_EQ(1u, map->UpdateCounter());
    EXPECT_EQ(Calls{}, device->record().takeCalls());
}

TEST_F(PyMapCreate, DisplayModeMustBeReadable) {
    device->record().record(true);
    device->record().failCall(1, D3DERR_DEVICELOST);
    EXPECT_EQ(D3DERR_DEVICELOST, create(nullptr, renderer.get()));
    EXPECT_EQ(Calls(kCreation.begin(), kCreation.begin() + 2), device->record().takeCalls());
    EXPECT_EQ(nullptr, map->VideoTexture());
    EXPECT_EQ((software_d3d9::LiveCounts{1, 0}), device->live());
}

TEST_F(PyMapCreate, VideoTextureDecides) {
    device->record().record(true);
    device->record().failCall(2, D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(D3DERR_OUTOFVIDEOMEMORY, create(nullptr, renderer.get()));
    EXPECT_EQ(Calls(kCreation.begin(), kCreation.begin() + 3), device->record().takeCalls());
    EXPECT_EQ(nullptr, map->VideoTexture());
    EXPECT_EQ((software_d3d9::LiveCounts{1, 0}), device->live());
}

TEST_F(PyMapCreate, SurfaceMayFail) {
    device->record().record(true);
    device->record().failCall(3, E_OUTOFMEMORY);
    EXPECT_EQ(1, create(nullptr, renderer.get()));
    EXPECT_EQ(Calls(kCreation.begin(), kCreation.begin() + 4), device->record().takeCalls());
    EXPECT_EQ((software_d3d9::LiveCounts{2, 0}), device->live());
}

TEST_F(PyMapCreate, FillMayFail) {
    device->record().record(true);
    device->record().failCall(4, D3DERR_DEVICELOST);
    EXPECT_EQ(1, create(nullptr, renderer.get()));
    EXPECT_EQ(kCreation, device->record().takeCalls());
    EXPECT_EQ((software_d3d9::LiveCounts{2, 0}), device->live());
}

TEST_F(PyMapCreate, WorksAfterEveryFailure) {
    for (std::size_t failing = 0; failing < kCreation.size(); ++failing) {
        device->record().failCall(failing, D3DERR_DEVICELOST);
        create(nullptr, renderer.get());
        EXPECT_EQ(1, create(nullptr, renderer.get())) << failing;
        EXPECT_EQ((software_d3d9::LiveCounts{2, 0}), device->live()) << failing;
        EXPECT_EQ(S_OK, map->Update());
    }
}

TEST_F(PyMapCreate, AgainReplacesTheTextures) {
    EXPECT_EQ(1, create(nullptr, renderer.get()));
    EXPECT_EQ(1, map->Create(16, 8, nullptr, renderer.get()));
    EXPECT_EQ((software_d3d9::LiveCounts{2, 0}), device->live());
    EXPECT_EQ(16u, device->pictureOf(map->VideoTexture())->width);
}

TEST_F(PyMapCreate, ReleasesTheVideoTextureFirst) {
    EXPECT_EQ(1, create(nullptr, renderer.get()));
    device->record().record(true);
    map.reset();
    EXPECT_EQ((Calls{"texture 2 is released", "texture 1 is released"}), device->record().takeCalls());
}

TEST(PyMapFill, TextureStartsOpaqueBlackWhereTheDeviceFills) {
    software_d3d9::DeviceOptions options;
    options.fillsTextures = true;
    const platform::ComPointer<software_d3d9::Device> device(software_d3d9::Device::make(options));
    const CObjectExtractor extractor;
    const PythonHostObject renderer{
        {"GetRenderName", PythonHostObject::value("'D3D9'")},
        {"GetD3D", PythonHostObject::pointer(device->direct3D())},
        {"GetD3DDevice", PythonHostObject::pointer(static_cast<IDirect3DDevice9 *>(device.get()))}};
    const auto map = makeMap<PyMap>();
    ASSERT_EQ(1, map->Create(3, 2, nullptr, renderer.get()));
    const software_d3d9::SharedPicture picture = device->pictureOf(map->VideoTexture());
    for (std::uint32_t y = 0; y < 2; ++y)
        for (std::uint32_t x = 0; x < 3; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, picture->row(y) + x * 4, sizeof pixel);
            EXPECT_EQ(0xff000000U, pixel);
        }
}

// --- The refreshing map's create ---

using PyMapWrapperCreate = DeviceFixture;

TEST_F(PyMapWrapperCreate, RefusesAnEmptySize) {
    const auto map = makeMap<PyMapWrapper>();
    EXPECT_EQ(E_FAIL, map->Create(0, 32, windowProvider.get(), renderer.get()));
    EXPECT_EQ(E_FAIL, map->Create(64, 0, windowProvider.get(), renderer.get()));
    EXPECT_EQ(E_FAIL, map->Create(0, 0, nullptr, nullptr));
    EXPECT_EQ("", windowProvider.calls());
    EXPECT_EQ("", renderer.calls());
}

TEST_F(PyMapWrapperCreate, OneWhenItWorked) {
    const auto map = makeMap<PyMapWrapper>();
    EXPECT_EQ(1, map->Create(64, 32, windowProvider.get(), renderer.get()));
    EXPECT_EQ(1, map->Create(64, 32, nullptr, nullptr));
}

TEST_F(PyMapWrapperCreate, ZeroForEveryFailure) {
    const auto map = makeMap<PyMapWrapper>();
    EXPECT_EQ(0, map->Create(64, 32, Host{}.get(), renderer.get()));
    EXPECT_EQ(0, map->Create(64, 32, nullptr, Host{}.get()));
    device->record().failMethod("GetDisplayMode", D3DERR_DEVICELOST);
    EXPECT_EQ(0, map->Create(64, 32, nullptr, renderer.get()));
}

TEST_F(PyMapWrapperCreate, RefreshesAfterEveryFailure) {
    AskedList asked;
    FakeOverlay owner(asked, 64, 32);
    FakeSyncer syncer(asked);
    for (std::size_t failing = 0; failing < kCreation.size(); ++failing) {
        const auto map = makeMap<PyMapWrapper>();
        map->SetOwner(&owner);
        map->SetSyncer(&syncer);
        device->record().failCall(failing, D3DERR_DEVICELOST);
        map->Create(64, 32, nullptr, renderer.get());
        // With the textures that there are: none may be missed, and none is lost.
        const bool hasBoth = failing >= 3;
        EXPECT_EQ((software_d3d9::LiveCounts{hasBoth ? 2U : 1U, 0}), device->live()) << failing;
        owner.dirty = true;
        EXPECT_EQ(S_OK, map->Update()) << failing;
        EXPECT_FALSE(owner.dirty) << failing;
        // Once more, whole this time.
        EXPECT_EQ(1, map->Create(64, 32, nullptr, renderer.get())) << failing;
        owner.picture.assign(owner.picture.size(), static_cast<BYTE>(failing + 1));
        EXPECT_EQ(2u, map->UpdateCounter()) << failing;
        EXPECT_EQ(failing + 1, *device->pictureOf(map->VideoTexture())->bits);
    }
}

} // namespace
