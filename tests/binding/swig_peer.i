// SPDX-License-Identifier: MIT
//
// A module built by SWIG that knows the types of _Orvanel, as a host's own modules do.

%module swig_peer

%{
#include "swig_peer.h"
%}

%include "stdint.i"
%include "std_vector.i"

#define STDMETHODCALLTYPE
typedef unsigned char BYTE;
typedef unsigned int UINT;
typedef int64_t LONGLONG;

%ignore operator==;
%include "overlay/types/outline_points.h"
%template(UIntVector) std::vector<unsigned int>;
%template(MPointVector) std::vector<MPoint>;
%template(MPointFVector) std::vector<MPointF>;
%include "overlay/types/keyframe_mask_info.h"
%include "overlay/types/video_texture_syncer.h"
%include "swig_peer.h"

// The names under which the module registers the two enumerations.
%inline %{
enum _ECallBack_State { anyEvent };
enum _EControlState { anyInput };
%}

// An object of every other type that the module registers and that can stand alone in Python, and of some that it does not.
%template(anEventCode) unfollowed<_ECallBack_State>;
%template(anInputCode) unfollowed<_EControlState>;
%template(aWideChar) unfollowed<wchar_t>;
%template(anAllocator) unfollowed<loom::IAllocator>;
%template(anOrvanel) unfollowed<Orvanel>;
%template(aSignedChar) unfollowed<signed char>;
%template(aDouble) unfollowed<double>;
%template(aFloat) unfollowed<float>;
%template(anInt) unfollowed<int>;
%template(aLong) unfollowed<long>;
%template(aLongLong) unfollowed<long long>;
%template(bytes) unfollowed<unsigned char>;
%template(anUnsignedInt) unfollowed<unsigned int>;
%template(anUnsignedLong) unfollowed<unsigned long>;
%template(anUnsignedLongLong) unfollowed<unsigned long long>;
%template(anUnsignedShort) unfollowed<unsigned short>;
