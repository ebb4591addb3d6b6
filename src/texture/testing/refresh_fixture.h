// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstring>

#include "platform/event.h"
#include "texture/py_map_wrapper.h"
#include "texture/testing/device_fixture.h"
#include "texture/testing/fake_overlay.h"

/// A refreshing map with textures on a software device, an owner and a syncer.
class RefreshFixture : public DeviceFixture {
  protected:
    static constexpr UINT kWidth = 16;
    static constexpr UINT kHeight = 8;

    explicit RefreshFixture(const software_d3d9::DeviceOptions &options = poisoning()) : DeviceFixture(options) {
        EXPECT_EQ(1, map->Create(kWidth, kHeight, windowProvider.get(), renderer.get()));
        map->SetOwner(&owner);
        map->SetSyncer(&syncer);
    }
    // Before the fixture counts what is left.
    void TearDown() override { map.reset(); }

    /// Draws a picture that differs from every other number's, and marks it as changed.
    void draw(BYTE number) {
        for (std::size_t i = 0; i < owner.picture.size(); ++i)
            owner.picture[i] = static_cast<BYTE>(number + i * 7);
        owner.dirty = true;
    }
    /// Whether the video texture shows exactly the owner's picture.
    bool isShown() const {
        const software_d3d9::SharedPicture shown = device->pictureOf(map->VideoTexture());
        for (UINT y = 0; y < kHeight; ++y)
            if (std::memcmp(shown->row(y), owner.picture.data() + y * kWidth * 4, kWidth * 4) != 0)
                return false;
        return true;
    }
    /// What owner and syncer were asked since the last call.
    AskedList takeAsked() { return std::exchange(asked, {}); }

    static software_d3d9::DeviceOptions poisoning() {
        software_d3d9::DeviceOptions options;
        options.poisonsDiscarded = true;
        return options;
    }

    /// The event that all maps share, as the host's side finds it.
    platform::Event event{"PyMapWrapper_UpdateEvt", platform::Event::Reset::Manual, true};
    AskedList asked;
    FakeOverlay owner{asked, kWidth, kHeight};
    FakeSyncer syncer{asked};
    platform::ComPointer<PyMapWrapper> map = makeMap<PyMapWrapper>();
};
