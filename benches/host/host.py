# SPDX-License-Identifier: MIT
"""The reference host's whole job against FFmpeg's own transcode of the same clip to the same two videos, at three sizes.

The two take turns in one run; a side's figure is its best turn. Time is the wall clock's, which is what a person waits for;
processor time stands beside it because it hardly depends on what else the machine does. Peak memory is that of each process.
Clips are the rocket launch, enlarged, with the grain that cameras have; without it, a test picture. Accepts Google
Benchmark's --benchmark_out, --benchmark_filter and --benchmark_repetitions."""

import argparse
import json
import os
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


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('--benchmark_out')
    parser.add_argument('--benchmark_out_format')
    parser.add_argument('--benchmark_filter', default='')
    parser.add_argument('--benchmark_repetitions', type=int, default=3)
    options = parser.parse_args()

    folder = tempfile.mkdtemp(prefix='orvanel-bench-')
    results = []
    try:
        print '%-8s %6s %12s %12s %8s %12s %10s %10s' % (
            'clip', 'frames', 'plain ms/f', 'host ms/f', 'ratio', 'CPU ratio', 'plain MB', 'host MB')
        for name, width, height, frames in SIZES:
            if not re.search(options.benchmark_filter, name):
                continue
            clip = make_clip(folder, name, width, height, frames)
            best = {}
            for _ in range(options.benchmark_repetitions):
                for side, command in sides(clip):
                    turn = measured(command, folder)
                    best[side] = tuple(min(pair) for pair in zip(turn, best.get(side, turn)))
            plain, host = best['plain'], best['host']
            ratio = host[0] / plain[0]
            print '%-8s %6d %12.2f %12.2f %8.3f %12.3f %10.0f %10.0f%s' % (
                name, frames, plain[0] * 1000 / frames, host[0] * 1000 / frames, ratio, host[1] / plain[1], plain[2], host[2],
                '  (more than %.2f)' % MOST if name == '1080p' and ratio > MOST else '')
            for side in best:
                results.append({'name': '%s/%s' % (name, side), 'real_time': best[side][0] * 1000 / frames,
                                'cpu_time': best[side][1] * 1000 / frames, 'time_unit': 'ms', 'peak_mb': best[side][2]})
            results.append({'name': '%s/ratio' % name, 'ratio': ratio, 'cpu_ratio': host[1] / plain[1]})
    finally:
        shutil.rmtree(folder)
    if options.benchmark_out:
        with open(options.benchmark_out, 'w') as stream:
            json.dump({'benchmarks': results}, stream, indent=1)


if __name__ == '__main__':
    main()
