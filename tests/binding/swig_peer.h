// SPDX-License-Identifier: MIT
#pragma once

// What the peer module, which SWIG builds, offers to tests of the shared type registry: objects of every registered
// type, subclasses of some, and functions that take the types back.

#include <cstdint>
#include <vector>

#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "overlay/types/video_texture_syncer.h"

class Orvanel;

namespace loom {
class IAllocator;
}

/// In front of another base class, so that the conversion to that one has to move the address.
struct Tag {
    virtual ~Tag() = default;
    int tag = 0;
};

struct TaggedPoint : Tag, MPoint {};

/// Every frame is ten units long.
class TenUnitSyncer : public IVideoTextureSyncer {
  public:
    virtual ~TenUnitSyncer() = default;
    LONGLONG STDMETHODCALLTYPE GetVideoTime() override { return m_time; }
    LONGLONG STDMETHODCALLTYPE GetTolerance(LONGLONG) override { return 10; }
    LONGLONG STDMETHODCALLTYPE GetFrameNumber(LONGLONG duration) override { return duration / 10; }
    LONGLONG STDMETHODCALLTYPE HostOperation3() override { return 0; }
    bool STDMETHODCALLTYPE IsRefreshAllowed() override { return true; }

    void setTime(LONGLONG time) { m_time = time; }

  private:
    LONGLONG m_time = 0;
};

/// Something that has nothing to do with the module.
struct Stranger {
    int value = 0;
};

/// Holds a pointer to a record, for entries that take a reference to such a pointer.
struct RecordSlot {
    Quill::KeyFrameMaskInfo record;
    Quill::KeyFrameMaskInfo *pointer = &record;

    Quill::KeyFrameMaskInfo **address() { return &pointer; }
    RecordSlot() = default;
    RecordSlot(const RecordSlot &) = delete;
    RecordSlot &operator=(const RecordSlot &) = delete;
};

/// An address that must not be followed.
template <typename T>
T *unfollowed() {
    return reinterpret_cast<T *>(std::uintptr_t{64});
}

/// A carrier without ownership.
inline Orvanel *orvanelAt(std::uint64_t address) {
    return reinterpret_cast<Orvanel *>(static_cast<std::uintptr_t>(address));
}

inline std::uint64_t addressOf(const Orvanel *object) {
    return reinterpret_cast<std::uintptr_t>(object);
}
inline std::uint64_t addressOf(const Quill::KeyFrameMaskInfo *record) {
    return reinterpret_cast<std::uintptr_t>(record);
}
inline std::uint64_t addressOf(const unsigned char *bytes) {
    return reinterpret_cast<std::uintptr_t>(bytes);
}
inline std::uint64_t addressOf(const loom::IAllocator *allocator) {
    return reinterpret_cast<std::uintptr_t>(allocator);
}
inline std::int64_t pointCount(const Quill::KeyFrameMaskInfo *record) {
    return static_cast<std::int64_t>(record->points.size());
}
