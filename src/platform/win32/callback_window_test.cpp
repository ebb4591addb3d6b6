// SPDX-License-Identifier: MIT
#include "platform/callback_window.h"

#include <array>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr wchar_t kName[] = L"Callback Window";

/// Stands for an object with a window: `alive` is its signature.
struct Owner {
    bool alive = true;
    std::vector<UINT> messages;
};

bool dispatch(void *object, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result) {
    Owner &owner = *static_cast<Owner *>(object);
    if (!owner.alive || message < WM_APP)
        return false;
    owner.messages.push_back(message);
    *result = static_cast<LRESULT>(wParam) * 100 + lParam;
    return true;
}

class CallbackWindowTest : public testing::Test {
  protected:
    CallbackWindowTest() { window.create(kName, &owner, &dispatch); }
    ~CallbackWindowTest() override { window.destroy(); }

    LONG_PTR property(int index) const { return GetWindowLongPtrW(window.handle(), index); }

    Owner owner;
    CallbackWindow window;
};

TEST_F(CallbackWindowTest, HasTheDocumentedClass) {
    ASSERT_NE(window.handle(), nullptr);
    std::array<wchar_t, 64> text{};
    GetClassNameW(window.handle(), text.data(), static_cast<int>(text.size()));
    EXPECT_STREQ(text.data(), kName);
    EXPECT_EQ(GetClassLongPtrW(window.handle(), GCL_STYLE), 11U) << "CS_HREDRAW, CS_VREDRAW, CS_DBLCLKS";
    EXPECT_EQ(GetClassLongPtrW(window.handle(), GCL_CBCLSEXTRA), 0U);
    EXPECT_EQ(GetClassLongPtrW(window.handle(), GCL_CBWNDEXTRA), 0U);
    EXPECT_EQ(GetClassLongPtrW(window.handle(), GCLP_HICON), 0U);
    EXPECT_EQ(GetClassLongPtrW(window.handle(), GCLP_HCURSOR), 0U);
    EXPECT_EQ(GetClassLongPtrW(window.handle(), GCLP_HBRBACKGROUND),
              reinterpret_cast<ULONG_PTR>(GetStockObject(NULL_BRUSH)));
    static_assert(sizeof(WNDCLASSEXW) == 80);
}

TEST_F(CallbackWindowTest, HasTheDocumentedTitleStyleAndUserData) {
    ASSERT_NE(window.handle(), nullptr);
    std::array<wchar_t, 64> text{};
    GetWindowTextW(window.handle(), text.data(), static_cast<int>(text.size()));
    EXPECT_STREQ(text.data(), kName);
    EXPECT_EQ(property(GWL_STYLE) & WS_CAPTION, 0);
    EXPECT_EQ(property(GWL_STYLE) & (WS_CLIPSIBLINGS | WS_CLIPCHILDREN), WS_CLIPSIBLINGS | WS_CLIPCHILDREN);
    EXPECT_EQ(property(GWLP_USERDATA), reinterpret_cast<LONG_PTR>(&owner));
    EXPECT_EQ(GetParent(window.handle()), nullptr);
    EXPECT_FALSE(IsWindowVisible(window.handle()));
}

TEST_F(CallbackWindowTest, OffersMessagesToALivingOwnerOnly) {
    EXPECT_EQ(SendMessageW(window.handle(), WM_APP, 3, 4), 304);
    EXPECT_EQ(owner.messages, std::vector<UINT>{WM_APP});
    owner.alive = false;
    EXPECT_EQ(SendMessageW(window.handle(), WM_APP, 3, 4), DefWindowProcW(window.handle(), WM_APP, 3, 4));
    EXPECT_EQ(owner.messages.size(), 1U);
}

TEST_F(CallbackWindowTest, ADetachedOwnerIsNeverAsked) {
    window.detach();
    EXPECT_EQ(property(GWLP_USERDATA), 0);
    EXPECT_EQ(SendMessageW(window.handle(), WM_APP, 3, 4), 0);
    EXPECT_TRUE(owner.messages.empty());
}

TEST_F(CallbackWindowTest, ASecondWindowOfTheClassIsNoError) {
    Owner other;
    CallbackWindow second;
    SetLastError(ERROR_SUCCESS);
    second.create(kName, &other, &dispatch);
    ASSERT_NE(second.handle(), nullptr);
    SendMessageW(second.handle(), WM_APP, 0, 0);
    EXPECT_EQ(other.messages, std::vector<UINT>{WM_APP});
    EXPECT_TRUE(owner.messages.empty());
    second.destroy();
}

TEST_F(CallbackWindowTest, DestroyEndsTheWindowOnce) {
    const HWND handle = window.handle();
    window.destroy();
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(window.handle(), nullptr);
    window.destroy();
    window.detach();
}

TEST_F(CallbackWindowTest, AnotherThreadsDestroyIsCarriedOutByTheWindowsOwn) {
    const HWND handle = window.handle();
    std::thread([this] { window.destroy(); }).join();
    EXPECT_EQ(window.handle(), nullptr);
    EXPECT_TRUE(IsWindow(handle)) << "nobody but this thread can have destroyed it";
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_TRUE(owner.messages.empty());
}

TEST_F(CallbackWindowTest, AWindowWhoseThreadHasEndedIsGone) {
    CallbackWindow another;
    std::thread([this, &another] { another.create(kName, &owner, &dispatch); }).join();
    EXPECT_FALSE(IsWindow(another.handle()));
    another.destroy();
    EXPECT_EQ(another.handle(), nullptr);
}

/// Windows of this thread, hidden ones too. (Not GetGuiResources: Wine has no answer to it.)
int windowCount() {
    int count = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND, LPARAM counter) -> BOOL {
            ++*reinterpret_cast<int *>(counter);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

TEST_F(CallbackWindowTest, AThousandWindowsLeaveNoneBehind) {
    const int before = windowCount();
    EXPECT_GE(before, 1) << "the fixture's own";
    for (int i = 0; i < 1000; ++i) {
        CallbackWindow another;
        another.create(kName, &owner, &dispatch);
        ASSERT_NE(another.handle(), nullptr);
        another.destroy();
    }
    EXPECT_EQ(windowCount(), before);
}

} // namespace
} // namespace platform
