# SPDX-License-Identifier: MIT
"""Which results in a folder this host has made. A small file among them keeps size, time and digest of each: what is as it
was written may be replaced by a later run, and what somebody has put there, or has worked on since, may not."""
import hashlib
import json
import os
import stat

FILE = '.orvanel-results.json'
_FORMAT = 'orvanel-results'
_VERSION = 1
# What stands for a folder; its files have records of their own.
_FOLDER = 'folder'
_BLOCK = 1 << 20


def _entries(top, name):
    """Names below `top`, from `name` on, folders before what is in them."""
    yield name
    path = os.path.join(top, name)
    if os.path.isdir(path):
        for entry in sorted(os.listdir(path)):
            for below in _entries(top, os.path.join(name, entry)):
                yield below


def _digest(path, advance):
    digest = hashlib.sha1()
    with open(path, 'rb') as stream:
        for block in iter(lambda: stream.read(_BLOCK), b''):
            digest.update(block)
            advance()
    return digest.hexdigest()


def _size_and_time(status):
    return '%d %d' % (status.st_size, round(status.st_mtime * 1e6))


def _record(path, advance):
    status = os.lstat(path)
    return _FOLDER if stat.S_ISDIR(status.st_mode) else '%s %s' % (_size_and_time(status), _digest(path, advance))


def _is_as_recorded(path, record, advance):
    status = os.lstat(path)
    if stat.S_ISDIR(status.st_mode):
        return record == _FOLDER
    if not stat.S_ISREG(status.st_mode) or record is None:
        return False
    known, _, digest = record.rpartition(' ')
    # A copy or a file system with coarse times has another time; it is the same file all the same.
    return known == _size_and_time(status) or (
        known.split(' ')[0] == '%d' % status.st_size and digest == _digest(path, advance))


def digest_steps(folder, names):
    """How often records_of calls `advance`."""
    paths = [os.path.join(folder, entry) for name in names for entry in _entries(folder, name)]
    return sum((os.path.getsize(path) + _BLOCK - 1) // _BLOCK for path in paths if not os.path.isdir(path))


def records_of(folder, names, advance):
    """The records of the results with these names, for Manifest.replaced_by. `advance` is called after each megabyte."""
    entries = [entry for name in names for entry in _entries(folder, name)]
    return dict((entry, _record(os.path.join(folder, entry), advance)) for entry in entries)


class Manifest(object):
    """The records of a folder. Names are relative to it."""

    def __init__(self, folder):
        self._folder = folder
        self._records = self._read()

    def _read(self):
        """Records by name; none when there is no manifest, or nothing that can be read as one."""
        try:
            with open(os.path.join(self._folder, FILE), 'rb') as stream:
                document = json.loads(stream.read())
            if (document['format'], document['version']) != (_FORMAT, _VERSION):
                return {}
            return dict((name.encode('utf-8'), record.encode('utf-8')) for name, record in document['results'].items())
        # Whatever stands in the file: damaged records vouch for nothing. Nesting too deep is a RuntimeError.
        except (EnvironmentError, ValueError, KeyError, TypeError, AttributeError, RuntimeError):
            return {}

    def foreign(self, name, advance):
        """What stands under the name of a result and was not made by this host, or not as it is now: names, of a folder
        that is foreign as a whole only its own. `advance` is called after each megabyte that has to be read for that."""
        if name == FILE:
            return [] if self._records or not os.path.lexists(os.path.join(self._folder, FILE)) else [FILE]
        path = os.path.join(self._folder, name)
        if not os.path.lexists(path):
            return []
        try:
            if not _is_as_recorded(path, self._records.get(name), advance):
                return [name]
            entries = sorted(os.listdir(path)) if os.path.isdir(path) else ()
        except EnvironmentError:
            # What cannot be looked at is nothing to replace.
            return [name]
        return [found for entry in entries for found in self.foreign(os.path.join(name, entry), advance)]

    def replaced_by(self, records):
        """The text of a manifest with these records in the place of what they replace. It names nothing that is not there
        any more."""
        replaced = set(entry.split(os.sep)[0] for entry in records)
        kept = dict((entry, record) for entry, record in self._records.items()
                    if entry.split(os.sep)[0] not in replaced and os.path.lexists(os.path.join(self._folder, entry)))
        document = {'format': _FORMAT, 'version': _VERSION, 'results': dict(kept, **records)}
        return json.dumps(document, indent=1, sort_keys=True, separators=(',', ': ')) + '\n'
