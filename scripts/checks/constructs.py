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
    (re.compile(r'^[^\n=]*\b[\w:>*&]+\s+\w+\s*\[\s*0\s*\]\s*[;,{]', re.MULTILINE), 'an array of size zero'),
    (re.compile(r'^[ \t]+(?!return\b|delete\b|throw\b)[\w:<>*&]+[ \t]+\w+\s*\[\s*\]\s*;', re.MULTILINE), 'an array without a size as a member'),
    (re.compile(r'[{,]\s*(?:\[\s*\w+\s*\]|\.\w+(?:\.\w+|\s*\[\s*\w+\s*\])+)\s*=(?!=)'), 'a designator of C (of an element, or of a member of a member)'),
    (re.compile(r'[{,]\s*\w+\s*:\s*\w[\w.]*\s*[,}]\s*;'), 'a designator of old GCC'),
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
LICENSED_SUFFIXES = sources.CXX_SUFFIXES + ('.py', '.sh', '.cmake', '.cmd', 'CMakeLists.txt', '.in')
LICENSED_SCRIPTS = ('run', 'test', 'bench', 'dist', '.ci/run')

# Written so that this list does not match itself.
WORDS = [
    (re.compile(r'[s]pecification|DEVELOPERS[.]md|\bCOMPAS[S]\b|\bParts? [0-9]+[.][0-9]', re.IGNORECASE), 'names a document that is not here'),
    (re.compile(r'(?<![\w}./])/(?:[w]ork|[h]ome/\w+|[r]oot)/|[.]library/'), 'names a folder of one machine'),
    (re.compile(r'\b[T]ODO\b|\b[F]IXME\b|\b[X]XX\b'), 'unfinished'),
    (re.compile(r'https?://[^\s"]*\b[d]ebian\b|\b[d]eb[.]debian|\b[p]ypi\b', re.IGNORECASE), 'names a package host'),
]
TEXT_SUFFIXES = LICENSED_SUFFIXES + ('.md', '.txt', '.json', '.supp', '.pyi', '.yml')


# Designators have to follow the order of the members; a compiler that only warns lets this through.
_MEMBER = re.compile(r'\b(\w+)\s*(?:\[[^\]]*\])?\s*(?:=[^;]*|\{[^;{}]*\})?;')
_STRUCTURE = re.compile(r'\b(?:struct|class|union)\s+(?:\w+\s+)?(\w+)[^;{}()]*\{')
_DESIGNATED = re.compile(r'\{\s*\.\w+\s*=(?!=)')
_DESIGNATOR = re.compile(r'[{,]\s*\.(\w+)\s*=(?!=)')


def _block(source, opening):
    """The text between the brace at `opening` and its partner, with what stands in inner brackets blanked."""
    depth, kept = 0, []
    for character in source[opening:]:
        depth -= character in '})]'
        if depth == 0 and kept:
            break
        kept.append(character if depth <= 1 or character == '\n' else ' ')
        depth += character in '{(['
    return ''.join(kept)


def member_orders(source):
    """For each structure of the source the names of its members, in order."""
    return [[member.group(1) for member in _MEMBER.finditer(_block(source, found.end() - 1))] for found in _STRUCTURE.finditer(source)]


def check_designators(root, path, orders):
    """`orders`: the members of every structure of the repository, since an initialiser does not always name its type."""
    source = sources.code_only(sources.read(root, path))
    findings = []
    for found in _DESIGNATED.finditer(source):
        names = _DESIGNATOR.findall(_block(source, found.start()))
        having = [order for order in orders if set(names) <= set(order)]
        if having and not any(names == [name for name in order if name in names] for order in having):
            findings.append('%s:%d: designators in another order than the members: %s' %
                            (path, sources.line_of(source, found.start()), ', '.join(names)))
    return findings


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
    paths = sources.files_below(root, CXX_FOLDERS, sources.CXX_SUFFIXES)
    orders = [order for path in paths for order in member_orders(sources.code_only(sources.read(root, path)))]
    for path in paths:
        findings += check_designators(root, path, orders)
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
