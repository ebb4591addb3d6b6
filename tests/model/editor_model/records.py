# SPDX-License-Identifier: MIT
"""The records that the editor works on, and its constants."""
from __future__ import absolute_import

import struct

from editor_model.single import normalise, place

S_OK = 0
E_FAIL = 0x80004005

ANCHOR, CONTROL = 0, 1

HOVER_NOTHING, HOVER_POINT, HOVER_LINE = 0, 1, 2

ECB_POINT_ADD, ECB_POINT_REMOVE, ECB_MASK_CREATE, ECB_MASK_UPDATE, ECB_MASK_REMOVE, ECB_POINT_UPDATE = range(6)
(ECS_MOUSE_MOVE, ECS_MOUSE_DOWN, ECS_MOUSE_UP, ECS_MOUSE_DBCLICK, ECS_DELETE, ECS_DELETE_LAST_POINT) = range(6)

#: Fewest points that can be a mask: a closed triangle.
MASK_POINTS = 9
#: Half the side of the square within which the pointer hits something, pixels.
HIT_TOLERANCE = 10

_SERIALISED = struct.Struct("<IffIII")


class Undefined(Exception):
    """The rules of the editor do not say what happens here."""


class Point(object):
    """An outline point: with integers a pixel point, with single-precision numbers its normalised twin."""

    __slots__ = ("type", "x", "y", "curve_in", "curve_out", "handle_shown")

    def __init__(self, type=ANCHOR, x=0, y=0, curve_in=0, curve_out=0, handle_shown=0):
        self.type = type
        self.x = x
        self.y = y
        self.curve_in = curve_in
        self.curve_out = curve_out
        self.handle_shown = handle_shown

    def as_tuple(self):
        return (self.type, self.x, self.y, self.curve_in, self.curve_out, self.handle_shown)

    def copy(self):
        return Point(*self.as_tuple())

    def is_anchor(self):
        return self.type == ANCHOR

    def within_tolerance(self, x, y):
        return abs(self.x - x) <= HIT_TOLERANCE and abs(self.y - y) <= HIT_TOLERANCE

    def __eq__(self, other):
        return self.as_tuple() == other.as_tuple()

    def __ne__(self, other):
        return not self == other

    def __repr__(self):
        return "Point%r" % (self.as_tuple(),)


class Rect(object):
    """left, top, width, height"""

    __slots__ = ("left", "top", "width", "height")

    def __init__(self, left=0, top=0, width=0, height=0):
        self.left = left
        self.top = top
        self.width = width
        self.height = height

    def as_tuple(self):
        return (self.left, self.top, self.width, self.height)

    def __eq__(self, other):
        return self.as_tuple() == other.as_tuple()

    def __ne__(self, other):
        return not self == other

    def __repr__(self):
        return "Rect%r" % (self.as_tuple(),)


class Hover(object):
    """What the pointer is over."""

    __slots__ = ("type", "index", "line_index", "point")

    def __init__(self, type=HOVER_NOTHING, index=-1, line_index=-1, point=None):
        self.type = type
        self.index = index
        self.line_index = line_index
        self.point = point or Point()


def twin_of(point, rect):
    """The normalised twin of a new pixel point."""
    return Point(point.type, normalise(point.x, rect.width, rect.left), normalise(point.y, rect.height, rect.top),
                 point.curve_in, point.curve_out, point.handle_shown)


def placed(twin, rect):
    """The pixel point of a normalised one."""
    return Point(twin.type, place(twin.x, rect.width, rect.left), place(twin.y, rect.height, rect.top), twin.curve_in,
                 twin.curve_out, 0)


def to_bytes(twins):
    """Normalised points as the byte string that crosses the boundary, 24 bytes a point."""
    return b"".join([_SERIALISED.pack(*twin.as_tuple()) for twin in twins])


def from_bytes(data):
    """Normalised points of such a byte string, or None when its length is not that of whole records."""
    if not data or len(data) % _SERIALISED.size:
        return None
    return [Point(*_SERIALISED.unpack_from(data, at)) for at in range(0, len(data), _SERIALISED.size)]
