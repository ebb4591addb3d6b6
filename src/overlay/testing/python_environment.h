// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "callback/py_ref.h"

/// Runs an interpreter for the tests of one program.
class PythonEnvironment : public testing::Environment {
  public:
    void SetUp() override {
        if (Py_IsInitialized())
            return;
        Py_InitializeEx(0);
        PyEval_InitThreads();
    }
};

/// A Python list that is called: it remembers the codes it was given.
class EventList {
  public:
    EventList()
        : m_list(PyRef::adopt(PyList_New(0))), m_append(PyRef::adopt(PyObject_GetAttrString(m_list.get(), "append"))) {}

    PyObject *callable() const { return m_append.get(); }
    /// The codes received since the last call.
    std::vector<int> take() {
        std::vector<int> codes;
        for (Py_ssize_t index = 0; index < PyList_GET_SIZE(m_list.get()); ++index)
            codes.push_back(static_cast<int>(PyInt_AsLong(PyList_GET_ITEM(m_list.get(), index))));
        PyList_SetSlice(m_list.get(), 0, PyList_GET_SIZE(m_list.get()), nullptr);
        return codes;
    }

  private:
    PyRef m_list;
    PyRef m_append;
};
