# SPDX-License-Identifier: MIT
"""The mask of an outline as runs, pixel by pixel what an aliased even-odd fill of it covers.

Vertices stand on sixteenths of a pixel. A pixel is sampled at exactly its coordinates: every edge that meets its row at or
left of it turns it over. Crossings are computed in whole numbers, so nothing is rounded.
"""
from __future__ import absolute_import, division

from editor_model.records import MASK_POINTS
from editor_model.sampling import flatten
from editor_model.single import quotient, single, truncate

_LARGEST = 8388607


def _drawn_segments(points):
    """The control points of the segments that are drawn: all, or the closing one alone when the count is no multiple of three."""
    count = len(points)
    starts = range(0, count, 3) if count % 3 == 0 else [count - 3]
    return [(points[at], points[at + 1], points[at + 2], points[(at + 3) % count if at + 3 < count else 0])
            for at in starts]


def _polyline(points, width, height):
    segments = _drawn_segments(points)
    if any(abs(value) > _LARGEST for segment in segments for point in segment for value in point):
        return []
    vertices = [tuple(16 * value for value in segments[0][0])]
    for segment in segments:
        vertices += flatten([16 * x for x, _ in segment], [16 * y for _, y in segment], (width, height))
    return vertices


def _toggles(vertices, width, height):
    """For each row the columns where an edge turns the pixels from there on over."""
    rows = [[] for _ in range(height)]
    for (x0, y0), (x1, y1) in zip(vertices, vertices[1:] + vertices[:1]):
        if y0 > y1:
            x0, y0, x1, y1 = x1, y1, x0, y0
        for row in range(max(0, -(-y0 // 16)), min(height, -(-y1 // 16))):
            # ceil of x0 + (16 row - y0) (x1 - x0) / (y1 - y0), in sixteenths
            column = -(-(x0 * (y1 - y0) + (16 * row - y0) * (x1 - x0)) // (16 * (y1 - y0)))
            rows[row].append(min(max(column, 0), width))
    return rows


def mask_runs(points, width, height):
    """Runs (first column, row, length) of an outline of (x, y) pixels, rows from the top, columns from the left."""
    runs = []
    for row, columns in enumerate(_toggles(_polyline(points, width, height), width, height)):
        columns.sort()
        ends = []
        for column in columns:
            if ends and ends[-1] == column:
                ends.pop()
            else:
                ends.append(column)
        runs += [(first, row, end - first) for first, end in zip(ends[::2], ends[1::2])]
    return runs


def selection_runs(twins, width, height):
    """What the outline's mask of that size is for a host: runs as fractions. None for an outline that is too short."""
    if len(twins) < MASK_POINTS:
        return None
    points = [(truncate(single(single(width) * twin.x)), truncate(single(single(height) * twin.y))) for twin in twins]
    return [(single(quotient(single(first), single(width))), single(quotient(single(row), single(height))),
             single(quotient(single(length), single(width)))) for first, row, length in mask_runs(points, width, height)]
