# SPDX-License-Identifier: MIT
"""Runs a function in a process of its own, so that a session that ends the process is a result like any other."""
from __future__ import absolute_import

import cPickle
import os
import signal
import sys
import traceback

#: Seconds after which a process counts as hung. Fifty sessions take half a minute under a sanitizer.
_LIMIT = 240


class Died(Exception):
    """The process ended without an answer."""


def isolated(function, *arguments):
    """The function's result, by way of a pipe. Raises Died when the process crashed, and passes its exceptions on."""
    sys.stdout.flush()
    sys.stderr.flush()
    readable, writable = os.pipe()
    child = os.fork()
    if child == 0:
        _answer(writable, function, arguments)
    os.close(writable)
    with os.fdopen(readable, "rb") as pipe:
        answer = pipe.read()
    status = os.waitpid(child, 0)[1]
    if os.WIFSIGNALED(status):
        raise Died("signal %d" % os.WTERMSIG(status))
    if not answer:
        raise Died("exit code %d" % os.WEXITSTATUS(status))
    failed, value = cPickle.loads(answer)
    if failed:
        raise RuntimeError(value)
    return value


def _answer(writable, function, arguments):
    """Never returns: the child must not run what its parent has still to do."""
    signal.alarm(_LIMIT)
    try:
        try:
            answer = (False, function(*arguments))
        except BaseException:
            answer = (True, traceback.format_exc())
        with os.fdopen(writable, "wb") as pipe:
            pipe.write(cPickle.dumps(answer, cPickle.HIGHEST_PROTOCOL))
    finally:
        os._exit(0)
