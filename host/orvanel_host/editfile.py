# SPDX-License-Identifier: MIT
"""Reads a recorded edit. The format is described in docs/edit-format.md; whatever does not follow it is refused here,
with the place and the reason, before anything is done with it."""
import collections
import os

from . import document
from .document import REQUIRED, Wrong, boolean, fields_of, list_of, number, one_of, pair, string, text_of
from .errors import EditError

FORMAT = 'orvanel-edit'
VERSION = 1
SMALLEST_ZOOM = 0.1

Edit = collections.namedtuple('Edit', 'name title display coordinates feather grade gestures')
Feather = collections.namedtuple('Feather', 'pixels passes')
GradeSettings = collections.namedtuple('GradeSettings', 'exposure saturation')
# `fields` holds every field of the gesture's kind; one that the file leaves out has its default.
Gesture = collections.namedtuple('Gesture', 'kind fields index')
# A place on the picture: either `point`, or what lies at an anchor (or at its "in" or "out" handle); plus an offset.
Place = collections.namedtuple('Place', 'point anchor handle by')
# Exactly one of the three is given.
Moment = collections.namedtuple('Moment', 'frame seconds fraction')


def load(path):
    """Reads and checks the edit in a file; EditError names the file and the first thing that is wrong."""
    name = os.path.basename(path)
    try:
        return _parsed(document.read(path), name)
    except EnvironmentError as error:
        raise EditError("edit '%s' cannot be read: %s" % (path, error.strerror))
    except Wrong as error:
        raise EditError("edit '%s': %s" % (path, error))


def parse(text, name='edit'):
    """Checks the edit in a text; EditError says what is wrong without naming the edit."""
    try:
        return _parsed(text, name)
    except Wrong as error:
        raise EditError(str(error))


def _parsed(data, name):
    return document.checked(data, lambda value: _edit(value, name))


_COORDINATES = pair(number())


def _place(value, path):
    if isinstance(value, list):
        return Place(_COORDINATES(value, path), None, None, (0.0, 0.0))
    fields = fields_of(value, path, {
        'anchor': (number(0, whole=True), REQUIRED),
        'handle': (one_of('in', 'out'), None),
        'by': (_COORDINATES, (0.0, 0.0)),
    })
    return Place(None, fields['anchor'], fields['handle'], fields['by'])


_MOMENT = {
    'frame': (number(0, whole=True), None),
    'seconds': (number(0), None),
    'fraction': (number(0, 1), None),
}
_SHIFT = (boolean, False)

# Every kind of gesture and its fields.
GESTURES = {
    'seek': _MOMENT,
    'zoom': {'factor': (number(SMALLEST_ZOOM, 32), REQUIRED), 'center': (pair(number(0, 1)), (0.5, 0.5))},
    'draw': {'points': (list_of(_place, 1), REQUIRED), 'shift': _SHIFT},
    'close': {},
    'pick': {'at': (_place, REQUIRED)},
    'drag': {'from': (_place, REQUIRED), 'to': (_place, REQUIRED), 'shift': _SHIFT},
    'insert': {'at': (_place, REQUIRED), 'to': (_place, None)},
    'rubber-band': {'from': (_place, REQUIRED), 'to': (_place, REQUIRED)},
    'deselect': {'at': (_place, REQUIRED)},
    'select-all': {},
    'nudge': {'by': (_COORDINATES, REQUIRED)},
    'delete': {},
    'delete-last': {},
    'keyframe': {},
    'remove-keyframe': {},
    'invert': {'on': (boolean, True)},
    'fit': {'at': (_place, REQUIRED), 'tolerance': (number(0, 255), REQUIRED), 'margin': (number(0, 100, whole=True), 4),
            'seed': (number(0, 2 ** 31 - 1, whole=True), 1)},
    'hold': {'frame': (number(0, whole=True), REQUIRED)},
    'undo': {},
    'redo': {},
}


def _gesture(value, path):
    if not isinstance(value, dict):
        raise Wrong(path, 'has to be an object, not %s' % text_of(value))
    if 'do' not in value:
        raise Wrong('', "%s: the field 'do' is missing" % path)
    kind = one_of(*sorted(GESTURES))(value['do'], path + '.do')
    fields = fields_of(value, path, dict(GESTURES[kind], do=(string, REQUIRED), note=(string, None)))
    if kind == 'seek':
        moment = Moment(**dict((key, fields[key]) for key in _MOMENT))
        if sum(part is not None for part in moment) != 1:
            raise Wrong('', '%s: a seek needs exactly one of frame, seconds and fraction' % path)
        fields = {'moment': moment}
    return Gesture(kind, fields, int(path[path.rindex('[') + 1:-1]))


def _edit(value, name):
    document.require_format(value, 'a recorded edit', FORMAT, VERSION)
    fields = fields_of(value, '', {
        'format': (string, REQUIRED),
        'version': (number(whole=True), REQUIRED),
        'title': (string, ''),
        'display': (pair(number(16, 16384, whole=True)), REQUIRED),
        'coordinates': (one_of('video', 'display'), REQUIRED),
        'feather': (_feather, Feather(0, 2)),
        'grade': (grade, REQUIRED),
        'gestures': (list_of(_gesture, 1), REQUIRED),
    })
    return Edit(name, fields['title'], fields['display'], fields['coordinates'], fields['feather'], fields['grade'],
                fields['gestures'])


def _feather(value, path):
    return Feather(**fields_of(value, path, {
        'pixels': (number(0, 1000, whole=True), REQUIRED),
        'passes': (number(1, 8, whole=True), 2),
    }))


def grade(value, path):
    """A check: the settings of a grade, here and in a selection."""
    return GradeSettings(**fields_of(value, path, {
        'exposure': (number(-16, 16), REQUIRED),
        'saturation': (number(0, 16), REQUIRED),
    }))
