# SPDX-License-Identifier: MIT
"""An editor for tests: the entries as methods of one object, the events it raised, and short words for gestures."""
from __future__ import absolute_import

import ctypes
import os
import struct
import subprocess
import sys
import tempfile
import thread
import time
import unittest

import _Orvanel as entries

try:
    import _debug_output
except ImportError:
    _debug_output = None
try:
    from orvanel_host import hostkit
except ImportError:
    hostkit = None

E_FAIL = 0x80004005

ADD, REMOVE, CREATE, UPDATE, MASK_REMOVE, POINT_UPDATE = range(6)

_POINT = struct.Struct("<IffIII")

needs_records = unittest.skipIf(hostkit is None, "_hostkit, which makes the record objects, is not built")


def code(result):
    """A result code as the unsigned number that texts write."""
    return result & 0xFFFFFFFF


def points_of(data):
    """A byte string of points as (type, x, y, curveIn, curveOut, handleShown) tuples."""
    return [_POINT.unpack_from(data, at) for at in range(0, len(data or b""), _POINT.size)]


def bytes_of(points):
    return b"".join([_POINT.pack(*point) for point in points])


class Editor(object):
    """Entries are called by their short name: editor.AddPoint(1, 2) is Orvanel_AddPoint(object, 1, 2)."""

    def __init__(self):
        self._thread = thread.get_ident()
        self.events = []
        self.reports = 0
        self.handle = entries.new_Orvanel()
        self.SetCallbackFunc(self._on_event)

    def _on_event(self, event):
        if thread.get_ident() == self._thread:
            self.events.append(event)
        else:
            self.reports += 1

    def __getattr__(self, name):
        entry = getattr(entries, "Orvanel_" + name)
        return lambda *arguments: entry(self.handle, *arguments)

    def destroy(self):
        if self.handle is not None:
            self.SetCallbackFunc(None)
            entries.delete_Orvanel(self.handle)
            self.handle = None

    # --- gestures ---

    def move(self, x, y):
        return self.Interactive(entries.ECS_MOUSE_MOVE, x, y)

    def press(self, x, y):
        return self.Interactive(entries.ECS_MOUSE_DOWN, x, y)

    def release(self):
        return self.Interactive(entries.ECS_MOUSE_UP)

    def click(self, x, y):
        self.move(x, y)
        self.press(x, y)
        self.release()

    def draw(self, anchors, closed=True):
        """Draws an outline with the mouse, then forgets the events of that."""
        for x, y in anchors:
            self.press(x, y)
            self.release()
        if closed:
            self.press(*anchors[0])
            self.release()
        self.events = []

    def drag(self, start, *ways):
        self.move(*start)
        self.press(*start)
        for way in ways:
            self.move(*way)
        self.release()

    # --- what there is ---

    def points(self):
        return points_of(self.GetCurrentPoints())

    def places(self):
        """The points in pixels. Exact when the video rectangle is as large as the test case's."""
        left, top, width, height = self.rect
        return [(int(round(x * width)) + left, int(round(y * height)) + top) for _, x, y, _, _, _ in self.points()]

    def anchors(self):
        return self.places()[::3]

    def place_video(self, *six):
        self.rect = six[2:]
        return self.SetVideoCoordinate(*six)

    def surface(self, duration=None):
        """The overlay's bytes; with a duration, after that time was prepared."""
        buffer = self.PrepareKeyframe(self.time if duration is None else duration)
        return ctypes.string_at(int(buffer), self.GetBufferLen())

    def await_reports(self, count):
        """Waits for that many reports of the worker; true when they came."""
        limit = time.time() + 20
        while self.reports < count and time.time() < limit:
            time.sleep(0.0005)
        return self.reports >= count


class EditorCase(unittest.TestCase):
    """A test case with an editor of 400 x 300 pixels whose picture fills the display."""

    def setUp(self):
        self.editor = Editor()
        self.addCleanup(self.editor.destroy)
        self.editor.place_video(400, 300, 0, 0, 400, 300)
        self.editor.SetVideoInfo(0, 0, 0, 1000)
        self.editor.ResetDirtyFlag()

    TRIANGLE = [(100, 100), (200, 100), (150, 200)]
    SQUARE = [(100, 100), (200, 100), (200, 200), (100, 200)]


def logged(script):
    """The log lines, without prefix and line ends, of a script that runs in a process of its own with the log on."""
    run = _with_settings_file if _debug_output is None else _with_registry
    prefix = "[Orvanel] "
    return [line[len(prefix):] for line in run(script).splitlines() if line.startswith(prefix)]


def _with_settings_file(script):
    with tempfile.NamedTemporaryFile(suffix=".conf") as settings:
        settings.write("DumpMsg = 1\n")
        settings.flush()
        return _error_output(script, dict(os.environ, ORVANEL_LOG_SETTINGS=settings.name))


def _with_registry(script):
    return _error_output("""
import sys, _debug_output
_debug_output.set_switches(1, 0)
_debug_output.start()
try:
%s
finally:
    sys.stderr.write("".join(_debug_output.stop()))
""" % "".join("    %s\n" % line for line in script.splitlines()), None)


def _error_output(script, environment):
    process = subprocess.Popen([sys.executable, "-c", script], env=environment, stderr=subprocess.PIPE, universal_newlines=True)
    text = process.communicate()[1]
    if process.returncode:
        raise AssertionError("the script failed: %s" % text)
    return text
