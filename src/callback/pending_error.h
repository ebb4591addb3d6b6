// SPDX-License-Identifier: MIT
#pragma once

#include "callback/python.h"

/// Sets a pending Python error aside for a scope in which other Python code may run: a collection that begins with an
/// error pending ends the process, and a callable must not be taken for the one that raised. Lock held.
class PendingError {
  public:
    PendingError() { PyErr_Fetch(&m_type, &m_value, &m_traceback); }
    ~PendingError() { PyErr_Restore(m_type, m_value, m_traceback); }
    PendingError(const PendingError &) = delete;
    PendingError &operator=(const PendingError &) = delete;

  private:
    PyObject *m_type, *m_value, *m_traceback;
};
