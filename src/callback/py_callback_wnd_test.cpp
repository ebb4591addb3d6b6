// SPDX-License-Identifier: MIT
#include "callback/py_callback_wnd.h"

#include <gtest/gtest.h>

#include <cstring>

#include "callback/testing/interpreter.h"
#include "callback/testing/plain_callback.h"
#include "platform/test_environment.h"
#include "platform/testing/raw_table.h"

namespace {

TEST(PyCallbackWnd, TheBaseHandlerGivesTheSystemsDefault) {
    PlainCallbackWnd object;
    constexpr UINT kUnusedMessage = 0x0400;
    EXPECT_EQ(object.HandleMessage(kUnusedMessage, 1, 2), 0);
}

TEST(PyCallbackWnd, EveryObjectHasAWindowOfItsOwnOrNone) {
    const PlainCallbackWnd first;
    const PlainCallbackWnd second(L"Another Window");
    if (first.windowHandle())
        EXPECT_NE(first.windowHandle(), second.windowHandle());
    else
        EXPECT_EQ(second.windowHandle(), nullptr);
}

/// Answers messages itself, and tells when it goes.
class Answering final : public PyCallbackWnd {
  public:
    explicit Answering(bool *gone) : m_gone(gone) {}
    ~Answering() { *m_gone = true; }
    void Destroy() override { destroyWhenUnused(this); }
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        return static_cast<LRESULT>(message * 100 + wParam * 10) + lParam;
    }

  private:
    bool *m_gone;
};

/// What a module sees that was compiled elsewhere and knows the places only.
template <typename Field>
Field fieldAt(const void *object, std::size_t offset) {
    Field field;
    std::memcpy(&field, static_cast<const char *>(object) + offset, sizeof field);
    return field;
}

TEST(PyCallbackWnd, FieldsAndSlotsLieWhereOtherModulesLookForThem) {
    const platform::ScopedEnvironment variable("loom main window", "4711");
    Interpreter interpreter;
    bool gone = false;
    auto *const object = new Answering(&gone);
    void *const raw = object;
    EXPECT_EQ(raw, static_cast<PyCallback *>(object));
    EXPECT_EQ(fieldAt<PyObject *>(raw, 8), nullptr);
    const PyRef callable = Interpreter::value("seen.append");
    object->SetCallback(callable.get());
    EXPECT_EQ(fieldAt<PyObject *>(raw, 8), callable.get());
    EXPECT_EQ(fieldAt<std::int32_t>(raw, 16), 4711);
    EXPECT_EQ(fieldAt<std::uint32_t>(raw, 24), 0x12345678U);
    EXPECT_EQ(fieldAt<HWND>(raw, 32), object->windowHandle());
    EXPECT_EQ((callSlot<LRESULT, UINT, WPARAM, LPARAM>(raw, 1, 7, 2, 1)), 721);
    EXPECT_FALSE(gone);
    callSlot<void>(raw, 0);
    EXPECT_TRUE(gone);
    EXPECT_EQ(Py_REFCNT(callable.get()), 1);
}

TEST(PyCallbackWnd, SlotZeroLeavesAnObjectInUseToItsUser) {
    Interpreter interpreter;
    bool gone = false;
    auto *const object = new Answering(&gone);
    {
        const PyCallback::Use use(*object);
        callSlot<void>(static_cast<void *>(object), 0);
        EXPECT_FALSE(gone);
        EXPECT_EQ(fieldAt<std::uint32_t>(object, 24), 0x12345678U);
    }
    EXPECT_TRUE(gone);
}

} // namespace
