// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <set>

#include "software_d3d9/call_record.h"
#include "software_d3d9/picture.h"

namespace software_d3d9 {

class Surface;
class Texture;

/// How a device behaves where real ones differ.
struct DeviceOptions {
    UINT displayWidth = 1920;
    UINT displayHeight = 1080;
    UINT refreshRate = 60;
    UINT largestTexture = 16384; ///< pixels, either way
    UINT rowPadding = 0;         ///< bytes after each row of a texture
    /// Whether ColorFill accepts a texture that is no render target. Real devices refuse.
    bool fillsTextures = false;
    /// Whether locking with D3DLOCK_DISCARD overwrites what was there, to catch whoever relies on it.
    bool poisonsDiscarded = false;
};

/// How many references a device's callers hold.
struct LiveCounts {
    std::size_t textures = 0;          ///< textures that somebody holds a reference to
    std::size_t surfaceReferences = 0; ///< references to surfaces, over all of them

    friend bool operator==(const LiveCounts &, const LiveCounts &) = default;
};

/// What the objects of one device share; goes with the last of them.
struct Core {
    explicit Core(const DeviceOptions &deviceOptions) : options(deviceOptions) {}

    const DeviceOptions options;
    CallRecord record;
    const std::shared_ptr<PicturePool> pool = std::make_shared<PicturePool>();
    /// Every call of the device and its textures runs under it, as on a device made for several threads.
    std::recursive_mutex mutex;
    std::set<const void *> textures; ///< the ones that exist, to recognise what is handed in
    std::set<const void *> surfaces;
    LiveCounts live;
    unsigned int texturesMade = 0;
};

} // namespace software_d3d9
