# SPDX-License-Identifier: MIT
"""Lines for the person at the terminal. Names and titles come from files: whatever is in them, a line stays one line, and
no terminal takes part of it for a command."""
import codecs
import re
import sys

# Controls, line and paragraph separators, and what turns the direction of writing around.
_UNPRINTABLE = re.compile(u'[\x00-\x1f\x7f-\x9f\u2028-\u202e\u2066-\u2069]')
_LONGEST_LIST = 8


def _escape_bytes(error):
    return u''.join(u'\\x%02x' % ord(byte) for byte in error.object[error.start:error.end]), error.end


codecs.register_error('orvanel-escape', _escape_bytes)


def one_line(text):
    """The text as bytes in UTF-8, with everything that is not for reading escaped."""
    if isinstance(text, str):
        text = text.decode('utf-8', 'orvanel-escape')
    return _UNPRINTABLE.sub(lambda match: match.group().encode('unicode_escape').decode('ascii'), text).encode('utf-8')


def listed(items):
    """The items with commas; of many only the first ones, and how many more there are."""
    shown = items if len(items) <= _LONGEST_LIST else items[:_LONGEST_LIST - 1]
    rest = len(items) - len(shown)
    return ', '.join(shown) + (' and %d more' % rest if rest else '')


def frame_ranges(frames):
    """Ascending frame numbers as people say them: "frame 3", "frames 0-4, 9"."""
    ranges = []
    for frame in frames:
        if ranges and ranges[-1][1] == frame - 1:
            ranges[-1][1] = frame
        else:
            ranges.append([frame, frame])
    texts = ['%d' % first if first == last else '%d-%d' % (first, last) for first, last in ranges]
    return ('frame ' if len(frames) == 1 else 'frames ') + listed(texts)


def say(kind, text):
    """A line "error: ..." or "warning: ..." on standard error. Nobody may be listening there any more."""
    try:
        sys.stderr.write('%s: %s\n' % (kind, one_line(text)))
        sys.stderr.flush()
    except EnvironmentError:
        pass


def warn(text):
    """What the person should know about results that are made all the same."""
    say('warning', text)
