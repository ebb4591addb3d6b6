# SPDX-License-Identifier: MIT
"""How the work of an editor grows with its anchors and keyframes, and how long one call keeps the interpreter lock.

Every figure is the best of several batches, so that a busy machine shows less; Python's own cost of a call is in it. The exponent is the slope of the time's
logarithm over the logarithm of the size, for the larger half of the sizes: 1 is linear. Accepts --benchmark_out and
--benchmark_out_format as the other benches do, --quick, and --document FILE, which writes the tables as a page."""

import argparse
import json
import math
import platform
import struct
import subprocess
import sys
import time

import _Orvanel

DISPLAY = (7680, 4320)
ANCHORS = (24, 100, 400, 1000, 2000)
KEYFRAMES = (1, 10, 100, 1000, 5000, 20000)
SPACING = 40
#: Entries that let the interpreter lock go while they work.
RELEASING = ('Interactive', 'ResetBuffer', 'SetVideoCoordinate')
HOLD_LIMIT = 0.010


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
        self.turn = 0

    def call(self, name, *arguments):
        return getattr(_Orvanel, 'Orvanel_' + name)(self.this, *arguments)

    def anchor(self):
        _, x, y, _, _, _ = struct.unpack_from('<IffIII', self.call('GetCurrentPoints'))
        return int(x * DISPLAY[0] + 0.5), int(y * DISPLAY[1] + 0.5)

    def close(self):
        self.call('Uninitialize')
        _Orvanel.delete_Orvanel(self.this)


def pointer_move(editor):
    angle = editor.turn * 0.31
    editor.call('Interactive', _Orvanel.ECS_MOUSE_MOVE, int(3840 + 2500 * math.cos(angle)), int(2160 + 1500 * math.sin(angle)))


def drag(editor):
    if editor.turn == 0:
        x, y = editor.grabbed = editor.anchor()
        editor.call('Interactive', _Orvanel.ECS_MOUSE_MOVE, x, y)
        editor.call('Interactive', _Orvanel.ECS_MOUSE_DOWN, x, y)
    x, y = editor.grabbed
    editor.call('Interactive', _Orvanel.ECS_MOUSE_MOVE, x - editor.turn % 50, y + editor.turn % 30)


def prepare_between(editor):
    last = len(editor.setting[3]) - 1
    editor.call('PrepareKeyframe', SPACING * last // 2 + 1 + editor.turn % (SPACING - 2))


def save(editor):
    editor.call('GetCurrentDevSetting')


def load(editor):
    editor.call('SetDevSetting', editor.setting)


def convert(editor):
    editor.call('Convert2SelectionLineUS', (1920, 1080))


def convert_8k(editor):
    editor.call('Convert2SelectionLineUS', DISPLAY)


def convert_all(editor):
    editor.call('Convert2Mask', True)


def fit(editor):
    if editor.turn == 0:
        editor.runs = editor.call('Convert2SelectionLineUS', (1920, 1080))
    editor.call('AdjustPoints', (0.0, 0.0), editor.runs, (1920, 1080))


OPERATIONS = (('pointer move', pointer_move), ('drag step', drag), ('prepare', prepare_between), ('save', save), ('load', load),
              ('convert', convert))
#: What one call of an entry does at its largest.
HOLDS = (('GetCurrentDevSetting', save), ('SetDevSetting', load), ('Convert2SelectionLineUS', convert),
         ('Convert2SelectionLineUS, 8K', convert_8k), ('Convert2Mask(True)', convert_all), ('PrepareKeyframe', prepare_between),
         ('AdjustPoints', fit), ('GetCurrentPoints', lambda editor: editor.call('GetCurrentPoints')),
         ('GetKeyFrameDurationList', lambda editor: editor.call('GetKeyFrameDurationList')),
         ('CacheCurrentKeyframe', lambda editor: editor.call('CacheCurrentKeyframe')),
         ('MoveAllPoints', lambda editor: editor.call('MoveAllPoints', 1 - editor.turn % 3, 0)),
         ('ReDraw', lambda editor: editor.call('ReDraw')))


def best_time(editor, operation, seconds):
    """Seconds of one call: the best of at least three batches, for about that long. A batch takes a millisecond or so, since
    the clock counts microseconds."""
    editor.turn = 0
    operation(editor)
    batch, best, end = 1, float('inf'), time.time() + seconds
    turns = 0
    while turns < 3 or time.time() < end:
        start = time.time()
        for _ in range(batch):
            editor.turn += 1
            operation(editor)
        spent = time.time() - start
        if spent < 0.001 and batch < 4096:
            batch *= 2
            continue
        turns += 1
        best = min(best, spent / batch)
    editor.call('Interactive', _Orvanel.ECS_MOUSE_UP)
    return best


def exponent(sizes, times):
    """Least squares through the logarithms of the larger half."""
    half = len(sizes) // 2
    points = [(math.log(size), math.log(max(value, 1e-7))) for size, value in zip(sizes, times)][half:]
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return sum((x - mean_x) * (y - mean_y) for x, y in points) / sum((x - mean_x) ** 2 for x, _ in points)


def readable(seconds):
    return '%.1f us' % (1e6 * seconds) if seconds < 1e-3 else '%.2f ms' % (1e3 * seconds)


def growth(sizes, make, seconds):
    """Rows of (operation, times, exponent)."""
    times = dict((name, []) for name, _ in OPERATIONS)
    for size in sizes:
        for name, operation in OPERATIONS:
            editor = make(size)
            times[name].append(best_time(editor, operation, seconds))
            editor.close()
    return [(name, times[name], exponent(sizes, times[name])) for name, _ in OPERATIONS]


def holds(anchors, keyframes, seconds):
    """Seconds that one call takes, for entries that keep the interpreter lock while they work."""
    rows = []
    for name, operation in HOLDS:
        editor = Editor(anchors, keyframes)
        rows.append((name, best_time(editor, operation, seconds)))
        editor.close()
    return sorted(rows, key=lambda row: -row[1])


def table(head, rows):
    return ['| ' + ' | '.join(head) + ' |', '|' + '---|' * len(head)] + ['| ' + ' | '.join(row) + ' |' for row in rows]


def growth_table(what, sizes, rows):
    return table([what] + [str(size) for size in sizes] + ['exponent'],
                 [[name] + [readable(value) for value in times] + ['%.2f' % slope] for name, times, slope in rows])


def machine():
    try:
        model = [line.split(':', 1)[1].strip() for line in open('/proc/cpuinfo') if line.startswith('model name')]
    except IOError:
        model = []
    return '%s, %d processors, %s' % (model[0] if model else platform.processor(), len(model), platform.system())


def commit():
    try:
        return subprocess.check_output(['git', 'rev-parse', '--short', 'HEAD']).strip()
    except (OSError, subprocess.CalledProcessError):
        return 'no repository'


def page(by_anchors, by_keyframes, kept, arguments):
    lines = ['# Performance', '',
             'Written by `./bench growth --document docs/performance.md`; figures are for comparison among themselves.', '',
             '- machine: ' + machine(), '- date: ' + time.strftime('%Y-%m-%d'), '- commit: ' + commit(), '',
             '## Growth', '',
             'One call each from Python, best of several, on an 8K display. The exponent is fitted to the larger half of the sizes: 1 is',
             'linear, and nothing should be worse than n log n but what an outline that crosses itself forces.', '',
             'With the number of anchors, one keyframe:', '']
    lines += growth_table('anchors', ANCHORS, by_anchors)
    lines += ['', 'With the number of keyframes, 24 anchors:', '']
    lines += growth_table('keyframes', KEYFRAMES, by_keyframes)
    lines += ['', 'Saving and loading copy 72 bytes an anchor of every keyframe: from thousands of keyframes on that is more than the',
              "processor's caches hold, and fresh memory from the system. Preparing a time between two keyframes draws the overlay",
              'anew, and the tint of a mask goes over every pixel of it: that is the picture, not the keyframes.']
    lines += ['', '## The interpreter lock', '',
              'How long one call takes, with %d anchors and %d keyframes on an 8K display. %s let the' % (
                  arguments + (', '.join('`%s`' % name for name in RELEASING),)),
              'lock go, and `GetCurrentDevSetting` and `SetDevSetting` do so while they copy that much: others wait for a part of',
              'their time only. The rest keep it to the end.', '']
    lines += table(['entry', 'one call', ''], [['`%s`' % name, readable(value), 'above 10 ms' if value > HOLD_LIMIT else '']
                                              for name, value in kept])
    return '\n'.join(lines) + '\n'


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--benchmark_out')
    parser.add_argument('--benchmark_out_format')
    parser.add_argument('--quick', action='store_true')
    parser.add_argument('--document')
    options = parser.parse_args()
    seconds = 0.01 if options.quick else 0.2
    large = (100, 200) if options.quick else (1000, 10000)
    by_anchors = growth(ANCHORS, lambda anchors: Editor(anchors, 1), seconds)
    by_keyframes = growth(KEYFRAMES, lambda keyframes: Editor(24, keyframes), seconds)
    kept = holds(large[0], large[1], seconds)
    text = page(by_anchors, by_keyframes, kept, large)
    sys.stdout.write(text)
    if options.document:
        with open(options.document, 'w') as document:
            document.write(text)
    if options.benchmark_out:
        figures = [{'name': '%s/%d %s' % (name, size, what), 'real_time': 1e9 * value, 'time_unit': 'ns'}
                   for what, sizes, rows in (('anchors', ANCHORS, by_anchors), ('keyframes', KEYFRAMES, by_keyframes))
                   for name, times, _ in rows for size, value in zip(sizes, times)]
        figures += [{'name': 'hold/' + name, 'real_time': 1e9 * value, 'time_unit': 'ns'} for name, value in kept]
        with open(options.benchmark_out, 'w') as out:
            json.dump({'benchmarks': figures}, out, indent=1)


if __name__ == '__main__':
    main()
