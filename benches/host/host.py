# SPDX-License-Identifier: MIT
"""The reference host's whole job against FFmpeg's own transcode of the same clip to the same two videos, at three sizes.

The two take turns in one run; a side's figure is its best turn. Time is the wall clock's, which is what a person waits for;
processor time stands beside it because it hardly depends on what else the machine does. Peak memory is that of each process.
Clips are the rocket launch, enlarged, with the grain that cameras have; without it, a test picture. Accepts Google
Benchmark's --benchmark_out, --benchmark_filter and --benchmark_repetitions, and --document FILE, which puts the table
between two marks of that page."""

import argparse
import json
import os
import platform
import re
import shutil
import subprocess
import sys
import tempfile
import time

SIZES = (('640x360', 640, 360, 240), ('1080p', 1920, 1080, 240), ('UHD', 3840, 2160, 96))
SOURCE = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..')
CLIP = os.path.join(SOURCE, 'build', 'clip', 'oa4_launch.webm')
MOST = 1.15
COLUMNS = ('clip', 'frames', 'plain ms/frame', 'host ms/frame', 'ratio', 'processor ratio', 'plain MB', 'host MB')
# Where a page has the table.
BEGIN, END = '<!-- ./bench host -->', '<!-- end -->'
ENCODER = ['-c:v', 'libx264', '-preset', 'veryfast', '-crf', '18']


def measured(command, folder):
    """(wall seconds, processor seconds, peak memory in MB) of a command."""
    start = time.time()
    process = subprocess.Popen(command, cwd=folder, stdout=open(os.devnull, 'w'))
    _, status, usage = os.wait4(process.pid, 0)
    if status:
        raise SystemExit('failed: ' + ' '.join(command))
    return time.time() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024.0


def make_clip(folder, name, width, height, frames):
    path = os.path.join(folder, name + '.mp4')
    source = ['-stream_loop', '-1', '-i', CLIP] if os.path.exists(CLIP) else ['-f', 'lavfi', '-i', 'testsrc2=rate=24']
    subprocess.check_call(['ffmpeg', '-v', 'error', '-nostdin', '-y'] + source +
                          ['-an', '-frames:v', str(frames), '-vf', 'scale=%d:%d,noise=alls=6:allf=t' % (width, height)] +
                          ['-c:v', 'libx264', '-preset', 'veryfast', '-crf', '20', path])
    return path


def sides(clip):
    plain = ['ffmpeg', '-v', 'error', '-nostdin', '-y', '-i', clip]
    for name in ('first.mp4', 'second.mp4'):
        plain += ['-map', '0:v'] + ENCODER + ['-movflags', '+faststart', name]
    return (('plain', plain),
            ('host', [sys.executable, '-B', '-m', 'orvanel_host', '--clip', clip, '--out', 'out', '--force']))


def compared(folder, name, width, height, frames, repetitions):
    """The best turn of each side: pairs of name and measured()."""
    clip = make_clip(folder, name, width, height, frames)
    best = {}
    for _ in range(repetitions):
        for side, command in sides(clip):
            turn = measured(command, folder)
            best[side] = tuple(min(pair) for pair in zip(turn, best.get(side, turn)))
    return best['plain'], best['host']


def row_of(name, frames, plain, host):
    return (name, '%d' % frames, '%.2f' % (plain[0] * 1000 / frames), '%.2f' % (host[0] * 1000 / frames),
            '%.2f' % (host[0] / plain[0]), '%.2f' % (host[1] / plain[1]), '%.0f' % plain[2], '%.0f' % host[2])


def results_of(name, frames, plain, host):
    """The same for Google Benchmark's readers."""
    for side, (wall, processor, memory) in (('plain', plain), ('host', host)):
        yield {'name': '%s/%s' % (name, side), 'real_time': wall * 1000 / frames, 'cpu_time': processor * 1000 / frames,
               'time_unit': 'ms', 'peak_mb': memory}
    yield {'name': '%s/ratio' % name, 'ratio': host[0] / plain[0], 'cpu_ratio': host[1] / plain[1]}


def processor_name():
    with open('/proc/cpuinfo') as stream:
        names = re.findall(r'^model name\s*: (.*)$', stream.read(), re.MULTILINE)
    return '%s, %d processors' % (names[0] if names else platform.machine(), len(names) or 1)


def circumstances():
    commit = subprocess.check_output(['git', '-C', SOURCE, 'rev-parse', '--short', 'HEAD']).strip()
    return '%s; load %.1f when it ended; %s, commit %s' % (
        processor_name(), os.getloadavg()[0], time.strftime('%Y-%m-%d'), commit)


def table(rows):
    head = [COLUMNS, ('---',) * len(COLUMNS)]
    return ''.join('| %s |\n' % ' | '.join(row) for row in head + rows)


def write_document(path, rows):
    with open(path) as stream:
        text = stream.read()
    begin, end = text.index(BEGIN) + len(BEGIN), text.index(END)
    with open(path, 'w') as stream:
        stream.write('%s\n%s\n%s.\n%s' % (text[:begin], table(rows), circumstances(), text[end:]))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('--benchmark_out')
    parser.add_argument('--benchmark_out_format')
    parser.add_argument('--benchmark_filter', default='')
    parser.add_argument('--benchmark_repetitions', type=int, default=3)
    parser.add_argument('--document')
    options = parser.parse_args()

    folder = tempfile.mkdtemp(prefix='orvanel-bench-')
    rows, results = [], []
    layout = '%-8s %8s %16s %16s %8s %17s %10s %9s'
    try:
        print layout % COLUMNS
        for name, width, height, frames in SIZES:
            if not re.search(options.benchmark_filter, name):
                continue
            plain, host = compared(folder, name, width, height, frames, options.benchmark_repetitions)
            rows.append(row_of(name, frames, plain, host))
            results.extend(results_of(name, frames, plain, host))
            is_too_slow = name == '1080p' and host[0] / plain[0] > MOST
            print layout % rows[-1] + ('  (more than %.2f)' % MOST if is_too_slow else '')
            sys.stdout.flush()
    finally:
        shutil.rmtree(folder)
    if options.document:
        write_document(options.document, rows)
    if options.benchmark_out:
        with open(options.benchmark_out, 'w') as stream:
            json.dump({'benchmarks': results, 'section': table(rows)}, stream, indent=1)


if __name__ == '__main__':
    main()
