# SPDX-License-Identifier: MIT
"""Clips of every kind, made by FFmpeg on the spot, and what FFmpeg says about clips."""
import json
import re
import subprocess

from support import plain_environment


def ffmpeg(*arguments):
    """Runs FFmpeg and returns what it prints."""
    command = ['ffmpeg', '-nostdin', '-hide_banner', '-y'] + list(arguments)
    process = subprocess.Popen(command, env=plain_environment(), stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    text = process.communicate()[0]
    if process.returncode:
        raise AssertionError('%s\n%s' % (' '.join(command), text))
    return text


def streams(path, *options):
    """What ffprobe says about all streams."""
    command = ['ffprobe', '-v', 'error', '-show_streams', '-of', 'json'] + list(options) + [path]
    return json.loads(subprocess.check_output(command, env=plain_environment()))['streams']


def _frames(path):
    command = ['ffprobe', '-v', 'error', '-select_streams', 'v:0', '-show_frames', '-of', 'json', path]
    return json.loads(subprocess.check_output(command, env=plain_environment()))['frames']


def fields(path):
    """The set of (interlaced, top field first) of the frames."""
    return set((frame['interlaced_frame'], frame['top_field_first']) for frame in _frames(path))


def times(path):
    """The times of the frames in seconds, from the first one on."""
    found = [float(frame['best_effort_timestamp_time']) for frame in _frames(path)]
    return [time - found[0] for time in found]


def make_clip(path, frames=12, size='160x96', pixels='yuv420p', source='testsrc2', filters='null', encoder=(), before=(),
              rate=24):
    """A moving test picture, losslessly where the encoder can: what a test compares is the host's own doing."""
    picture = '%s=size=%s:rate=%d' % (source, size, rate)
    encoder = encoder or ('-c:v', 'libx264', '-preset', 'veryfast', '-qp', '0' if '10' not in pixels else '1')
    ffmpeg(*(tuple(before) + ('-f', 'lavfi', '-i', picture, '-frames:v', '%d' % frames, '-vf', filters, '-pix_fmt', pixels) +
             tuple(encoder) + (path,)))
    return path


def chroma_psnr(path, reference):
    """The lesser of the two colour planes' signal to noise ratios, in decibels."""
    text = ffmpeg('-i', path, '-i', reference, '-lavfi', 'psnr', '-f', 'null', '-')
    found = re.search(r'PSNR .*\bu:(\S+) v:(\S+)', text)
    return min(float(value) for value in found.groups())
