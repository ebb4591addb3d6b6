# SPDX-License-Identifier: MIT
"""A mask out of the picture: what has the colour of a place, near an outline that somebody drew.

The module fits outlines to masks that the host supplies; this is one way for a host to come by one. It works on an
enlarged picture, because the border of a mask is two of its pixels wide, and what is drawn around may be only ten pixels
of the clip across.
"""
import collections

from . import hostkit
from .progress import progress

# The enlarged picture gets no wider than this.
_WIDEST = 4096
_LARGEST_ENLARGEMENT = 4
# A colour is the mean over the pixels this far around its place, in enlarged pixels.
_REACH = 2

# A fit that was carried out: the enlarged picture, its size, three run lists (key, drawn, fitted), and how much of the
# key the outline covered before and after (intersection over union).
Fit = collections.namedtuple('Fit', 'frame picture size key drawn fitted before after')


class ClipPictures(object):
    """The frames of a clip, one at a time, at the clip's own size."""

    def __init__(self, path):
        self._path = path

    def frame(self, number):
        reader = hostkit.VideoReader(self._path)
        with progress('looking for frame %d' % number, number) as advance:
            for _ in range(number):
                reader.skip()
                advance()
        image = hostkit.Image(reader.width(), reader.height())
        return image if reader.read(image) else None


def enlarged(picture):
    """The picture as the key is taken from, and how many times as large it is."""
    times = max(1, min(_LARGEST_ENLARGEMENT, _WIDEST // max(picture.width(), 1)))
    whole = hostkit.PixelRect()
    whole.width, whole.height = picture.width(), picture.height()
    return hostkit.scaled(picture, whole, picture.width() * times, picture.height() * times), times


def pixels_of(runs, size):
    """What runs cover: the set of row * width + column."""
    width, height = size
    pixels = set()
    for x, y, length in runs:
        start = int(round(y * height)) * width + int(round(x * width))
        pixels.update(range(start, start + int(round(length * width))))
    return pixels


def runs_of(pixels, size):
    """The runs of a set of pixels, as AdjustPoints takes them."""
    width, height = size
    runs = []
    for pixel in sorted(pixels):
        row, column = divmod(pixel, width)
        if runs and runs[-1][0] == row and runs[-1][1] + runs[-1][2] == column:
            runs[-1][2] += 1
        else:
            runs.append([row, column, 1])
    return [(column / float(width), row / float(height), length / float(width)) for row, column, length in runs]


def overlap(a, b):
    """Intersection over union."""
    return len(a & b) / float(len(a | b)) if a or b else 1.0


def derive(picture, drawn, place, tolerance, margin):
    """The key's pixels: at most `margin` pixels outside of the drawn runs, no channel further than `tolerance` from the
    colour at `place` (a pixel), of one piece and without holes."""
    size = picture.width(), picture.height()
    data = bytearray(picture.bytes())
    color = _color_around(data, size, place)

    def fits(pixel):
        return all(abs(data[4 * pixel + channel] - color[channel]) <= tolerance for channel in range(3))
    matching = set(pixel for pixel in _surroundings(drawn, size, margin) if fits(pixel))
    return _without_holes(_largest_piece(matching, size[0]), size)


def _color_around(data, size, place):
    width, height = size
    samples = [(min(max(y, 0), height - 1) * width + min(max(x, 0), width - 1)) * 4
               for y in range(place[1] - _REACH, place[1] + _REACH + 1)
               for x in range(place[0] - _REACH, place[0] + _REACH + 1)]
    return [sum(data[at + channel] for at in samples) / float(len(samples)) for channel in range(3)]


def _surroundings(runs, size, margin):
    width, height = size
    pixels = set()
    for x, y, length in runs:
        row, column = int(round(y * height)), int(round(x * width))
        first, last = max(column - margin, 0), min(column + int(round(length * width)) + margin, width)
        for line in range(max(row - margin, 0), min(row + margin + 1, height)):
            pixels.update(range(line * width + first, line * width + last))
    return pixels


def _pieces(pixels, width):
    """Sets of pixels that hang together by their edges. Pixels at the sides of the picture have neighbours in the rows
    around; what is keyed does not reach across."""
    rest = set(pixels)
    while rest:
        piece = set()
        waiting = [rest.pop()]
        while waiting:
            pixel = waiting.pop()
            piece.add(pixel)
            for neighbour in (pixel - 1, pixel + 1, pixel - width, pixel + width):
                if neighbour in rest:
                    rest.remove(neighbour)
                    waiting.append(neighbour)
        yield piece


def _largest_piece(pixels, width):
    pieces = sorted(_pieces(pixels, width), key=len)
    return pieces[-1] if pieces else set()


def _without_holes(pixels, size):
    """Holes are the pieces of what is left over in the shape's rectangle that do not reach its edge."""
    if not pixels:
        return pixels
    width = size[0]
    rows = [pixel // width for pixel in pixels]
    columns = [pixel % width for pixel in pixels]
    top, bottom, left, right = min(rows), max(rows), min(columns), max(columns)
    box = set(row * width + column for row in range(top, bottom + 1) for column in range(left, right + 1))

    def at_edge(pixel):
        return pixel // width in (top, bottom) or pixel % width in (left, right)
    holes = (piece for piece in _pieces(box - pixels, width) if not any(at_edge(pixel) for pixel in piece))
    return pixels.union(*holes)


def add_to_sheet(sheet, fit):
    """Three cells of a contact sheet: the key, the outline as it was drawn, the outline as it was fitted."""
    mask = hostkit.Mask(*fit.size)
    for runs, label in ((fit.key, 'colour key'), (fit.drawn, 'drawn: overlap %.0f%%' % (100 * fit.before)),
                        (fit.fitted, 'fitted: overlap %.0f%%' % (100 * fit.after))):
        mask.setRuns(runs)
        sheet.add(fit.picture, fit.picture, mask, 'frame %d  %s' % (fit.frame, label), True)
