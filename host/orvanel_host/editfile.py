# SPDX-License-Identifier: MIT
"""Reads a recorded edit. The format is described in docs/edit-format.md; whatever does not follow it is refused here,
with the place and the reason, before anything is done with it."""
import collections
import json
import os

from .errors import EditError

FORMAT = 'orvanel-edit'
VERSION = 1

Edit = collections.namedtuple('Edit', 'name title display coordinates feather grade gestures')
Feather = collections.namedtuple('Feather', 'pixels passes')
GradeSettings = collections.namedtuple('GradeSettings', 'exposure saturation')
# `fields` holds every field of the gesture's kind; one that the file leaves out has its default.
Gesture = collections.namedtuple('Gesture', 'kind fields index')
# A place on the picture: either `point`, or what lies at an anchor (or at its "in" or "out" handle); plus an offset.
Place = collections.namedtuple('Place', 'point anchor handle by')
# Exactly one of the three is given.
Moment = collections.namedtuple('Moment', 'frame seconds fraction')


class _Wrong(Exception):
    """Where and why a value is wrong: the path inside the document, and a clause."""

    def __init__(self, path, reason):
        Exception.__init__(self, '%s %s' % (path, reason) if path else reason)


def load(path):
    """Reads and checks the edit in a file; EditError names the file and the first thing that is wrong."""
    name = os.path.basename(path)
    try:
        with open(path) as stream:
            text = stream.read()
    except EnvironmentError as error:
        raise EditError("edit '%s' cannot be read: %s" % (path, error.strerror))
    try:
        return parse(text, name)
    except EditError as error:
        raise EditError("edit '%s': %s" % (path, error))


def parse(text, name='edit'):
    try:
        document = json.loads(text, object_pairs_hook=_object, parse_constant=_no_constant)
        return _document(document, name)
    except _Wrong as error:
        raise EditError(str(error))
    except ValueError as error:
        raise EditError('not valid JSON: %s' % error)


def _object(pairs):
    fields = collections.OrderedDict()
    for key, value in pairs:
        if key in fields:
            raise _Wrong('', "the field '%s' stands twice in one object" % _text(key))
        fields[key] = value
    return fields


def _no_constant(name):
    raise _Wrong('', '%s is not a number here' % name)


def _text(value):
    """A value as the user wrote it, cut short."""
    text = value.encode('utf-8') if isinstance(value, unicode) else json.dumps(value)
    return text if len(text) <= 40 else text[:37] + '...'


# --- Checks: functions of (value, path) that return the value to use or raise _Wrong -----------------------------------

def _is_number(value):
    return isinstance(value, (int, long, float)) and not isinstance(value, bool)


def _number(low=None, high=None, whole=False):
    kind = 'a whole number' if whole else 'a number'
    if low is not None and high is not None:
        kind += ' from %g to %g' % (low, high)
    elif low is not None:
        kind += ' of at least %g' % low

    def check(value, path):
        wrong = not _is_number(value) or (whole and value != int(value))
        if wrong or (low is not None and value < low) or (high is not None and value > high):
            raise _Wrong(path, 'has to be %s, not %s' % (kind, _text(value)))
        return int(value) if whole else float(value)
    return check


def _boolean(value, path):
    if not isinstance(value, bool):
        raise _Wrong(path, 'has to be true or false, not %s' % _text(value))
    return value


def _string(value, path):
    if not isinstance(value, unicode):
        raise _Wrong(path, 'has to be a text, not %s' % _text(value))
    return value.encode('utf-8')


def _one_of(*names):
    def check(value, path):
        if value not in names:
            raise _Wrong(path, 'has to be one of %s, not %s' % (', '.join(names), _text(value)))
        return str(value)
    return check


def _pair(item):
    def check(value, path):
        if not isinstance(value, list) or len(value) != 2:
            raise _Wrong(path, 'has to be a list of two numbers, not %s' % _text(value))
        return tuple(item(part, '%s[%d]' % (path, i)) for i, part in enumerate(value))
    return check


def _list(item, shortest=0):
    def check(value, path):
        if not isinstance(value, list) or len(value) < shortest:
            raise _Wrong(path, 'has to be a list of at least %d, not %s' % (shortest, _text(value)))
        return [item(part, '%s[%d]' % (path, i)) for i, part in enumerate(value)]
    return check


_REQUIRED = object()


def _fields(value, path, known):
    """The fields of an object: `known` maps a name to (check, default), the default being _REQUIRED for a must."""
    if not isinstance(value, dict):
        raise _Wrong(path, 'has to be an object, not %s' % _text(value))
    inside = path + '.' if path else ''
    for key in value:
        if key not in known:
            raise _Wrong('', "%sunknown field '%s'%s" % (path + ': ' if path else '', _text(key), _suggestion(known)))
    result = {}
    for key, (check, default) in known.items():
        if key in value:
            result[key] = check(value[key], inside + key)
        elif default is _REQUIRED:
            raise _Wrong('', "%sthe field '%s' is missing" % (path + ': ' if path else '', key))
        else:
            result[key] = default
    return result


def _suggestion(known):
    return ' (known: %s)' % ', '.join(sorted(known)) if known else ''


_COORDINATES = _pair(_number())


def _place(value, path):
    if isinstance(value, list):
        return Place(_COORDINATES(value, path), None, None, (0.0, 0.0))
    fields = _fields(value, path, {
        'anchor': (_number(0, whole=True), _REQUIRED),
        'handle': (_one_of('in', 'out'), None),
        'by': (_COORDINATES, (0.0, 0.0)),
    })
    return Place(None, fields['anchor'], fields['handle'], fields['by'])


_MOMENT = {
    'frame': (_number(0, whole=True), None),
    'seconds': (_number(0), None),
    'fraction': (_number(0, 1), None),
}
_SHIFT = (_boolean, False)

# Every kind of gesture and its fields.
GESTURES = {
    'seek': _MOMENT,
    'zoom': {'factor': (_number(0.1, 32), _REQUIRED), 'center': (_pair(_number(0, 1)), (0.5, 0.5))},
    'draw': {'points': (_list(_place, 1), _REQUIRED), 'shift': _SHIFT},
    'close': {},
    'pick': {'at': (_place, _REQUIRED)},
    'drag': {'from': (_place, _REQUIRED), 'to': (_place, _REQUIRED), 'shift': _SHIFT},
    'insert': {'at': (_place, _REQUIRED), 'to': (_place, None)},
    'rubber-band': {'from': (_place, _REQUIRED), 'to': (_place, _REQUIRED)},
    'deselect': {'at': (_place, _REQUIRED)},
    'select-all': {},
    'nudge': {'by': (_COORDINATES, _REQUIRED)},
    'delete': {},
    'delete-last': {},
    'keyframe': {},
    'remove-keyframe': {},
    'invert': {'on': (_boolean, True)},
    'fit': {'at': (_place, _REQUIRED), 'tolerance': (_number(0, 255), _REQUIRED), 'margin': (_number(0, 100, whole=True), 4),
            'seed': (_number(0, 2 ** 31 - 1, whole=True), 1)},
    'hold': {'frame': (_number(0, whole=True), _REQUIRED)},
    'undo': {},
    'redo': {},
}


def _gesture(value, path):
    if not isinstance(value, dict):
        raise _Wrong(path, 'has to be an object, not %s' % _text(value))
    if 'do' not in value:
        raise _Wrong('', "%s: the field 'do' is missing" % path)
    kind = _one_of(*sorted(GESTURES))(value['do'], path + '.do')
    fields = _fields(value, path, dict(GESTURES[kind], do=(_string, _REQUIRED), note=(_string, None)))
    if kind == 'seek':
        moment = Moment(**dict((key, fields[key]) for key in _MOMENT))
        if sum(part is not None for part in moment) != 1:
            raise _Wrong('', '%s: a seek needs exactly one of frame, seconds and fraction' % path)
        fields = {'moment': moment}
    return Gesture(kind, fields, int(path[path.rindex('[') + 1:-1]))


def _document(value, name):
    # The format is looked at first: on a file of another kind every other message would mislead.
    if not isinstance(value, dict) or value.get('format') != FORMAT:
        raise _Wrong('', "not a recorded edit: the field 'format' has to be \"%s\"" % FORMAT)
    if value.get('version') != VERSION:
        raise _Wrong('version', 'has to be %d, not %s' % (VERSION, _text(value.get('version'))))
    fields = _fields(value, '', {
        'format': (_string, _REQUIRED),
        'version': (_number(whole=True), _REQUIRED),
        'title': (_string, ''),
        'display': (_pair(_number(16, 16384, whole=True)), _REQUIRED),
        'coordinates': (_one_of('video', 'display'), _REQUIRED),
        'feather': (_feather, Feather(0, 2)),
        'grade': (_grade, _REQUIRED),
        'gestures': (_list(_gesture, 1), _REQUIRED),
    })
    return Edit(name, fields['title'], fields['display'], fields['coordinates'], fields['feather'], fields['grade'],
                fields['gestures'])


def _feather(value, path):
    return Feather(**_fields(value, path, {
        'pixels': (_number(0, 1000, whole=True), _REQUIRED),
        'passes': (_number(1, 8, whole=True), 2),
    }))


def _grade(value, path):
    return GradeSettings(**_fields(value, path, {
        'exposure': (_number(-16, 16), _REQUIRED),
        'saturation': (_number(0, 16), _REQUIRED),
    }))
