// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hostkit/planes.h"

struct AVFrame;

namespace hostkit {

/// What the frames of a video are made of and what is said about them. Enumerations are FFmpeg's; colour tags that a
/// clip lacks stay lacking.
struct FrameFormat {
    int width = 0;
    int height = 0;
    int pixelFormat = -1; ///< three planes of Y'CbCr, 8 to 16 bits, without alpha
    int primaries = 2;
    int transfer = 2;
    int matrix = 2;
    int range = 0;
    int chromaLocation = 0;
    int fieldOrder = 0; ///< AVFieldOrder; 0 when unknown
    int aspectNumerator = 1;
    int aspectDenominator = 1;

    int depth() const;
    bool isInterlaced() const;
    bool isFullRange() const;
    /// The matrix that codes are read by: the clip's own, or what players assume.
    int actualMatrix() const;
    /// "10-bit 4:2:2".
    std::string text() const;
};

/// The format that frames of `pixelFormat` are worked on in: their own if it has three planes of Y'CbCr, else one that
/// holds all of it but alpha. `transposed` pictures swap rows and columns, and colour samples with them.
int workingFormat(int pixelFormat, bool transposed);
/// The nearest of an encoder's formats: the same sampling and at least the depth, if it has that.
int encodableFormat(int workingFormat, const int *offered);
/// Whether there is alpha in it, or red, green and blue.
bool hasAlpha(int pixelFormat);
bool isRgb(int pixelFormat);

/// The planes of a frame in a working format. It stays the frame's memory.
Planes planesOf(AVFrame &frame, const FrameFormat &format);

} // namespace hostkit
