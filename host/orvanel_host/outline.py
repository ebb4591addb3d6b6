# SPDX-License-Identifier: MIT
"""The outline as Python sees it: points read from the byte strings that the module exchanges."""
import collections
import struct

ANCHOR = 0
CONTROL = 1

# 24 bytes a point, little-endian: type, x, y, curveIn, curveOut, handleShown. x and y are fractions of the video picture.
_RECORD = struct.Struct('<IffIII')

RecordError = struct.error

Point = collections.namedtuple('Point', 'type x y curve_in curve_out handle_shown')


def unpack(data):
    """Points of a byte string; None, which stands for an empty outline, gives an empty list."""
    if data is None:
        return []
    return [Point(*_RECORD.unpack_from(data, offset)) for offset in range(0, len(data), _RECORD.size)]


def pack(points):
    return b''.join(_RECORD.pack(*point) for point in points)


def anchors(points):
    return [point for point in points if point.type == ANCHOR]
