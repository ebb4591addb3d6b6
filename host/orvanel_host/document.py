# SPDX-License-Identifier: MIT
"""JSON files of the host's own formats: reading them, and checks that name what is wrong and where.

Whatever is in a file, the answer is its contents or a Wrong: no error of a library gets out, and no number that a later
step could not hold gets in.
"""
import codecs
import collections
import json

from .messages import one_line

# More than any file of these formats comes to; a device that never ends has to stop somewhere.
_LARGEST_FILE = 64 << 20
# Without bounds of its own a number has these: far beyond every picture and clip, and small enough to be computed with.
_LARGEST_NUMBER = 1e9
_LONGEST_NUMBER = 40
_LONGEST_TEXT = 40

_OTHER_ENCODINGS = ((codecs.BOM_UTF32_LE, 'UTF-32'), (codecs.BOM_UTF32_BE, 'UTF-32'), (codecs.BOM_UTF16_LE, 'UTF-16'),
                    (codecs.BOM_UTF16_BE, 'UTF-16'))


class Wrong(Exception):
    """Where and why a value is wrong: the path inside the document, and a clause."""

    def __init__(self, path, reason):
        Exception.__init__(self, '%s %s' % (path, reason) if path else reason)


def read(path):
    """The bytes of a file. EnvironmentError when it cannot be read."""
    with open(path, 'rb') as stream:
        data = stream.read(_LARGEST_FILE + 1)
    if len(data) > _LARGEST_FILE:
        raise Wrong('', 'larger than %d MB' % (_LARGEST_FILE >> 20))
    return data


def checked(data, check):
    """What `check` makes of a JSON text."""
    try:
        return check(_parse(_decoded(data)))
    except RuntimeError:
        # The interpreter's limit, which stands in for a limit of the format.
        raise Wrong('', 'not valid JSON: nested too deeply')


def _decoded(data):
    for mark, name in _OTHER_ENCODINGS:
        if data.startswith(mark):
            raise Wrong('', '%s text: it has to be UTF-8' % name)
    try:
        return data.decode('utf-8-sig')
    except UnicodeDecodeError as error:
        raise Wrong('', 'not UTF-8 text: byte %d is 0x%02x' % (error.start, ord(data[error.start])))


def _parse(text):
    try:
        return json.loads(text, object_pairs_hook=_object, parse_constant=_no_constant, parse_int=_integer,
                          parse_float=_float)
    except ValueError as error:
        raise Wrong('', 'not valid JSON: %s' % error)


def _object(pairs):
    fields = collections.OrderedDict()
    for key, value in pairs:
        if key in fields:
            raise Wrong('', "the field '%s' stands twice in one object" % text_of(key))
        fields[key] = value
    return fields


def _no_constant(name):
    raise Wrong('', '%s is not a number here' % name)


def _integer(digits):
    # Converting takes a time that grows with the square of the length.
    if len(digits) > _LONGEST_NUMBER:
        raise Wrong('', 'the number %s is too large' % text_of(digits))
    return int(digits)


def _float(digits):
    value = float(digits)
    if value in (float('inf'), float('-inf')):
        raise Wrong('', 'the number %s is too large' % text_of(digits))
    return value


def text_of(value, quoted=False):
    """A value as the user wrote it, cut short. `quoted` tells a text from a number."""
    text = value if isinstance(value, basestring) and not quoted else json.dumps(value, ensure_ascii=False)
    if isinstance(text, str):
        text = text.decode('utf-8')
    return one_line((text if len(text) <= _LONGEST_TEXT else text[:_LONGEST_TEXT - 3] + '...').encode('utf-8'))


# --- Checks: functions of (value, path) that return the value to use or raise Wrong ------------------------------------

def is_number(value):
    return isinstance(value, (int, long, float)) and not isinstance(value, bool)


def number(low=None, high=None, whole=False):
    kind = 'a whole number' if whole else 'a number'
    if low is not None and high is not None:
        kind += ' from %g to %g' % (low, high)
    elif low is not None:
        kind += ' of at least %g' % low

    def check(value, path):
        wrong = not is_number(value) or (whole and value != int(value))
        if wrong or (low is not None and value < low) or (high is not None and value > high):
            raise Wrong(path, 'has to be %s, not %s' % (kind, text_of(value)))
        if high is None and abs(value) > _LARGEST_NUMBER:
            raise Wrong(path, 'is too large: %s' % text_of(value))
        return int(value) if whole else float(value)
    return check


def boolean(value, path):
    if not isinstance(value, bool):
        raise Wrong(path, 'has to be true or false, not %s' % text_of(value))
    return value


def string(value, path):
    if not isinstance(value, unicode):
        raise Wrong(path, 'has to be a text, not %s' % text_of(value))
    return value.encode('utf-8')


def one_of(*names):
    def check(value, path):
        if value not in names:
            raise Wrong(path, 'has to be one of %s, not %s' % (', '.join(names), text_of(value)))
        return str(value)
    return check


def pair(item):
    def check(value, path):
        if not isinstance(value, list) or len(value) != 2:
            raise Wrong(path, 'has to be a list of two numbers, not %s' % text_of(value))
        return tuple(item(part, '%s[%d]' % (path, i)) for i, part in enumerate(value))
    return check


def list_of(item, shortest=0):
    def check(value, path):
        if not isinstance(value, list) or len(value) < shortest:
            raise Wrong(path, 'has to be a list of at least %d, not %s' % (shortest, text_of(value)))
        return [item(part, '%s[%d]' % (path, i)) for i, part in enumerate(value)]
    return check


def row(*items):
    """A list with a check for each of its items."""
    def check(value, path):
        if not isinstance(value, list) or len(value) != len(items):
            raise Wrong(path, 'has to be a list of %d, not %s' % (len(items), text_of(value)))
        return [item(part, '%s[%d]' % (path, i)) for i, (item, part) in enumerate(zip(items, value))]
    return check


REQUIRED = object()


def fields_of(value, path, known):
    """The fields of an object: `known` maps a name to (check, default), the default being REQUIRED for a must."""
    if not isinstance(value, dict):
        raise Wrong(path, 'has to be an object, not %s' % text_of(value))
    inside = path + '.' if path else ''
    for key in value:
        if key not in known:
            raise Wrong('', "%sunknown field '%s'%s" % (path + ': ' if path else '', text_of(key), _suggestion(known)))
    result = {}
    for key, (check, default) in known.items():
        if key in value:
            result[key] = check(value[key], inside + key)
        elif default is REQUIRED:
            raise Wrong('', "%sthe field '%s' is missing" % (path + ': ' if path else '', key))
        else:
            result[key] = default
    return result


def _suggestion(known):
    return ' (known: %s)' % ', '.join(sorted(known)) if known else ''


def require_format(value, what, name, version):
    """The format is looked at first: on a file of another kind every other message would mislead."""
    if not isinstance(value, dict) or value.get('format') != name:
        raise Wrong('', "not %s: the field 'format' has to be \"%s\"" % (what, name))
    if not is_number(value.get('version')) or value['version'] != version:
        raise Wrong('version', 'has to be %d, not %s' % (version, text_of(value.get('version'), quoted=True)))
