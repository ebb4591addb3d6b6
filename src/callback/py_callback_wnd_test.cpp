// SPDX-License-Identifier: MIT
#include "callback/py_callback_wnd.h"

#include <gtest/gtest.h>

namespace {

TEST(PyCallbackWnd, TheBaseHandlerGivesTheSystemsDefault) {
    PyCallbackWnd object;
    constexpr UINT kUnusedMessage = 0x0400;
    EXPECT_EQ(object.HandleMessage(kUnusedMessage, 1, 2), 0);
}

TEST(PyCallbackWnd, EveryObjectHasAWindowOfItsOwnOrNone) {
    const PyCallbackWnd first;
    const PyCallbackWnd second(L"Another Window");
    if (first.windowHandle())
        EXPECT_NE(first.windowHandle(), second.windowHandle());
    else
        EXPECT_EQ(second.windowHandle(), nullptr);
}

} // namespace
