# SPDX-License-Identifier: MIT
"""Reads every #include of src/, canvas/ and host/ and reports the ones that go up or sideways.

The order of the rooms is written down here and nowhere else; docs/architecture.md draws it. A room may include itself and
the rooms its line names.
"""

import os
import re
import sys

import sources

_BASE = ('overlay/types', 'platform')

MAY_INCLUDE = {
    'platform': (),
    'overlay/types': ('platform',),
    'support': _BASE,
    'mask': ('support',) + _BASE,
    'fitting': ('mask', 'support') + _BASE,
    # The interpreter's locks and calls; the texture room stands on them because it hands out Python objects.
    'callback': ('support',) + _BASE,
    'texture': ('callback', 'support') + _BASE,
    'overlay': ('fitting', 'mask', 'texture', 'callback', 'support') + _BASE,
    'binding': ('overlay', 'mask', 'texture', 'callback', 'support') + _BASE,
    # Outside src/: what is published to the one who supplies a component, and to the one who embeds the module.
    'canvas': ('mask', 'support') + _BASE,
    'host': ('mask',) + _BASE,
}

# Single headers that a room publishes to one that may not include it otherwise.
PUBLISHED = {
    'host': ('texture/allocator.h', 'canvas/canvas_component.h'),
}

# The interpreter's header comes through one header of ours, which includes the standard headers first.
PYTHON_HEADER = 'src/callback/python.h'
PYTHON_ROOMS = ('callback', 'texture', 'overlay', 'binding', 'host')

# The pixel conversions stand alone as a library: no component model there.
COM_HEADERS = ('platform/com.h', 'platform/com_pointer.h', 'platform/class_factories.h')
COM_FREE_ROOMS = ('mask',)

SYSTEM_HEADERS = re.compile(
    r'^(windows|windowsx|winbase|windef|wingdi|winreg|winuser|objbase|unknwn|ole2|oleauto|gdiplus|d3d9|mmsystem|timeapi|evntprov'
    r'|unistd|dlfcn|pthread|syslog|fcntl|semaphore|sched|poll|signal)\.h$|^(sys|linux|gdiplus)/', re.IGNORECASE)

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"]', re.MULTILINE)
PLATFORM_SWITCH = re.compile(r'^[ \t]*#[ \t]*(?:if|ifdef|ifndef|elif)\b[^\n]*\b(_WIN32|_WIN64|WIN32|__MINGW\w*|_MSC_VER|__linux__|__unix__)\b',
                             re.MULTILINE)


def room_of(path):
    """The room of a file (relative to the repository) or of an include ('mask/runs.h'); None for what is no room."""
    if path.startswith('src/'):
        path = path[len('src/'):]
    if path.startswith('overlay/types/'):
        return 'overlay/types'
    room = path.split('/')[0]
    return room if room in MAY_INCLUDE else None


def _quoted_problem(root, path, room, target):
    if '..' in target.split('/'):
        return 'relative include "%s": name it from src/' % target
    beside = os.path.join(root, os.path.dirname(path), target)
    if '/' not in target and os.path.exists(beside):
        return None
    target_room = room_of(target)
    if target_room is None:
        return None
    if target_room != room and target_room not in MAY_INCLUDE[room] and target not in PUBLISHED.get(room, ()):
        return '%s may not include %s (%s)' % (room, target_room, target)
    if target in COM_HEADERS and room in COM_FREE_ROOMS:
        return '%s may not include the component model (%s)' % (room, target)
    if 'src/' + target == PYTHON_HEADER and room not in PYTHON_ROOMS:
        return '%s may not include the interpreter (%s)' % (room, target)
    return None


def _angled_problem(path, room, target):
    if target == 'Python.h' and path != PYTHON_HEADER and room != 'host':
        return '<Python.h> comes through "%s" only' % PYTHON_HEADER[len('src/'):]
    if SYSTEM_HEADERS.match(target) and room not in ('platform', 'host'):
        return '<%s> belongs in src/platform' % target
    return None


def check(root):
    findings = []
    for path in sources.files_below(root, ('src', 'canvas', 'host'), sources.CXX_SUFFIXES):
        room = room_of(path)
        if room is None:
            findings.append('%s:1: this folder has no line in MAY_INCLUDE' % path)
            continue
        source = sources.without_comments(sources.read(root, path))
        for found in INCLUDE.finditer(source):
            kind, target = found.groups()
            problem = _quoted_problem(root, path, room, target) if kind == '"' else _angled_problem(path, room, target)
            if problem:
                findings.append('%s:%d: %s' % (path, sources.line_of(source, found.start()), problem))
        if room not in ('platform', 'host'):
            for found in PLATFORM_SWITCH.finditer(source):
                findings.append('%s:%d: %s is asked for outside src/platform' %
                                (path, sources.line_of(source, found.start(1)), found.group(1)))
    return findings


if __name__ == '__main__':
    sys.exit(sources.report('includes', check(sources.repository(sys.argv))))
