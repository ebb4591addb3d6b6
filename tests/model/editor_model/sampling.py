# SPDX-License-Identifier: MIT
"""The outline as dense lists of integer points, one list a segment, which is what the pointer is tested against.

Bent segments are flattened by integer hybrid forward differencing at a flatness of 1 / density pixel, on a grid of a
quarter of that; straight ones are rasterised in two sweeps.
"""
from __future__ import absolute_import, division

from editor_model.records import HIT_TOLERANCE, Point
from editor_model.single import quotient, single, truncate


def line_points(p0, p1):
    """All points of the x sweep, then all points of the y sweep."""
    if (p0.x, p0.y) == (p1.x, p1.y):
        yield p0.copy()
        return
    k = single((p1.y - p0.y) / (p1.x - p0.x)) if p1.x != p0.x else 0.0
    b = single(p1.y - single(p1.x * k))
    for x in range(min(p0.x, p1.x), max(p0.x, p1.x) + 1):
        yield Point(0, x, truncate(single(single(k * x) + b) + 0.5))
    for y in range(min(p0.y, p1.y), max(p0.y, p1.y) + 1):
        x = truncate(single(quotient(single(y - b), k)) + 0.5) if k != 0 else p0.x
        yield Point(0, x, y)


# --- hybrid forward differencing ---------------------------------------------------------------------------------
#
# Per axis four differences e0 (the current point), e1, e2, e3. `tolerance` bounds six times the error of a chord.

class _Axis(object):

    def __init__(self, p0, p1, p2, p3, bits):
        self.e0 = p0 << bits
        self.e1 = (p3 - p0) << bits
        self.e2 = 6 * (p1 - 2 * p2 + p3) << bits
        self.e3 = 6 * (p0 - 2 * p1 + p2) << bits

    def error(self):
        return max(abs(self.e2), abs(self.e3))

    def step(self):
        self.e0 += self.e1
        self.e1 += self.e2
        self.e2, self.e3 = 2 * self.e2 - self.e3, self.e2

    def halve(self):
        self.e2 = (self.e2 + self.e3) >> 3
        self.e1 = (self.e1 - self.e2) >> 1
        self.e3 >>= 2

    def double(self):
        self.e1 = 2 * self.e1 + self.e2
        self.e3 *= 4
        self.e2 = 8 * self.e2 - self.e3


class _Curve(object):
    """Both axes, and the number of steps that are left."""

    def __init__(self, xs, ys, bits):
        self.axes = (_Axis(*(tuple(xs) + (bits,))), _Axis(*(tuple(ys) + (bits,))))
        self.left = 1

    def error(self):
        return max(axis.error() for axis in self.axes)

    def step(self):
        for axis in self.axes:
            axis.step()

    def halve(self):
        for axis in self.axes:
            axis.halve()
        self.left *= 2

    def double_while_fine(self, tolerance):
        while self.left > 0 and self.left % 2 == 0 and all(
                max(abs(4 * axis.e3), abs(8 * axis.e2 - 4 * axis.e3)) <= tolerance for axis in self.axes):
            for axis in self.axes:
                axis.double()
            self.left //= 2


def _toward_zero(numerator, denominator):
    return -(-numerator // denominator) if numerator < 0 else numerator // denominator


def _misses(xs, ys, surface):
    """Whether the box around control points, grown by a pixel, lies wholly off a surface."""
    return surface is not None and any(min(values) - 16 >= 16 * extent or max(values) + 16 <= 0
                                       for values, extent in zip((xs, ys), surface))


def _wide_vertices(xs, ys, surface):
    """For control boxes from 1023 pixels on: two levels, 28 fraction bits."""
    bits = 28
    high_tolerance, low_tolerance = 196608 << bits, 24 << bits
    half = 1 << (bits - 1)
    high, low = _Curve(xs, ys, bits), None
    while high.error() > high_tolerance:
        high.halve()
    vertices = []
    while True:
        if low is None or low.left == 0:
            piece = []
            for axis in high.axes:
                controls = (axis.e0,
                            axis.e0 + _toward_zero(6 * axis.e1 - axis.e2 - 2 * axis.e3, 18),
                            axis.e0 + _toward_zero(12 * axis.e1 - 2 * axis.e2 - axis.e3, 18),
                            axis.e0 + axis.e1)
                piece.append([(value + half) >> bits for value in controls])
            low = _Curve(piece[0], piece[1], bits)
            while not _misses(piece[0], piece[1], surface) and low.error() > low_tolerance:
                low.halve()
            high.left -= 1
            if high.left:
                high.step()
                if high.error() > high_tolerance:
                    high.halve()
                high.double_while_fine(high_tolerance)
        low.step()
        vertices.append(tuple((axis.e0 + half) >> bits for axis in low.axes))
        low.left -= 1
        if low.left == 0 and high.left == 0:
            return vertices
        if low.left and low.error() > low_tolerance:
            low.halve()
        low.double_while_fine(low_tolerance)


def _narrow_vertices(xs, ys):
    """For smaller boxes: one level, 10 and then 13 fraction bits, relative to the grown box."""
    origins = (min(xs) - 16, min(ys) - 16)
    curve = _Curve([x - origins[0] for x in xs], [y - origins[1] for y in ys], 10)
    scale = 0
    while curve.error() > 24576 << scale:
        scale += 2
        for axis in curve.axes:
            axis.e2 = (axis.e2 + axis.e3) >> 1
            axis.e1 = (axis.e1 - (axis.e2 >> scale)) >> 1
        curve.left *= 2
    shift = scale - 3
    for axis in curve.axes:
        axis.e0 <<= 3
        axis.e1 <<= 3
        if shift < 0:
            axis.e2 <<= -shift
            axis.e3 <<= -shift
        else:
            axis.e2 >>= shift
            axis.e3 >>= shift
    curve.step()
    curve.left -= 1
    vertices = []
    while True:
        vertices.append(tuple(((axis.e0 + 4096) >> 13) + origin for axis, origin in zip(curve.axes, origins)))
        if curve.left == 0:
            return vertices
        if curve.error() > 196608:
            curve.halve()
        curve.double_while_fine(4 * 49152)
        curve.left -= 1
        curve.step()


def flatten(xs, ys, surface=None):
    """The vertices after the start point of a cubic Bezier in sixteenths of a pixel.

    What lies wholly off a surface (width, height in pixels) is not subdivided when one is given.
    """
    if max(max(xs) - min(xs), max(ys) - min(ys)) + 16 >= 16384:
        return _wide_vertices(xs, ys, surface)
    if _misses(xs, ys, surface):
        return [(xs[3], ys[3])]
    return _narrow_vertices(xs, ys)


def bezier_points(controls, density):
    """Samples of one bent segment, start point included."""
    if density < 1:
        return [Point(0, controls[0].x, controls[0].y), Point(0, controls[3].x, controls[3].y)]
    grid = 4 * density
    xs, ys = [grid * point.x for point in controls], [grid * point.y for point in controls]
    vertices = [(xs[0], ys[0])] + flatten(xs, ys)
    return [Point(0, (2 * x + grid) // (2 * grid), (2 * y + grid) // (2 * grid)) for x, y in vertices]


class Segment(object):
    """One segment's samples, made when the pointer comes near: most segments are never looked at."""

    def __init__(self, ends, controls, density):
        self.points = [ends[0].copy()] + [control.copy() for control in controls] + [ends[1].copy()]
        self.density = density

    def samples(self):
        if len(self.points) == 2:
            return line_points(*self.points)
        return bezier_points(self.points, self.density)

    def _may_reach(self, x, y):
        margin = HIT_TOLERANCE + 8  # a curve stays within its control points; the rest is rounding
        xs, ys = [point.x for point in self.points], [point.y for point in self.points]
        return min(xs) - margin <= x <= max(xs) + margin and min(ys) - margin <= y <= max(ys) + margin

    def first_sample_at(self, x, y):
        """The first sample within the tolerance of a pointer position, or None."""
        if self._may_reach(x, y):
            for sample in self.samples():
                if sample.within_tolerance(x, y):
                    return sample
        return None


def sample_outline(points, density):
    """The segments of an outline, the closing one last; None when there are too few points."""
    count = len(points)
    if count < 2:
        return None
    anchors = [point for point in points[:count - 1] if point.is_anchor()]
    segments = []
    for j in range(1, len(anchors)):
        ends, controls = (anchors[j - 1], anchors[j]), []
        if anchors[j - 1].curve_out:
            ends, controls = (points[3 * j - 3], points[3 * j]), points[3 * j - 2:3 * j]
        segments.append(Segment(ends, controls, density))
    if len(anchors) > 2:
        ends, controls = (anchors[-1], anchors[0]), []
        if anchors[0].curve_in:
            ends, controls = (points[count - 3], points[0]), points[count - 2:count]
        segments.append(Segment(ends, controls, density))
    return segments
