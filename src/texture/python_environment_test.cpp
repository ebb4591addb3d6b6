// SPDX-License-Identifier: MIT
// Starts the interpreter for the tests of this room that hand Python objects over. The tests run without the
// interpreter lock, as a renderer's thread does, and take it where they need it.

#include <gtest/gtest.h>

#include "callback/interpreter_gate.h"
#include "callback/python.h"

namespace {

class PythonEnvironment : public testing::Environment {
  public:
    void SetUp() override {
        Py_InitializeEx(0);
        m_watch = watchInterpreter();
        ASSERT_NE(nullptr, m_watch);
        m_state = PyEval_SaveThread();
    }
    void TearDown() override {
        PyEval_RestoreThread(m_state);
        Py_CLEAR(m_watch);
        Py_Finalize();
    }

  private:
    PyObject *m_watch = nullptr;
    PyThreadState *m_state = nullptr;
};

const testing::Environment *const environment = testing::AddGlobalTestEnvironment(new PythonEnvironment);

} // namespace
