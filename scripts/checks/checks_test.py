# SPDX-License-Identifier: MIT
"""Each rule of the checks against a sample that it must catch, and against one that it must let pass."""

import os
import shutil
import tempfile
import unittest

import constructs
import includes

LICENCE = '// SPDX-License-Identifier: MIT\n'


class Tree(unittest.TestCase):
    """A repository made for one test."""

    def setUp(self):
        self.root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.root)

    def write(self, path, text):
        full = os.path.join(self.root, path)
        if not os.path.isdir(os.path.dirname(full)):
            os.makedirs(os.path.dirname(full))
        with open(full, 'wb') as stream:
            stream.write(text)


class IncludesTest(Tree):
    def findings(self, path, text):
        self.write(path, text)
        return includes.check(self.root)

    def assert_caught(self, path, text, words):
        findings = self.findings(path, text)
        self.assertEqual(1, len(findings), findings)
        self.assertIn(words, findings[0])

    def test_upward_include(self):
        self.assert_caught('src/mask/runs.cpp', '#include "overlay/orvanel.h"\n', 'mask may not include overlay')
        self.assertEqual(['src/mask/runs.cpp:1: mask may not include overlay (overlay/orvanel.h)'], includes.check(self.root))

    def test_every_room_upward(self):
        order = ['platform', 'overlay/types', 'support', 'mask', 'overlay', 'binding']
        for lower in range(len(order)):
            for upper in range(lower + 1, len(order)):
                path = 'src/%s/x.cpp' % order[lower]
                self.assert_caught(path, '\n#include "%s/y.h"\n' % order[upper], '%s:2: ' % path)
                os.remove(os.path.join(self.root, path))

    def test_sideways_include(self):
        self.assert_caught('src/mask/a.h', '#include "texture/allocator.h"\n', 'mask may not include texture')

    def test_canvas_knows_no_editor(self):
        self.assert_caught('canvas/a.cpp', '  #  include "overlay/orvanel.h"\n', 'canvas may not include overlay')

    def test_host_sees_published_headers_only(self):
        self.assert_caught('host/a.cpp', '#include "texture/py_map.h"\n#include "texture/allocator.h"\n', 'host may not include texture')

    def test_relative_include(self):
        self.assert_caught('src/mask/a.h', '#include "../binding/table.h"\n', 'relative include')

    def test_python_header(self):
        self.assert_caught('src/overlay/a.cpp', '#include <Python.h>\n', '<Python.h> comes through')

    def test_python_header_in_mask(self):
        self.assert_caught('src/support/a.cpp', '#include "callback/python.h"\n', 'support may not include callback')

    def test_component_model_in_mask(self):
        self.assert_caught('src/mask/a.cpp', '#include "platform/com_pointer.h"\n', 'component model')

    def test_system_header(self):
        for header in ('windows.h', 'Windows.h', 'sys/mman.h', 'unistd.h', 'd3d9.h'):
            self.assert_caught('src/overlay/a.cpp', '#include <%s>\n' % header, 'belongs in src/platform')

    def test_platform_switch(self):
        self.assert_caught('src/overlay/a.cpp', '#if defined(_WIN32)\n#endif\n', '_WIN32 is asked for')
        self.assert_caught('src/overlay/a.cpp', '#ifdef _MSC_VER\n#endif\n', '_MSC_VER is asked for')

    def test_unknown_room(self):
        self.assert_caught('src/attic/a.cpp', '\n', 'no line in MAY_INCLUDE')

    def test_clean(self):
        self.write('src/binding/a.cpp', '#include "overlay/orvanel.h"\n#include "callback/python.h"\n#include <vector>\n')
        self.write('src/callback/python.h', '#include <Python.h>\n')
        self.write('src/platform/a.cpp', '#ifdef _WIN32\n#include <windows.h>\n#endif\n')
        self.write('src/mask/a.cpp', '// #include "overlay/orvanel.h"\n/* #ifdef _WIN32\n#include <windows.h> */\n#include "overlay/types/placement.h"\n')
        self.assertEqual([], includes.check(self.root))


class ConstructsTest(Tree):
    def assert_caught(self, text, words, path='src/mask/a.cpp'):
        self.write(path, LICENCE + text)
        findings = constructs.check(self.root)
        self.assertEqual(1, len(findings), (text, findings))
        self.assertIn(words, findings[0])
        self.assertIn(path + ':2: ', findings[0])

    def test_each_construct(self):
        for text, words in [
                ('int f() __attribute__((pure));', 'attribute'),
                ('[[gnu::hot]] int f();', 'attribute'),
                ('int n = __builtin_clz(3);', 'builtin'),
                ('int n = ({ int m = 1; m; });', 'statement expression'),
                ('__extension__ typedef int t;', 'extension keyword'),
                ('__int128 n;', '128-bit'),
                ('struct S { int tail[0]; };', 'size zero'),
                ('    int tail[];', 'without a size'),
                ('int a[3] = {[1] = 2};', 'designator of C'),
                ('Rect r = {.corner.x = 1};', 'designator of C'),
                ('Point p = {x: 1};', 'designator of old GCC'),
                ('switch (n) { case 1 ... 5: break; }', 'case range'),
                ('int n = a ?: b;', 'without its middle'),
                ('asm("nop");', 'assembly'),
                ('auto n = __PRETTY_FUNCTION__;', 'name of one compiler'),
                ('ssize_t n;', 'type of POSIX'),
                ('double n = M_PI_2;', 'constant of POSIX'),
                ('bool b = strcasecmp(x, y) == 0;', 'function of POSIX'),
                ('#include <bits/stdc++.h>', 'private header'),
                ('#pragma GCC optimize("O3")', 'directive')]:
            self.assert_caught(text, words)

    def test_order_of_designators(self):
        self.write('src/mask/point.h', LICENCE + 'struct Point {\n    int x = 0;\n    int y[2];\n    int blank = {};\n    std::vector<int> z{1};\n    int sum() const { int w; return w; }\n};\n'
                   'struct Other { int y; int w; };\n')
        self.assert_caught('Point p{.y = {1, 2}, .x = f({.q = 1})};', 'another order than the members: y, x')
        self.assert_caught('draw({.z = {1},\n .x = 2});', 'z, x')
        for text in ('Point p{.x = 1, .y = {2}};', 'draw({.x = 1, .z = {1}});', 'draw({.y = 1, .w = 1});', 'f({.unknown = 1, .x = 2});'):
            self.write('src/mask/a.cpp', LICENCE + text + '\n')
            self.assertEqual([], constructs.check(self.root), text)

    def test_compiler_folder_may(self):
        self.write('src/platform/a.cpp', LICENCE + 'int n = __builtin_clz(3);\n')
        self.assertEqual([], constructs.check(self.root))

    def test_texts_and_comments_may(self):
        self.write('src/mask/a.cpp', LICENCE + '// __attribute__\nauto t = "__builtin_clz(3)";\nauto n = b ? "x" : "y";\nauto r = R"(a ?: b)";\n'
                   'int big = 1\'000\'000; Py_ssize_t s; values[0]; row = table[0]; f({1, 2}); f([] { g(); });\n')
        self.assertEqual([], constructs.check(self.root))

    def test_licence(self):
        self.write('src/mask/a.cpp', 'int n;\n')
        self.write('run', '#!/bin/sh\n')
        self.assertEqual(['run:1: no line "SPDX-License-Identifier: MIT"', 'src/mask/a.cpp:1: no line "SPDX-License-Identifier: MIT"'],
                         constructs.check(self.root))

    def test_words(self):
        # Put together here, so that this file passes its own check.
        for text, words in [('speci' + 'fication', 'document'), ('see Part ' + '2.3', 'document'), ('/wo' + 'rk/x', 'folder of one machine'),
                            ('/ro' + 'ot/x', 'folder of one machine'), ('TO' + 'DO', 'unfinished'),
                            ('http://x.deb' + 'ian.org/y', 'package host')]:
            self.assert_caught('// ' + text, words)

    def test_words_in_documents(self):
        self.write('docs/a.md', 'one\nTO' + 'DO\n')
        self.assertEqual(1, len(constructs.check(self.root)))

    def test_build_folder_is_not_read(self):
        self.write('build/a.cpp', '__attribute__\n')
        self.assertEqual([], constructs.check(self.root))


if __name__ == '__main__':
    unittest.main()
