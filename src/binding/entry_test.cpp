// SPDX-License-Identifier: MIT
// Refusals when there is no memory for their texts.

#include "binding/entry.h"

#include <gtest/gtest.h>

#include "binding/entry_table.h"
#include "binding/initialise.h"
#include "callback/testing/interpreter.h"
#include "platform/testing/failing_new.h"

namespace binding {
namespace {

/// More allocations than any refusal makes.
constexpr int kEnough = 40;

class RefusalTest : public testing::Test {
  protected:
    RefusalTest() {
        initialiseModule();
        Interpreter::run("import _Orvanel as o");
    }

    /// Calls with the first, the second, ... allocation failing, until the call comes through to its own exception.
    static void sweep(const std::string &function, const std::string &arguments, PyObject *exception) {
        const PyRef callable = Interpreter::value(function);
        const PyRef tuple = Interpreter::value(arguments);
        for (int granted = 0; granted < kEnough; ++granted) {
            bool failed = false;
            PyObject *result = nullptr;
            {
                const platform::FailingNew failing(granted);
                result = PyObject_CallObject(callable.get(), tuple.get());
                failed = failing.hasFailed();
            }
            EXPECT_EQ(result, nullptr);
            EXPECT_TRUE(PyErr_ExceptionMatches(failed ? PyExc_MemoryError : exception)) << function << ", " << granted;
            PyErr_Clear();
            if (!failed) {
                EXPECT_GT(granted, 0) << "nothing was allocated";
                return;
            }
        }
        ADD_FAILURE() << function << " allocates on";
    }

    Interpreter interpreter;
};

TEST_F(RefusalTest, OfAnArgument) {
    sweep("o.Orvanel_AddPoint", "('x', 1, 2)", PyExc_TypeError);
    sweep("o.Orvanel_HitTestPoint", "(None, None)", PyExc_ValueError);
    sweep("o.Orvanel_AddPointInLine", "('x', None)", PyExc_TypeError);
}

TEST_F(RefusalTest, OfAnOverload) {
    sweep("o.Orvanel_Interactive", "()", PyExc_NotImplementedError);
    sweep("o.Orvanel_Interactive", "('x', 1)", PyExc_NotImplementedError);
}

TEST_F(RefusalTest, OfACountOfArguments) {
    sweep("o.Orvanel_MoveAllPoints", "(1, 2, 3, 4)", PyExc_TypeError);
    sweep("o.Orvanel_SetVideoCoordinate", "()", PyExc_TypeError);
}

TEST_F(RefusalTest, OfARepresentation) {
    Interpreter::run("thing = o.new_Orvanel()\nthing.append(o.new_Orvanel())");
    const PyRef thing = Interpreter::value("thing");
    const platform::FailingNew failing(0);
    EXPECT_EQ(PyObject_Repr(thing.get()), nullptr);
    EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_MemoryError));
    PyErr_Clear();
}

TEST_F(RefusalTest, OfANewObject) {
    const PyRef make = Interpreter::value("o.new_Orvanel");
    bool failed = true;
    for (int granted = 0; failed && granted < kEnough; ++granted) {
        PyObject *result = nullptr;
        {
            const platform::FailingNew failing(granted);
            result = PyObject_CallObject(make.get(), nullptr);
            failed = failing.hasFailed();
        }
        // The object lives on without a drawing component.
        if (!result) {
            EXPECT_TRUE(failed && PyErr_ExceptionMatches(PyExc_MemoryError)) << granted;
            PyErr_Clear();
        }
        Interpreter::run("import gc; gc.collect()");
        Py_XDECREF(result);
    }
    EXPECT_FALSE(failed);
}

} // namespace
} // namespace binding
