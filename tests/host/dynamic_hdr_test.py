# SPDX-License-Identifier: MIT
"""Metadata of HDR that changes from scene to scene: encoders drop it, so the summary says it. FFmpeg cannot write it; what
stands here is put into an ordinary clip by hand."""
import struct
import unittest

from clips import ffmpeg, make_clip
from kinds import KindsTest

_START = b'\0\0\0\1'


def bits(*fields):
    """Numbers of given widths, first bit first, filled up with zeros to whole bytes."""
    text = ''.join('{:0{}b}'.format(value, width) for value, width in fields)
    text += '0' * (-len(text) % 8)
    return b''.join(struct.pack('B', int(text[at:at + 8], 2)) for at in range(0, len(text), 8))


def hdr10_plus():
    """A message of SMPTE ST 2094-40 for one window, as a unit of HEVC: no value in it makes two zero bytes in a row."""
    message = b'\xb5' + struct.pack('>HHBB', 0x3c, 1, 4, 1) + bits(
        (1, 2), (1001, 27), (0, 1), (77777, 17), (77777, 17), (77777, 17), (44444, 17), (0, 4), (777, 10), (0, 1), (0, 1), (0, 1))
    return _START + b'\x4e\x01' + b'\x04' + struct.pack('B', len(message)) + message + b'\x80'


def with_box(data, box, path):
    """An MP4 file with another box at the end of the last one of those that `path` leads through. Its samples stand before
    its table of contents, so no place of theirs changes."""
    starts, start = [], 0
    for name in path:
        start = data.index(name, start) - 4
        starts.append(start)
    end = start + struct.unpack_from('>I', data, start)[0]
    for start in starts:
        size = struct.unpack_from('>I', data, start)[0] + len(box)
        data = data[:start] + struct.pack('>I', size) + data[start + 4:]
    return data[:end] + box + data[end:]


class DynamicHdrTest(KindsTest):

    def hevc(self, name):
        return make_clip(self.path(name), frames=6, pixels='yuv420p10le',
                         encoder=('-c:v', 'libx265', '-x265-params', 'log-level=none:repeat-headers=1', '-preset', 'ultrafast'))

    def test_hdr10_plus(self):
        with open(self.hevc('plain.hevc'), 'rb') as stream:
            data = stream.read()
        # Before the first picture's parameters.
        place = data.index(_START + b'\x44\x01')
        clip = self.write('clip.hevc', data[:place] + hdr10_plus() + data[place:])
        self.assertIn('HDR10+', ffmpeg('-i', clip, '-vf', 'showinfo', '-frames:v', '1', '-f', 'null', '-'))
        self.assertEqual(self.render(clip)[1], 'HDR10+ metadata')

    def test_dolby_vision(self):
        with open(self.hevc('plain.mp4'), 'rb') as stream:
            data = stream.read()
        # Version 1.0, profile 8, level 1, a base layer with its reference data, compatible with HDR10.
        configuration = struct.pack('>I4s', 32, b'dvvC') + bits(
            (1, 8), (0, 8), (8, 7), (1, 6), (1, 1), (0, 1), (1, 1), (1, 4)) + 19 * b'\0'
        path = (b'moov', b'trak', b'mdia', b'minf', b'stbl', b'stsd', b'hev1')
        clip = self.write('clip.mp4', with_box(data, configuration, path))
        self.assertEqual(self.render(clip)[1], 'Dolby Vision metadata')


if __name__ == '__main__':
    unittest.main()
