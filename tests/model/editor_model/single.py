# SPDX-License-Identifier: MIT
"""Single-precision arithmetic and the narrowing to integers.

A sum, product or quotient of two single-precision numbers that is computed in double precision and then rounded is the
correctly rounded single-precision result (53 >= 2 * 24 + 2), so rounding after each operation is exact.
"""
from __future__ import absolute_import, division

import math
import struct

_SINGLE = struct.Struct("<f")
INT32_MIN = -2 ** 31
INT32_MAX = 2 ** 31 - 1


def single(value):
    """The single-precision number nearest to `value`."""
    try:
        return _SINGLE.unpack(_SINGLE.pack(value))[0]
    except OverflowError:
        return math.copysign(float("inf"), value)


def quotient(numerator, denominator):
    """A division of floating-point numbers: by zero it gives an infinity or no number, not an error."""
    if denominator != 0:
        return numerator / denominator
    if numerator == 0 or numerator != numerator:
        return float("nan")
    return math.copysign(float("inf"), numerator) * math.copysign(1.0, denominator)


def truncate(value):
    """Drops the fraction. What does not fit 32 bits becomes the smallest number, as the processor gives it."""
    if not INT32_MIN - 1 < value < INT32_MAX + 1:
        return INT32_MIN
    return int(value)


def place(normalised, extent, origin):
    """Pixel coordinate of a normalised one: product and sum in single precision, widened, one half added, truncated."""
    return truncate(single(single(single(extent) * normalised) + single(origin)) + 0.5)


def normalise(pixel, extent, origin):
    """Normalised coordinate of a pixel coordinate."""
    return single(quotient(single(pixel - origin), single(extent)))
