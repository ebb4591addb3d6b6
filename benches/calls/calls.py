# SPDX-License-Identifier: MIT
"""Nanoseconds per call from Python: this module's entries against the same methods wrapped by SWIG, on the same object.

SWIG stands there twice, as it comes and with -O, its choice of speed over checks; what an entry has to reach counts against
the first. Each body holds eight calls with different arguments, so that nothing learns them. The sides take turns; a side's
figure is its best turn less the cost of the bare loop. Accepts Google Benchmark's --benchmark_out, --benchmark_filter and
--benchmark_repetitions."""

import argparse
import json
import math
import os
import re
import sys
import time

import _Orvanel
import _swig_calls
import _swig_calls_fast

SIDES = (('own', _Orvanel), ('swig', _swig_calls), ('swig_O', _swig_calls_fast))
CALLS_A_BODY = 8
#: The finest clock of the system.
now = time.clock if os.name == 'nt' else time.time
SECONDS_A_TURN = 0.01


class Subject(object):
    """An entry and eight argument lists after the object. `target`: how many times faster than SWIG it has to be."""

    def __init__(self, name, arguments, target=1.0, most=None):
        self.name, self.arguments, self.target, self.most = name, arguments, target, most


def make_outline():
    """24 anchors on an ellipse, closed and converted, on a 1080p display."""
    made = _Orvanel.new_Orvanel()
    _Orvanel.Orvanel_SetVideoCoordinate(made, 1920, 1080, 0, 0, 1920, 1080)
    anchors = [(int(960 + 700 * math.cos(angle * math.pi / 12)), int(540 + 400 * math.sin(angle * math.pi / 12))) for angle in range(24)]
    for x, y in anchors + anchors[:1]:
        _Orvanel.Orvanel_Interactive(made, _Orvanel.ECS_MOUSE_DOWN, x, y)
        _Orvanel.Orvanel_Interactive(made, _Orvanel.ECS_MOUSE_UP, x, y)
    assert _Orvanel.Orvanel_IsMask(made) and len(_Orvanel.Orvanel_GetCurrentPoints(made)) == 72 * 24
    return made


def make_point(x, y):
    point = _swig_calls.new_MPoint()
    _swig_calls.MPoint_x_set(point, x)
    _swig_calls.MPoint_y_set(point, y)
    return point


def subjects():
    eight = range(CALLS_A_BODY)
    return [Subject('IsDirty', [()] * 8),
            Subject('GetBufferLen', [()] * 8),
            Subject('SetInverse', [(n % 2 == 0,) for n in eight]),
            Subject('SetSizeScaler', [(1.0 + n / 8.0,) for n in eight]),
            Subject('HitTestPoint', [(make_point(1660 - n, 540 + n),) for n in eight]),
            Subject('MoveAllPoints', [(0, 0), (0L, 0), (0, 0), (0, 0L)] * 2),
            # A double click is answered before anything is touched: what is left is the call with three ints.
            Subject('Interactive', [(_Orvanel.ECS_MOUSE_DBCLICK, 100 * n, 700 - n) for n in eight], 1.3),
            Subject('SetVideoInfo', [(n, 10 ** 9 + n, 2 ** 40 + n, 10 ** 12) for n in eight]),
            Subject('GetClosestKeyFramePos', [(2 ** 30 + 2 ** 29 * n, None) for n in eight]),
            Subject('Convert2SelectionLineUS', [((1920, 1080),)] * 8, most=30000.0)]


def make_body(count):
    """A loop whose body calls f with each of the argument lists a0, a1, ..."""
    lines = ['def body(f, made, arguments, rounds):']
    names = []
    for number in range(CALLS_A_BODY):
        own = ['v%d_%d' % (number, index) for index in range(count)]
        names.append(own)
        for index, name in enumerate(own):
            lines.append('    %s = arguments[%d][%d]' % (name, number, index))
    lines.append('    for _ in rounds:')
    lines += ['        f(%s)' % ', '.join(['made'] + own) for own in names]
    scope = {}
    exec '\n'.join(lines) in scope
    return scope['body']


def empty(f, made, arguments, rounds):
    for _ in rounds:
        pass


def timed(body, function, made, arguments, rounds):
    start = now()
    body(function, made, arguments, xrange(rounds))
    return now() - start


def enough_rounds(body, function, made, arguments):
    rounds = 10
    while True:
        if timed(body, function, made, arguments, rounds) > SECONDS_A_TURN / 4:
            return rounds * 4
        rounds *= 4


def own_object(module, value):
    """The value in an opaque object of the module's own, as its hosts have it; what is not opaque as it is."""
    carried = re.match(r"<Swig Object of type '(\w+) \*'", repr(value))
    wrap = carried and getattr(module, 'own_' + carried.group(1), None)
    return wrap(value) if wrap else value


def measure(subject, made, repetitions):
    """Nanoseconds a call of each of SIDES."""
    body = make_body(len(subject.arguments[0]))
    sides = [(getattr(module, 'Orvanel_' + subject.name), own_object(module, made),
              [tuple(own_object(module, value) for value in values) for values in subject.arguments])
             for _, module in SIDES]
    rounds = enough_rounds(body, *sides[0])
    best = [float('inf')] * len(SIDES)
    bare = float('inf')
    for _ in range(repetitions):
        bare = min(bare, timed(empty, None, made, subject.arguments, rounds))
        for side, call in enumerate(sides):
            best[side] = min(best[side], timed(body, *call, rounds=rounds))
    return [(seconds - bare) / rounds / CALLS_A_BODY * 1e9 for seconds in best]


def verdict(subject, own, ratio):
    if ratio < subject.target:
        return 'below %.1f' % subject.target
    if subject.most and own > subject.most:
        return 'above %.0f ns' % subject.most
    return ''


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--benchmark_out')
    parser.add_argument('--benchmark_out_format')
    parser.add_argument('--benchmark_filter', default='')
    parser.add_argument('--benchmark_repetitions', type=int, default=75)
    options = parser.parse_args()
    made = make_outline()
    figures, missed = [], 0
    print '%-26s %10s %10s %7s %10s %7s' % ('ns a call', 'own', 'SWIG 4.1', 'ratio', 'SWIG -O', 'ratio')
    for subject in subjects():
        if not re.search(options.benchmark_filter, subject.name):
            continue
        values = measure(subject, made, options.benchmark_repetitions)
        own, swig, fast = values
        remark = verdict(subject, own, swig / own)
        missed += bool(remark)
        print '%-26s %10.1f %10.1f %7.2f %10.1f %7.2f  %s' % (subject.name, own, swig, swig / own, fast, fast / own, remark)
        sys.stdout.flush()
        for (side, _), value in zip(SIDES, values):
            figures.append({'name': 'calls/%s/%s' % (subject.name, side), 'run_type': 'iteration', 'real_time': value,
                            'cpu_time': value, 'time_unit': 'ns', 'ratio': value / own})
    if options.benchmark_out:
        with open(options.benchmark_out, 'w') as out:
            json.dump({'context': {'executable': 'calls', 'python': sys.version.split()[0], 'repetitions': options.benchmark_repetitions},
                       'benchmarks': figures}, out, indent=1)
    return 1 if missed else 0


if __name__ == '__main__':
    sys.exit(main())
