// SPDX-License-Identifier: MIT
#include "callback/py_locks.h"

#include "callback/python.h"

PyGILGuard::PyGILGuard() : m_state(PyGILState_Ensure()) {}

PyGILGuard::~PyGILGuard() {
    PyGILState_Release(static_cast<PyGILState_STATE>(m_state));
}

namespace {

bool holdsInterpreterLock() {
    PyThreadState *const own = PyGILState_GetThisThreadState();
    return own != nullptr && own == _PyThreadState_Current;
}

} // namespace

PyAllowThreads::PyAllowThreads() : m_saved(holdsInterpreterLock() ? PyEval_SaveThread() : nullptr) {}

PyAllowThreads::~PyAllowThreads() {
    if (m_saved)
        PyEval_RestoreThread(static_cast<PyThreadState *>(m_saved));
}
