# SPDX-License-Identifier: MIT
"""Every entry with too few and too many arguments, and every argument with every wrong object: exception class, exact text,
and that no method ran. The cases are made from the entry table; the oracle is in specimens.py."""

import unittest

import _Orvanel
import specimens
import support

TABLE = support.load_table()
VALID = {'object': None, 'int': 0, 'longlong': 0, 'bool': False, 'float': 1.0}
FEWEST_CASES = 8000


def valid_argument(argument):
    if argument.kind in ('pointer', 'reference'):
        return specimens.valid_pointer(argument.type)
    return VALID[argument.kind]


def count_text(entry, given):
    count = len(entry.arguments)
    # The interpreter's words: its own for a function of one argument, its argument parser's for the others.
    return '%s() takes exactly %s (%d given)' % (entry.name, 'one argument' if count == 1 else '%d arguments' % count, given)


def overload_text(entry):
    method = entry.name.split('_', 1)[1]
    prototypes = ['    %s(%s)\n' % (method, ','.join(argument.text for argument in entry.arguments[1:count]))
                  for count in range(len(entry.arguments), entry.required - 1, -1)]
    return ("Wrong number of arguments for overloaded function '%s'.\n  Possible C/C++ prototypes are:\n%s"
            % (entry.name, ''.join(prototypes)))


def argument_text(entry, index, error):
    return "%sin method '%s', argument %d of type '%s'" % (
        'invalid null reference ' if error is ValueError else '', entry.name, index + 1, entry.arguments[index].text)


class ErrorPaths(unittest.TestCase):
    cases = 0

    def setUp(self):
        self.object = specimens.valid_pointer('_p_Orvanel')
        self.events = []
        _Orvanel.Orvanel_SetCallbackFunc(self.object, self.events.append)

    def tearDown(self):
        _Orvanel.Orvanel_SetCallbackFunc(self.object, None)

    def state(self):
        """What a method that ran would have changed."""
        read = [entry.name for entry in TABLE.entries
                if entry.name.startswith(('Orvanel_Is', 'Orvanel_Get')) and len(entry.arguments) == 1 and entry.result != 'pointer']
        # Asked only while a point is hovered.
        read.remove('Orvanel_IsBCPSelected')
        return [getattr(_Orvanel, name)(self.object) for name in read] + [list(self.events)]

    def expect(self, entry, arguments, error, text, description):
        ErrorPaths.cases += 1
        try:
            result = getattr(_Orvanel, entry.name)(*arguments)
        except Exception as raised:
            # The exact class: NotImplementedError is a RuntimeError, bool conversions could raise subclasses.
            self.assertIs(type(raised), error, '%s: %r' % (description, raised))
            self.assertEqual(str(raised), text, description)
        else:
            self.fail('%s: returned %r' % (description, result))
        # An error left pending would come up here.
        for nothing in iter(()):
            pass

    def check_counts(self, entry):
        valid = [valid_argument(argument) for argument in entry.arguments]
        accepted = range(entry.required, len(entry.arguments) + 1)
        overloaded = len(accepted) > 1
        for count in range(len(valid) + 4):
            if count in accepted:
                continue
            arguments = (valid + [None] * 4)[:count]
            self.expect(entry, arguments, NotImplementedError if overloaded else TypeError,
                        overload_text(entry) if overloaded else count_text(entry, count), '%s with %d arguments' % (entry.name, count))

    def check_argument(self, entry, index, count):
        argument = entry.arguments[index]
        overloaded = entry.required < len(entry.arguments)
        for specimen in specimens.SPECIMENS:
            error = specimens.refusal(argument, specimen)
            if error is None:
                continue
            arguments = [valid_argument(other) for other in entry.arguments[:count]]
            arguments[index] = specimen.value
            text = argument_text(entry, index, error)
            if overloaded and not specimens.fits(argument, specimen):
                error, text = NotImplementedError, overload_text(entry)
            self.expect(entry, arguments, error, text, '%s, argument %d: %s' % (entry.name, index + 1, specimen.name))

    def check_first_refusal(self, entry):
        """With several wrong arguments the first one is reported."""
        refusing = [index for index, argument in enumerate(entry.arguments) if argument.kind != 'object']
        if len(refusing) < 2 or entry.required < len(entry.arguments):
            return
        arguments = [None if argument.kind == 'object' else 'wrong' for argument in entry.arguments]
        for index in refusing:
            self.expect(entry, arguments, TypeError, argument_text(entry, index, TypeError), '%s, all wrong from %d' % (entry.name, index + 1))
            arguments[index] = valid_argument(entry.arguments[index])

    def check_entry(self, entry):
        before = self.state()
        self.check_counts(entry)
        for count in range(entry.required, len(entry.arguments) + 1):
            for index in range(count):
                self.check_argument(entry, index, count)
        self.check_first_refusal(entry)
        self.assertEqual(self.state(), before, 'a method ran')

    def test_zz_there_were_enough_cases(self):
        self.assertGreaterEqual(ErrorPaths.cases, FEWEST_CASES)
        print '%d cases' % ErrorPaths.cases


def _add_tests():
    for entry in TABLE.entries:
        def test(self, entry=entry):
            self.check_entry(entry)
        setattr(ErrorPaths, 'test_' + entry.name, test)


_add_tests()

if __name__ == '__main__':
    unittest.main()
