// SPDX-License-Identifier: MIT
//
// The same methods as the entries under measurement, as SWIG wraps them.

%module swig_calls

%{
#include "overlay/orvanel.h"
%}

%include <stdint.i>
typedef int INT;
typedef int BOOL;
typedef unsigned int UINT;
typedef int32_t HRESULT;
typedef int64_t LONGLONG;

struct MPoint {
    MPoint();
    int32_t x;
    int32_t y;
};

class IVideoTextureSyncer;

// The same object and point in objects of this module's own.
%inline %{
Orvanel *own_Orvanel(Orvanel *made) { return made; }
MPoint *own_MPoint(MPoint *point) { return point; }
%}

class Orvanel {
  public:
    bool IsDirty() const;
    UINT GetBufferLen() const;
    void SetInverse(bool inverse);
    void SetSizeScaler(float scale);
    int HitTestPoint(const MPoint &position) const;
    int MoveAllPoints(INT dx, INT dy);
    HRESULT Interactive(INT state, INT x = 0, INT y = 0);
    int SetVideoInfo(LONGLONG first, LONGLONG second, LONGLONG third, LONGLONG fourth);
    int SetVideoCoordinate(INT displayWidth, INT displayHeight, INT left, INT top, INT width, INT height);
    LONGLONG GetClosestKeyFramePos(LONGLONG duration, IVideoTextureSyncer *syncer) const;
    PyObject *GetDirtyRect() const;
    PyObject *Convert2SelectionLineUS(PyObject *size) const;
};
