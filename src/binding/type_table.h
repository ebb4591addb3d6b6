// SPDX-License-Identifier: MIT
#pragma once

// Every pointer type that this module registers, and how the C++ types of the entries map to them.

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "binding/fixed_text.h"
#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "overlay/types/video_texture_syncer.h"

class Orvanel;

namespace loom {
class IAllocator;
}

namespace binding {

struct PointerType {
    const char *name;
    const char *text;
};

/// Sorted by strcmp of the mangled name, because readers of the registry search it by halves.
///
/// The four vector names with an underscore after the T are what current SWIG calls the two vectors, without and with
/// its standard library file; no entry declares them, kEquivalentTypes makes them acceptable. Whoever registers a name
/// first decides its texts, and a SWIG-built module looks its own vectors up by text: both of SWIG's spellings have to
/// be there.
inline constexpr std::array kPointerTypes = {
    PointerType{"_p_HoverPoint", "HoverPoint *"},
    PointerType{"_p_IVideoTextureSyncer", "IVideoTextureSyncer *"},
    PointerType{"_p_MPoint", "MPoint *"},
    PointerType{"_p_Orvanel", "Orvanel *"},
    PointerType{"_p_Quill__KeyFrameMaskInfo", "Quill::KeyFrameMaskInfo *"},
    PointerType{"_p__ECallBack_State", "enum _ECallBack_State *|ECallBack_State *"},
    PointerType{"_p__EControlState", "enum _EControlState *|EControlState *"},
    PointerType{"_p_char", "char *|TCHAR *"},
    PointerType{"_p_double", "double *|DOUBLE *"},
    PointerType{"_p_float", "float *|FLOAT *"},
    PointerType{"_p_int", "int *"},
    PointerType{"_p_long", "long *"},
    PointerType{"_p_long_long", "long long *|INT_PTR *|LRESULT *|int64 *"},
    PointerType{"_p_loom__IAllocator", "loom::IAllocator *"},
    PointerType{"_p_p_Quill__KeyFrameMaskInfo", "Quill::KeyFrameMaskInfo **"},
    PointerType{"_p_std__vectorTMPointF_t", "std::vector<MPointF > *"},
    PointerType{"_p_std__vectorT_MPointF_std__allocatorT_MPointF_t_t",
                "std::vector< MPointF,std::allocator< MPointF > > *|std::vector< MPointF > *"},
    PointerType{"_p_std__vectorT_MPointF_t", "std::vector< MPointF > *"},
    PointerType{"_p_std__vectorT_unsigned_int_std__allocatorT_unsigned_int_t_t",
                "std::vector< unsigned int,std::allocator< unsigned int > > *|std::vector< unsigned int > *"},
    PointerType{"_p_std__vectorT_unsigned_int_t", "std::vector< unsigned int > *"},
    PointerType{"_p_std__vectorTunsigned_int_t", "std::vector<unsigned int > *|std::vector<UINT > *"},
    PointerType{"_p_unsigned_char", "unsigned char *|BYTE *"},
    PointerType{"_p_unsigned_int", "unsigned int *"},
    PointerType{"_p_unsigned_long", "unsigned long *"},
    PointerType{"_p_unsigned_long_long", "unsigned long long *|WPARAM *|ULONG_PTR *|uint64 *"},
    PointerType{"_p_unsigned_short", "unsigned short *|WORD *"},
    PointerType{"_p_wchar_t", "wchar_t *|WCHAR *"},
};

/// The position of a registered name; fails to compile for any other.
consteval std::size_t pointerTypeIndex(std::string_view name) {
    for (std::size_t index = 0; index < kPointerTypes.size(); ++index) {
        if (kPointerTypes[index].name == name)
            return index;
    }
    throw "no pointer type is registered under this name";
}

/// An object of type `from` is accepted where `to` is declared, at the same address.
struct EquivalentTypes {
    std::size_t from;
    std::size_t to;
};

inline constexpr std::array kEquivalentTypes = {
    EquivalentTypes{pointerTypeIndex("_p_std__vectorT_MPointF_t"), pointerTypeIndex("_p_std__vectorTMPointF_t")},
    EquivalentTypes{pointerTypeIndex("_p_std__vectorT_MPointF_std__allocatorT_MPointF_t_t"),
                    pointerTypeIndex("_p_std__vectorTMPointF_t")},
    EquivalentTypes{pointerTypeIndex("_p_std__vectorT_unsigned_int_t"),
                    pointerTypeIndex("_p_std__vectorTunsigned_int_t")},
    EquivalentTypes{pointerTypeIndex("_p_std__vectorT_unsigned_int_std__allocatorT_unsigned_int_t_t"),
                    pointerTypeIndex("_p_std__vectorTunsigned_int_t")},
};

/// `name`: the C++ type as the error texts spell it. `pointer`: where the pointer to it stands in kPointerTypes.
template <typename T>
struct Pointee;

template <>
struct Pointee<Orvanel> {
    static constexpr FixedText name = "Orvanel";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_Orvanel");
};
template <>
struct Pointee<MPoint> {
    static constexpr FixedText name = "MPoint";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_MPoint");
};
template <>
struct Pointee<HoverPoint> {
    static constexpr FixedText name = "HoverPoint";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_HoverPoint");
};
template <>
struct Pointee<std::vector<unsigned int>> {
    static constexpr FixedText name = "std::vector<UINT >";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_std__vectorTunsigned_int_t");
};
template <>
struct Pointee<std::vector<MPointF>> {
    static constexpr FixedText name = "std::vector<MPointF >";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_std__vectorTMPointF_t");
};
template <>
struct Pointee<IVideoTextureSyncer> {
    static constexpr FixedText name = "IVideoTextureSyncer";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_IVideoTextureSyncer");
};
template <>
struct Pointee<Quill::KeyFrameMaskInfo> {
    static constexpr FixedText name = "Quill::KeyFrameMaskInfo";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_Quill__KeyFrameMaskInfo");
};
template <>
struct Pointee<Quill::KeyFrameMaskInfo *> {
    static constexpr FixedText name = "Quill::KeyFrameMaskInfo *";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_p_Quill__KeyFrameMaskInfo");
};
template <>
struct Pointee<loom::IAllocator> {
    static constexpr FixedText name = "loom::IAllocator";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_loom__IAllocator");
};
template <>
struct Pointee<unsigned char> {
    static constexpr FixedText name = "BYTE";
    static constexpr std::size_t pointer = pointerTypeIndex("_p_unsigned_char");
};

} // namespace binding
