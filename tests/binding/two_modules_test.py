# SPDX-License-Identifier: MIT
"""Types shared with modules that SWIG built: the cases of two_modules_cases.py, in every order of import."""

import itertools
import os
import subprocess
import sys
import unittest

import support


def peers():
    yield ('_Orvanel', 'swig_peer', 'swig_plain_peer')
    # The reference host's module is one more peer.
    if any(os.path.exists(os.path.join(support.BUILD_DIR, 'python', '_hostkit' + suffix)) for suffix in ('.so', '.pyd')):
        yield ('_Orvanel', 'orvanel_host.hostkit')
    else:
        print '_hostkit is not built: it is left out'


class TwoModules(unittest.TestCase):
    def test_every_order_of_import(self):
        for modules in peers():
            for order in itertools.permutations(modules):
                environment = dict(os.environ, ORVANEL_IMPORT_ORDER=','.join(order))
                process = subprocess.Popen([sys.executable, '-B', '-m', 'unittest', 'two_modules_cases'], env=environment,
                                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, universal_newlines=True)
                out = process.communicate()[0]
                self.assertEqual(process.returncode, 0, 'imported in the order %s:\n%s' % (', '.join(order), out))
                self.assertNotIn('Ran 0 tests', out)


if __name__ == '__main__':
    unittest.main()
