// SPDX-License-Identifier: MIT
#include "callback/py_locks.h"

#include "callback/interpreter_gate.h"
#include "callback/python.h"

bool holdsInterpreterLock() {
    PyThreadState *const own = PyGILState_GetThisThreadState();
    return own != nullptr && own == _PyThreadState_Current;
}

PyGILGuard::PyGILGuard() {
    if (!holdsInterpreterLock()) {
        m_entered = enterInterpreter();
        if (!m_entered)
            return;
    }
    m_state = PyGILState_Ensure();
    m_held = true;
}

PyGILGuard::~PyGILGuard() {
    if (m_held)
        PyGILState_Release(static_cast<PyGILState_STATE>(m_state));
    if (m_entered)
        leaveInterpreter();
}

PyAllowThreads::PyAllowThreads(bool worthIt)
    : m_saved(worthIt && !interpreterKeepsItsLock() && holdsInterpreterLock() ? PyEval_SaveThread() : nullptr) {}

PyAllowThreads::~PyAllowThreads() {
    if (m_saved)
        PyEval_RestoreThread(static_cast<PyThreadState *>(m_saved));
}
