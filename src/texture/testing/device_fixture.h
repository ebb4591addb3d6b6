// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/com_pointer.h"
#include "software_d3d9/device.h"
#include "texture/py_map.h"
#include "texture/testing/python_host.h"

/// A software device and the Python objects through which a map finds it. At the end no reference may be left and no
/// rule of the device may have been broken.
class DeviceFixture : public testing::Test {
  protected:
    explicit DeviceFixture(const software_d3d9::DeviceOptions &options = {})
        : device(software_d3d9::Device::make(options)) {}
    ~DeviceFixture() override {
        EXPECT_EQ(software_d3d9::LiveCounts{}, device->live());
        EXPECT_EQ(std::vector<std::string>{}, device->record().violations());
        EXPECT_EQ(1u, device->references());
    }

    using Host = PythonHostObject;

    static HWND windowHandle() { return reinterpret_cast<HWND>(std::uintptr_t{0x1234}); }

    const platform::ComPointer<software_d3d9::Device> device;
    const CObjectExtractor extractor;
    const Host windowProvider{{"GetWnd", Host::pointer(windowHandle())}};
    const Host renderer{{"GetRenderName", Host::value("'D3D9'")},
                        {"GetD3D", Host::pointer(device->direct3D())},
                        {"GetD3DDevice", Host::pointer(static_cast<IDirect3DDevice9 *>(device.get()))}};
};

/// A map with the one reference of its owner.
template <typename Map>
platform::ComPointer<Map> makeMap() {
    platform::ComPointer<Map> map(new Map);
    map->AddRef();
    return map;
}
