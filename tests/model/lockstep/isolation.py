# SPDX-License-Identifier: MIT
"""Runs a function in a process of its own, so that a session that ends the process is a result like any other.

Where there is no fork the process is a new interpreter, which finds the function by its name: what a test has planted in
this process is not there.
"""
from __future__ import absolute_import

import cPickle
import os
import signal
import subprocess
import sys
import threading
import traceback

#: Seconds after which a process counts as hung. Fifty sessions take half a minute under a sanitizer.
_LIMIT = 240


class Died(Exception):
    """The process ended without an answer."""


def isolated(function, *arguments):
    """The function's result, by way of a pipe. Raises Died when the process crashed, and passes its exceptions on."""
    sys.stdout.flush()
    sys.stderr.flush()
    answer, end = (_by_fork if hasattr(os, "fork") else _by_interpreter)(function, arguments)
    if not answer:
        raise Died(end)
    failed, value = cPickle.loads(answer)
    if failed:
        raise RuntimeError(value)
    return value


def _by_fork(function, arguments):
    """The answer, empty when there is none, and how the process ended."""
    readable, writable = os.pipe()
    child = os.fork()
    if child == 0:
        _answer(writable, function, arguments)
    os.close(writable)
    with os.fdopen(readable, "rb") as pipe:
        answer = pipe.read()
    status = os.waitpid(child, 0)[1]
    if os.WIFSIGNALED(status):
        return "", "signal %d" % os.WTERMSIG(status)
    return answer, "exit code %d" % os.WEXITSTATUS(status)


def _by_interpreter(function, arguments):
    process = subprocess.Popen([sys.executable, "-B", "-m", __name__], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    limit = threading.Timer(_LIMIT, process.kill)
    limit.start()
    answer = process.communicate(_pickled((function, arguments)))[0]
    limit.cancel()
    return answer if process.returncode == 0 else "", "exit code %d" % process.returncode


def _answer(writable, function, arguments):
    """Never returns: the child must not run what its parent has still to do."""
    signal.alarm(_LIMIT)
    try:
        answer = _outcome(function, arguments)
        with os.fdopen(writable, "wb") as pipe:
            pipe.write(answer)
    finally:
        os._exit(0)


def _outcome(function, arguments):
    try:
        return _pickled((False, function(*arguments)))
    except BaseException:
        return _pickled((True, traceback.format_exc()))


def _pickled(value):
    return cPickle.dumps(value, cPickle.HIGHEST_PROTOCOL)


def _serve():
    """The new interpreter's part: standard input and output carry the call and its answer, so prints go elsewhere."""
    import msvcrt
    for stream in (sys.stdin, sys.stdout):
        msvcrt.setmode(stream.fileno(), os.O_BINARY)
    pipe, sys.stdout = sys.stdout, sys.stderr
    pipe.write(_outcome(*cPickle.loads(sys.stdin.read())))


if __name__ == "__main__":
    _serve()
