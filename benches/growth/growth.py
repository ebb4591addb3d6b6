# SPDX-License-Identifier: MIT
"""How the work of an editor grows with its anchors and keyframes.

Every figure is the best of several batches, so that a busy machine shows less; Python's own cost of a call is in it. The
exponent is the slope of the time's logarithm over the logarithm of the size, for the larger half of the sizes: 1 is linear.
Accepts --benchmark_out and --benchmark_out_format as the other benches do, and --quick."""

import math

import _Orvanel
import editor
import report

ANCHORS = (24, 100, 400, 1000, 2000)
KEYFRAMES = (1, 10, 100, 1000, 5000, 20000)
OPERATIONS = (('pointer move', editor.pointer_move), ('drag step', editor.drag), ('prepare', editor.prepare_between),
              ('save', editor.save), ('load', editor.load), ('convert', editor.convert))
#: Of an operation, what it cannot do without.
FLOORS = (('save', 'a copy of as much', editor.fresh_copies), ('load', 'a copy of as much, twice', editor.fresh_pairs))


def best_times(subject, operations, seconds):
    """Seconds of one call of each: the best of at least three batches, for about that long each; they take turns. A batch
    takes a millisecond or so, since clocks of some systems count no less than microseconds."""
    batches, bests = [1] * len(operations), [float('inf')] * len(operations)
    for operation in operations:
        subject.turn = 0
        operation(subject)
    turns, end = 0, editor.now() + seconds * len(operations)
    while turns < 3 or editor.now() < end:
        settled = True
        for at, operation in enumerate(operations):
            start = editor.now()
            for _ in range(batches[at]):
                subject.turn += 1
                operation(subject)
            spent = editor.now() - start
            if spent < 0.001 and batches[at] < 4096:
                batches[at] *= 2
                settled = False
            else:
                bests[at] = min(bests[at], spent / batches[at])
        turns += settled
    subject.call('Interactive', _Orvanel.ECS_MOUSE_UP)
    return bests


def exponent(sizes, times):
    """Least squares through the logarithms of the larger half."""
    half = len(sizes) // 2
    points = [(math.log(size), math.log(max(value, 1e-7))) for size, value in zip(sizes, times)][half:]
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return sum((x - mean_x) * (y - mean_y) for x, y in points) / sum((x - mean_x) ** 2 for x, _ in points)


def growth(sizes, make, seconds):
    """Rows of (operation, times); below an operation with a floor stands the floor, measured in turns with it."""
    rows = [(name, []) for name, _ in OPERATIONS]
    floors = [(of, (name, [])) for of, name, _ in FLOORS]
    for size in sizes:
        for (name, operation), (_, times) in zip(OPERATIONS, rows):
            subject = make(size)
            floor = [act for of, _, act in FLOORS if of == name]
            measured = best_times(subject, [operation] + floor, seconds)
            times.append(measured[0])
            for (of, (_, floor_times)) in floors:
                if of == name:
                    floor_times.append(measured[1])
            subject.close()
    return [row for name, times in rows for row in [(name, times)] + [floor for of, floor in floors if of == name]]


def growth_table(what, sizes, rows):
    return report.table([what] + [str(size) for size in sizes] + ['exponent'],
                        [[name] + [report.readable(value) for value in times] + ['%.2f' % exponent(sizes, times)]
                         for name, times in rows])


def section(by_anchors, by_keyframes):
    return ['One call each from Python, best of several, on an 8K display. The exponent is fitted to the larger half of the sizes: 1 is',
            'linear, and nothing should be worse than n log n but what an outline that crosses itself forces.', '',
            'With the number of anchors, one keyframe:', ''] + growth_table('anchors', ANCHORS, by_anchors) + [
                '', 'With the number of keyframes, 24 anchors:', ''] + growth_table('keyframes', KEYFRAMES, by_keyframes) + [
                    '', 'Below saving and loading stands what they cannot do without, measured in turns with them: as many fresh byte strings',
                    'with the same bytes in them, made by the interpreter. It grows faster than the number of keyframes as soon as the memory',
                    'comes from the system instead of the caches, and saving and loading grow with it. Preparing a time between two keyframes',
                    'draws the overlay anew, and the tint of a mask goes over every pixel of it: that is the picture, not the keyframes.']


def main():
    options = report.arguments(__doc__)
    seconds = 0.01 if options.quick else 0.2
    by_anchors = growth(ANCHORS, lambda anchors: editor.Editor(anchors, 1), seconds)
    by_keyframes = growth(KEYFRAMES, lambda keyframes: editor.Editor(24, keyframes), seconds)
    figures = [('%s/%d %s' % (name, size, what), value)
               for what, sizes, rows in (('anchors', ANCHORS, by_anchors), ('keyframes', KEYFRAMES, by_keyframes))
               for name, times in rows for size, value in zip(sizes, times)]
    report.write(options, section(by_anchors, by_keyframes), figures)


if __name__ == '__main__':
    main()
