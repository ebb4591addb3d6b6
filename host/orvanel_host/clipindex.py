# SPDX-License-Identifier: MIT
"""Which frames a clip has, and which it should have."""
import collections

from . import hostkit
from .errors import HostError
from .progress import progress

# One packet of these need not be one frame.
_CODECS_WITH_HIDDEN_FRAMES = ('vp8', 'vp9', 'av1')

# `positions`: times of the frames. `promised`: how many there should be. `missing`: how many of those the file has not even
# packets of.
ClipIndex = collections.namedtuple('ClipIndex', 'positions promised missing is_reliable')


def read(clip, reader):
    """The index of a clip: what its container lists, which is as quick as reading the file, or what the decoder gives where
    that is not to be relied upon."""
    index = _listed(clip)
    return index if index.is_reliable else decoded(clip, reader, index)


def _listed(clip):
    index = hostkit.ClipIndex(clip)
    with progress('reading', unit='steps') as advance:
        while index.step():
            advance()
    return ClipIndex(index.times(), index.packets() + index.missing(), index.missing(), index.isTrusted())


def decoded(clip, reader, index):
    """What the decoder gives: containers do not always know, and some know wrongly. `index` is what the container says."""
    positions = []
    with progress('decoding') as advance:
        while reader.skip():
            positions.append(reader.position())
            advance()
    lost = reader.lostFrames()
    reader.rewind()
    if not positions:
        raise HostError("clip '%s' has no frames" % clip)
    promised = len(positions) + lost + index.missing
    if reader.codecName() not in _CODECS_WITH_HIDDEN_FRAMES:
        promised = max(promised, index.promised)
    return ClipIndex(positions, promised, index.missing, True)


def complaints(clip, index, damaged):
    """What is wrong with a clip whose frames were read, of which `damaged` are not whole."""
    read = len(index.positions)
    if read >= index.promised and not damaged:
        return []
    text = "clip '%s' is truncated or damaged: %d of %d frames could be read" % (clip, read, max(read, index.promised))
    return [text + (', and %d of them %s damaged' % (damaged, 'is' if damaged == 1 else 'are') if damaged else '')]
