# SPDX-License-Identifier: MIT
"""A video preview: one overlay object, the clip's time line, the place of the picture on the display, and the mouse."""
import contextlib

from _Orvanel import (ECS_DELETE, ECS_DELETE_LAST_POINT, ECS_MOUSE_DOWN, ECS_MOUSE_MOVE, ECS_MOUSE_UP)

from . import hostkit, outline
from .errors import HostError
from .events import EventLog
from .history import EditHistory
from .orvanel import Orvanel

# A drag is reported in this many moves, as a slow hand would make them.
_MOVES_OF_A_DRAG = 8


class Preview(object):
    """Edits a selection over a clip. Positions are pixels of the display; frames are counted from 0."""

    def __init__(self, clock):
        self.clock = clock
        self.syncer = hostkit.VideoSyncer(clock)
        self.window = hostkit.Window()
        self.events = EventLog()
        self.overlay = Orvanel()
        self.overlay.SetCallbackFunc(self.events)
        # Where the clip lies on the time line, and which part of it plays there: all of it, from 0.
        self.overlay.SetVideoInfo(0, clock.end(), 0, clock.end())
        self.history = EditHistory(self.overlay)
        self.frame = 0
        self.mouse_events = 0
        self.display = self.rect = None

    def close(self):
        """Stops the worker; events arrive no more afterwards. A renderer that still asks is told nothing new."""
        self.overlay.VideoTextureSyncerClosed()
        self.overlay.Uninitialize()

    def attach(self, renderer):
        """Lets a renderer on this preview's clock and syncer show the overlay, at the display's size of now."""
        if not self.overlay.Create(self.window, renderer, self.syncer):
            raise HostError('the renderer cannot make an overlay of %dx%d pixels' % self.display)
        renderer.setOverlay(self.overlay.GetAllocator())

    # --- Place and time -----------------------------------------------------------------------------------------

    def place(self, display, rect=None):
        """Sets the display's size and where the video picture lies on it: (left, top, width, height), or all of it."""
        self.display = display
        self.rect = rect or (0, 0) + display
        self.overlay.SetVideoCoordinate(*(self.display + self.rect))

    def zoom(self, factor, center):
        """Enlarges the picture and brings `center` (fractions of the picture) to the middle of the display."""
        width, height = (int(round(side * factor)) for side in self.display)
        left = int(round(self.display[0] / 2.0 - center[0] * width))
        top = int(round(self.display[1] / 2.0 - center[1] * height))
        self.place(self.display, (left, top, width, height))

    def to_pixels(self, x, y):
        """Display pixel of a place in fractions of the video picture."""
        left, top, width, height = self.rect
        return int(round(left + x * width)), int(round(top + y * height))

    def seek(self, frame):
        """Goes to a frame and returns the overlay's buffer for it."""
        self.frame = frame
        return self._prepare()

    def _prepare(self):
        time = self.clock.startOf(self.frame)
        self.syncer.setVideoTime(time)
        return self.overlay.PrepareKeyframe(time)

    def keyframes(self):
        """Frame numbers of the keyframes, ascending."""
        return [self.clock.frameAt(duration) for duration in self.overlay.GetKeyFrameDurationList()]

    def shows_mask(self):
        """Whether the frame last prepared has an outline that makes a mask. A selection may have no keyframe at all."""
        return self.overlay.IsMask() and self.overlay.IsNeedHandleMouseEvent() and bool(self.overlay.GetCurrentPoints())

    def points(self):
        return outline.unpack(self.overlay.GetCurrentPoints())

    # --- Mouse and keys -----------------------------------------------------------------------------------------

    @contextlib.contextmanager
    def gesture(self):
        """What happens inside is one step to undo."""
        yield
        self.history.record()

    def _send(self, state, position):
        self.mouse_events += 1
        self.overlay.Interactive(state, *position)

    def hover(self, position):
        self._send(ECS_MOUSE_MOVE, position)

    def press(self, position, shift=False):
        self.overlay.SetShiftPressed(shift)
        self._send(ECS_MOUSE_DOWN, position)

    def drag(self, start, end):
        """Moves the pressed mouse in a straight line."""
        for step in range(1, _MOVES_OF_A_DRAG + 1):
            share = float(step) / _MOVES_OF_A_DRAG
            self._send(ECS_MOUSE_MOVE, tuple(int(round(a + (b - a) * share)) for a, b in zip(start, end)))

    def release(self, position):
        self._send(ECS_MOUSE_UP, position)
        self.overlay.SetShiftPressed(False)

    def click(self, position, shift=False):
        with self.gesture():
            self.hover(position)
            self.press(position, shift)
            self.release(position)

    def delete(self):
        with self.gesture():
            self.overlay.Interactive(ECS_DELETE)

    def delete_last(self):
        with self.gesture():
            left = len(self.points())
            self.overlay.Interactive(ECS_DELETE_LAST_POINT)
            if left == 1:
                # The module says that the outline is gone, and leaves clearing it to the host.
                self.overlay.Interactive(ECS_DELETE)

    def store_keyframe(self):
        """Stores the outline that is shown as the keyframe of this frame."""
        with self.gesture():
            self.overlay.Convert2Mask(False)

    def undo(self):
        return self.history.undo() and self._shown_again()

    def redo(self):
        return self.history.redo() and self._shown_again()

    def _shown_again(self):
        self._prepare()
        return True

    # --- Saved state --------------------------------------------------------------------------------------------

    def load(self, setting):
        """Replaces the selection by a device setting; nothing is selected or hovered afterwards."""
        with self.gesture():
            self.overlay.SetDevSetting(setting)
            self._prepare()
