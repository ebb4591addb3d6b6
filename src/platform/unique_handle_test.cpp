// SPDX-License-Identifier: MIT
#include "platform/unique_handle.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

std::vector<int> closed;
void closeNumber(int number) {
    closed.push_back(number);
}
using Number = UniqueHandle<int, &closeNumber, -1>;

class UniqueHandleTest : public testing::Test {
  protected:
    UniqueHandleTest() { closed.clear(); }
};

TEST_F(UniqueHandleTest, ClosesWhatItOwnsOnce) {
    {
        const Number zero(0); // an ordinary handle here: -1 owns nothing
        EXPECT_TRUE(zero);
        EXPECT_EQ(zero.get(), 0);
    }
    EXPECT_EQ(closed, std::vector<int>{0});
}

TEST_F(UniqueHandleTest, NothingIsNotClosed) {
    {
        const Number none;
        EXPECT_FALSE(none);
        const Number failed(-1);
        EXPECT_FALSE(failed);
    }
    EXPECT_TRUE(closed.empty());
}

TEST_F(UniqueHandleTest, MovesOwnership) {
    {
        Number first(1);
        Number second(std::move(first));
        EXPECT_FALSE(first);
        Number third(3);
        third = std::move(second);
        EXPECT_EQ(closed, std::vector<int>{3});
        EXPECT_EQ(third.get(), 1);
    }
    EXPECT_EQ(closed, (std::vector<int>{3, 1}));
}

TEST_F(UniqueHandleTest, ResetPutAndRelease) {
    {
        Number number(1);
        number.reset(2);
        EXPECT_EQ(closed, std::vector<int>{1});
        *number.put() = 3;
        EXPECT_EQ(closed, (std::vector<int>{1, 2}));
        EXPECT_EQ(number.release(), 3);
        EXPECT_FALSE(number);
    }
    EXPECT_EQ(closed, (std::vector<int>{1, 2}));
}

} // namespace
} // namespace platform
