// SPDX-License-Identifier: MIT
// Starts the interpreter for the tests of this room that hand Python objects over. The tests run without the
// interpreter lock, as a renderer's thread does, and take it where they need it.

#include <gtest/gtest.h>

#include "callback/python.h"

namespace {

class Interpreter : public testing::Environment {
  public:
    void SetUp() override {
        Py_InitializeEx(0);
        PyEval_InitThreads();
        m_state = PyEval_SaveThread();
    }
    void TearDown() override {
        PyEval_RestoreThread(m_state);
        Py_Finalize();
    }

  private:
    PyThreadState *m_state = nullptr;
};

const testing::Environment *const interpreter = testing::AddGlobalTestEnvironment(new Interpreter);

} // namespace
