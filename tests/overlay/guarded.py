# SPDX-License-Identifier: MIT
"""Scripts that may crash or hang, each in an interpreter of its own under a watchdog."""
from __future__ import absolute_import

import subprocess
import sys
import tempfile
import threading
import unittest

# For a busy machine and a sanitizer: what takes longer does not end at all.
_PATIENCE = 150

_SETUP = """
import gc, os, sys, thread, threading, time, weakref
import _Orvanel as o

class Proxy(object):
    __swig_destroy__ = o.delete_Orvanel
o.Orvanel_swigregister(Proxy)

SQUARE = [(100, 100), (200, 100), (200, 200), (100, 200)]

def closed(editor=None):
    '''An editor with a closed outline of four anchors, a mask and one keyframe.'''
    editor = editor or o.new_Orvanel()
    o.Orvanel_SetVideoCoordinate(editor, 400, 300, 0, 0, 400, 300)
    o.Orvanel_SetVideoInfo(editor, 0, 0, 0, 1000)
    o.Orvanel_PrepareKeyframe(editor, 0)
    for x, y in SQUARE + SQUARE[:1]:
        o.Orvanel_Interactive(editor, o.ECS_MOUSE_DOWN, x, y)
        o.Orvanel_Interactive(editor, o.ECS_MOUSE_UP)
    assert o.Orvanel_IsMask(editor)
    return editor

def ends(thread):
    '''Whether a thread ends in good time.'''
    thread.join(60)
    return not thread.is_alive()

def on_a_thread(work):
    worker = threading.Thread(target=work)
    worker.daemon = True
    worker.start()
    return worker
"""


def run(script):
    """What the script wrote, errors included, and its exit status; None as the status of one that hung."""
    with tempfile.TemporaryFile() as written:
        process = subprocess.Popen([sys.executable, "-B", "-c", _SETUP + script], stdout=written, stderr=subprocess.STDOUT)
        hung = []
        watchdog = threading.Timer(_PATIENCE, lambda: hung.append(True) or process.kill())
        watchdog.start()
        status = process.wait()
        watchdog.cancel()
        written.seek(0)
        # The debug interpreter ends with a count of references.
        lines = [line for line in written.read().splitlines() if not line.startswith("[")]
        return "\n".join(lines), None if hung else status


class GuardedCase(unittest.TestCase):

    def survives(self, script, expected="done"):
        written, status = run(script)
        self.assertEqual((written, status), (expected, 0), "%s\nstatus %s\n%s" % (script, status, written))
