// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/com_pointer.h"
#include "software_d3d9/device.h"

namespace software_d3d9 {

using DevicePointer = platform::ComPointer<Device>;
using TexturePointer = platform::ComPointer<IDirect3DTexture9>;
using Lines = std::vector<std::string>;

inline constexpr UINT kWidth = 8;
inline constexpr UINT kHeight = 4;

inline std::uint32_t pixelOf(const Picture &picture, UINT x, UINT y) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, picture.row(y) + x * 4, sizeof pixel);
    return pixel;
}

/// A device, and how tests make and fill its textures.
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

} // namespace software_d3d9
