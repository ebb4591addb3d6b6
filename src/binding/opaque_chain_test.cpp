// SPDX-License-Identifier: MIT
#include "binding/opaque_chain.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "binding/initialise.h"
#include "binding/pointer_conversion.h"
#include "binding/type_registry.h"
#include "callback/testing/interpreter.h"

namespace binding {
namespace {

constexpr std::size_t kMany = 100'000;

class OpaqueChainTest : public testing::Test {
  protected:
    OpaqueChainTest() { initialiseModule(); }

    static PyRef makeLink() { return PyRef::adopt(makeOpaque(&point, typeRecordOf<MPoint>(), Ownership::Borrowed)); }
    static OpaqueObject *opaque(const PyRef &object) { return asOpaque(object.get()); }
    /// As other modules do it: without a look at where it leads.
    static void link(const PyRef &from, const PyRef &to) {
        Py_INCREF(to.get());
        opaque(from)->next = to.get();
    }
    /// A chain of so many, whose last link leads back to the one at `entry`, if there is one.
    static std::vector<PyRef> makeChain(std::size_t count, std::size_t entry) {
        std::vector<PyRef> links;
        for (std::size_t index = 0; index < count; ++index) {
            links.push_back(makeLink());
            if (index > 0)
                link(links[index - 1], links[index]);
        }
        if (entry < count)
            link(links.back(), links[entry]);
        return links;
    }
    static void open(const std::vector<PyRef> &links) {
        releaseChain(std::exchange(opaque(links.back())->next, nullptr));
    }

    Interpreter interpreter;
    static inline MPoint point;
};

TEST_F(OpaqueChainTest, EveryObjectIsCountedOnce) {
    for (std::size_t count = 1; count <= 12; ++count) {
        for (std::size_t entry = 0; entry <= count; ++entry) {
            const std::vector<PyRef> links = makeChain(count, entry);
            EXPECT_EQ(chainLength(opaque(links[0])), count) << "back to " << entry;
            EXPECT_TRUE(chainReaches(opaque(links[0]), opaque(links.back())));
            EXPECT_FALSE(chainReaches(opaque(links[0]), opaque(makeLink())));
            open(links);
        }
    }
}

TEST_F(OpaqueChainTest, ASearchInACircleEnds) {
    const std::vector<PyRef> links = makeChain(5, 2);
    PointerArgument argument;
    EXPECT_FALSE(convertPointer(links[0].get(), typeRecordOf<HoverPoint>(), argument));
    EXPECT_TRUE(convertPointer(links[0].get(), typeRecordOf<MPoint>(), argument));
    opaque(links[4])->type = typeRecordOf<HoverPoint>();
    EXPECT_TRUE(convertPointer(links[0].get(), typeRecordOf<HoverPoint>(), argument));
    EXPECT_EQ(argument.carrier, opaque(links[4]));
    open(links);
}

TEST_F(OpaqueChainTest, ARepresentationNamesEveryObjectOfACircleOnce) {
    const std::vector<PyRef> links = makeChain(3, 1);
    const PyRef text = PyRef::adopt(PyObject_Repr(links[0].get()));
    ASSERT_TRUE(text);
    const std::string shown = PyString_AsString(text.get());
    std::size_t count = 0;
    for (std::size_t at = 0; (at = shown.find("<Swig Object of type 'MPoint *' at 0x", at)) != std::string::npos; ++at)
        ++count;
    EXPECT_EQ(count, 3U) << shown;
    open(links);
}

TEST_F(OpaqueChainTest, AppendingACircleEnds) {
    const std::vector<PyRef> links = makeChain(3, 1);
    const PyRef head = makeLink();
    const PyRef result = PyRef::adopt(
        PyObject_CallMethod(head.get(), const_cast<char *>("append"), const_cast<char *>("O"), links[0].get()));
    EXPECT_TRUE(result);
    open(links);
}

TEST_F(OpaqueChainTest, ALongChainIsShownAndReleased) {
    std::vector<PyRef> links = makeChain(kMany, kMany);
    const Py_ssize_t types = Py_REFCNT(&opaqueType);
    const PyRef head = std::move(links.front());
    links.clear();
    EXPECT_EQ(chainLength(opaque(head)), kMany);
    const PyRef text = PyRef::adopt(PyObject_Repr(head.get()));
    ASSERT_TRUE(text);
    EXPECT_GT(PyString_GET_SIZE(text.get()), static_cast<Py_ssize_t>(kMany * 30));
    releaseChain(std::exchange(opaque(head)->next, nullptr));
    EXPECT_EQ(chainLength(opaque(head)), 1U);
    EXPECT_EQ(Py_REFCNT(&opaqueType), types);
}

TEST_F(OpaqueChainTest, ALinkThatSomebodyElseHasStays) {
    std::vector<PyRef> links = makeChain(4, 4);
    const PyRef kept = std::move(links[2]);
    PyRef head = std::move(links[0]);
    links.clear();
    head = PyRef();
    EXPECT_EQ(Py_REFCNT(kept.get()), 1);
    EXPECT_EQ(chainLength(opaque(kept)), 2U);
}

} // namespace
} // namespace binding
