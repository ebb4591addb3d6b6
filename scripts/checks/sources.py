# SPDX-License-Identifier: MIT
"""What the checks share: finding files, reading C++ without its comments, and the one way to report.

Python 2.7, as everything else here that is not C++.
"""

import os
import re
import sys

CXX_SUFFIXES = ('.cpp', '.h', '.c', '.i')
SKIPPED_FOLDERS = frozenset(['.git', 'build', 'out', '.cache', '__pycache__'])

# A string is kept as a whole, so that a comment marker inside one is no comment.
_TOKENS = re.compile(r'''
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<raw>R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)")
  | (?P<text>"(?:\\.|[^"\\\n])*"|(?<![0-9A-Za-z_])'(?:\\.|[^'\\\n])+')
''', re.VERBOSE | re.DOTALL)


def files_below(root, folders=('.',), suffixes=None):
    """Paths relative to root, '/' between names, sorted. Build and hidden output folders are left out."""
    found = []
    for folder in folders:
        for base, names, files in os.walk(os.path.join(root, folder)):
            names[:] = [name for name in names if name not in SKIPPED_FOLDERS]
            for name in files:
                if suffixes is None or name.endswith(suffixes):
                    path = os.path.relpath(os.path.join(base, name), root)
                    found.append(path.replace(os.sep, '/'))
    return sorted(set(found))


def read(root, path):
    with open(os.path.join(root, path), 'rb') as stream:
        return stream.read()


def _blank(text):
    return re.sub(r'[^\n]', ' ', text)


def without_comments(source):
    """The source with every comment blanked; line numbers stay."""
    return _TOKENS.sub(lambda found: _blank(found.group()) if found.group('comment') else found.group(), source)


def code_only(source):
    """The source with comments and the inside of texts blanked; line numbers and quotes stay."""
    return _TOKENS.sub(lambda found: _blank(found.group()) if found.group('comment') else '"%s"' % _blank(found.group()[1:-1]), source)


def line_of(source, position):
    return source.count('\n', 0, position) + 1


def report(name, findings):
    """Prints findings and answers the exit code."""
    for finding in findings:
        sys.stdout.write(finding + '\n')
    sys.stdout.write('%s: %d finding%s\n' % (name, len(findings), '' if len(findings) == 1 else 's'))
    return 1 if findings else 0


def repository(arguments):
    """The folder to check: the first argument, or the repository that holds this file."""
    return arguments[1] if len(arguments) > 1 else os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
