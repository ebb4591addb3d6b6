# SPDX-License-Identifier: MIT
"""What the benches measured, as tables.

  bench_page.py ratios NAME    one bench under Wine against the same one here
  bench_page.py write FILE     the page of all of them

Reads build/bench/release/NAME.TURN.json and build/bench/windows/NAME.TURN.json, of which each figure is the best turn's.
What stands beside a bench's tables is benches/*/NAME.md."""

import glob
import json
import os
import re
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BENCHES = ('mask', 'canvas', 'editor', 'fitting', 'frame', 'drag', 'growth', 'holds', 'calls', 'host', 'grading')
#: What is slower under Wine by more than this is explained.
LIMIT = 1.3
MOST_ROWS = 36
UNITS = {'ns': 1.0, 'us': 1e3, 'ms': 1e6, 's': 1e9}
#: Counters that are the time again.
NO_COUNTERS = ('bytes_per_second', 'items_per_second')


class Figure(object):
    """The best time of one input in nanoseconds, and what was counted beside it."""

    def __init__(self, record):
        self.time = record['real_time'] * UNITS[record.get('time_unit', 'ns')]
        known = ('name', 'run_name', 'run_type', 'repetitions', 'repetition_index', 'threads', 'iterations', 'real_time',
                 'cpu_time', 'time_unit', 'family_index', 'per_family_instance_index') + NO_COUNTERS
        self.counters = dict((name, value) for name, value in record.items()
                             if name not in known and isinstance(value, (int, float)))


def short(name):
    """Without what only says how long it was measured."""
    return '/'.join(part for part in name.split('/') if not part.startswith(('min_time:', 'manual_time', 'repeats:')))


def results(system, name):
    """(section written by the bench itself or None, names in order, figures by name)."""
    section, order, best = None, [], {}
    for path in sorted(glob.glob(os.path.join(ROOT, 'build', 'bench', system, name + '.*.json'))):
        with open(path) as stream:
            written = json.load(stream)
        section = written.get('section', section)
        for record in written.get('benchmarks', []):
            if 'real_time' not in record or record.get('run_type') == 'aggregate' or record.get('error_occurred'):
                continue
            key = short(record.get('run_name', record['name']))
            if key not in best:
                order.append(key)
            if key not in best or record['real_time'] * UNITS[record.get('time_unit', 'ns')] < best[key].time:
                best[key] = Figure(record)
    # Benches that are interleaved end in any order.
    order.sort(key=lambda key: [int(part) if part.isdigit() else part for part in re.split(r'(\d+)', key)])
    return section, order, best


def readable(nanoseconds):
    for limit, divisor, unit in ((1e3, 1.0, 'ns'), (1e6, 1e3, 'us'), (1e9, 1e6, 'ms')):
        if nanoseconds < limit:
            return '%.3g %s' % (nanoseconds / divisor, unit)
    return '%.3g s' % (nanoseconds / 1e9)


def table(head, rows):
    return ['| ' + ' | '.join(head) + ' |', '|' + '---|' * len(head)] + ['| ' + ' | '.join(row) + ' |' for row in rows]


def plain_table(order, figures):
    """Every input with its time and counters."""
    counters = sorted(set(name for figure in figures.values() for name in figure.counters))
    return table(['', 'time'] + [name.replace('_', ' ') for name in counters],
                 [[key, readable(figures[key].time)] + ['%.3g' % figures[key].counters[name] if name in figures[key].counters else ''
                                                        for name in counters] for key in order])


def race_table(order, figures, own, place):
    """Times of `own`, and how many times as long each other takes; `place` is where a name says whose it is."""
    times, others = {}, []
    for key in order:
        parts = key.split('/')
        if len(parts) > place:
            times[tuple(parts[:place] + parts[place + 1:]), parts[place]] = figures[key].time
    inputs = [rest for rest in unique(tuple(key.split('/')[:place] + key.split('/')[place + 1:]) for key in order) if (rest, own) in times]
    others = [who for who in unique(key.split('/')[place] for key in order if len(key.split('/')) > place)
              if who != own and any((rest, who) in times for rest in inputs)]
    return table([''] + [own] + others,
                 [['/'.join(rest), readable(times[rest, own])] +
                  ['%.3g x' % (times[rest, who] / times[rest, own]) if (rest, who) in times else '' for who in others] for rest in inputs])


def unique(values):
    seen = []
    for value in values:
        if value not in seen:
            seen.append(value)
    return seen


def ratio_rows(name):
    """(input, here, under Wine, ratio)."""
    _, order, here = results('release', name)
    _, _, there = results('windows', name)
    return [(key, here[key].time, there[key].time, there[key].time / here[key].time)
            for key in order if key in there and here[key].time > 0]


def ratio_table(rows):
    return table(['', 'Linux', 'Windows', 'Windows / Linux', ''],
                 [[key, readable(here), readable(there), '%.2f' % ratio, 'above %.1f' % LIMIT if ratio > LIMIT else '']
                  for key, here, there, ratio in rows])


def windows_part(name):
    rows = ratio_rows(name)
    if not rows:
        return []
    ratios = sorted(row[3] for row in rows)
    lines = ['', 'Windows (under Wine) against Linux: %d figures, median ratio %.2f, from %.2f to %.2f.' % (
        len(rows), ratios[len(ratios) // 2], ratios[0], ratios[-1]), '']
    shown = rows if len(rows) <= MOST_ROWS else sorted((row for row in rows if row[3] > LIMIT), key=lambda row: -row[3])[:MOST_ROWS]
    if len(shown) < len(rows):
        lines[-2] += ' Those above %.1f:' % LIMIT if shown else ' None is above %.1f.' % LIMIT
    return lines + (ratio_table(shown) if shown else [])


def bench_section(name):
    section, order, figures = results('release', name)
    lines = ['## ' + name, '']
    for path in glob.glob(os.path.join(ROOT, 'benches', '*', name + '.md')):
        with open(path) as stream:
            lines += [stream.read().strip(), '']
    if not order and not section:
        return lines + ['Not measured: `./bench %s` has not run.' % name]
    if section:
        lines.append(section.strip())
    elif name == 'mask':
        lines += race_table(order, figures, 'direct', 0)
    elif name == 'canvas':
        lines += race_table(order, figures, 'own', 1)
    elif name == 'calls':
        lines += race_table(order, figures, 'own', 2)
    else:
        lines += plain_table(order, figures)
    return lines + windows_part(name)


def processor():
    models = [line.split(':', 1)[1].strip() for line in open('/proc/cpuinfo') if line.startswith('model name')]
    return '%s, %d processors' % (models[0] if models else 'unknown processor', len(models))


def commit():
    return subprocess.check_output(['git', 'rev-parse', '--short', 'HEAD'], cwd=ROOT).strip()


def page():
    with open(os.path.join(ROOT, 'build', 'windows', 'bench', 'left-out.txt')) as stream:
        gaps = ['- `%s`: %s' % tuple(line.strip().split(': ', 1)) for line in stream if line.strip()]
    lines = ['# Performance', '',
             'Written by `./bench --document`, which runs every bench here and, cross-built, under Wine, in turns. Each figure is the best',
             'of several; they are for comparison among themselves.', '',
             '- machine: %s, load average %.1f when this was written' % (processor(), os.getloadavg()[1]),
             '- systems: Linux, and Windows as Wine has it', '- date: ' + time.strftime('%Y-%m-%d'), '- commit: ' + commit(), '',
             'Left out under Wine:', ''] + gaps
    for name in BENCHES:
        lines += [''] + bench_section(name)
    return '\n'.join(lines) + '\n'


def main():
    if sys.argv[1:2] == ['ratios'] and len(sys.argv) == 3:
        rows = ratio_rows(sys.argv[2])
        print '\n'.join(ratio_table(rows)) if rows else 'there is nothing to compare: %s does not run under Wine' % sys.argv[2]
    elif sys.argv[1:2] == ['write'] and len(sys.argv) == 3:
        with open(sys.argv[2], 'w') as document:
            document.write(page())
    else:
        sys.exit(__doc__)


if __name__ == '__main__':
    main()
