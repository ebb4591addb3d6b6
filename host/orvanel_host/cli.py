# SPDX-License-Identifier: MIT
"""Command line of the main job."""
import argparse
import os
import re
import sys

from . import interrupts
from .errors import HostError
from .messages import say

_EXIT_ERROR = 1
_EXIT_INTERRUPTED = 130
_LARGEST_SIDE = 16384


class _Parser(argparse.ArgumentParser):
    """Says what is wrong in one line, as every other error is said."""

    def error(self, message):
        raise HostError('%s (see --help)' % message)


def _size(text):
    match = re.match(r'(\d{1,5})x(\d{1,5})\Z', text)
    size = tuple(int(side) for side in match.groups()) if match else (0, 0)
    if not all(16 <= side <= _LARGEST_SIDE for side in size):
        raise argparse.ArgumentTypeError("'%s' is not a size like 1280x720, 16 to %d pixels a side" % (text, _LARGEST_SIDE))
    return size


def _parse(arguments):
    parser = _Parser(prog='run', description='Replays a recorded edit over a clip and writes the graded video.')
    parser.add_argument('--clip', metavar='FILE', help='the video; without it the rocket launch that comes with the set-up')
    parser.add_argument('--edit', metavar='FILE', help='a recorded edit (docs/edit-format.md); without it a built-in one')
    parser.add_argument('--selection', metavar='FILE', help='a selection.json of an earlier run, instead of an edit or with '
                                                            'the grade of one')
    parser.add_argument('--out', metavar='DIR', default='out', help='where the results go (default: out)')
    parser.add_argument('--size', metavar='WxH', type=_size, help="render at this size instead of the clip's own")
    parser.add_argument('--codec', choices=('h264', 'vp9'), default='h264', help='H.264 in MP4 (default) or VP9 in WebM')
    parser.add_argument('--force', action='store_true',
                        help='replace what this host did not make; never the clip, the edit and the selection')
    return parser.parse_args(arguments)


def _named(option, name):
    """The name that an option gives, or None; an empty one, out of an unset variable say, is not the same as none."""
    if name == '':
        raise HostError('%s needs the name of a file or folder, and got an empty one' % option)
    return name


def _job(arguments):
    options = _parse(arguments)
    clip, edit, selection, out = (_named('--' + name, getattr(options, name)) for name in ('clip', 'edit', 'selection', 'out'))
    # Loads the modules only now, so that --help works without them.
    from . import job
    clip_or_default = clip or os.environ.get('ORVANEL_DEFAULT_CLIP')
    if not clip_or_default:
        raise HostError('no clip: give one with --clip')
    if not edit and not selection:
        edit = job.ANY_CLIP_EDIT if clip else job.DEFAULT_CLIP_EDIT
    return job.run(clip_or_default, edit, out, options.size, options.codec, options.force, selection)


def _print_summary(summary):
    """Nobody may be reading: the results are there all the same."""
    try:
        sys.stdout.write(summary + '\n')
        sys.stdout.flush()
        return 0
    except EnvironmentError as error:
        say('error', 'the results are written, but the summary cannot be: %s' % error.strerror)
        # What is left in the buffer must not fail once more when the interpreter ends.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return _EXIT_ERROR


def _open_standard_streams():
    """A result must not get the number of a stream that was closed: what is printed would end up in it."""
    for number in range(3):
        try:
            os.fstat(number)
        except OSError:
            os.open(os.devnull, os.O_RDWR)


def _place(trace):
    """File and line where an error came up."""
    while trace.tb_next:
        trace = trace.tb_next
    return '%s:%d' % (os.path.basename(trace.tb_frame.f_code.co_filename), trace.tb_lineno)


def _guarded(arguments):
    """The summary and None, or None and what to say and the exit code."""
    try:
        return _job(arguments), None, 0
    except HostError as error:
        # A system call that a signal has cut short ends in an error of its own.
        if not interrupts.pending():
            return None, str(error), _EXIT_ERROR
    except MemoryError:
        return None, 'not enough memory for pictures of this size', _EXIT_ERROR
    except interrupts.InterruptedAfterwards:
        return None, 'interrupted, after the results were written', _EXIT_INTERRUPTED
    except KeyboardInterrupt:
        pass
    except Exception as error:
        # A mistake of this host's own. Its place is what a report needs; the rest of a traceback helps nobody here.
        return None, 'a mistake of this host, please report it: %r (%s)' % (error, _place(sys.exc_info()[2])), _EXIT_ERROR
    return None, 'interrupted, nothing was written', _EXIT_INTERRUPTED


def main(arguments=None):
    """Runs the job; returns the exit code."""
    _open_standard_streams()
    with interrupts.noted():
        summary, wrong, code = _guarded(arguments)
    if wrong is not None:
        say('error', wrong)
        return code
    return _print_summary(summary)
