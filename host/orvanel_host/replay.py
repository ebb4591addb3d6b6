# SPDX-License-Identifier: MIT
"""Replays a recorded edit as mouse events.

A recording says what somebody did and where. Each gesture checks that it met what it was recorded on: a press that lands
beside a handle would otherwise draw something else without a word.
"""
import ctypes
import math
import os

from . import colorkey, editfile, hostkit, outline, selection
from .errors import EditError
from .progress import progress

# A dragged point lands on the pointer; what is compared has been to fractions and back.
_LANDING_TOLERANCE = 1

# Zooming out by this much more than a place needs keeps it off the display's edge.
_MARGIN_OF_ZOOM = 0.9
# A nudge of this many display pixels takes every outline to the border of the picture, where the module stops it.
_FARTHEST_NUDGE = 1 << 24

# A fit chooses among equally near places with the C run time's generator: seeded, an edit replays the same every time.
_RUN_TIME = ctypes.CDLL('msvcrt' if os.name == 'nt' else None)


class Replay(object):
    """Carries out the gestures of an edit in a preview."""

    def __init__(self, edit, preview, pictures=None):
        """`pictures` supplies the frames that a fit takes its colours from."""
        self._edit = edit
        self._preview = preview
        self._overlay = preview.overlay
        self._pictures = pictures
        self.fits = []

    def run(self):
        """All gestures in order; EditError names the first that does not work."""
        preview = self._preview
        preview.place(self._edit.display)
        self._overlay.SetFeathers([[0, self._edit.feather.pixels, self._edit.feather.passes]])
        # The edit begins here: there is nothing before it to go back to.
        preview.history.forget()
        preview.seek(0)
        with progress('replaying', len(self._edit.gestures), 'gestures') as advance:
            for gesture in self._edit.gestures:
                self.step(gesture)
                advance()

    def step(self, gesture):
        try:
            getattr(self, 'do_' + gesture.kind.replace('-', '_'))(**_arguments(gesture.fields))
        except EditError as error:
            raise EditError("edit '%s': gestures[%d] (%s): %s" % (self._edit.name, gesture.index, gesture.kind, error))

    # --- Places --------------------------------------------------------------------------------------------------

    def _pixels(self, place):
        """Display pixel of a place."""
        if place.point is not None:
            x, y = self._scaled(place.point, self._preview.to_pixels)
        else:
            point = self._point(place)
            x, y = self._preview.to_pixels(point.x, point.y)
            dx, dy = self._offset(place.by)
            x, y = x + dx, y + dy
        width, height = self._preview.display
        if not (0 <= x < width and 0 <= y < height):
            raise EditError('display pixel (%d, %d) lies outside of the display of %dx%d%s' % (
                x, y, width, height, self._way_to_reach(place, x, y)))
        return x, y

    def _way_to_reach(self, place, x, y):
        """What brings a place onto the display: with its right and lower edge the picture ends one pixel outside."""
        if place.point is not None and self._edit.coordinates == 'display':
            return ''
        left, top, width, height = self._preview.rect
        farthest = max(abs((x - left) / float(width) - 0.5), abs((y - top) / float(height) - 0.5))
        factor = math.floor(min(0.5 / farthest, 1) * _MARGIN_OF_ZOOM * 100) / 100
        return ': zoom out first, with {"do": "zoom", "factor": %g} say' % factor if factor >= editfile.SMALLEST_ZOOM else (
            ', and is too far from the picture to be reached')

    def _scaled(self, pair, from_video):
        if self._edit.coordinates == 'video':
            return from_video(*pair)
        return tuple(int(round(value)) for value in pair)

    def _offset(self, pair):
        width, height = self._preview.rect[2:]
        return self._scaled(pair, lambda x, y: (int(round(x * width)), int(round(y * height))))

    def _index(self, place):
        """Place of a named anchor or handle in the chain."""
        points = self._preview.points()
        anchors = [i for i, point in enumerate(points) if point.type == outline.ANCHOR]
        if place.anchor >= len(anchors):
            raise EditError('there is no anchor %d: the outline has %d' % (place.anchor, len(anchors)))
        step = {None: 0, 'in': -1, 'out': 1}[place.handle]
        return (anchors[place.anchor] + step) % len(points)

    def _point(self, place):
        return self._preview.points()[self._index(place)]

    # --- Checks --------------------------------------------------------------------------------------------------

    def _hover_point(self, position):
        self._preview.hover(position)
        if not self._overlay.IsHoverControlPoint():
            raise EditError('no point lies at display pixel (%d, %d)' % position)

    def _hover_nothing(self, position):
        self._preview.hover(position)
        if self._overlay.IsHoverControlPoint() or self._overlay.IsHoverPointInLine():
            raise EditError('display pixel (%d, %d) is not empty' % position)

    def _require_landing(self, place, index, target):
        """The point that the recording names has to be where the mouse was released."""
        if place.anchor is None:
            return
        point = self._preview.points()[index]
        landed = self._preview.to_pixels(point.x, point.y)
        if max(abs(a - b) for a, b in zip(landed, target)) > _LANDING_TOLERANCE:
            raise EditError('another point was taken: anchor %d%s is at (%d, %d) instead of (%d, %d)' % (
                (place.anchor, ' ' + place.handle if place.handle else '') + landed + target))

    # --- Gestures: one method a kind -----------------------------------------------------------------------------

    def do_seek(self, moment):
        clock = self._preview.clock
        if moment.frame is not None:
            frame = moment.frame
        elif moment.seconds is not None:
            frame = clock.frameAt(int(round(moment.seconds * hostkit.FrameClock.kUnitsPerSecond)))
        else:
            frame = int(round(moment.fraction * (clock.frameCount() - 1)))
        if frame >= clock.frameCount():
            raise EditError("frame %d lies beyond the clip's last frame %d" % (frame, clock.frameCount() - 1))
        self._preview.seek(frame)

    def do_zoom(self, factor, center):
        self._preview.zoom(factor, center)

    def do_draw(self, points, shift):
        for place in points:
            before = len(self._preview.points())
            self._preview.click(self._pixels(place), shift)
            if len(self._preview.points()) <= before:
                raise EditError('the outline is closed: nothing can be drawn any more')

    def do_close(self):
        points = self._preview.points()
        if not points or self._overlay.IsMask():
            raise EditError('there is no open outline')
        self._preview.click(self._pixels(editfile.Place(None, 0, None, (0.0, 0.0))))
        if not self._overlay.IsMask():
            raise EditError('an outline needs three anchors before it can be closed')

    def do_pick(self, at):
        position = self._pixels(at)
        self._hover_point(position)
        self._preview.click(position)

    def do_drag(self, start, to, shift):
        start_position, end_position = self._pixels(start), self._pixels(to)
        index = None if start.anchor is None else self._index(start)
        with self._preview.gesture():
            self._hover_point(start_position)
            self._preview.press(start_position, shift)
            self._preview.drag(start_position, end_position)
            self._preview.release(end_position)
        self._require_landing(start, index, end_position)

    def do_insert(self, at, to):
        start, end = self._pixels(at), self._pixels(to or at)
        with self._preview.gesture():
            self._preview.hover(start)
            if not self._overlay.IsHoverPointInLine():
                raise EditError('no segment lies at display pixel (%d, %d)' % start)
            self._preview.press(start)
            if end != start:
                self._preview.drag(start, end)
            self._preview.release(end)

    def do_rubber_band(self, start, to):
        start_position, end_position = self._pixels(start), self._pixels(to)
        self._hover_nothing(start_position)
        self._preview.press(start_position)
        self._preview.drag(start_position, end_position)
        self._preview.release(end_position)
        if not self._overlay.IsAnyPointSelected():
            raise EditError('no anchor lies inside of the rubber band')

    def do_deselect(self, at):
        position = self._pixels(at)
        self._hover_nothing(position)
        self._preview.click(position)

    def do_select_all(self):
        self._overlay.SelectAllPoints()

    def do_nudge(self, by):
        before = self._overlay.GetCurrentDevSetting()
        offset = tuple(max(-_FARTHEST_NUDGE, min(_FARTHEST_NUDGE, value)) for value in self._offset(by))
        with self._preview.gesture():
            self._overlay.MoveAllPoints(*offset)
        if self._overlay.GetCurrentDevSetting() == before:
            raise EditError('there is nothing to nudge' if not self._preview.points() else
                            'a nudge by (%d, %d) display pixels moves nothing' % offset)

    def do_delete(self):
        self._preview.delete()

    def do_delete_last(self):
        self._preview.delete_last()

    def do_keyframe(self):
        if not self._overlay.IsMask():
            raise EditError('an outline has to be closed before it can be a keyframe')
        self._preview.store_keyframe()

    def do_remove_keyframe(self):
        if self._preview.frame not in self._preview.keyframes():
            raise EditError('frame %d is not a keyframe' % self._preview.frame)
        with self._preview.gesture():
            self._overlay.RemoveSpecificKeyFrame(self._preview.clock.startOf(self._preview.frame))

    def do_invert(self, on):
        with self._preview.gesture():
            self._overlay.SetInverse(on)

    def do_fit(self, at, tolerance, margin, seed):
        if not self._preview.shows_mask():
            raise EditError('an outline has to be closed before it can be fitted')
        frame = self._preview.frame
        picture = self._pictures.frame(frame) if self._pictures else None
        if picture is None:
            raise EditError('there is no picture of frame %d to take a colour from' % frame)
        picture, times = colorkey.enlarged(picture)
        size = picture.width(), picture.height()
        drawn = self._overlay.Convert2SelectionLineUS(size)
        left, top, width, height = self._preview.rect
        x, y = self._pixels(at)
        place = int((x - left) * size[0] // width), int((y - top) * size[1] // height)
        key = colorkey.derive(picture, drawn, place, tolerance, margin * times)
        if not key:
            raise EditError('nothing near the outline has that colour')
        runs = colorkey.runs_of(key, size)
        with self._preview.gesture():
            _RUN_TIME.srand(seed)
            self._overlay.AdjustPoints((0.0, 0.0), runs, size)
        fitted = self._overlay.Convert2SelectionLineUS(size)
        before, after = (colorkey.overlap(key, colorkey.pixels_of(other, size)) for other in (drawn, fitted))
        self.fits.append(colorkey.Fit(frame, picture, size, runs, drawn, fitted, before, after))

    def do_hold(self, frame):
        clock = self._preview.clock
        if self._preview.frame not in self._preview.keyframes():
            raise EditError('frame %d is not a keyframe' % self._preview.frame)
        if frame >= clock.frameCount():
            raise EditError("frame %d lies beyond the clip's last frame %d" % (frame, clock.frameCount() - 1))
        setting = self._overlay.GetCurrentDevSetting()
        self._preview.load(selection.with_keyframe_copied(setting, clock.startOf(self._preview.frame), clock.startOf(frame)))

    def do_undo(self):
        if not self._preview.undo():
            raise EditError('there is nothing to undo')

    def do_redo(self):
        if not self._preview.redo():
            raise EditError('there is nothing to redo')


def _arguments(fields):
    """Fields of a gesture as keyword arguments: `from` is a word of the language."""
    return dict(('start' if key == 'from' else key, value) for key, value in fields.items() if key not in ('do', 'note'))
