// SPDX-License-Identifier: MIT
//
// A module built by SWIG without its standard library files: vectors carry shorter names in it.

%module swig_plain_peer

%{
#include "swig_peer.h"
%}

%ignore operator==;
namespace std {
template <typename T>
class vector {
  public:
    vector();
    unsigned long size() const;
    void push_back(const T &value);
};
}
%include <stdint.i>
%include "overlay/types/outline_points.h"
%template(UIntVector) std::vector<unsigned int>;
%template(MPointFVector) std::vector<MPointF>;
