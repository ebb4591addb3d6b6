// SPDX-License-Identifier: MIT
// Joining what other runtimes have left: rings made by hand as modules of several releases publish them. Joining
// modules that SWIG really built is tested from Python.

#include "binding/type_registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "callback/py_ref.h"
#include "callback/testing/interpreter.h"

namespace binding {
namespace {

/// A module of somebody else's with some types, each with the cast from itself.
class ForeignModule {
  public:
    explicit ForeignModule(std::vector<std::string> names) : m_names(std::move(names)) {
        for (const std::string &name : m_names) {
            m_types.push_back(std::make_unique<TypeRecord>());
            m_casts.push_back(std::make_unique<CastRecord>());
            m_types.back()->name = name.c_str();
            m_types.back()->text = "foreign *";
            m_types.back()->casts = m_casts.back().get();
            m_casts.back()->type = m_types.back().get();
            m_pointers.push_back(m_types.back().get());
        }
        m_pointers.push_back(nullptr);
        record = {m_pointers.data(), m_names.size(), &record, m_pointers.data(), nullptr, nullptr};
    }
    TypeRecord *type(std::size_t index) const { return m_types[index].get(); }

    ModuleRecord record;

  private:
    std::vector<std::string> m_names;
    std::vector<std::unique_ptr<TypeRecord>> m_types;
    std::vector<std::unique_ptr<CastRecord>> m_casts;
    std::vector<TypeRecord *> m_pointers;
};

class TypeRegistryTest : public testing::Test {
  protected:
    static void publishCapsule(ModuleRecord &head) {
        publish("swig_runtime_data4", "type_pointer_capsule",
                PyCapsule_New(&head, "swig_runtime_data4.type_pointer_capsule", nullptr));
    }
    static void publishCObject(const char *module, ModuleRecord &head) {
        publish(module, "type_pointer", PyCObject_FromVoidPtr(&head, nullptr));
    }
    static void publish(const char *module, const char *attribute, PyObject *value) {
        PyModule_AddObject(PyImport_AddModule(module), attribute, value);
    }
    static PyObject *published(const char *module, const char *attribute) {
        PyObject *const found = PyDict_GetItemString(PyImport_GetModuleDict(), module);
        return found ? PyDict_GetItemString(PyModule_GetDict(found), attribute) : nullptr;
    }
    static std::vector<ModuleRecord *> ring(ModuleRecord &start) {
        std::vector<ModuleRecord *> modules{&start};
        for (ModuleRecord *module = start.next; module != &start; module = module->next)
            modules.push_back(module);
        return modules;
    }
    static std::vector<std::string> acceptedAs(TypeRecord *type) {
        std::vector<std::string> names;
        for (const CastRecord *cast = type->casts; cast; cast = cast->next)
            names.emplace_back(cast->type->name);
        return names;
    }

    Interpreter interpreter;
    TypeRegistry registry;
};

constexpr std::size_t kPoint = pointerTypeIndex("_p_MPoint");
constexpr std::size_t kIndices = pointerTypeIndex("_p_std__vectorTunsigned_int_t");

TEST_F(TypeRegistryTest, AloneItPublishesVersionFour) {
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.runtimeVersion(), RuntimeVersion::Four);
    PyObject *const capsule = published("swig_runtime_data4", "type_pointer_capsule");
    ASSERT_TRUE(capsule);
    EXPECT_EQ(PyCapsule_GetPointer(capsule, "swig_runtime_data4.type_pointer_capsule"), &registry.module());
    PyObject *const object = published("swig_runtime_data4", "type_pointer");
    ASSERT_TRUE(object && PyCObject_Check(object));
    EXPECT_EQ(PyCObject_AsVoidPtr(object), &registry.module());
    EXPECT_EQ(published("swig_runtime_data3", "type_pointer"), nullptr);
    EXPECT_EQ(ring(registry.module()).size(), 1U);
}

TEST_F(TypeRegistryTest, EveryTypeAcceptsItself) {
    ASSERT_TRUE(registry.join());
    for (std::size_t index = 0; index < kPointerTypes.size(); ++index) {
        TypeRecord *const type = registry.type(index);
        EXPECT_STREQ(type->name, kPointerTypes[index].name);
        const CastRecord *const cast = findCast(type, type);
        ASSERT_TRUE(cast) << type->name;
        EXPECT_EQ(cast->convert, nullptr);
        EXPECT_EQ(registry.module().types[index], type);
        EXPECT_EQ(registry.module().ownTypes[index], type);
    }
    EXPECT_EQ(registry.module().types[kPointerTypes.size()], nullptr);
    EXPECT_EQ(registry.module().size, kPointerTypes.size());
}

TEST_F(TypeRegistryTest, VectorsOfCurrentReleasesAreAccepted) {
    ASSERT_TRUE(registry.join());
    EXPECT_THAT(acceptedAs(registry.type(kIndices)),
                testing::UnorderedElementsAre("_p_std__vectorTunsigned_int_t", "_p_std__vectorT_unsigned_int_t",
                                              "_p_std__vectorT_unsigned_int_std__allocatorT_unsigned_int_t_t"));
    EXPECT_THAT(acceptedAs(registry.type(pointerTypeIndex("_p_std__vectorTMPointF_t"))),
                testing::UnorderedElementsAre("_p_std__vectorTMPointF_t", "_p_std__vectorT_MPointF_t",
                                              "_p_std__vectorT_MPointF_std__allocatorT_MPointF_t_t"));
    // And not the other way round.
    EXPECT_THAT(acceptedAs(registry.type(pointerTypeIndex("_p_std__vectorT_unsigned_int_t"))),
                testing::ElementsAre("_p_std__vectorT_unsigned_int_t"));
}

TEST_F(TypeRegistryTest, ItJoinsACapsuleOfVersionFour) {
    ForeignModule foreign({"_p_MPoint", "_p_Other"});
    publishCapsule(foreign.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.runtimeVersion(), RuntimeVersion::Four);
    EXPECT_EQ(ring(foreign.record), (std::vector<ModuleRecord *>{&foreign.record, &registry.module()}));
    EXPECT_EQ(registry.type(kPoint), foreign.type(0));
    EXPECT_EQ(registry.module().types[kPoint], foreign.type(0));
    EXPECT_EQ(acceptedAs(foreign.type(0)).size(), 1U);
    // For a module of an older release that comes later.
    PyObject *const object = published("swig_runtime_data4", "type_pointer");
    ASSERT_TRUE(object && PyCObject_Check(object));
    EXPECT_EQ(PyCObject_AsVoidPtr(object), &foreign.record);
}

TEST_F(TypeRegistryTest, ItJoinsACObjectOfVersionFour) {
    ForeignModule foreign({"_p_MPoint"});
    publishCObject("swig_runtime_data4", foreign.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.runtimeVersion(), RuntimeVersion::Four);
    EXPECT_EQ(registry.type(kPoint), foreign.type(0));
    // For a module of a newer release that comes later.
    PyObject *const capsule = published("swig_runtime_data4", "type_pointer_capsule");
    ASSERT_TRUE(capsule);
    EXPECT_EQ(PyCapsule_GetPointer(capsule, "swig_runtime_data4.type_pointer_capsule"), &foreign.record);
}

TEST_F(TypeRegistryTest, WithoutCObjectsItPublishesACapsule) {
    Interpreter::run("import warnings\nwarnings.simplefilter('error')");
    // As with the interpreter's option -3, which warns of what is gone in Python 3.
    Py_Py3kWarningFlag = 1;
    const bool joined = registry.join();
    Py_Py3kWarningFlag = 0;
    ASSERT_TRUE(joined);
    EXPECT_FALSE(PyErr_Occurred());
    EXPECT_TRUE(published("swig_runtime_data4", "type_pointer_capsule"));
    EXPECT_EQ(published("swig_runtime_data4", "type_pointer"), nullptr);
}

TEST_F(TypeRegistryTest, ItJoinsACObjectOfVersionThree) {
    ForeignModule foreign({"_p_MPoint"});
    publishCObject("swig_runtime_data3", foreign.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.runtimeVersion(), RuntimeVersion::Three);
    EXPECT_EQ(registry.type(kPoint), foreign.type(0));
    EXPECT_EQ(published("swig_runtime_data4", "type_pointer_capsule"), nullptr);
}

TEST_F(TypeRegistryTest, TheCapsuleGoesBeforeTheCObjectAndVersionFourBeforeThree) {
    ForeignModule capsule({"_p_MPoint"}), cobject({"_p_MPoint"}), old({"_p_MPoint"});
    publishCObject("swig_runtime_data3", old.record);
    publishCObject("swig_runtime_data4", cobject.record);
    TypeRegistry second;
    ASSERT_TRUE(second.join());
    EXPECT_EQ(second.type(kPoint), cobject.type(0));
    publishCapsule(capsule.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.type(kPoint), capsule.type(0));
}

TEST_F(TypeRegistryTest, WhatIsNoRegistryIsPassedOver) {
    publish("swig_runtime_data4", "type_pointer_capsule", PyInt_FromLong(5));
    publish("swig_runtime_data4", "type_pointer", PyString_FromString("text"));
    PyDict_SetItemString(PyImport_GetModuleDict(), "swig_runtime_data3", Py_None);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(ring(registry.module()).size(), 1U);
    EXPECT_FALSE(PyErr_Occurred());
}

TEST_F(TypeRegistryTest, ALoneCapsuleOfAnotherNameIsPassedOver) {
    ForeignModule foreign({"_p_MPoint"});
    publish("swig_runtime_data4", "type_pointer_capsule", PyCapsule_New(&foreign.record, "another", nullptr));
    ASSERT_TRUE(registry.join());
    EXPECT_NE(registry.type(kPoint), foreign.type(0));
}

TEST_F(TypeRegistryTest, AThirdModuleIsInsertedBehindTheHead) {
    ForeignModule head({"_p_A"}), other({"_p_MPoint"});
    head.record.next = &other.record;
    other.record.next = &head.record;
    publishCapsule(head.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(ring(head.record), (std::vector<ModuleRecord *>{&head.record, &registry.module(), &other.record}));
    EXPECT_EQ(registry.type(kPoint), other.type(0));
}

TEST_F(TypeRegistryTest, JoiningAgainChangesNothing) {
    ForeignModule foreign({"_p_MPoint"});
    publishCapsule(foreign.record);
    ASSERT_TRUE(registry.join());
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(ring(foreign.record).size(), 2U);
    EXPECT_EQ(acceptedAs(registry.type(kIndices)).size(), 3U);
}

TEST_F(TypeRegistryTest, ATypeFoundTakesOverOurCasts) {
    // Somebody older knows our vector, and by its present name the other one.
    ForeignModule foreign({"_p_std__vectorT_unsigned_int_t", "_p_std__vectorTunsigned_int_t"});
    publishCapsule(foreign.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.type(kIndices), foreign.type(1));
    EXPECT_TRUE(findCast(foreign.type(0), foreign.type(1)));
    EXPECT_EQ(acceptedAs(foreign.type(1)).size(), 3U);
}

TEST_F(TypeRegistryTest, ANewTypePointsItsCastsAtWhatIsLoaded) {
    ForeignModule foreign({"_p_std__vectorT_unsigned_int_t"});
    publishCapsule(foreign.record);
    ASSERT_TRUE(registry.join());
    const CastRecord *const cast = findCast(foreign.type(0), registry.type(kIndices));
    ASSERT_TRUE(cast);
    EXPECT_EQ(cast->type, foreign.type(0));
}

TEST_F(TypeRegistryTest, ACastThatIsThereIsNotAddedTwice) {
    ForeignModule foreign({"_p_std__vectorT_unsigned_int_t", "_p_std__vectorTunsigned_int_t"});
    CastRecord own{foreign.type(0), nullptr, nullptr, foreign.type(1)->casts};
    foreign.type(1)->casts->next = &own;
    publishCapsule(foreign.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(acceptedAs(foreign.type(1)).size(), 3U);
}

TEST_F(TypeRegistryTest, AClassRecordOfTheRingIsKept) {
    ForeignModule foreign({"_p_MPoint"});
    int record = 0;
    foreign.type(0)->classRecord = &record;
    publishCapsule(foreign.record);
    ASSERT_TRUE(registry.join());
    EXPECT_EQ(registry.type(kPoint)->classRecord, &record);
}

TEST_F(TypeRegistryTest, ACastIsFoundByNameAndMovesToTheFront) {
    TypeRecord base{"_p_Base", nullptr, nullptr, nullptr, nullptr, 0};
    TypeRecord first{"_p_First", nullptr, nullptr, nullptr, nullptr, 0};
    TypeRecord second{"_p_Second", nullptr, nullptr, nullptr, nullptr, 0};
    TypeRecord sameName{"_p_Second", nullptr, nullptr, nullptr, nullptr, 0};
    TypeRecord stranger{"_p_Stranger", nullptr, nullptr, nullptr, nullptr, 0};
    CastRecord casts[] = {{&base, nullptr, &casts[1], nullptr},
                          {&first, nullptr, &casts[2], &casts[0]},
                          {&second, nullptr, nullptr, &casts[1]}};
    base.casts = casts;
    EXPECT_EQ(findCast(&sameName, &base), &casts[2]);
    EXPECT_THAT(acceptedAs(&base), testing::ElementsAre("_p_Second", "_p_Base", "_p_First"));
    EXPECT_EQ(findCast(&base, &base), &casts[0]);
    EXPECT_THAT(acceptedAs(&base), testing::ElementsAre("_p_Base", "_p_Second", "_p_First"));
    EXPECT_EQ(findCast(&stranger, &base), nullptr);
    EXPECT_EQ(casts[1].next, nullptr);
    EXPECT_EQ(casts[1].previous, &casts[2]);
}

TEST(ShownName, IsTheLastAlternative) {
    const auto shown = [](const char *name, const char *text) {
        const TypeRecord type{name, text, nullptr, nullptr, nullptr, 0};
        return std::string(shownName(&type));
    };
    EXPECT_EQ(shown("_p_A", "A *"), "A *");
    EXPECT_EQ(shown("_p_A", "enum _A *|A *"), "A *");
    EXPECT_EQ(shown("_p_A", nullptr), "_p_A");
}

} // namespace
} // namespace binding
