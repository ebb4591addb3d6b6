# SPDX-License-Identifier: MIT
"""Every entry with its first ten allocations failing one by one, those of C++ and then the interpreter's, too: nothing ends the
process, nothing but MemoryError is raised, and the object is as good as before. A process for each entry, so that one that dies
is named."""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.environ['ORVANEL_SOURCE_DIR'], 'tests', 'binding'))

import support

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'entries_run.py')
PROGRAM = os.path.join(support.BUILD_DIR, 'tests', 'memory', 'failing_python')
ALLOCATIONS = 10


class FailingEntries(unittest.TestCase):
    def test_the_first_allocations_of_every_entry(self):
        environment = dict(os.environ, PYTHONHOME=sys.prefix)
        environment['PYTHONPATH'] = os.pathsep.join([os.path.dirname(support.__file__), environment['PYTHONPATH']])
        died, met = [], [0, 0]
        for entry in support.load_table().entries:
            process = subprocess.Popen([PROGRAM, '-B', SCRIPT, entry.name, str(ALLOCATIONS)], env=environment,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE, universal_newlines=True)
            out, errors = process.communicate()
            if process.returncode:
                died.append('%s: status %d after %r\n%s' % (entry.name, process.returncode, out.splitlines()[-1:], errors[-1500:]))
            else:
                for line in out.splitlines():
                    if line.startswith('met '):
                        kind, count = line.split()[1:]
                        met[int(kind)] += int(count)
        self.assertEqual(died, [], '\n'.join(died))
        print '%d allocations of C++ and %d of all failed' % tuple(met)
        self.assertGreater(met[0], 50, 'allocations fail at all')
        if met[1] == 0:
            print 'without an archive of the interpreter its own allocations cannot be made to fail'


if __name__ == '__main__':
    unittest.main()
