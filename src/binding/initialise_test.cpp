// SPDX-License-Identifier: MIT
// The module in an embedded interpreter: made, used, left over, and made again in the next interpreter of the process.

#include "binding/initialise.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "binding/entry_table.h"
#include "binding/opaque_object.h"
#include "binding/pointer_conversion.h"
#include "binding/type_registry.h"
#include "callback/testing/interpreter.h"
#include "texture/pointer_extraction.h"

namespace binding {
namespace {

/// An interpreter with the module imported as `o`.
class ModuleTest : public testing::Test {
  protected:
    ModuleTest() {
        initialiseModule();
        EXPECT_FALSE(PyErr_Occurred());
        Interpreter::run("import _Orvanel as o");
    }

    static std::string text(const std::string &expression) { return Interpreter::text(expression); }

    Interpreter interpreter;
};

TEST_F(ModuleTest, EntriesStandInTheModule) {
    for (const Entry &entry : entryTable())
        EXPECT_TRUE(Interpreter::value(std::string("o.") + entry.name)) << entry.name;
    EXPECT_EQ(text("o.ECB_POINT_UPDATE"), "5");
    EXPECT_EQ(text("o.__doc__"), "None");
}

TEST_F(ModuleTest, TheNextInterpreterStartsAfresh) {
    // The class of the interpreter before is forgotten: an owner without one reports a leak instead of calling the
    // dead.
    Interpreter::run("class Proxy(object):\n"
                     "    __swig_destroy__ = o.delete_Orvanel\n"
                     "o.Orvanel_swigregister(Proxy)\n"
                     "left = o.new_Orvanel()");
    EXPECT_NE(typeRecordOf<Orvanel>()->classRecord, nullptr);
    Interpreter::end();
    interpreter.start();
    initialiseModule();
    EXPECT_FALSE(PyErr_Occurred());
    EXPECT_EQ(typeRecordOf<Orvanel>()->classRecord, nullptr);
    Interpreter::run("import _Orvanel as o\n"
                     "thing = o.new_Orvanel()\n"
                     "o.Orvanel_SetCallbackFunc(thing, seen.append)\n"
                     "o.Orvanel_CallBack(thing, 4)\n"
                     "o.delete_Orvanel(thing)");
    EXPECT_EQ(text("seen[0]"), "4");
}

TEST_F(ModuleTest, AfterARefusalNoErrorIsPendingButItsOwn) {
    Interpreter::run("thing = o.new_Orvanel()");
    const PyRef thing = Interpreter::value("thing");
    const PyRef tooLarge = Interpreter::value("10 ** 30");
    for (const Entry &entry : entryTable()) {
        if (entry.arguments.empty() || entry.arguments.back().kind != ArgumentKind::LongLong ||
            entry.arguments.front().kind != ArgumentKind::Pointer)
            continue;
        const PyRef arguments = PyRef::adopt(PyTuple_New(static_cast<Py_ssize_t>(entry.arguments.size())));
        for (Py_ssize_t index = 0; index < PyTuple_GET_SIZE(arguments.get()); ++index) {
            PyObject *const value = index == 0 ? thing.get() : tooLarge.get();
            Py_INCREF(value);
            PyTuple_SET_ITEM(arguments.get(), index, value);
        }
        EXPECT_EQ(entry.call(nullptr, arguments.get()), nullptr) << entry.name;
        EXPECT_FALSE(PyErr_ExceptionMatches(PyExc_OverflowError)) << entry.name;
        PyErr_Clear();
    }
    Interpreter::run("o.delete_Orvanel(thing)");
}

TEST_F(ModuleTest, AnArgumentObjectThatIsNoTupleIsRefused) {
    for (const Entry &entry : entryTable()) {
        if (entry.flags == METH_O)
            continue; // given its argument without a tuple
        EXPECT_EQ(entry.call(nullptr, Py_None), nullptr) << entry.name;
        EXPECT_TRUE(PyErr_ExceptionMatches(entry.isOverloaded() ? PyExc_NotImplementedError : PyExc_SystemError))
            << entry.name;
        PyErr_Clear();
    }
}

TEST_F(ModuleTest, ConversionsThatSucceedLeaveNoErrorPending) {
    const PyRef tooLarge = Interpreter::value("10 ** 400");
    float number = 0;
    EXPECT_EQ(convertFloat(tooLarge.get(), number), Refusal::Range);
    EXPECT_FALSE(PyErr_Occurred());
    bool flag = false;
    EXPECT_TRUE(convertBool(tooLarge.get(), flag));
    EXPECT_TRUE(flag);
    INT small = 0;
    EXPECT_FALSE(convertInt(tooLarge.get(), small));
    LONGLONG wide = 0;
    EXPECT_FALSE(convertLongLong(tooLarge.get(), wide));
    EXPECT_FALSE(PyErr_Occurred());
    PointerArgument pointer;
    EXPECT_FALSE(convertPointer(tooLarge.get(), typeRecordOf<MPoint>(), pointer));
    EXPECT_FALSE(PyErr_Occurred());
}

TEST_F(ModuleTest, MinusOneIsNoOverflow) {
    const PyRef minusOne = Interpreter::value("-1L");
    INT small = 0;
    LONGLONG wide = 0;
    float number = 0;
    EXPECT_TRUE(convertInt(minusOne.get(), small));
    EXPECT_TRUE(convertLongLong(minusOne.get(), wide));
    EXPECT_EQ(convertFloat(minusOne.get(), number), Refusal::None);
    EXPECT_EQ(small, -1);
    EXPECT_EQ(wide, -1);
    EXPECT_EQ(number, -1.0F);
}

TEST_F(ModuleTest, TheTextureMapReadsPointersOfAnyType) {
    int target = 0;
    const PyRef opaque = PyRef::adopt(makeOpaque(&target, typeRecordOf<HoverPoint>(), Ownership::Borrowed));
    void *pointer = nullptr;
    EXPECT_TRUE(extractPointer(opaque.get(), &pointer));
    EXPECT_EQ(pointer, &target);
    for (const char *expression : {"None", "5", "5L", "'text'", "object()"}) {
        EXPECT_FALSE(extractPointer(Interpreter::value(expression).get(), &pointer)) << expression;
        EXPECT_FALSE(PyErr_Occurred());
    }
}

/// A type of opaque objects as another module has one.
PyTypeObject foreignType(const char *name, Py_ssize_t size) {
    PyTypeObject type = {PyVarObject_HEAD_INIT(nullptr, 0)};
    type.tp_name = name;
    type.tp_basicsize = size;
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    return type;
}

TEST_F(ModuleTest, OpaqueObjectsOfOtherModulesAreKnownByTheirTypesName) {
    static PyTypeObject types[] = {foreignType("SwigPyObject", sizeof(OpaqueObject)),
                                   foreignType("PySwigObject", sizeof(OpaqueObject)),
                                   foreignType("SwigPyObject", sizeof(OpaqueObject) + 8)};
    static PyTypeObject others[] = {foreignType("SwigPyObjects", sizeof(OpaqueObject)),
                                    foreignType("SwigPyObject", sizeof(PyObject))};
    const auto make = [](PyTypeObject &type, TypeRecord *record, void *pointer) {
        if (!(type.tp_flags & Py_TPFLAGS_READY))
            PyType_Ready(&type);
        OpaqueObject *const object = PyObject_New(OpaqueObject, &type);
        if (type.tp_basicsize >= static_cast<Py_ssize_t>(sizeof(OpaqueObject))) {
            object->pointer = pointer;
            object->type = record;
            object->owns = 0;
            object->next = nullptr;
        }
        return PyRef::adopt(reinterpret_cast<PyObject *>(object));
    };
    MPoint point;
    for (PyTypeObject &type : types) {
        const PyRef object = make(type, typeRecordOf<MPoint>(), &point);
        PointerArgument argument;
        EXPECT_TRUE(convertPointer(object.get(), typeRecordOf<MPoint>(), argument)) << type.tp_name;
        EXPECT_EQ(argument.pointer(), &point);
        EXPECT_FALSE(convertPointer(object.get(), typeRecordOf<HoverPoint>(), argument));
        const PyRef own = PyRef::adopt(makeOpaque(&point, typeRecordOf<MPoint>(), Ownership::Borrowed));
        EXPECT_EQ(PyObject_RichCompareBool(own.get(), object.get(), Py_EQ), 1);
    }
    for (PyTypeObject &type : others) {
        PointerArgument argument;
        EXPECT_FALSE(
            convertPointer(make(type, typeRecordOf<MPoint>(), &point).get(), typeRecordOf<MPoint>(), argument));
    }
}

TEST_F(ModuleTest, ATypeOfTheSameNameFromAnotherRegistryIsAccepted) {
    // Two rings in one interpreter know the type by two records.
    static TypeRecord twin{"_p_MPoint", "MPoint *", nullptr, nullptr, nullptr, 0};
    static TypeRecord stranger{"_p_Stranger", "Stranger *", nullptr, nullptr, nullptr, 0};
    MPoint point;
    PointerArgument argument;
    const PyRef fromTwin = PyRef::adopt(makeOpaque(&point, &twin, Ownership::Borrowed));
    EXPECT_TRUE(convertPointer(fromTwin.get(), typeRecordOf<MPoint>(), argument));
    EXPECT_EQ(argument.pointer(), &point);
    const PyRef fromStranger = PyRef::adopt(makeOpaque(&point, &stranger, Ownership::Borrowed));
    EXPECT_FALSE(convertPointer(fromStranger.get(), typeRecordOf<MPoint>(), argument));
    const PyRef untyped = PyRef::adopt(makeOpaque(&point, nullptr, Ownership::Borrowed));
    EXPECT_FALSE(convertPointer(untyped.get(), typeRecordOf<MPoint>(), argument));
    EXPECT_THAT(std::string(PyString_AsString(PyRef::adopt(PyObject_Repr(untyped.get())).get())),
                testing::StartsWith("<Swig Object of type 'unknown' at 0x"));
}

TEST_F(ModuleTest, ACastMayMoveTheAddress) {
    static TypeRecord derived{"_p_Derived", "Derived *", nullptr, nullptr, nullptr, 0};
    static CastRecord cast{&derived, [](void *pointer, int *) -> void * { return static_cast<char *>(pointer) + 8; },
                           nullptr, nullptr};
    TypeRecord *const base = typeRecordOf<HoverPoint>();
    cast.next = base->casts;
    base->casts->previous = &cast;
    base->casts = &cast;
    char memory[64];
    PointerArgument argument;
    const PyRef object = PyRef::adopt(makeOpaque(memory, &derived, Ownership::Borrowed));
    EXPECT_TRUE(convertPointer(object.get(), base, argument));
    EXPECT_EQ(argument.pointer(), memory + 8);
    base->casts = cast.next;
    base->casts->previous = nullptr;
}

TEST_F(ModuleTest, ASubInterpreterIsRefused) {
    Interpreter::run("thing = o.new_Orvanel()\no.Orvanel_SetCallbackFunc(thing, seen.append)");
    const PyRef arguments = PyRef::adopt(PyTuple_Pack(2, Interpreter::value("thing").get(), Py_None));
    const PyRef none = PyRef::adopt(PyTuple_New(0));
    PyThreadState *const main = PyThreadState_Get();
    PyThreadState *const sub = Py_NewInterpreter();
    ASSERT_TRUE(sub);
    for (const Entry &entry : entryTable()) {
        PyMethodDef method = {entry.name, entry.call, entry.flags, nullptr};
        const PyRef function = PyRef::adopt(PyCFunction_New(&method, nullptr));
        // A callable of this interpreter, a wrong count, whatever: no entry comes as far as looking at it.
        PyObject *const result =
            (entry.flags & METH_O) != 0
                ? PyObject_CallFunctionObjArgs(function.get(), Py_None, nullptr)
                : PyObject_CallObject(function.get(), entry.arguments.size() == 2 ? arguments.get() : none.get());
        EXPECT_EQ(result, nullptr) << entry.name;
        EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_RuntimeError)) << entry.name;
        PyErr_Clear();
    }
    initialiseModule();
    EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_ImportError));
    PyErr_Clear();
    Py_EndInterpreter(sub);
    PyThreadState_Swap(main);
    Interpreter::run("o.Orvanel_CallBack(thing, 4)\no.delete_Orvanel(thing)");
    EXPECT_EQ(text("seen[0]"), "4");
}

TEST_F(ModuleTest, NoneIsANullPointer) {
    PointerArgument argument;
    EXPECT_TRUE(convertPointer(Interpreter::value("None").get(), typeRecordOf<MPoint>(), argument));
    EXPECT_EQ(argument.pointer(), nullptr);
    EXPECT_EQ(wrapPointer(nullptr, typeRecordOf<MPoint>()), Py_None);
    Py_DECREF(Py_None);
}

TEST_F(ModuleTest, NoneHasReferencesToSpare) {
    EXPECT_GT(Py_REFCNT(Py_None), Py_ssize_t{1} << 39);
}

} // namespace
} // namespace binding
