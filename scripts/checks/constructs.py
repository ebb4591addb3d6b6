# SPDX-License-Identifier: MIT
"""Reports what must not be written: constructs only GCC knows, missing licence lines, words that do not belong here.

The code above src/platform is compiled by Microsoft's compiler too, which no machine of ours runs; so what it would refuse
is looked for as text.
"""

import re
import sys

import sources

CXX_FOLDERS = ('src', 'canvas', 'host', 'tests', 'benches', 'fuzz')
# The one place that may know a compiler.
COMPILER_FOLDERS = ('src/platform/',)

CONSTRUCTS = [
    (re.compile(r'__attribute__|\[\[\s*gnu::'), 'an attribute of one compiler'),
    (re.compile(r'\b__builtin_\w+'), 'a builtin of one compiler'),
    (re.compile(r'\(\s*\{[^;{}()]*;'), 'a statement expression'),
    (re.compile(r'\b__extension__\b|\b__typeof__\b|\btypeof\s*\('), 'an extension keyword'),
    (re.compile(r'\b__(?:u?int128(?:_t)?|float128)\b'), 'a 128-bit type'),
    (re.compile(r'^[^\n=]*\b[\w:>*&]+\s+\w+\s*\[\s*0\s*\]\s*;', re.MULTILINE), 'an array of size zero'),
    (re.compile(r'\bcase\b[^:\n;]*\.\.\.'), 'a case range'),
    (re.compile(r'\?\s*:(?!:)'), 'a conditional without its middle'),
    (re.compile(r'\b(?:asm|__asm__)\b\s*(?:volatile)?\s*\('), 'inline assembly'),
    (re.compile(r'\b__PRETTY_FUNCTION__\b'), 'a name of one compiler (std::source_location is standard)'),
    (re.compile(r'\b(?:ssize_t|u_int\d+_t|useconds_t)\b(?<!Py_ssize_t)'), 'a type of POSIX'),
    (re.compile(r'\bM_(?:PI|E|SQRT2)(?:_\d)?\b'), 'a constant of POSIX (std::numbers is standard)'),
    (re.compile(r'\b(?:strcasecmp|strncasecmp|alloca|bzero|usleep)\s*\('), 'a function of POSIX'),
    (re.compile(r'^[ \t]*#[ \t]*include[ \t]*<(?:bits/|ext/|cxxabi\.h)', re.MULTILINE), 'a private header of one library'),
    (re.compile(r'^[ \t]*#[ \t]*(?:pragma[ \t]+GCC|include_next|warning)\b', re.MULTILINE), 'a directive of one compiler'),
]

LICENCE = 'SPDX-License-Identifier: MIT'
LICENSED_SUFFIXES = sources.CXX_SUFFIXES + ('.py', '.sh', '.cmake', 'CMakeLists.txt', '.in')
LICENSED_SCRIPTS = ('run', 'test', 'bench', '.ci/run')

# Written so that this list does not match itself.
WORDS = [
    (re.compile(r'[s]pecification|DEVELOPERS[.]md|\bCOMPAS[S]\b|\bParts? [0-9]+[.][0-9]', re.IGNORECASE), 'names a document that is not here'),
    (re.compile(r'(?<![\w}./])/(?:[w]ork|[h]ome/\w+|[r]oot)/|[.]library/'), 'names a folder of one machine'),
    (re.compile(r'\b[T]ODO\b|\b[F]IXME\b|\b[X]XX\b'), 'unfinished'),
    (re.compile(r'https?://[^\s"]*\b[d]ebian\b|\b[d]eb[.]debian|\b[p]ypi\b', re.IGNORECASE), 'names a package host'),
]
TEXT_SUFFIXES = LICENSED_SUFFIXES + ('.md', '.txt', '.json', '.supp', '.pyi', '.yml')


def check_constructs(root, path):
    source = sources.code_only(sources.read(root, path))
    return ['%s:%d: %s: %s' % (path, sources.line_of(source, found.start()), why, ' '.join(found.group().split()))
            for pattern, why in CONSTRUCTS for found in pattern.finditer(source)]


def check_licence(root, path):
    head = sources.read(root, path).split('\n', 2)[:2]
    return [] if any(LICENCE in line for line in head) else ['%s:1: no line "%s"' % (path, LICENCE)]


def check_words(root, path):
    source = sources.read(root, path)
    return ['%s:%d: %s: %s' % (path, sources.line_of(source, found.start()), why, found.group())
            for pattern, why in WORDS for found in pattern.finditer(source)]


def check(root):
    findings = []
    for path in sources.files_below(root, CXX_FOLDERS, sources.CXX_SUFFIXES):
        if not path.startswith(COMPILER_FOLDERS):
            findings += check_constructs(root, path)
    for path in sources.files_below(root):
        if path.endswith(LICENSED_SUFFIXES) or path in LICENSED_SCRIPTS:
            findings += check_licence(root, path)
        if path.endswith(TEXT_SUFFIXES) or path in LICENSED_SCRIPTS:
            findings += check_words(root, path)
    return findings


if __name__ == '__main__':
    sys.exit(sources.report('constructs', check(sources.repository(sys.argv))))
