// SPDX-License-Identifier: MIT
#include "callback/py_callback.h"

#include <gtest/gtest.h>

#include <string>

#include "callback/testing/interpreter.h"
#include "callback/testing/plain_callback.h"
#include "platform/test_environment.h"
#include "platform/testing/failing_new.h"

namespace {

class PyCallbackTest : public testing::Test {
  protected:
    static PyObject *set(PyCallback &object, const char *expression) {
        return object.SetCallback(Interpreter::value(expression).get());
    }
    static std::string seen() { return Interpreter::text("seen"); }
    static long errorCount(const std::string &text) {
        return Interpreter::number("errors.getvalue().count('" + text + "')");
    }

    Interpreter interpreter;
    PlainCallback callback;
};

TEST_F(PyCallbackTest, NothingHappensWithoutACallable) {
    callback.Call("i", 3);
    EXPECT_EQ(callback.SetCallback(Py_None), nullptr);
    callback.Call("i", 3);
    EXPECT_EQ(Interpreter::errors(), "");
}

TEST_F(PyCallbackTest, SetCallbackReturnsWhatItStores) {
    const PyRef append = Interpreter::value("seen.append");
    EXPECT_EQ(callback.SetCallback(append.get()), append.get());
    EXPECT_EQ(callback.SetCallback(Py_None), nullptr);
    EXPECT_EQ(callback.SetCallback(nullptr), nullptr);
}

TEST_F(PyCallbackTest, ReplacingACallableDropsExactlyOneReference) {
    Interpreter::run("def first(*args): pass\ndef second(*args): pass");
    const PyRef first = Interpreter::value("first");
    const PyRef second = Interpreter::value("second");
    const Py_ssize_t before = Py_REFCNT(first.get());
    callback.SetCallback(first.get());
    EXPECT_EQ(Py_REFCNT(first.get()), before + 1);
    callback.SetCallback(second.get());
    EXPECT_EQ(Py_REFCNT(first.get()), before);
    callback.SetCallback(second.get());
    callback.SetCallback(nullptr);
    EXPECT_EQ(Py_REFCNT(second.get()), Py_REFCNT(first.get()));
}

TEST_F(PyCallbackTest, TheDestructorDropsTheCallable) {
    const PyRef append = Interpreter::value("seen.append");
    {
        PlainCallback shortLived;
        shortLived.SetCallback(append.get());
        EXPECT_EQ(Py_REFCNT(append.get()), 2);
    }
    EXPECT_EQ(Py_REFCNT(append.get()), 1);
}

TEST_F(PyCallbackTest, FormatsBuildTheArguments) {
    set(callback, "lambda *args: seen.append(args)");
    callback.Call(nullptr);
    callback.Call("");
    callback.Call("i", 3);
    callback.Call("s", "a");
    callback.Call("ii", 1, 2);
    callback.Call("(id)", 1, 0.5);
    callback.Call("(O)", Py_None);
    EXPECT_EQ(seen(), "[(), (), (3,), ('a',), (1, 2), (1, 0.5), (None,)]");
    EXPECT_EQ(Interpreter::errors(), "");
}

TEST_F(PyCallbackTest, ALongFormatThatIsNoTupleIsPrintedAndDropped) {
    set(callback, "lambda *args: seen.append(args)");
    callback.Call("[i]", 3);
    callback.Call("(i", 3);
    EXPECT_EQ(seen(), "[]");
    EXPECT_EQ(errorCount("Error:"), 2);
    EXPECT_FALSE(PyErr_Occurred());
}

TEST_F(PyCallbackTest, ACallableThatRaisesIsPrintedOncePerEvent) {
    Interpreter::run("def bad(code):\n    raise ValueError('no %d' % code)");
    set(callback, "bad");
    callback.Call("i", 7);
    EXPECT_EQ(errorCount("ValueError: no 7"), 1);
    EXPECT_EQ(errorCount("Traceback"), 1);
    callback.Call("i", 8);
    EXPECT_EQ(errorCount("Traceback"), 2);
    EXPECT_FALSE(PyErr_Occurred());
}

TEST_F(PyCallbackTest, SomethingThatCannotBeCalledIsPrinted) {
    set(callback, "42");
    callback.Call("i", 1);
    EXPECT_EQ(errorCount("TypeError"), 1);
}

TEST_F(PyCallbackTest, SystemExitDoesNotEndTheProcess) {
    Interpreter::run("def leave(code):\n    sys.exit(code)");
    set(callback, "leave");
    callback.Call("i", 3);
    EXPECT_EQ(errorCount("SystemExit: 3"), 1);
    EXPECT_FALSE(PyErr_Occurred());
}

TEST_F(PyCallbackTest, AnErrorThatWasPendingStaysPending) {
    set(callback, "seen.append");
    PyErr_SetString(PyExc_KeyError, "earlier");
    callback.Call("i", 5);
    EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_KeyError));
    PyErr_Clear();
    EXPECT_EQ(seen(), "[5]");
    EXPECT_EQ(Interpreter::errors(), "");
}

TEST_F(PyCallbackTest, ResultsAreConverted) {
    set(callback, "lambda value: value");
    EXPECT_EQ(callback.CallInt("i", -2147483647 - 1), -2147483647 - 1);
    EXPECT_EQ(callback.CallInt("L", 12LL), 12);
    EXPECT_EQ(callback.CallDouble("d", 0.25), 0.25);
    EXPECT_EQ(callback.CallDouble("i", 3), 3.0);
    EXPECT_EQ(callback.CallString("(s#)", "a\0b", Py_ssize_t{3}), std::string("a\0b", 3));
    set(callback, "lambda: u'gr\\xfcn \\u4e2d'");
    EXPECT_EQ(callback.CallWString(nullptr), L"gr\u00fcn \u4e2d");
    set(callback, "lambda: seen");
    const PyRef result = PyRef::adopt(callback.CallObject(nullptr));
    EXPECT_EQ(result.get(), Interpreter::value("seen").get());
    EXPECT_EQ(Interpreter::errors(), "");
}

TEST_F(PyCallbackTest, WithoutACallableResultsAreZeroOrEmpty) {
    EXPECT_EQ(callback.CallInt("i", 1), 0);
    EXPECT_EQ(callback.CallDouble("i", 1), 0.0);
    EXPECT_EQ(callback.CallString("i", 1), "");
    EXPECT_EQ(callback.CallWString("i", 1), L"");
    EXPECT_EQ(callback.CallObject("i", 1), nullptr);
}

TEST_F(PyCallbackTest, AFailedCallGivesZeroOrEmpty) {
    set(callback, "lambda *args: 1/0");
    EXPECT_EQ(callback.CallInt(nullptr), 0);
    EXPECT_EQ(callback.CallDouble(nullptr), 0.0);
    EXPECT_EQ(callback.CallString(nullptr), "");
    EXPECT_EQ(callback.CallWString(nullptr), L"");
    EXPECT_EQ(callback.CallObject(nullptr), nullptr);
    EXPECT_EQ(errorCount("ZeroDivisionError: "), 5);
}

TEST_F(PyCallbackTest, AResultOfTheWrongTypeIsPrinted) {
    set(callback, "lambda: []");
    EXPECT_EQ(callback.CallInt(nullptr), 0);
    EXPECT_EQ(callback.CallDouble(nullptr), 0.0);
    EXPECT_EQ(callback.CallString(nullptr), "");
    EXPECT_EQ(callback.CallWString(nullptr), L"");
    EXPECT_EQ(errorCount("TypeError: "), 4);
    set(callback, "lambda: 2**31");
    EXPECT_EQ(callback.CallInt(nullptr), 0);
    set(callback, "lambda: 2**70");
    EXPECT_EQ(callback.CallInt(nullptr), 0);
    EXPECT_EQ(callback.CallDouble(nullptr), 1180591620717411303424.0);
    EXPECT_EQ(errorCount("OverflowError: "), 2);
    EXPECT_FALSE(PyErr_Occurred());
}

TEST_F(PyCallbackTest, AResultWithoutMemoryIsPrintedAndEmpty) {
    set(callback, "lambda: 1000 * 'x'");
    {
        const platform::FailingNew failing(0);
        EXPECT_EQ(callback.CallString(nullptr).size(), 0U);
    }
    set(callback, "lambda: 1000 * u'x'");
    {
        const platform::FailingNew failing(0);
        EXPECT_EQ(callback.CallWString(nullptr).size(), 0U);
    }
    EXPECT_EQ(errorCount("MemoryError"), 2);
}

/// Python code reaches the callback under test through these.
PyCallback *reachable = nullptr;

PyObject *replaceFromPython(PyObject *, PyObject *callable) {
    reachable->SetCallback(callable);
    Py_RETURN_NONE;
}

PyObject *callFromPython(PyObject *, PyObject *code) {
    reachable->Call("(O)", code);
    Py_RETURN_NONE;
}

PyObject *destroyFromPython(PyObject *, PyObject *) {
    reachable->Destroy();
    Py_RETURN_NONE;
}

PyMethodDef testMethods[] = {
    {"replace", replaceFromPython, METH_O, nullptr},
    {"call", callFromPython, METH_O, nullptr},
    {"destroy", destroyFromPython, METH_NOARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

/// An object made with new that tells when it goes.
class Tracked final : public PyCallback {
  public:
    explicit Tracked(bool *gone) : m_gone(gone) {}
    ~Tracked() { *m_gone = true; }
    void Destroy() override { destroyWhenUnused(this); }

  private:
    bool *m_gone;
};

class PyCallbackReentryTest : public PyCallbackTest {
  protected:
    void SetUp() override {
        Py_InitModule("peer", testMethods);
        Interpreter::run("import peer");
    }
};

TEST_F(PyCallbackReentryTest, ACallableMayUnregisterItself) {
    reachable = &callback;
    Interpreter::run("def once(code):\n    peer.replace(None)\n    seen.append(code)");
    set(callback, "once");
    Interpreter::run("del once");
    callback.Call("i", 1);
    callback.Call("i", 2);
    EXPECT_EQ(seen(), "[1]");
}

TEST_F(PyCallbackReentryTest, ACallableMayReplaceItself) {
    reachable = &callback;
    Interpreter::run("def first(code):\n    peer.replace(lambda code: seen.append(-code))\n    seen.append(code)");
    set(callback, "first");
    callback.Call("i", 1);
    callback.Call("i", 2);
    EXPECT_EQ(seen(), "[1, -2]");
}

TEST_F(PyCallbackReentryTest, ACallableMayRaiseFurtherEvents) {
    reachable = &callback;
    Interpreter::run("def down(code):\n    seen.append(code)\n    if code: peer.call(code - 1)");
    set(callback, "down");
    callback.Call("i", 3);
    EXPECT_EQ(seen(), "[3, 2, 1, 0]");
}

TEST_F(PyCallbackReentryTest, DroppingACallableMayRunCodeThatSetsAnother) {
    reachable = &callback;
    Interpreter::run("class Dying(object):\n"
                     "    def __call__(self, code): pass\n"
                     "    def __del__(self): peer.replace(seen.append)\n");
    set(callback, "Dying()");
    callback.SetCallback(nullptr);
    callback.Call("i", 4);
    EXPECT_EQ(seen(), "[4]");
}

TEST_F(PyCallbackReentryTest, AnObjectDestroyedByItsCallableGoesAfterTheCall) {
    bool gone = false;
    reachable = new Tracked(&gone);
    Interpreter::run("def end(code):\n    peer.destroy()\n    peer.replace(seen.append)\n    peer.call(code + 1)");
    set(*reachable, "end");
    reachable->Call("i", 1);
    EXPECT_TRUE(gone);
    EXPECT_EQ(seen(), "[2]");
}

TEST_F(PyCallbackReentryTest, AnUseOutlivesADestructionAskedFor) {
    bool gone = false;
    Tracked *const object = new Tracked(&gone);
    PyErr_SetString(PyExc_KeyError, "earlier");
    {
        const PyCallback::Use outer(*object);
        {
            const PyCallback::Use inner(*object);
            object->Destroy();
        }
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(gone);
    EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_KeyError));
    PyErr_Clear();
}

/// Delivers once more while it is destroyed, as a worker's last event does.
class Parting final : public PyCallback {
  public:
    explicit Parting(bool *gone) : m_gone(gone) {}
    ~Parting() {
        Call("i", 9);
        *m_gone = true;
    }
    void Destroy() override { destroyWhenUnused(this); }

  private:
    bool *m_gone;
};

TEST_F(PyCallbackReentryTest, AnObjectMayDeliverWhileItIsDestroyed) {
    bool gone = false;
    reachable = new Parting(&gone);
    Interpreter::run("def end(code):\n    seen.append(code)\n    peer.destroy()");
    set(*reachable, "end");
    reachable->Call("i", 1);
    EXPECT_TRUE(gone);
    EXPECT_EQ(seen(), "[1, 9]");
}

TEST_F(PyCallbackReentryTest, AnUnusedObjectIsDestroyedAtOnce) {
    bool gone = false;
    (new Tracked(&gone))->Destroy();
    EXPECT_TRUE(gone);
}

TEST(PyCallback, TheHostWindowNumberIsReadAtConstruction) {
    const platform::ScopedEnvironment variable("loom main window", "4711");
    const PlainCallback callback;
    EXPECT_EQ(callback.hostMainWindow(), 4711);
}

TEST(PyCallback, WithoutAHostWindowTheNumberIsZero) {
    const platform::ScopedEnvironment variable("loom main window", nullptr);
    EXPECT_EQ(PlainCallback().hostMainWindow(), 0);
}

} // namespace
