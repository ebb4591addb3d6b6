# SPDX-License-Identifier: MIT
"""What the host's tests share: small clips made on the spot, the command line in a process, pictures read back."""
import json
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

from orvanel_host import hostkit

SOURCE = os.environ.get('ORVANEL_SOURCE_DIR', os.path.join(os.path.dirname(__file__), '..', '..'))
DEFAULT_CLIP = os.path.join(SOURCE, 'build', 'clip', 'oa4_launch.webm')
UNIT = hostkit.FrameClock.kUnitsPerSecond
BT601 = 6
# Seconds after which a process that should have begun to write counts as hung.
_PATIENCE = 120


def clock_of(frames, numerator=24, denominator=1):
    """The clock of a clip with a constant rate."""
    return hostkit.FrameClock(numerator, denominator, [n * UNIT * denominator // numerator for n in range(frames)])


def picture(width, height, shade):
    """A picture with a little structure: one flat colour would hide a shifted or flipped plane."""
    image = hostkit.Image(width, height)
    image.fill(shade, 128, 255 - shade)
    patch = hostkit.Image(max(width // 4, 1), max(height // 4, 1))
    patch.fill(40, 200, 90)
    image.paste(patch, width // 8, height // 8)
    return image


def write_clip(path, frames, width=160, height=96, clock=None, codec='h264'):
    """A clip whose frames get brighter; returns its clock."""
    clock = clock or clock_of(frames)
    writer = hostkit.VideoWriter(path, codec, width, height, clock, 1, 1, BT601)
    for number in range(frames):
        writer.write(picture(width, height, number * 255 // max(frames, 1)))
    writer.finish()
    return clock


def simple_edit(**changes):
    """A small valid edit as a dictionary: a triangle, closed, dragged at a later frame."""
    edit = {
        'format': 'orvanel-edit', 'version': 1, 'display': [640, 360], 'coordinates': 'video',
        'feather': {'pixels': 2}, 'grade': {'exposure': 1, 'saturation': 1.5},
        'gestures': [
            {'do': 'draw', 'points': [[0.3, 0.2], [0.7, 0.2], [0.5, 0.8]]},
            {'do': 'close'},
            {'do': 'seek', 'fraction': 1},
            {'do': 'drag', 'from': {'anchor': 2}, 'to': [0.6, 0.7]},
        ],
    }
    edit.update(changes)
    return edit


def read_grey_png(path):
    """(width, height, rows) of an 8-bit grey PNG without filters, read without any picture library."""
    with open(path, 'rb') as stream:
        data = stream.read()
    if not data.startswith(b'\x89PNG\r\n\x1a\n'):
        raise AssertionError('%s is not a PNG' % path)
    offset, pixels, header = 8, b'', None
    while offset < len(data):
        length, kind = struct.unpack_from('>I4s', data, offset)
        chunk = data[offset + 8:offset + 8 + length]
        if kind == b'IHDR':
            header = struct.unpack('>IIBBBBB', chunk)
        elif kind == b'IDAT':
            pixels += chunk
        offset += 12 + length
    width, height, depth, color = header[:4]
    if (depth, color) != (8, 0):
        raise AssertionError('%s is not 8-bit grey' % path)
    raw = zlib.decompress(pixels)
    rows = [raw[y * (width + 1):(y + 1) * (width + 1)] for y in range(height)]
    if any(row[0] != b'\0' for row in rows):
        raise AssertionError('%s has filtered rows' % path)
    return width, height, [row[1:] for row in rows]


def plain_environment():
    """Without a sanitizer's preloaded library, which other people's programs were not built for."""
    return dict((key, value) for key, value in os.environ.items() if key not in ('LD_PRELOAD', 'LD_LIBRARY_PATH'))


def have_ffprobe():
    try:
        subprocess.check_output(['ffprobe', '-version'], env=plain_environment())
        return True
    except (OSError, subprocess.CalledProcessError):
        return False


def probe(path):
    """What ffprobe says about the video stream, with the frames counted by decoding."""
    out = subprocess.check_output(['ffprobe', '-v', 'error', '-count_frames', '-select_streams', 'v:0', '-show_streams',
                                   '-of', 'json', path], env=plain_environment())
    return json.loads(out)['streams'][0]


class HostTest(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix='orvanel-host-')
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def contents(self):
        """Everything in the test's folder: texts of files, targets of links, None for whatever else."""
        found = {}
        for folder, folders, names in os.walk(self.folder):
            for name in folders + names:
                path = os.path.join(folder, name)
                found[os.path.relpath(path, self.folder)] = (
                    os.readlink(path) if os.path.islink(path) else open(path, 'rb').read() if os.path.isfile(path) else None)
        return found

    def write(self, name, text):
        with open(self.path(name), 'wb') as stream:
            stream.write(text)
        return self.path(name)

    def write_edit(self, document, name='edit.json'):
        return self.write(name, json.dumps(document))

    def start_host(self, *arguments):
        return subprocess.Popen([sys.executable, '-B', '-m', 'orvanel_host'] + list(arguments), cwd=self.folder,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def start_shell(self, command):
        """A command of the shell, in which "$0" is the interpreter."""
        return subprocess.Popen(['sh', '-c', command, sys.executable], cwd=self.folder, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE)

    def run_host(self, *arguments):
        """(exit code, standard output, standard error) of the main job."""
        process = self.start_host(*arguments)
        out, error = process.communicate()
        return process.returncode, out, error

    def run_shell(self, command):
        process = self.start_shell(command)
        out, error = process.communicate()
        return process.returncode, out, error

    def wait_until_masks_appear(self):
        for _ in range(_PATIENCE * 50):
            for name in os.listdir(self.path('out')) if os.path.isdir(self.path('out')) else ():
                masks = self.path('out', name, 'masks')
                if name.startswith('.') and os.path.isdir(masks) and len(os.listdir(masks)) > 2:
                    return
            time.sleep(0.02)
        self.fail('the job did not begin to render')
