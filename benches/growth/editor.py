# SPDX-License-Identifier: MIT
"""An editor that holds as many anchors and keyframes as a bench asks for, and what is done to it."""

import math
import os
import struct
import time

import _Orvanel

DISPLAY = (7680, 4320)
SPACING = 40

#: The finest clock of the system.
now = time.clock if os.name == 'nt' else time.time


def point_bytes(anchors, phase=0.0):
    """A round outline of bent segments, three points an anchor, as fractions of the display."""
    parts = []
    for at in range(3 * anchors):
        angle = 2 * math.pi * at / (3 * anchors)
        reach = 1 + 0.2 * math.sin(9 * angle + phase)
        parts.append(struct.pack('<IffIII', 0 if at % 3 == 0 else 1, 0.5 + 0.35 * reach * math.cos(angle),
                                 0.5 + 0.35 * reach * math.sin(angle), 1, 1, 0))
    return b''.join(parts)


class Editor(object):

    def __init__(self, anchors, keyframes):
        self.this = _Orvanel.new_Orvanel()
        self.call('SetVideoCoordinate', DISPLAY[0], DISPLAY[1], 0, 0, DISPLAY[0], DISPLAY[1])
        self.call('SetVideoInfo', 0, 0, 0, 1 << 40)
        phases = [point_bytes(anchors, phase) for phase in (0.0, 0.7, 1.4)]
        self.setting = {0: True, 1: False, 6: [], 8: [], 9: False,
                        3: [{4: SPACING * at, 5: phases[at % 3]} for at in range(keyframes)]}
        self.call('SetDevSetting', self.setting)
        self.call('PrepareKeyframe', SPACING * (keyframes // 2))
        assert len(self.call('GetCurrentPoints')) == 72 * anchors
        assert len(self.call('GetKeyFrameDurationList')) == keyframes
        #: Counts the calls of an operation; 0 at the first.
        self.turn = 0

    def call(self, name, *arguments):
        return getattr(_Orvanel, 'Orvanel_' + name)(self.this, *arguments)

    def anchor(self):
        _, x, y, _, _, _ = struct.unpack_from('<IffIII', self.call('GetCurrentPoints'))
        return int(x * DISPLAY[0] + 0.5), int(y * DISPLAY[1] + 0.5)

    def point_strings(self):
        """The points of every keyframe, each in memory of its own."""
        return [keyframe[5] for keyframe in self.call('GetCurrentDevSetting')[3]]

    def close(self):
        self.call('Uninitialize')
        _Orvanel.delete_Orvanel(self.this)


# Each returns what the call returned: what is dropped is dropped where the bench likes.


def pointer_move(editor):
    angle = editor.turn * 0.31
    return editor.call('Interactive', _Orvanel.ECS_MOUSE_MOVE,
                       int(3840 + 2500 * math.cos(angle)), int(2160 + 1500 * math.sin(angle)))


def drag(editor):
    if editor.turn == 0:
        x, y = editor.grabbed = editor.anchor()
        editor.call('Interactive', _Orvanel.ECS_MOUSE_MOVE, x, y)
        editor.call('Interactive', _Orvanel.ECS_MOUSE_DOWN, x, y)
    x, y = editor.grabbed
    return editor.call('Interactive', _Orvanel.ECS_MOUSE_MOVE, x - editor.turn % 50, y + editor.turn % 30)


def prepare_between(editor):
    last = len(editor.setting[3]) - 1
    return editor.call('PrepareKeyframe', SPACING * last // 2 + 1 + editor.turn % (SPACING - 2))


def prepare_past_the_end(editor):
    editor.call('SetVideoInfo', 0, 0, 0, 0)
    return editor.call('PrepareKeyframe', 1)


def save(editor):
    return editor.call('GetCurrentDevSetting')


def load(editor):
    return editor.call('SetDevSetting', editor.setting)


def convert(editor):
    return editor.call('Convert2SelectionLineUS', (1920, 1080))


def convert_8k(editor):
    return editor.call('Convert2SelectionLineUS', DISPLAY)


def convert_all(editor):
    return editor.call('Convert2Mask', True)


def fit(editor):
    if editor.turn == 0:
        editor.runs = editor.call('Convert2SelectionLineUS', (1920, 1080))
    return editor.call('AdjustPoints', (0.0, 0.0), editor.runs, (1920, 1080))


def fresh_copies(editor):
    """What saving cannot do without: every keyframe's points in a string of its own."""
    if editor.turn == 0:
        editor.strings = editor.point_strings()
    return [str(buffer(points)) for points in editor.strings]


def fresh_pairs(editor):
    """The same for loading, which makes the pixels' points beside the fractions; what it replaces goes afterwards."""
    editor.loaded = [(str(buffer(keyframe[5])), str(buffer(keyframe[5]))) for keyframe in editor.setting[3]]


#: For entries without arguments.
def entry(name):
    return lambda editor: editor.call(name)
