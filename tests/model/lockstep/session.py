# SPDX-License-Identifier: MIT
"""Playing one session on both sides, comparing after every step."""
from __future__ import absolute_import

import collections

from editor_model.records import Undefined, from_bytes
from lockstep.generator import Generator
from lockstep.model_side import ModelSide
from lockstep.module_side import ModuleSide, hostkit


#: Steps that may leave keyframes of another length than the live outline: they change or replace only one of the two.
_MAY_PART = frozenset(["add_point", "delete_last_point", "set_dev_setting", "restore", "draw_record", "draw_between",
                       "cache_current_keyframe", "convert_to_mask"])


class Difference(Exception):
    """The two sides disagree after a step."""


def _parts(value, path=""):
    """A value taken apart into (path, part) pairs, the byte strings of points into their fields."""
    if isinstance(value, dict):
        value = [value.get(key) for key in range(10)]
    if isinstance(value, bytes) and from_bytes(value):
        value = [point.as_tuple() for point in from_bytes(value)]
    if not isinstance(value, (list, tuple)):
        return [(path, value)]
    return [part for index, item in enumerate(value) for part in _parts(item, "%s[%d]" % (path, index))]


def _compare(what, model, module):
    if model == module:
        return
    lines = [what]
    parts, seen = _parts(model), _parts(module)
    if [path for path, _ in parts] != [path for path, _ in seen]:
        lines += ["model:  %r" % (model,), "module: %r" % (module,)]
    lines += ["%s  model: %r, module: %r" % (path or "value", part, other)
              for (path, part), (_, other) in zip(parts, seen) if part != other]
    raise Difference("\n    ".join(lines[:12]))


def _play_step(step, model, module, counts):
    name, arguments = step[0], step[1:]
    agreed = model.lengths_agree()
    expected = getattr(model, name)(*arguments)
    try:
        result = getattr(module, name)(*arguments)
    except Exception as error:
        raise Difference("%s raises %r" % (name, error))
    _compare("result of %s" % name, expected, result)

    codes, signalled = model.take_events()
    codes_raised, reported = module.take_events()
    _compare("events of %s" % name, codes, codes_raised)
    counts.update(codes)
    counts["reports"] += signalled
    if name == "uninitialize":
        module.forget_report()
    elif signalled:
        if not module.await_report():
            raise Difference("the worker does not report")
    elif reported:
        raise Difference("the worker reports points that nobody changed")

    for (what, value), (entry, seen) in zip(model.observe(), module.observe()):
        assert what == entry, "%s is compared with %s" % (what, entry)
        _compare(what, value, seen)
    if hostkit:
        _compare("pixel points and placement", model.observe_pixels(), module.observe_pixels())
    # What holds for the model holds for the module, which has just been found equal.
    model.check_invariants()
    if agreed and model.is_mask and model.live.is_closed() and name not in _MAY_PART:
        assert model.lengths_agree(), "%s parts outline and keyframes" % name


class Outcome(object):
    """What became of a session: its steps, None or the text of the first difference, and how often each event came."""

    def __init__(self):
        self.events = collections.Counter()
        self.steps = []
        self.difference = None
        self.undefined = False


def _play(next_step):
    outcome = Outcome()
    model, module = ModelSide(), ModuleSide()
    try:
        while True:
            step = next_step(model)
            if step is None:
                break
            outcome.steps.append(step)
            try:
                _play_step(step, model, module, outcome.events)
            except Undefined:
                outcome.undefined = True
                break
            except (Difference, AssertionError) as error:
                outcome.difference = str(error)
                break
        return outcome
    finally:
        module.close()


def play_random(seed, length):
    """Plays the session of a seed."""
    generator = Generator(seed, length, with_records=hostkit is not None)
    return _play(generator.next_step)


def play(steps):
    """Plays a session that is there already."""
    remaining = iter(steps)
    return _play(lambda model: next(remaining, None))


def steps_of(seed, length):
    """The steps of a seed's session, made with the model alone: the way to a session that ends the process."""
    generator, model, steps = Generator(seed, length, with_records=hostkit is not None), ModelSide(), []
    while True:
        step = generator.next_step(model)
        if step is None:
            return steps
        steps.append(step)
        try:
            getattr(model, step[0])(*step[1:])
        except Undefined:
            return steps
