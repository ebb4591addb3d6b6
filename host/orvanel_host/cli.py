# SPDX-License-Identifier: MIT
"""Command line of the main job."""
import argparse
import os
import re
import signal
import sys

from .errors import HostError

_EXIT_ERROR = 1
_EXIT_INTERRUPTED = 130
_LARGEST_SIDE = 16384


class _Parser(argparse.ArgumentParser):
    """Says what is wrong in one line, as every other error is said."""

    def error(self, message):
        raise HostError('%s (see --help)' % message)


def _size(text):
    match = re.match(r'(\d{1,5})x(\d{1,5})$', text)
    size = tuple(int(side) for side in match.groups()) if match else (0, 0)
    if not all(16 <= side <= _LARGEST_SIDE for side in size):
        raise argparse.ArgumentTypeError("'%s' is not a size like 1280x720, 16 to %d pixels a side" % (text, _LARGEST_SIDE))
    return size


def _parse(arguments):
    parser = _Parser(prog='run', description='Replays a recorded edit over a clip and writes the graded video.')
    parser.add_argument('--clip', metavar='FILE', help='the video; without it the rocket launch that comes with the set-up')
    parser.add_argument('--edit', metavar='FILE', help='a recorded edit (docs/edit-format.md); without it a built-in one')
    parser.add_argument('--out', metavar='DIR', default='out', help='where the results go (default: out)')
    parser.add_argument('--size', metavar='WxH', type=_size, help="render at this size instead of the clip's own")
    parser.add_argument('--codec', choices=('h264', 'vp9'), default='h264', help='H.264 in MP4 (default) or VP9 in WebM')
    return parser.parse_args(arguments)


def _terminate(signum, frame):
    """A polite kill cleans up like Ctrl-C."""
    raise KeyboardInterrupt


def main(arguments=None):
    """Runs the job; returns the exit code."""
    signal.signal(signal.SIGTERM, _terminate)
    try:
        options = _parse(arguments)
        # Loads the modules only now, so that --help works without them.
        from . import job
        clip = options.clip or os.environ.get('ORVANEL_DEFAULT_CLIP')
        if not clip:
            raise HostError('no clip: give one with --clip')
        edit = options.edit or (job.ANY_CLIP_EDIT if options.clip else job.DEFAULT_CLIP_EDIT)
        print job.run(clip, edit, options.out, options.size, options.codec)
        return 0
    except HostError as error:
        sys.stderr.write('error: %s\n' % error)
        return _EXIT_ERROR
    except MemoryError:
        sys.stderr.write('error: not enough memory for pictures of this size\n')
        return _EXIT_ERROR
    except KeyboardInterrupt:
        sys.stderr.write('error: interrupted, nothing was written\n')
        return _EXIT_INTERRUPTED
